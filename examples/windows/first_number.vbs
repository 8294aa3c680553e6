' VBScript: a number, results by reference, a table of dates. Run it with: cscript //nologo first_number.vbs
'
' Prints:
' > area 3
' > Simpson 2.6667
' > 3 values, mean 20
' > to 2023-3: 5
' > to 2023-6: 4
' > error 13
Option Explicit

' Sample 1 is element 1: element 0, which VBScript's arrays have, is not read.
Dim integrate : Set integrate = CreateObject("vq140Analyse.ztIntegrate")
Dim x : x = Array(0, 0, 1, 2)
Dim y : y = Array(0, 0, 1, 4)
WScript.Echo "area " & integrate.Integral(x, y)
integrate.IntegrationRule = 2
WScript.Echo "Simpson " & FormatNumber(integrate.Integral(x, y), 4)

' Results come back in the variables that are handed over, whatever these held.
Dim statistics : Set statistics = CreateObject("vq140Analyse.ztStatistics")
Dim rates : rates = Array(0, 10, -999.25, 20, 30)
Dim kept, count, ok
statistics.RemoveNulls -999.25, rates, kept, count, ok
statistics.BasicStatistics kept, ok
If ok Then WScript.Echo count & " values, mean " & statistics.xBar

' Monthly rates onto quarters: column 1 has the months since StartData, the next ones rates.
Dim accumulate : Set accumulate = CreateObject("vq140Analyse.ztAccumulate")
accumulate.DataPeriod = "month"
accumulate.Period = "quarter"
accumulate.StartData = DateSerial(2023, 1, 1)
accumulate.StartDate = DateSerial(2023, 1, 1)
Dim data(7, 2), result, i, day
For i = 0 To 6
  data(i + 1, 1) = i
  data(i + 1, 2) = 5
  If i > 3 Then data(i + 1, 2) = 4
Next
accumulate.Accumulate data, result, ok
For i = 1 To UBound(result, 1)
  day = accumulate.StartDate + result(i, 1) - 1
  WScript.Echo "to " & Year(day) & "-" & Month(day) & ": " & result(i, 2)
Next

' What a member refuses is an error of the usual kind, with a text.
On Error Resume Next
integrate.Integral 7, y
WScript.Echo "error " & Err.Number
