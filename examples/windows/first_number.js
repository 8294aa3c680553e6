// JScript: a number, results by reference, a table. Run it with: cscript //nologo first_number.js
//
// Prints:
// > area 3
// > 3 values, mean 20
// > to day 90: 5
// > to day 181: 4
// > Type mismatch

// Sample 1 is element 1: element 0, which JScript's arrays have, is not read.
var integrate = new ActiveXObject("vq140Analyse.ztIntegrate");
WScript.Echo("area " + integrate.Integral([0, 0, 1, 2], [0, 0, 1, 4]));

// JScript hands scalars over by value. An object with a property `value` stands for a variable; arrays
// are filled in place.
var statistics = new ActiveXObject("vq140Analyse.ztStatistics");
var rates = [0, 10, -999.25, 20, 30], kept = [], count = {value: 0}, ok = {value: false};
statistics.RemoveNulls(-999.25, rates, kept, count, ok);
statistics.BasicStatistics(kept, ok);
if (ok.value) WScript.Echo(count.value + " values, mean " + statistics.xBar);

// A table is an array of rows; row 0 and column 0 are not read.
var accumulate = new ActiveXObject("vq140Analyse.ztAccumulate");
accumulate.DataPeriod = "month";
accumulate.Period = "quarter";
accumulate.StartData = "2023-01-01";
accumulate.StartDate = "2023-01-01";
var data = [[]], result = [];
for (var month = 0; month <= 6; ++month) data.push([0, month, month > 3 ? 4 : 5]);
accumulate.Accumulate(data, result, ok);
for (var row = 1; row < result.length; ++row) {
  WScript.Echo("to day " + result[row][1] + ": " + result[row][2]);
}

// What a member refuses is an exception with a text.
try {
  integrate.Integral(7, [0, 0, 1, 4]);
} catch (failure) {
  WScript.Echo(failure.message.split(":")[0]);
}
