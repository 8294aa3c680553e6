// The worked calls of tests/data/calls.tsv by the installed package in Node: single values and, where a
// member takes arrays of them, three at once. The last line counts.
//
// usage: node worked_calls.mjs CALLS.tsv DIGITS    in a folder with the package in node_modules; the results
//                                                  are written into DIGITS, as tests/same_digits.py reads them
import { readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { dirname } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';

const { default: vq, VqError } = await import(pathToFileURL(
  createRequire(`${process.cwd()}/`).resolve('vqmath63')).href);
let checks = 0, failures = 0;

function that(holds, words) {
  ++checks;
  if (!holds) {
    ++failures;
    console.log(`FAILED: ${words}`);
  }
}

function value(text) {
  if (text.startsWith('[')) {
    const rows = text.slice(1, -1).split(';').map((row) => row.trim().split(/\s+/).filter((x) => x).map(value));
    return rows[0].length === 0 ? null : rows.length > 1 ? rows : rows[0];
  }
  if (text.startsWith('"')) return text.slice(1, -1);
  if (text === 'True' || text === 'False') return text === 'True';
  if (/^\d{4}-\d\d-\d\d$/.test(text)) return new Date(...text.split('-').map((x, k) => x - (k === 1)));
  return Number(text);
}

const plain = (x) => ArrayBuffer.isView(x) ? Array.from(x) : x;

function same(got, want, within) {
  [got, want] = [plain(got), plain(want)];
  if (want === null) return got.length === 0;
  if (Array.isArray(want)) {
    return got.length === want.length && want.every((each, k) => same(got[k], each, within));
  }
  if (typeof want === 'string') return want.endsWith('*') ? got.startsWith(want.slice(0, -1)) : got === want;
  if (want instanceof Date) return got.getTime() === want.getTime();
  if (typeof want === 'boolean') return got === want;
  return Math.abs(got - want) <= Math.max(within, 1e-15) * Math.abs(want);
}

let digits = '', made_at = '';
function checkCall(object, fields, within, lines, many, where) {
  const [kind, name, result, ...cells] = fields;
  const member = object.constructor.members.find((m) => m.name === name
    && m.kind === (kind === 'call' ? 'method' : 'get'));
  const given = [], wanted = {};
  if (result !== '-') wanted.result = value(result);
  cells.forEach((cell, k) => {
    const a = member.args[k], [before, after] = cell.split('>');
    if (a.isInput) given.push(value(before));
    if (a.isOutput && !(a.direction === 'out' && (after ?? before) === before)) wanted[a.name] = value(after ?? before);
  });
  let got, heard = [];
  try {
    const sent = many ? given.map((x) => typeof x === 'number' ? [x, x, x] : x) : given;
    got = kind === 'get' && member.args.length === 0 ? object[name] : object[name](...sent);
  } catch (error) {
    if (!(error instanceof VqError)) throw error;
    [got, heard] = [error.result, error.lines];
  }
  that(heard.map((x) => x.line).join('|') === lines.join('|'), `${where}: ${heard.map((x) => x.line)}`);
  const outputs = member.args.filter((a) => a.isOutput).length + (member.result !== null);
  for (const [key, want] of Object.entries(wanted)) {
    const part = outputs > 1 ? got[key] : got;
    const told = kind === 'get' && member.args.length === 0 ? name : key;
    if (kind === 'call' || told !== name) made_at = where.match(/\d+/)[0];  // what is read after it is of the call
    if (!many && lines.length === 0) digits += `${made_at}\t${told}\t${JSON.stringify([plain(part)].flat(2))}\n`;
    const parts = many ? Array.from(part) : [part];
    that(parts.length === (many ? 3 : 1) && parts.every((x) => same(x, want, within)), `${where}: ${key} is ${parts}`);
  }
  return member;
}

const rows = readFileSync(process.argv[2], 'utf8').split('\n').map((line, k) => [k + 1, ...line.split('\t')])
  .filter(([, first]) => first && !first.startsWith('#'));
let object, within = 0, skipping = false, made = 0;
for (let k = 0; k < rows.length; ++k) {
  const [number, ...fields] = rows[k], where = `line ${number}, ${fields.slice(0, 2).join(' ')}`;
  if (fields[0] === 'within') within = Number(fields[1]);
  if (fields[0] === 'new') {
    skipping = fields.length > 2;  // lines that go to a log
    object = new vq[fields[1]]();
  }
  if (skipping || !['call', 'get', 'let'].includes(fields[0])) continue;
  if (fields[0] === 'let') {
    let given = value(fields[3]);
    if (fields[1].startsWith('Start') && typeof given === 'number') continue;  // no date of JavaScript
    object[fields[1]] = given;
    continue;
  }
  if (fields[0] === 'get' && /^-?\d+\.\d+$/.test(fields[2]) && fields[1].startsWith('Start')) continue;
  const lines = rows[k + 1]?.[1] === 'line' ? [`Error:${rows[k + 1][2]}] `] : [];
  const member = checkCall(object, fields, within, lines, false, where);
  ++made;
  const outputs = member.args.filter((a) => a.isOutput);
  const numbers = [...outputs.map((a) => a.type), member.result].every((t) => !t || (t.rank === 0 && t.array));
  if (numbers && member.kind === 'method' && member.args.some((a) => a.isInput && a.type.rank === 0 && a.type.array)
      && fields.slice(3).some((cell) => typeof value(cell.split('>')[0]) === 'number')) {
    checkCall(object, fields, within, lines, true, `${where}, three`);
  }
}
// The examples of the pages, a line each, with what it gives behind it where that is a number or a truth.
const root = dirname(dirname(dirname(fileURLToPath(import.meta.url))));
for (const page of ['javascript/README.md', 'docs/guide/first_numbers.md']) {
  const program = readFileSync(`${root}/${page}`, 'utf8').match(/^```js\nimport vq from 'vqmath63';\n(.*?)^```$/ms)[1];
  const told = program.replace(/^(.*);\s*\/\/ (true|false|[-\d.e]+)$/gm, 'told($1, $2);');
  let lines = 0;
  new Function('vq', 'told', told)(vq, (got, want) => { ++lines; that(got === want, `${page}: ${got}, not ${want}`); });
  that(lines > 0, `${page}: no line with a result`);
}
// What is not what it has to be.
for (const [words, call] of [
  ['has to be a number, not string', () => new vq.MathLib().Erf('1')],
  ['is missing', () => new vq.MathLib().Erf()],
  ['takes 1 arguments, not 2', () => new vq.MathLib().Erf(1, 2)],
  ['whole number, not 2.5', () => new vq.MathLib().Factorial(2.5)],
  ['beyond the range of a Long', () => new vq.MathLib().Factorial(3e9)],
  ['beyond the range of a Single', () => new vq.Statistics().SumOfX([1e39])],
  ['element [1] has to be a number, not string', () => new vq.Statistics().Median([1, 'a'])],
  ['rows of one length', () => new vq.Accumulate().Accumulate([[1, 2], [3]])],
  ['arrays of 2, 3 elements', () => new vq.MathLib().Max([1, 2], [1, 2, 3])],
  ["no property 'Perod'", () => new vq.Accumulate({ Perod: 'month' })],
  ['has to be a text', () => new vq.MathLib().Arithmetic(1, 2, 3)],
]) {
  let told = 'nothing';
  try {
    call();
  } catch (error) {
    told = error.message;
  }
  that(told.includes(words), `${words}: ${told}`);
}
const million = Float64Array.from({ length: 1e6 }, (_, k) => k + 1);
that(new vq.Statistics().Median(million) === 500000.5, 'the median of a million');
that(new vq.MathLib().Sign(million, -1)[999999] === -1e6, 'a million signs');
that(new vq.MathLib().Erf([]).length === 0, 'no numbers');
// Memory comes back: there are 2 GB of it.
that(new vq.Statistics().Maximum(new Float32Array(2e7)) === 0, 'memory that grows');
const many = new Float32Array(1e6), long = 'x'.repeat(2e6), statistics = new vq.Statistics(), maths = new vq.MathLib();
for (let k = 0; k < 600; ++k) {
  statistics.Maximum(many);
  maths.Arithmetic(1, 2, long);
}
that(made > 200, `${made} calls`);
console.log(`${made} calls by JavaScript`);
writeFileSync(process.argv[3], digits);
console.log(`javascript: ${checks} checks, ${failures} failures`);
process.exit(failures > 0 ? 1 : 0);
