"""The functions of the component in a spreadsheet, as LibreOffice Calc calls them."""
