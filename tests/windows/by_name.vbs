' Drives the component by name as a VBScript host does. Argument: the table of expected numbers.
Option Explicit

Dim expected, checks, failures
checks = 0
failures = 0

Sub Check(what, passed)
  checks = checks + 1
  If Not passed Then
    failures = failures + 1
    WScript.Echo "FAILED: " & what
  End If
End Sub

Sub CheckNumber(what, got, want)
  Check what & ": " & got & ", wanted " & want, Abs(got - want) <= 0.000001 * Abs(want)
End Sub

' To be called right after the statement that fails, with On Error Resume Next before it.
Sub CheckError(what, number, words)
  Check what & ": error " & Err.Number & ", wanted " & number, Err.Number = number
  Check what & ": text '" & Err.Description & "' lacks " & words, _
        InStr(1, Err.Description, words, 1) > 0
  Err.Clear
End Sub

Function ReadTable(path)
  Dim files, stream, line, parts
  Set ReadTable = CreateObject("Scripting.Dictionary")
  Set files = CreateObject("Scripting.FileSystemObject")
  Set stream = files.OpenTextFile(path)
  Do Until stream.AtEndOfStream
    line = stream.ReadLine
    If Len(line) > 0 And Left(line, 1) <> "#" Then
      parts = Split(line, vbTab)
      ReadTable.Add parts(0), Split(parts(1), " ")
    End If
  Loop
  stream.Close
End Function

Function Word(name)
  Dim texts
  texts = expected(name)
  Word = texts(0)
End Function

' Values of a row from element 1 on; element 0 holds what no routine may read.
Function Samples(name)
  Dim texts, values, i
  texts = expected(name)
  ReDim values(UBound(texts) + 1)
  values(0) = 1E+30
  For i = 0 To UBound(texts)
    values(i + 1) = CDbl(texts(i))
  Next
  Samples = values
End Function

Function Rows(name, columns)
  Dim texts, values, i, n
  texts = expected(name)
  n = (UBound(texts) + 1) \ columns
  ReDim values(n, columns)
  For i = 0 To UBound(texts)
    values(1 + i \ columns, 1 + i Mod columns) = CDbl(texts(i))
  Next
  Rows = values
End Function

Function IsoDate(text)
  Dim parts
  parts = Split(text, "-")
  IsoDate = DateSerial(CInt(parts(0)), CInt(parts(1)), CInt(parts(2)))
End Function

Sub IntegralCases()
  Dim integrate, name, rules, results, x, y, i
  Set integrate = CreateObject("vq140Analyse.ztIntegrate")
  For Each name In expected("integral.cases")
    rules = expected("integral.rules")
    If expected.Exists(name & ".rules") Then rules = expected(name & ".rules")
    results = expected(name & ".result")
    Check name & ": a result for each rule", UBound(rules) = UBound(results)
    x = Samples(name & ".x")
    y = Samples(name & ".y")
    For i = 0 To UBound(rules)
      integrate.IntegrationRule = CLng(rules(i))
      CheckNumber name & ", rule " & rules(i), integrate.Integral(x, y), CDbl(results(i))
    Next
  Next
  Check "the rule is not read back", integrate.IntegerationRule = 0
End Sub

Sub ArrayForms()
  Dim integrate, area, fixed(3), dynamic, single_y
  Set integrate = CreateObject("VQ140analyse.ZTINTEGRATE")
  area = integrate.INTEGRAL(Array(9, 0, 1, 2), Array(9, 0, 1, 4))
  Check "Array(): area " & area, area = 3
  Check "the result is a Single", VarType(area) = 4
  fixed(0) = -5
  fixed(1) = 0
  fixed(2) = CSng(1)
  fixed(3) = "2"
  ReDim dynamic(3)
  dynamic(1) = CByte(0)
  dynamic(2) = CCur(1)
  dynamic(3) = CInt(4)
  Check "fixed, dynamic and mixed", integrate.integral(fixed, dynamic) = 3
  Check "a text that was not changed stays one", VarType(fixed(3)) = 8
  Check "an element that was not given stays empty", VarType(dynamic(0)) = 0
  single_y = Array(Empty, True, True, True)
  Check "True is -1", integrate.Integral((fixed), single_y) = -2
  Check "too few ordinates are trapped inside", integrate.Integral(fixed, Array(9, 1)) = 0
End Sub

Sub AccumulateCases()
  Dim accumulate, name, columns, data, result, wanted, ok, i, j, flags
  For Each name In expected("accumulate.cases")
    columns = CInt(Word(name & ".columns"))
    data = Rows(name & ".data", columns)
    wanted = Rows(name & ".result", columns)
    Set accumulate = CreateObject("vq140Analyse.ztAccumulate")
    accumulate.dataPERIOD = Word(name & ".data_period")
    accumulate.PERIOD = Word(name & ".period")
    accumulate.frequency = Word(name & ".frequency")
    accumulate.StartData = IsoDate(Word(name & ".start_data"))
    accumulate.StartDate = IsoDate(Word(name & ".start_date"))
    If expected.Exists(name & ".rate") Then
      flags = Samples(name & ".rate")
      For i = 1 To columns
        flags(i) = CBool(flags(i))
      Next
      accumulate.RateArray = flags
    End If
    result = Empty
    ok = Empty
    accumulate.Accumulate data, result, ok
    Check name & ": the flag is written back", VarType(ok) = 11 And ok
    Check name & ": as many rows and columns", _
          UBound(result, 1) = UBound(wanted, 1) And UBound(result, 2) = columns
    Check name & ": bounds from 1", LBound(result, 1) = 1 And LBound(result, 2) = 1
    For i = 1 To UBound(wanted, 1)
      For j = 1 To columns
        CheckNumber name & "(" & i & ", " & j & ")", result(i, j), wanted(i, j)
      Next
    Next
  Next
End Sub

Sub CheckNumbers(what, got, want)
  Dim i
  Check what & ": as many samples", UBound(got) = UBound(want)
  For i = 1 To UBound(want)
    CheckNumber what & "(" & i & ")", got(i), want(i)
  Next
End Sub

Sub StatisticsCases()
  Dim statistics, name, x, wanted, got, ok, kept, count, i
  Set statistics = CreateObject("vq140Analyse.ztStatistics")
  For Each name In expected("statistics.cases")
    x = Samples(name & ".x")
    ok = Empty
    statistics.BasicStatistics x, ok
    Check name & ": the flag is written back", VarType(ok) = 11 And ok
    got = Array(0, statistics.xBar, statistics.XSIGMAN, statistics.xSigmaN1, statistics.SigmaX, _
                statistics.SigmaX2, statistics.SigmaAbsX, statistics.xMin, statistics.xMax)
    wanted = Samples(name & ".summary")
    For i = 1 To UBound(wanted)
      CheckNumber name & ".summary(" & i & ")", got(i), wanted(i)
    Next
    got = Array(0, statistics.Median(x), statistics.mode(x), statistics.Quartile(x, 1), _
                statistics.Quartile(x, "2"), statistics.QUARTILE(x, 3))
    wanted = Samples(name & ".measures")
    For i = 1 To UBound(wanted)
      CheckNumber name & ".measures(" & i & ")", got(i), wanted(i)
    Next
    CheckNumber name & ": element 0 is not touched", x(0), 1E+30
  Next
  For Each name In expected("removal.cases")
    x = Samples(name & ".x")
    ok = Empty
    kept = Empty
    count = Empty
    statistics.RemoveNulls CDbl(Word(name & ".null")), x, kept, count, ok
    Check name & ": nulls removed", VarType(ok) = 11 And ok
    Check name & ": the count is a Long", VarType(count) = 3
    If expected.Exists(name & ".result") Then
      wanted = Samples(name & ".result")
      Check name & ": " & count & " are left", count = UBound(wanted)
      CheckNumbers name & ".result", kept, wanted
    Else
      Check name & ": none is left", count = 0
    End If
  Next
End Sub

Sub MathLibCases()
  Dim f, texts
  Set f = CreateObject("vq140Analyse.ztMathLib")
  texts = expected("jbn.call")
  CheckNumber "Jbn", f.jbn(texts(1), texts(2)), CDbl(texts(3))
  Check "a Double", VarType(f.Max("2", 1)) = 5
  Check "an optional argument", f.ArithmeticDiff(3, 1) = 2 And f.ArithmeticDiff(3, 1, 0.5) = 2
End Sub

Sub CellCases()
  Dim f, name, v, wanted, x, y, z, top, bottom, q, ok, count, index, inside, found, i, j
  Set f = CreateObject("vq140Analyse.ztMathLib")
  top = Rows("cell.top", 4)
  bottom = Rows("cell.bottom", 4)
  x = Samples("cell.x")
  y = Samples("cell.y")
  z = Samples("cell.z")
  wanted = Samples("cell.inside")
  For i = 1 To UBound(wanted)
    Check "cell: point " & i, f.Point_In_Cube(x(i), y(i), z(i), top, bottom) = CBool(wanted(i))
  Next
  ok = Empty
  f.Points_In_CubeIndex x, y, z, top, bottom, count, index, inside, ok
  Check "cell: points found", VarType(ok) = 11 And ok
  Check "cell: " & count & " inside", VarType(count) = 3 And count = UBound(Samples("cell.index"))
  CheckNumbers "cell.index", index, Samples("cell.index")
  For i = 1 To UBound(wanted)
    Check "cell: flag " & i, VarType(inside(i)) = 11 And inside(i) = CBool(wanted(i))
  Next
  Check "cell: element 0 and corner 0 are not touched", x(0) = 1E+30 And IsEmpty(top(0, 0))
  For Each name In expected("crossing.cases")
    v = Samples(name & ".segment")
    found = Empty
    q = Empty
    ok = Empty
    f.Line_Through_Cube Array(9, v(1), v(4)), Array(9, v(2), v(5)), Array(9, v(3), v(6)), top, _
                        bottom, q, found, ok
    Check name & ": done", VarType(ok) = 11 And ok
    Check name & ": meets the surface " & q, q = expected.Exists(name & ".crossings")
    If q Then
      wanted = Rows(name & ".crossings", UBound(found, 2))
      Check name & ": coordinates and crossings", UBound(found, 1) = 3 And UBound(wanted, 1) = 3
      For i = 1 To 3
        For j = 1 To UBound(found, 2)
          CheckNumber name & "(" & i & ", " & j & ")", found(i, j), wanted(i, j)
        Next
      Next
    Else
      Check name & ": no crossings", IsEmpty(found)
    End If
  Next
  top = Rows("cell.top", 6)
  Check "other corner counts are no cell", Not f.Point_In_Cube(7, 2, 3, top, bottom)
End Sub

' What goes wrong inside a routine is no error of the script: flags are False, results 0.
Sub BadSamples()
  Dim statistics, sample, x, y, ok, count, kept
  Set statistics = CreateObject("vq140Analyse.ztStatistics")
  Set sample = CreateObject("vq140Analyse.ztSample")
  x = Array(9, 1, 3)
  statistics.BasicStatistics x, ok
  Check "a good summary first", ok And statistics.xBar = 2
  ok = True
  statistics.BasicStatistics Array(7), ok
  Check "nothing but element 0", VarType(ok) = 11 And Not ok
  ok = True
  statistics.Statistics Array(9, 3E+38, 3E+38), ok
  Check "a sum beyond Single", Not ok
  Check "the last summary stays", statistics.xBar = 2 And statistics.SigmaX = 4
  CheckNumber "the median needs no sum", statistics.Median(Array(9, 3E+38, 3E+38)), 3E+38
  Check "a second array too short", statistics.SumOfXY(x, Array(9, 1)) = 0
  Check "no such quartile", statistics.Quartile(x, 4) = 0
  y = Array(9, 5, 6)
  ok = True
  statistics.MaskValuesXY Array(True, True), x, y, count, ok
  Check "a mask too short", Not ok
  ok = True
  sample.BinVector x, 0, kept, y, ok
  Check "no bins", Not ok And IsEmpty(kept) And y(2) = 6
End Sub

Sub Properties()
  Dim accumulate, born, flag, data, result
  Set accumulate = CreateObject("vq140Analyse.ztAccumulate")
  born = Now
  Check "a Date arrives as one", VarType(accumulate.StartDate) = 7
  Check "made now", Abs(accumulate.StartDate - born) < 0.01 And Abs(accumulate.StartData - born) < 0.01
  Check "default period", accumulate.pErIoD = "Month" And VarType(accumulate.Period) = 8
  Check "default frequency", accumulate.Frequency = 1 And VarType(accumulate.Frequency) = 3
  Check "default rates", accumulate.Rates And VarType(accumulate.Rates) = 11
  accumulate.Rates = 0
  Check "rates set by number", VarType(accumulate.Rates) = 11 And Not accumulate.Rates
  accumulate.Frequency = "3"
  Check "a number given as text", accumulate.Frequency = 3
  accumulate.StartDate = DateSerial(1899, 12, 29) - TimeSerial(6, 0, 0)
  Check "a date before the first day", accumulate.StartDate = DateSerial(1899, 12, 29) - TimeSerial(6, 0, 0)
  accumulate.Period = "fort" & Chr(233) & "night"
  Check "any text is kept", accumulate.Period = "fort" & Chr(233) & "night"
  data = Rows("months.data", 2)
  result = "untouched"
  flag = True
  accumulate.Period = "monthly"
  result = Array(7, 8)
  On Error Resume Next
  accumulate.Accumulate data, result, flag
  CheckError "a one-dimensional result", 13, "dAccumulate"
  On Error GoTo 0
  result = Empty
  accumulate.Accumulate data, result, flag
  Check "an unknown word is no success", VarType(flag) = 11 And Not flag
  Check "and leaves the result alone", IsEmpty(result)
  accumulate.Period = "MONTHS"
  flag = True
  accumulate.Frequency = 0
  accumulate.Accumulate data, result, (flag)
  Check "an argument in brackets is a copy", flag
End Sub

Sub VersionAndLog()
  Dim info, version, log, message, files, text, folder
  Set info = CreateObject("vq140Analyse.ztAnalyseInfo")
  Set files = CreateObject("Scripting.FileSystemObject")
  folder = files.GetAbsolutePathName(".")
  log = ""
  version = info.DLLVersion(log)
  Check "the version text: " & version, Left(version, 19) = "vqmath63 v6.3.2436 "
  Check "it tells a date: " & version, CDate(Mid(version, 20)) > DateSerial(2020, 1, 1)
  Check "an empty log name is written back: " & log, log = "vqmath63.txt"
  Check "no argument at all", info.dllversion = version
  log = folder & "\by_name_log.txt"
  If files.FileExists(log) Then files.DeleteFile log
  message = "Client"
  Check "with all arguments", info.DLLVersion(log, message, True) = version
  Check "a log name that was given stays", log = folder & "\by_name_log.txt" And message = "Client"
  info.CloseDown
  text = files.OpenTextFile(log).ReadAll
  Check "the start-up line is logged: " & text, InStr(text, version & " Client: OK") > 0
  Check "the close-down line is logged", InStr(text, "vqmath63 v6.3.2436 Close Down") > 0
  Check "a skipped argument takes its default", info.DLLVersion(, , False) = version
  info.CloseDown
End Sub

Sub Errors()
  Dim integrate, accumulate, info, x, result, ok, none
  Set integrate = CreateObject("vq140Analyse.ztIntegrate")
  Set accumulate = CreateObject("vq140Analyse.ztAccumulate")
  Set info = CreateObject("vq140Analyse.ztAnalyseInfo")
  On Error Resume Next
  x = integrate.Integral(5, Array(1, 2))
  CheckError "a number for an array", 13, "'xVals' of Integral"
  x = integrate.Integral(Array(1, 2), Array(1, "2 sm3"))
  CheckError "an element that is no number", 13, "element (1)"
  x = integrate.Integral(Array(1, 2), Array(1, 1E+300))
  CheckError "an element beyond Single", 6, "'yVals' of Integral"
  accumulate.Accumulate Array(1, 2), result, ok
  CheckError "one dimension for two", 13, "'dArr' of Accumulate"
  accumulate.Frequency = 1E+10
  CheckError "a Long out of range", 6, "'value' of Frequency"
  accumulate.Period = integrate
  CheckError "an object for a text", 13, "'value' of Period"
  x = integrate.Integral(Array(1, 2))
  Check "an argument too few: " & Err.Number, Err.Number = 449 Or Err.Number = 450
  Err.Clear
  x = integrate.Integral(Array(1, 2), Array(1, 2), 3)
  Check "an argument too many: " & Err.Number, Err.Number = 450
  Err.Clear
  x = integrate.Integrate(Array(1, 2), Array(1, 2))
  Check "an unknown member: " & Err.Number, Err.Number = 438
  Err.Clear
  x = accumulate.DataPeriod
  Check "reading what can only be set: " & Err.Number, Err.Number = 438
  Err.Clear
  info.DLLVersion = "7"
  Check "setting what can only be read: " & Err.Number, Err.Number = 438
  Err.Clear
  Set none = CreateObject("vq140Analyse.ztNothing")
  Check "an unknown class: " & Err.Number, Err.Number = 429
  Err.Clear
  x = integrate.Integral(Array(9, 0, 1, 2), Array(9, 0, 1, 4))
  Check "a good call afterwards: " & Err.Number, Err.Number = 0 And x = 3
  On Error GoTo 0
End Sub

Set expected = ReadTable(WScript.Arguments(0))
IntegralCases
ArrayForms
AccumulateCases
StatisticsCases
MathLibCases
CellCases
BadSamples
Properties
VersionAndLog
Errors
WScript.Echo "checks " & checks
WScript.Echo "failures " & failures
WScript.Quit failures
