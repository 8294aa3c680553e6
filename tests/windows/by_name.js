// What is particular to a JScript host: arrays are objects of the script, in which results arrive,
// scalars by reference are objects with a value.
var checks = 0, failures = 0;

function that(passed, what) {
  ++checks;
  failures += passed ? 0 : 1;
  if (!passed) WScript.Echo("FAILED: " + what);
}
function check(expression) {
  that(eval(expression) === true, expression);
}
function fails(call, number, words) {
  try {
    eval(call);
    that(false, call + ": no error");
  } catch (e) {
    that((e.number & 0xFFFF) === number && e.message.indexOf(words) >= 0,
         call + ": error " + (e.number & 0xFFFF) + ", " + e.message);
  }
}

var integrate = new ActiveXObject("vq140Analyse.ztIntegrate");
var statistics = new ActiveXObject("vq140Analyse.ztStatistics");
var accumulate = new ActiveXObject("vq140Analyse.ztAccumulate");
var info = new ActiveXObject("vq140Analyse.ztAnalyseInfo");
var x = [, 0, "1", 2], y = [undefined, null, 1, 4];
check("integrate.INTEGRAL(x, y) === 3");
check("x[1] === 0 && x[2] === '1' && y[1] === null && x.length === 4");
check("statistics.Median([0, 3, NaN, 1]) === 3");  // a NaN sorts last
check("statistics.Maximum([0, 3, Infinity, 1]) === Infinity");
var kept = [1, 2, 3, 4, 5], count = {value: 0}, ok = {value: 7};
statistics.RemoveNulls(7, [9, 7, 1, 7], kept, count, ok);
check("kept.length === 2 && kept[1] === 1");
check("count.value === 1 && ok.value === true");
var result = [[1, 2, 3], [4], [5], [6], [7]];
accumulate.StartData = accumulate.StartDate = 44927;
accumulate.Accumulate([[], [0, 0, 5], [0, 31, 20], [0, 59, 30]], result, ok);
check("ok.value === true && result.length === 3");
check("result[2].length === 3 && result[2][1] === 59");
check("info.DLLVersion('vqmath63.txt', '', false) === info.DLLVersion({value: ''})");
info.CloseDown();

fails("integrate.Integral('x', [1])", 13, "'xVals' of Integral");
fails("integrate.Integral([1], {})", 13, "'yVals' of Integral");
fails("integrate.Integral([9, 1, 'oil'], [9, 1, 2])", 13, "element (2)");
fails("accumulate.Accumulate([[], [0, 1, 'oil']], [], {})", 13, "(1, 2)");
fails("accumulate.Accumulate([[], 4], [], {})", 13, "'dArr' of Accumulate");
fails("integrate.Integrate([1], [1])", 438, "");
check("integrate.Integral([9, 0, 1, 2], [9, 0, 1, 4]) === 3");

WScript.Echo("checks " + checks);
WScript.Echo("failures " + failures);
WScript.Quit(failures);
