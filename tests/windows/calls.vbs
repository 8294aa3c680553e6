' Makes the worked calls of tests/data/calls.tsv as a VBScript host does: the statements that
' calls_as_script.awk makes of the table stand behind this file.
Option Explicit

Dim checks, failures, calls, at, within, o, r, n, a4, a5, a6, a7, a8, a9, a10, a11, a12, a13, a14
checks = 0
failures = 0
calls = 0

Sub Check(passed, what)
  checks = checks + 1
  If Not passed Then
    failures = failures + 1
    WScript.Echo "FAILED: calls.tsv, line " & at & ": " & what
  End If
End Sub

Sub Make(name)
  Set o = CreateObject("vq140Analyse." & name)
End Sub

Function Ref(value)
  Ref = value
End Function

Function Unset()
  Unset = Empty
End Function

' Rows and columns from 1 on; `list` has the elements row by row.
Function Table(columns, list)
  Dim made, i
  ReDim made(UBound(list) \ columns, columns)
  For i = 1 To UBound(list)
    made(1 + (i - 1) \ columns, 1 + (i - 1) Mod columns) = list(i)
  Next
  Table = made
End Function

Function Done()
  calls = calls + 1
  Check Err.Number = 0, "error " & Err.Number & ", " & Err.Description
  Err.Clear
End Function

Function Columns(value)
  Columns = 0
  On Error Resume Next
  Columns = UBound(value, 2)
  Err.Clear
End Function

Function Same(got, want)
  Dim i, j
  If IsEmpty(want) Then
    Check IsEmpty(got), "nothing was expected"
  ElseIf Not IsArray(want) Then
    SameScalar got, want
  ElseIf Not IsArray(got) Then
    Check False, "no array"
  ElseIf UBound(got) <> UBound(want) Or Columns(got) <> Columns(want) Then
    Check False, "indices to " & UBound(got) & ", " & Columns(got)
  Else
    For i = 1 To UBound(want)
      If Columns(want) = 0 Then SameScalar got(i), want(i)
      For j = 1 To Columns(want)
        SameScalar got(i, j), want(i, j)
      Next
    Next
  End If
End Function

Sub SameScalar(got, want)
  Dim passed
  If VarType(want) = vbString Then
    passed = VarType(got) = vbString
    If passed And Right(want, 1) = "*" Then
      passed = Left(got, Len(want) - 1) = Left(want, Len(want) - 1)
    ElseIf passed Then
      passed = got = want
    End If
  ElseIf VarType(want) = vbBoolean Then
    passed = VarType(got) = vbBoolean And got = want
  Else
    passed = VarType(got) <> vbString And VarType(got) <> vbBoolean And Not IsEmpty(got)
    If passed Then passed = Abs(got - want) <= within * Abs(want)
  End If
  Check passed, got & ", wanted " & want
End Sub

Function LogEnds(name, count, words)
  Dim lines
  lines = Split(CreateObject("Scripting.FileSystemObject").OpenTextFile(name).ReadAll, vbLf)
  Check UBound(lines) = count And InStr(lines(UBound(lines) - 1) & vbCr, words & vbCr) > 0, _
        UBound(lines) & " lines, the last: " & lines(UBound(lines) - 1)
End Function

Function Finish()
  Check Err.Number = 0, "error " & Err.Number & ", " & Err.Description
  WScript.Echo "calls " & calls
  WScript.Echo "checks " & checks
  WScript.Echo "failures " & failures
  WScript.Quit failures
End Function

On Error Resume Next
