// The component from JavaScript: npm install koffi && node by_name.js .../libvqmath63.so
const koffi = require('koffi');
const library = koffi.load(process.argv[2] || 'libvqmath63.so.6');
koffi.struct('VqColumn', { first: 'void *', stride: 'int64_t' });
const callMany = library.func('int32_t VqCallMany(void *object, int32_t member, uint16_t flags, ' +
  'int64_t calls, VqColumn *columns, uint32_t count, VqColumn *results, void *)');
const classId = library.func('int32_t CLSIDFromProgID(const char16_t *id, _Out_ uint8_t *guid)');
const classObject = library.func('int32_t DllGetClassObject(void *, void *, _Out_ void **)');
const newText = library.func('void *SysAllocString(const char16_t *text)');
const newArray = library.func('void *SafeArrayCreate(uint16_t type, uint32_t rank, void *bounds)');
const take = koffi.pointer(koffi.proto('void Take(const char16_t *line, int32_t, void *)'));
const onLine = library.func('VqSetMessageCallback', 'int32_t', [take, 'void *']);
const create = koffi.proto('int32_t Create(void *, void *, void *, _Out_ void **)');
const find = koffi.proto('int32_t F(void *, void *, char16_t **, int, int, _Out_ int32_t *)');
const at = (address, offset) => koffi.decode(address, offset, 'void *');
const slot = (object, index, type, ...sent) =>  // calls function `index` of an interface
  koffi.call(at(at(object, 0), index * 8), type, object, ...sent);
const guid = (...first) => Buffer.from([...first, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46]);
const variable = (address) => new BigUint64Array([address]);
function made(name) {
  const id = Buffer.alloc(16), factory = [null], object = [null];
  if (classId('vq140Analyse.' + name, id) < 0) throw new Error('there is no ' + name);
  classObject(id, guid(1, 0, 0, 0), factory);
  slot(factory[0], 3, create, null, guid(0, 4, 2, 0), object);
  return object[0];
}
const elements = (array, n) => new Float32Array(koffi.view(at(array, 16), n * 4));
function singles(rows, columns, values) {  // indices from 1, column after column
  const array = newArray(4, columns > 1 ? 2 : 1, new Uint32Array([rows, 1, columns, 1]));
  elements(array, values.length).set(values);
  return variable(array);
}
function call(object, name, sent, results = null, flags = 1, calls = 1) {
  const member = [0], stride = calls > 1 ? 8 : 0;  // many calls: of doubles
  const column = (memory) => ({ first: koffi.address(memory), stride });
  slot(object, 5, find, null, [name], 1, 0, member);
  const code = callMany(object, member[0], flags, calls, sent.map(column), sent.length,
    results && column(results), null);
  if (code < 0) throw new Error(`${name}: result code ${(code >>> 0).toString(16)}`);
  return results;
}
onLine(koffi.register((line) => console.log(line), take), null);  // error lines
const [well, functions, curve] = ['ztAccumulate', 'ztMathLib', 'ztIntegrate'].map(made);
const set = (object, name, value) => call(object, name, [value], null, 4);
const day = new Float64Array([44957]), month = variable(newText('Month'));  // 2023-01-31
const settings = { StartData: day, StartDate: day, DataPeriod: month, Period: month };
for (const name in settings) set(well, name, settings[name]);
const result = variable(0n), ok = new Int16Array(1);
call(well, 'Accumulate', [singles(4, 2, [0, 1, 2, 3, 5, 20, 30, 40]), result, ok]);
const period = koffi.decode(call(well, 'Period', [], variable(0n), 2)[0], 'char16_t', 5);
console.log(`by ${period}, ok: ${ok[0] ? 'True' : 'False'}`);
const n = koffi.decode(result[0], 32, 'uint32_t'), days = elements(result[0], 2 * n);
for (let k = 0; k < n; ++k) console.log(`day  ${days[k]}  rate ${days[k + n].toFixed(2)}`);
const x = new Float64Array([0.5, 1, 2]), erf = new Float64Array(3);
call(functions, 'Erf', [x], erf, 1, 3);
x.forEach((value, k) => console.log(`Erf(${value.toFixed(1)}) = ${erf[k].toFixed(14)}`));
set(curve, 'IntegrationRule', new Int32Array([2]));  // Simpson's
const area = (y) => call(curve, 'Integral', [singles(3, 1, [0, 1, 2]), y], new Float32Array(1))[0];
console.log('area ' + area(singles(3, 1, [0, 1, 4])).toPrecision(9));
area(singles(2, 1, [0, 1]));  // one too few
