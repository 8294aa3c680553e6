// Drives the component by name as a JScript host does: arrays are objects of the script, results
// arrive in the arrays handed in, scalars by reference in objects with a value. Argument: the table
// of expected numbers.
var checks = 0;
var failures = 0;

function check(what, passed) {
  ++checks;
  if (!passed) {
    ++failures;
    WScript.Echo("FAILED: " + what);
  }
}

function checkNumber(what, got, want) {
  check(what + ": " + got + ", wanted " + want, Math.abs(got - want) <= 1e-6 * Math.abs(want));
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

function readTable(path) {
  var table = {};
  var stream = new ActiveXObject("Scripting.FileSystemObject").OpenTextFile(path);
  while (!stream.AtEndOfStream) {
    var line = stream.ReadLine();
    if (line.length > 0 && line.charAt(0) !== "#") {
      var parts = line.split("\t");
      table[parts[0]] = parts[1].split(" ");
    }
  }
  stream.Close();
  return table;
}

// Values from element 1 on; element 0 holds what no routine may read.
function samples(texts) {
  var values = [1e30];
  for (var i = 0; i < texts.length; ++i) values.push(Number(texts[i]));
  return values;
}

// Rows and columns from 1 on.
function rows(texts, columns) {
  var all = [[]];
  for (var i = 0; i < texts.length; i += columns) all.push(samples(texts.slice(i, i + columns)));
  return all;
}

// Days since 1899-12-30, as automation counts dates.
function serial(iso) {
  var p = iso.split("-");
  return (Date.UTC(p[0], p[1] - 1, p[2]) - Date.UTC(1899, 11, 30)) / 86400000;
}

function integralCases(expected) {
  var integrate = new ActiveXObject("vq140Analyse.ztIntegrate");
  var names = expected["integral.cases"];
  for (var c = 0; c < names.length; ++c) {
    var name = names[c];
    var rules = expected[name + ".rules"] || expected["integral.rules"];
    var results = expected[name + ".result"];
    check(name + ": a result for each rule", rules.length === results.length);
    for (var i = 0; i < rules.length; ++i) {
      integrate.IntegrationRule = Number(rules[i]);
      checkNumber(name + ", rule " + rules[i],
                  integrate.Integral(samples(expected[name + ".x"]), samples(expected[name + ".y"])),
                  Number(results[i]));
    }
  }
  var x = [, 0, "1", 2];
  var y = [undefined, null, 1, 4];
  integrate.integrationrule = 1;
  check("holes, texts and nulls", integrate.INTEGRAL(x, y) === 3);
  check("what was not changed stays", x[1] === 0 && x[2] === "1" && y[1] === null && x.length === 4);
  check("the rule is not read back", integrate.IntegerationRule === 0);
}

function accumulateCases(expected) {
  var names = expected["accumulate.cases"];
  var result = [[1, 2, 3], [4], [5], [6], [7], [8], [9], [10], [11]];  // larger than any result
  for (var c = 0; c < names.length; ++c) {
    var name = names[c];
    var columns = Number(expected[name + ".columns"][0]);
    var wanted = rows(expected[name + ".result"], columns);
    var accumulate = new ActiveXObject("vq140Analyse.ztAccumulate");
    accumulate.DataPeriod = expected[name + ".data_period"][0];
    accumulate.Period = expected[name + ".period"][0];
    accumulate.Frequency = Number(expected[name + ".frequency"][0]);
    accumulate.StartData = serial(expected[name + ".start_data"][0]);
    accumulate.StartDate = serial(expected[name + ".start_date"][0]);
    var rate = expected[name + ".rate"];
    if (rate) {
      var flags = [];
      for (var f = 0; f < rate.length; ++f) flags[f + 1] = rate[f] === "1";
      accumulate.RateArray = flags;
    }
    var ok = {value: false};
    accumulate.Accumulate(rows(expected[name + ".data"], columns), result, ok);
    check(name + ": the flag is written back", ok.value === true);
    check(name + ": rows " + result.length, result.length === wanted.length);
    for (var i = 1; i < wanted.length; ++i) {
      check(name + ": columns of row " + i, result[i].length === columns + 1);
      for (var j = 1; j <= columns; ++j) {
        checkNumber(name + "[" + i + "][" + j + "]", result[i][j], wanted[i][j]);
      }
    }
  }
  var once = {value: true};
  var kept = [[], [, 5]];
  accumulate.Period = "monthly";
  accumulate.Accumulate([[], [0, 1, 2]], kept, once);
  check("an unknown word is no success", once.value === false);
  check("and leaves the result alone", kept.length === 2 && kept[1][1] === 5);
}

function checkNumbers(what, got, want) {
  check(what + ": length " + got.length, got.length === want.length + 1);
  for (var i = 0; i < want.length; ++i) {
    checkNumber(what + "[" + (i + 1) + "]", got[i + 1], Number(want[i]));
  }
}

function statisticsCases(expected) {
  var statistics = new ActiveXObject("vq140Analyse.ztStatistics");
  var names = expected["statistics.cases"];
  var name, ok, x;
  for (var c = 0; c < names.length; ++c) {
    name = names[c];
    x = samples(expected[name + ".x"]);
    ok = {value: false};
    statistics.BasicStatistics(x, ok);
    check(name + ": the flag is written back", ok.value === true);
    checkNumbers(name + ".summary",
                 [0, statistics.xBar, statistics.xsigman, statistics.xSigmaN1, statistics.SigmaX,
                  statistics.SigmaX2, statistics.SigmaAbsX, statistics.xMin, statistics.xMax],
                 expected[name + ".summary"]);
    checkNumbers(name + ".measures",
                 [0, statistics.Median(x), statistics.Mode(x), statistics.Quartile(x, 1),
                  statistics.Quartile(x, 2), statistics.Quartile(x, 3)],
                 expected[name + ".measures"]);
  }
  names = expected["removal.cases"];
  for (var r = 0; r < names.length; ++r) {
    name = names[r];
    var kept = [];
    var count = {value: 0};
    var left = expected[name + ".result"] || [];
    ok = {value: false};
    x = samples(expected[name + ".x"]);
    statistics.RemoveNulls(Number(expected[name + ".null"][0]), x, kept, count, ok);
    check(name + ": nulls removed", ok.value === true);
    check(name + ": " + count.value + " are left", count.value === left.length);
    if (left.length > 0) checkNumbers(name + ".result", kept, left);
  }
  ok = {value: true};
  statistics.BasicStatistics([7], ok);
  check("nothing but element 0", ok.value === false);
  check("a NaN sorts last", statistics.Median([0, 3, NaN, 1]) === 3);
  check("an infinity is the largest", statistics.Maximum([0, 3, Infinity, 1]) === Infinity);
}

function sampleCases(expected) {
  var names = expected["sample.cases"];
  for (var c = 0; c < names.length; ++c) {
    var name = names[c];
    var sample = new ActiveXObject("vq140Analyse.ztSample");
    var limits = expected[name + ".limits"];
    var ok = {value: false};
    if (limits) {
      sample.setLimits(Number(limits[0]), Number(limits[1]), ok);
      check(name + ": limits set", ok.value === true);
      ok.value = false;
    }
    var wanted = expected[name + ".centres"];
    var centres = [];
    var counts = [1, 2, 3, 4, 5, 6, 7, 8];  // longer than any result
    sample.BinVector(samples(expected[name + ".x"]), wanted.length, centres, counts, ok);
    check(name + ": counted", ok.value === true);
    checkNumbers(name + ".centres", centres, wanted);
    checkNumbers(name + ".counts", counts, expected[name + ".counts"]);
  }
}

function regressionCases(expected) {
  var regression = new ActiveXObject("vq140Analyse.ztRegression");
  var names = expected["regression.cases"];
  for (var c = 0; c < names.length; ++c) {
    var name = names[c];
    var x = samples(expected[name + ".x"]);
    var ok = {value: false};
    regression.RegressionType = expected[name + ".type"][0];
    check(name + ": the type", regression.regressiontype === expected[name + ".read"][0]);
    regression.Regression(x, samples(expected[name + ".y"]), x, ok);
    check(name + ": the flag is written back", ok.value === true);
    checkNumbers(name + ".result", [0, regression.A, regression.B, regression.R],
                 expected[name + ".result"]);
  }
}

function derivativeCases(expected) {
  var differentiate = new ActiveXObject("vq140Analyse.ztDifferentiate");
  var names = expected["derivative.cases"];
  for (var c = 0; c < names.length; ++c) {
    var name = names[c];
    var x = samples(expected[name + ".x"]);
    var y = samples(expected[name + ".y"]);
    var got = samples(expected[name + ".y"]);
    var ok = {value: false};
    differentiate.FirstDerivative(x, y, got, ok);
    check(name + ": differentiated", ok.value === true);
    checkNumbers(name + ".first", got, expected[name + ".first"]);
    differentiate.FirstDerivativeForwards(x, y, got, ok);
    checkNumbers(name + ".forwards", got, expected[name + ".forwards"]);
    differentiate.FirstDerivativeBackwards(x, y, got, ok);
    checkNumbers(name + ".backwards", got, expected[name + ".backwards"]);
    got = [];
    differentiate.SecondDerivative(x, y, got, ok);
    checkNumbers(name + ".second", got, expected[name + ".second"]);
  }
}

function petroleumCases(expected) {
  var petroleum = new ActiveXObject("vq140Analyse.ztPetroleum");
  var primary = samples(expected["live.primary"]);
  var map = samples(expected["live.map"]);
  map[0] = 0;  // what stands there has to be a Long all the same
  var secondary = samples(expected["live.secondary"]);
  var value = samples(expected["live.value"]);
  var points = samples(expected["live.points"]);
  var wanted = expected["live.factors"];
  var b = {value: 0};
  var ok = {value: false};
  for (var i = 0; i < wanted.length; ++i) {
    petroleum.GetVolumeCorrectionLive(primary, map, 2, secondary, value, 7, points[2 * i + 1],
                                      points[2 * i + 2], 0, b, ok);
    check("live oil " + i, ok.value === true);
    checkNumber("live.factors[" + i + "]", b.value, Number(wanted[i]));
  }
  wanted = expected["dead.factors"];
  for (i = 0; i < wanted.length; ++i) {
    petroleum.GetVolumeCorrectionDead(samples(expected["dead.pressure"]),
                                      samples(expected["dead.value"]), 3,
                                      Number(expected["dead.points"][i]), b, ok);
    checkNumber("dead.factors[" + i + "]", b.value, Number(wanted[i]));
  }
  var reference = samples(expected["water.reference"]);
  wanted = expected["water.factors"];
  for (i = 0; i < wanted.length; ++i) {
    petroleum.GetWaterVolumeCorrection([0, reference[1]], [0, reference[2]], [0, reference[3]], 1,
                                       Number(expected["water.points"][i]), b, ok);
    checkNumber("water.factors[" + i + "]", b.value, Number(wanted[i]));
  }
}

function mathLibCases(expected) {
  var functions = new ActiveXObject("vq140Analyse.ztMathLib");
  var names = expected["mathlib.cases"];
  for (var c = 0; c < names.length; ++c) {
    var words = expected[names[c] + ".call"];
    var last = words.length - 1;
    checkNumber(names[c], eval("functions." + words[0] + "(" + words.slice(1, last).join() + ")"),
                Number(words[last]));
  }
}

function geometryCases(expected) {
  var functions = new ActiveXObject("vq140Analyse.ztMathLib");
  var names = expected["polygon.cases"];
  var v, i, c, name, wanted;
  for (c = 0; c < names.length; ++c) {
    name = names[c];
    v = samples(expected[name + ".points"]);
    wanted = expected[name + ".inside"];
    for (i = 0; i < wanted.length; ++i) {
      check(name + " " + i,
            functions.Point_In_Polygon(v[2 * i + 1], v[2 * i + 2], samples(expected[name + ".x"]),
                                       samples(expected[name + ".y"])) === (wanted[i] === "1"));
    }
  }
  var x = {value: 7};
  var y = {value: 7};
  var q = {value: 0};
  names = expected["segments.cases"];
  for (c = 0; c < names.length; ++c) {
    name = names[c];
    v = samples(expected[name + ".ends"]);
    functions.LineIntersect(v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], x, y, q);
    check(name + ": crosses", q.value === (expected[name + ".result"][0] === "1"));
    checkNumbers(name, [0, x.value, y.value], expected[name + ".result"].slice(1));
  }
  names = expected["levels.cases"];
  for (c = 0; c < names.length; ++c) {
    name = names[c];
    v = samples(expected[name + ".line"]);
    wanted = expected[name + ".result"];
    x.value = y.value = -77;
    functions.GetPointOnLine(v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8] === 1, x, y, q);
    check(name + ": a point", q.value === !!wanted);
    checkNumbers(name, [0, x.value, y.value], wanted || [-77, -77]);
  }
  var top = rows(expected["cell.top"], 4);
  var bottom = rows(expected["cell.bottom"], 4);
  var count = {value: -1};
  var index = [];
  var inside = [];
  functions.Points_In_CubeIndex(samples(expected["cell.x"]), samples(expected["cell.y"]),
                                samples(expected["cell.z"]), top, bottom, count, index, inside, q);
  check("cell: points found", q.value === true && count.value === expected["cell.index"].length);
  checkNumbers("cell.index", index, expected["cell.index"]);
  wanted = expected["cell.inside"];
  check("cell: a flag each", inside.length === wanted.length + 1);
  for (i = 0; i < wanted.length; ++i) {
    check("cell: flag " + i, inside[i + 1] === (wanted[i] === "1"));
    check("cell: point " + i,
          functions.Point_In_Cube(Number(expected["cell.x"][i]), Number(expected["cell.y"][i]),
                                  Number(expected["cell.z"][i]), top, bottom) === inside[i + 1]);
  }
  names = expected["crossing.cases"];
  for (c = 0; c < names.length; ++c) {
    name = names[c];
    v = samples(expected[name + ".segment"]);
    wanted = expected[name + ".crossings"];
    var found = [];
    q = {value: 0};
    var meets = {value: 0};
    functions.Line_Through_Cube([9, v[1], v[4]], [9, v[2], v[5]], [9, v[3], v[6]], top, bottom,
                                meets, found, q);
    check(name + ": done", q.value === true && meets.value === !!wanted);
    check(name + ": rows", found.length === (wanted ? 4 : 0));
    for (i = 1; i < found.length; ++i) {
      var m = wanted.length / 3;
      checkNumbers(name + "[" + i + "]", found[i], wanted.slice((i - 1) * m, i * m));
    }
  }
}

function scalarsAndErrors() {
  var info = new ActiveXObject("vq140Analyse.ztAnalyseInfo");
  var log = {value: ""};
  var version = info.DLLVersion(log);
  check("the version text: " + version, version.indexOf("vqmath63 v6.3.2436 ") === 0);
  check("an empty log name is written back: " + log.value, log.value === "vqmath63.txt");
  check("a plain text is accepted too", info.DLLVersion("vqmath63.txt", "", false) === version);
  info.CloseDown();

  var integrate = new ActiveXObject("vq140Analyse.ztIntegrate");
  var accumulate = new ActiveXObject("vq140Analyse.ztAccumulate");
  checkError("a text for an array", function() { integrate.Integral("x", [1]); }, 13,
             "'xVals' of Integral");
  checkError("an object without a length", function() { integrate.Integral([1], {}); }, 13,
             "'yVals' of Integral");
  checkError("an element that is no number",
             function() { integrate.Integral([9, 1, "oil"], [9, 1, 2]); }, 13, "element (2)");
  checkError("an element of a row that is no number",
             function() { accumulate.Accumulate([[], [0, 1, "oil"]], [], {}); }, 13, "(1, 2)");
  checkError("a row that is no array",
             function() { accumulate.Accumulate([[], 4], [], {}); }, 13, "'dArr' of Accumulate");
  checkError("an unknown member", function() { integrate.Integrate([1], [1]); }, 438, "");
  check("a good call afterwards", integrate.Integral([9, 0, 1, 2], [9, 0, 1, 4]) === 3);
}

var table = readTable(WScript.Arguments(0));
integralCases(table);
accumulateCases(table);
statisticsCases(table);
sampleCases(table);
regressionCases(table);
derivativeCases(table);
petroleumCases(table);
mathLibCases(table);
geometryCases(table);
scalarsAndErrors();
WScript.Echo("checks " + checks);
WScript.Echo("failures " + failures);
WScript.Quit(failures);
