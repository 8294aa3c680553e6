Attribute VB_Name = "FirstNumber"
' Visual Basic in a spreadsheet. To use it: Alt+F11, File > Import File.
' Where this file was made there is no spreadsheet of this kind to run it in: its calls are held to the
' type library by their names and the number of their arguments.
Option Explicit

' Without a reference: objects by name.
Public Sub FirstNumber()
  Dim integrate As Object
  Set integrate = CreateObject("vq140Analyse.ztIntegrate")
  ' Array() counts from 0, and sample 1 is element 1: element 0 is not read.
  MsgBox integrate.Integral(Array(0, 0, 1, 2), Array(0, 0, 1, 4))
End Sub

' From here on with a reference: Tools > References > "Quorvane Statistical Analysis 6.3".

' In a cell: =CurveArea(A2:A10, B2:B10)
Public Function CurveArea(times As Range, rates As Range) As Single
  Dim integrate As New vq140Analyse.ztIntegrate
  Dim x() As Single, y() As Single
  x = Singles(times)
  y = Singles(rates)
  integrate.IntegrationRule = vqSimpson
  CurveArea = integrate.Integral(x, y)
End Function

' The cells of a range as samples 1, 2, ...
Private Function Singles(cells As Range) As Single()
  Dim values() As Single, i As Long
  ReDim values(1 To cells.Count)
  For i = 1 To cells.Count
    values(i) = cells(i).Value
  Next
  Singles = values
End Function

' Nulls out, then a summary, beside the selected cells.
Public Sub Summary()
  Dim statistics As New vq140Analyse.ztStatistics
  Dim rates() As Single, kept() As Single, count As Long, ok As Boolean
  rates = Singles(Selection)
  statistics.RemoveNulls -999.25, rates, kept, count, ok
  If ok Then statistics.BasicStatistics kept, ok
  If Not ok Then Exit Sub
  With Selection.Cells(1).Offset(0, Selection.Columns.count)
    .Value = statistics.xBar
    .Offset(1).Value = statistics.xSigmaN1
  End With
End Sub

' Monthly rates onto quarters. The selection has a row a month: months since the start, then a rate in
' each further column. What comes back has the days since the start in its first column.
Public Sub Quarters()
  Dim accumulate As New vq140Analyse.ztAccumulate
  Dim data() As Single, result() As Single, ok As Boolean, row As Long, column As Long
  ReDim data(1 To Selection.Rows.count, 1 To Selection.Columns.count)
  For row = 1 To UBound(data, 1)
    For column = 1 To UBound(data, 2)
      data(row, column) = Selection.Cells(row, column).Value
    Next
  Next
  accumulate.DataPeriod = "month"
  accumulate.Period = "quarter"
  accumulate.StartData = DateSerial(2023, 1, 1)
  accumulate.StartDate = DateSerial(2023, 1, 1)
  accumulate.Accumulate data, result, ok
  If ok Then
    Selection.Offset(0, Selection.Columns.count + 1) _
        .Resize(UBound(result, 1), UBound(result, 2)).Value = result
  End If
End Sub
