// What is particular to a JScript host: arrays are objects of the script, in which results arrive,
// scalars by reference are objects with a value.
var checks = 0;
var failures = 0;

function check(what, passed) {
  ++checks;
  if (!passed) {
    ++failures;
    WScript.Echo("FAILED: " + what);
  }
}

function checkError(what, call, number, words) {
  try {
    call();
    check(what + ": no error", false);
  } catch (e) {
    check(what + ": error " + (e.number & 0xFFFF) + ", wanted " + number,
          (e.number & 0xFFFF) === number);
    check(what + ": text '" + e.message + "' lacks " + words, e.message.indexOf(words) >= 0);
  }
}

var integrate = new ActiveXObject("vq140Analyse.ztIntegrate");
var x = [, 0, "1", 2];
var y = [undefined, null, 1, 4];
check("holes, texts and nulls", integrate.INTEGRAL(x, y) === 3);
check("what was not changed stays", x[1] === 0 && x[2] === "1" && y[1] === null && x.length === 4);

var statistics = new ActiveXObject("vq140Analyse.ztStatistics");
check("a NaN sorts last", statistics.Median([0, 3, NaN, 1]) === 3);
check("an infinity is the largest", statistics.Maximum([0, 3, Infinity, 1]) === Infinity);
var kept = [1, 2, 3, 4, 5];
var count = {value: 0};
var ok = {value: 7};
statistics.RemoveNulls(7, [9, 7, 1, 7], kept, count, ok);
check("an array that was longer is cut", kept.length === 2 && kept[1] === 1);
check("values are replaced", count.value === 1 && ok.value === true);

var accumulate = new ActiveXObject("vq140Analyse.ztAccumulate");
var result = [[1, 2, 3], [4], [5], [6], [7]];
accumulate.StartData = accumulate.StartDate = 44927;
accumulate.Accumulate([[], [0, 0, 5], [0, 31, 20], [0, 59, 30]], result, ok);
check("a table that was larger is cut", ok.value === true && result.length === 3);
check("its rows are made", result[2].length === 3 && result[2][1] === 59);

var info = new ActiveXObject("vq140Analyse.ztAnalyseInfo");
check("plain values by reference",
      info.DLLVersion("vqmath63.txt", "", false) === info.DLLVersion({value: ""}));
info.CloseDown();

checkError("a text for an array", function() { integrate.Integral("x", [1]); }, 13,
           "'xVals' of Integral");
checkError("an object without a length", function() { integrate.Integral([1], {}); }, 13,
           "'yVals' of Integral");
checkError("an element that is no number",
           function() { integrate.Integral([9, 1, "oil"], [9, 1, 2]); }, 13, "element (2)");
checkError("an element of a row that is no number",
           function() { accumulate.Accumulate([[], [0, 1, "oil"]], [], {}); }, 13, "(1, 2)");
checkError("a row that is no array", function() { accumulate.Accumulate([[], 4], [], {}); }, 13,
           "'dArr' of Accumulate");
checkError("an unknown member", function() { integrate.Integrate([1], [1]); }, 438, "");
check("a good call afterwards", integrate.Integral([9, 0, 1, 2], [9, 0, 1, 4]) === 3);

WScript.Echo("checks " + checks);
WScript.Echo("failures " + failures);
WScript.Quit(failures);
