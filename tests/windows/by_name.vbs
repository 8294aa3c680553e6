' What is particular to a VBScript host: the forms of its arrays and variables, properties in any
' letter case, errors as it sees them.
Option Explicit

Dim checks, failures, integrate, accumulate, info
checks = 0 : failures = 0
Set integrate = CreateObject("VQ140analyse.ZTINTEGRATE")
Set accumulate = CreateObject("vq140Analyse.ztAccumulate")
Set info = CreateObject("vq140Analyse.ztAnalyseInfo")

Sub Check(what, passed)
  checks = checks + 1
  If passed Then Exit Sub
  failures = failures + 1
  WScript.Echo "FAILED: " & what
End Sub

' To be called right after the statement that fails, with On Error Resume Next before it.
Sub CheckError(what, number, words)
  Check what & ": error " & Err.Number & ", " & Err.Description, _
        Err.Number = number And (words = "" Or InStr(1, Err.Description, words, 1) > 0)
  Err.Clear
End Sub

Sub ArrayForms()
  Dim area, fixed(3), dynamic
  area = integrate.INTEGRAL(Array(9, 0, 1, 2), Array(9, 0, 1, 4))
  Check "Array(): a Single, area " & area, area = 3 And VarType(area) = 4
  fixed(0) = -5 : fixed(1) = 0 : fixed(2) = CSng(1) : fixed(3) = "2"
  ReDim dynamic(3)
  dynamic(1) = CByte(0) : dynamic(2) = CCur(1) : dynamic(3) = CInt(4)
  Check "fixed, dynamic and mixed", integrate.integral(fixed, dynamic) = 3
  Check "a text that was not changed stays one", VarType(fixed(3)) = 8
  Check "an element that was not given stays empty", VarType(dynamic(0)) = 0
  Check "True is -1", integrate.Integral((fixed), Array(Empty, True, True, True)) = -2
End Sub

' Untyped variables take the type of a result; element 0 of an array is nobody's.
Sub Results()
  Dim statistics, functions, x, y, kept, count, ok, top(3, 4), bottom(3, 5)
  Set statistics = CreateObject("vq140Analyse.ztStatistics")
  x = Array(1E+30, 7, 1, 7)
  statistics.RemoveNulls "7", x, kept, count, ok
  Check "the flag is a Boolean", VarType(ok) = 11 And ok
  Check "the count is a Long", VarType(count) = 3 And count = 1
  Check "an array of variants", UBound(kept) = 1 And kept(1) = 1
  Check "a Single in it", VarType(kept(1)) = 4
  Check "element 0 is not touched", x(0) = 1E+30
  y = Array(9, 5, 6)
  ok = True
  statistics.MaskValuesXY Array(True, True), Array(9, 1, 3), y, count, ok
  Check "a mask too short", Not ok And y(2) = 6
  Set functions = CreateObject("vq140Analyse.ztMathLib")
  Check "texts as numbers give a Double", VarType(functions.Max("2", 1)) = 5
  Check "corner 0 is not touched", Not functions.Point_In_Cube(7, 2, 3, top, bottom) And IsEmpty(top(0, 0))
End Sub

Sub Properties()
  Dim flag, data(2, 2), result, early
  early = DateSerial(1899, 12, 29) - TimeSerial(6, 0, 0)
  Check "a Date", VarType(accumulate.StartDate) = 7
  Check "made now", Abs(accumulate.StartDate - Now) + Abs(accumulate.StartData - Now) < 0.01
  Check "a String", accumulate.pErIoD = "Month" And VarType(accumulate.Period) = 8
  accumulate.Rates = 0
  Check "rates set by number", VarType(accumulate.Rates) = 11 And Not accumulate.Rates
  accumulate.Frequency = "3"
  Check "a number given as text", accumulate.Frequency = 3 And VarType(accumulate.Frequency) = 3
  accumulate.StartDate = early
  Check "a date before the first day", accumulate.StartDate = early
  accumulate.Period = "fort" & Chr(233) & "night"
  Check "any text is kept", accumulate.Period = "fort" & Chr(233) & "night"
  data(1, 1) = 0 : data(1, 2) = 5 : data(2, 1) = 1 : data(2, 2) = 20
  result = Array(7, 8)
  accumulate.Accumulate data, result, flag
  Check "without a result the variable keeps what it held", Not flag And UBound(result) = 1
  accumulate.Period = "Month"
  accumulate.Accumulate data, result, flag
  Check "a result comes whatever its variable held", flag And UBound(result, 2) = 2
  accumulate.Frequency = 0
  accumulate.Accumulate data, Empty, (flag)
  Check "an argument in brackets is a copy", flag
End Sub

Sub VersionAndLog()
  Dim version, log
  version = info.dllversion
  Check "it tells a date: " & version, CDate(Mid(version, 20)) > DateSerial(2020, 1, 1)
  Check "an untyped log name is written back", info.DLLVersion(log) = version And log = "vqmath63.txt"
  Check "a skipped argument takes its default", info.DLLVersion(, , False) = version
  info.CloseDown
End Sub

Sub Errors()
  Dim x
  On Error Resume Next
  x = integrate.Integral(5, Array(1, 2))
  CheckError "a number for an array", 13, "'xVals' of Integral"
  accumulate.Frequency = 1E+10
  CheckError "a Long out of range", 6, "'value' of Frequency"
  accumulate.Period = integrate
  CheckError "an object for a text", 13, "'value' of Period"
  x = integrate.Integral(Array(1, 2))
  Check "an argument too few: " & Err.Number, Err.Number = 449 Or Err.Number = 450
  Err.Clear
  x = integrate.Integral(Array(1, 2), Array(1, 2), 3)
  CheckError "an argument too many", 450, ""
  x = accumulate.DataPeriod
  CheckError "reading what can only be set", 438, ""
  info.DLLVersion = "7"
  CheckError "setting what can only be read", 438, ""
  x = integrate.Integral(Array(9, 0, 1, 2), Array(9, 0, 1, 4))
  Check "a good call afterwards: " & Err.Number, Err.Number = 0 And x = 3
End Sub

ArrayForms
Results
Properties
VersionAndLog
Errors
WScript.Echo "checks " & checks
WScript.Echo "failures " & failures
WScript.Quit failures
