# PowerShell: powershell -ExecutionPolicy Bypass -File first_number.ps1
# Where this file was made there is no PowerShell to run it in: its calls are held to the type library
# by their names and the number of their arguments.

# Sample 1 is element 1: element 0, which .NET's arrays have, is not read.
$integrate = New-Object -ComObject vq140Analyse.ztIntegrate
[single[]] $x = 0, 0, 1, 2
[single[]] $y = 0, 0, 1, 4
"area " + $integrate.Integral($x, $y)
$integrate.IntegrationRule = 2   # Simpson's
"Simpson " + $integrate.Integral($x, $y)

# Results come back in variables that are handed over with [ref].
$statistics = New-Object -ComObject vq140Analyse.ztStatistics
[single[]] $rates = 0, 10, -999.25, 20, 30
$kept = $null; $count = 0; $ok = $false
$statistics.RemoveNulls(-999.25, $rates, [ref] $kept, [ref] $count, [ref] $ok)
$statistics.BasicStatistics([ref] $kept, [ref] $ok)
"$count values, mean " + $statistics.xBar

# What a member refuses is an exception with a text.
try { $integrate.Integral(7, $y) } catch { $_.Exception.Message }
