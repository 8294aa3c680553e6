// Makes the worked calls of tests/data/calls.tsv as a JScript host does. Argument: the statements
// that calls_as_script.awk makes of the table. By reference go arrays, and objects with a value.
var checks = 0, failures = 0, calls = 0;
var at, within, o, r, n, a4, a5, a6, a7, a8, a9, a10, a11, a12, a13, a14;
var True = true, False = false;

function check(passed, what) {
  ++checks;
  if (!passed) {
    ++failures;
    WScript.Echo("FAILED: calls.tsv, line " + at + ": " + what);
  }
}

function Make(name) {
  o = new ActiveXObject("vq140Analyse." + name);
}

function Ref(value) {
  return {value: value};
}

function Unset() {
  return [];
}

// Days since 1899-12-30, as automation counts dates.
function DateSerial(year, month, day) {
  return (Date.UTC(year, month - 1, day) - Date.UTC(1899, 11, 30)) / 86400000;
}

// Rows and columns from 1 on; `list` has the elements row by row.
function Table(columns, list) {
  var made = [[]];
  for (var i = 1; i < list.length; i += columns) made.push([99].concat(list.slice(i, i + columns)));
  return made;
}

function Done() {
  ++calls;
}

function Same(got, want) {
  if (want instanceof Array) {
    check(got.length === want.length, "length " + got.length + ", wanted " + want.length);
    for (var i = 1; i < want.length; ++i) Same(got[i], want[i]);
    return;
  }
  if (got instanceof Object) got = got.value;
  var passed = got === want;
  if (typeof want === "number" && typeof got === "number") {
    passed = Math.abs(got - want) <= within * Math.abs(want);
  } else if (typeof want === "string" && want.charAt(want.length - 1) === "*") {
    passed = got.indexOf(want.slice(0, -1)) === 0;
  }
  check(passed, got + ", wanted " + want);
}

function LogEnds(name, count, words) {
  var text = files.OpenTextFile(name).ReadAll().replace(/\r/g, "");
  var lines = text.split("\n");
  check(lines.length - 1 === count && text.slice(-words.length - 1) === words + "\n", text);
}

function Finish() {
  WScript.Echo("calls " + calls);
  WScript.Echo("checks " + checks);
  WScript.Echo("failures " + failures);
  WScript.Quit(failures);
}

var files = new ActiveXObject("Scripting.FileSystemObject");
var statements = files.OpenTextFile(WScript.Arguments(0));
while (!statements.AtEndOfStream) {
  try {
    eval(statements.ReadLine());
  } catch (e) {
    check(false, e.message);
  }
}
