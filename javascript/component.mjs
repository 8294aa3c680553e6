// The component's classes in JavaScript, over its WebAssembly. Nothing here knows a member by name:
// all follows from what the component tells of itself.

const TYPES = {  // of the interface: bytes, how one is read and written, the array's type, its code
  Single: { size: 4, get: 'getFloat32', set: 'setFloat32', array: Float32Array, code: 4 },
  Double: { size: 8, get: 'getFloat64', set: 'setFloat64', array: Float64Array, code: 5 },
  Long: { size: 4, get: 'getInt32', set: 'setInt32', array: Int32Array, code: 3 },
  Boolean: { size: 2, get: 'getInt16', set: 'setInt16', array: Int16Array, code: 11 },
  Date: { size: 8, get: 'getFloat64', set: 'setFloat64', array: Float64Array, code: 7 },
  String: { size: 4, get: 'getUint32', set: 'setUint32' },
};
const FLAGS = { method: 1, get: 2, let: 4 };
const LINE = /^Error:(.*) \(No\.(-?\d+)\) In \[(.*?) \(Code\) *\((.*?)\)?\] ?$/;
const DAY = 86400000, FIRST_DAY = Date.UTC(1899, 11, 30);
const MOST_BYTES = 2 ** 31 - 65536;

/** The component reported an error; `lines` has all of them, `result` what the call returned. */
export class VqError extends Error {
  constructor(words, lines, result) {
    super(words);
    this.name = 'VqError';
    [this.lines, this.result] = [lines, result];
    ({ number: this.number, text: this.text, routine: this.routine } = lines[0]);
  }
}

function parsedLine(line) {
  const [, text, number, module, routine] = LINE.exec(line) ?? [, line.trim(), 0, '', ''];
  return { line, number: Number(number), text, module, routine };
}

/** The memory of the component, and its functions. */
class Memory {
  constructor(exports) {
    this.of = exports;
    this.taken = [];
  }

  get view() {  // anew each time: memory that grows is another buffer
    return new DataView(this.of.memory.buffer);
  }

  elements(array, at, count) {
    return new array(this.of.memory.buffer, at, count);
  }

  /** Memory until `free`; 16 bytes at least, of zeros. */
  take(bytes) {
    const at = bytes < MOST_BYTES ? this.of.malloc(Math.max(bytes, 16)) : 0;
    if (at === 0) throw new RangeError(`no memory for ${bytes} bytes`);
    this.taken.push(() => this.of.free(at));
    new Uint8Array(this.of.memory.buffer, at, Math.max(bytes, 16)).fill(0);
    return at;
  }

  free() {
    while (this.taken.length > 0) this.taken.pop()();
  }

  text(at) {
    if (at === 0) return '';
    const units = this.elements(Uint16Array, at, this.of.SysStringByteLen(at) / 2);
    let made = '';
    for (let k = 0; k < units.length; k += 8192) {
      made += String.fromCharCode(...units.subarray(k, k + 8192));
    }
    return made;
  }

  takenText(at) {
    const text = this.text(at);
    this.of.SysFreeString(at);
    return text;
  }

  newText(text) {
    const from = this.take(2 * text.length);
    const to = this.elements(Uint16Array, from, text.length);
    for (let k = 0; k < text.length; ++k) to[k] = text.charCodeAt(k);
    return this.of.SysAllocStringLen(from, text.length);
  }
}

const isList = (value) => Array.isArray(value) || (ArrayBuffer.isView(value) && !(value instanceof DataView));

function toNumber(value, type) {
  if (type === 'Boolean') {
    if (typeof value !== 'boolean' && typeof value !== 'number') throw new TypeError('has to be true or false');
    return value ? -1 : 0;
  }
  if (type === 'Date') {
    if (value instanceof Date) value = dateNumber(value);
    if (typeof value !== 'number' || Number.isNaN(value)) throw new TypeError('has to be a Date');
    return value;
  }
  if (typeof value !== 'number') {
    const told = value === null || value === undefined ? String(value) : typeof value;
    throw new TypeError(`has to be a number, not ${told}`);
  }
  if (type === 'Single' && Number.isFinite(value) && !Number.isFinite(Math.fround(value))) {
    throw new RangeError(`is ${value}, beyond the range of a Single`);
  }
  if (type === 'Long') {
    if (!Number.isInteger(value)) throw new TypeError(`has to be a whole number, not ${value}`);
    if (value !== (value | 0)) throw new RangeError(`is ${value}, beyond the range of a Long`);
  }
  return value;
}

/** Days since 1899-12-30 by the local clock, with an unsigned fraction before that. */
function dateNumber(date) {
  const days = (date.getTime() - date.getTimezoneOffset() * 60000 - FIRST_DAY) / DAY;
  const whole = Math.floor(days);
  return whole >= 0 ? days : whole - (days - whole);
}

function dateOf(number) {
  const whole = Math.trunc(number), part = Math.abs(number - whole);
  const utc = new Date(FIRST_DAY + whole * DAY + Math.round(part * DAY));
  return new Date(utc.getUTCFullYear(), utc.getUTCMonth(), utc.getUTCDate(), utc.getUTCHours(),
    utc.getUTCMinutes(), utc.getUTCSeconds(), utc.getUTCMilliseconds());
}

function parsedType(text) {
  const name = text.replace(/\(.*/, '');
  return { name, rank: text.endsWith('(,)') ? 2 : text.endsWith('()') ? 1 : 0, ...TYPES[name] };
}

function parsedMember(fields) {
  const [kind, name, id, result, help, ...rest] = fields;
  const args = [];
  for (let k = 0; k < rest.length; k += 4) {
    args.push({
      name: rest[k], type: parsedType(rest[k + 1]), direction: rest[k + 2],
      optional: rest[k + 3].startsWith('optional='), fallback: rest[k + 3].replace(/^optional=/, ''),
      isInput: rest[k + 2] !== 'out', isOutput: ['out', 'in,out'].includes(rest[k + 2]),
    });
  }
  return { kind, name, id: Number(id), result: result ? parsedType(result) : null, help, args };
}

/** A call of one member: its arguments brought into memory, and what comes back. */
class Call {
  constructor(component, of, member) {
    Object.assign(this, { component, member, name: `${of.name}.${member.name}` });
    this.inputs = member.args.filter((a) => a.isInput);
    this.outputs = member.args.filter((a) => a.isOutput);
    const back = [...this.outputs.map((a) => a.type), ...(member.result ? [member.result] : [])];
    this.elementwise = member.kind === 'method' && back.every((t) => t.rank === 0 && t.array);
    this.called = 0;
  }

  make(pointer, given) {
    const { component: { memory, memory: { of: exports } }, member } = this;
    if (given.length > this.inputs.length) {
      throw new TypeError(`${this.name} takes ${this.inputs.length} arguments, not ${given.length}`);
    }
    const lists = this.elementwise
      ? given.filter((v, k) => isList(v) && this.inputs[k].type.rank === 0) : [];
    const count = lists.length > 0 ? lists[0].length : 1;
    if (lists.some((list) => list.length !== count)) {
      throw new RangeError(`${this.name}: arrays of ${lists.map((v) => v.length).join(', ')} elements`);
    }
    const texts = [], arrays = [];
    try {
      const columns = memory.take(16 * (member.args.length + 1));
      const places = member.args.map((a) => {
        const k = this.inputs.indexOf(a);
        const value = k >= 0 ? given[k] : undefined;
        try {
          return this.place(a, value, count, lists.length > 0, texts, arrays);
        } catch (error) {
          throw new error.constructor(`${this.name}: ${a.name} ${error.message}`);
        }
      });
      const result = member.result
        ? { at: memory.take(count * member.result.size), stride: member.result.size } : { at: 0, stride: 0 };
      [...places, result].forEach(({ at, stride }, k) => {
        memory.view.setUint32(columns + 16 * k, at, true);
        memory.view.setBigInt64(columns + 16 * k + 8, BigInt(count > 1 ? stride : 0), true);
      });
      const code = exports.VqCallMany(pointer, member.id, FLAGS[member.kind], BigInt(count), columns,
        member.args.length, columns + 16 * member.args.length, 0);
      const heard = memory.takenText(exports.vq_messages()).split('\n').filter((line) => line !== '');
      const back = {};
      if (member.result) back.result = this.value(member.result, result.at, count, lists.length > 0, true);
      member.args.forEach((a, k) => {
        if (a.isOutput) back[a.name] = this.value(a.type, places[k].at, count, lists.length > 0, false);
      });
      const names = Object.keys(back);
      const made = names.length === 1 ? back[names[0]] : names.length > 0 ? back : undefined;
      this.tell(code, heard, made);
      return made;
    } finally {
      for (const at of texts) exports.SysFreeString(memory.view.getUint32(at, true));
      for (const at of arrays) {
        const array = memory.view.getUint32(at, true);
        if (array !== 0) exports.SafeArrayDestroy(array);
      }
      memory.free();
    }
  }

  tell(code, heard, result) {
    if (code < 0) {
      const { memory } = this.component;
      const text = memory.takenText(memory.of.vq_error_text()) || 'failed';
      const number = (code >>> 16) === 0x800A ? code & 0xFFFF : code;
      throw new VqError(`${this.name}: ${text}`, [{ line: text, number, text, module: '', routine: '' }]);
    }
    const lines = heard.filter((line) => line.startsWith('Error:')).map(parsedLine);
    if (lines.length === 0) return;
    const [{ text, number, routine, module }] = lines;
    throw new VqError(`${this.name}: ${text} (error ${number}) in ${routine || module}`, lines, result);
  }

  /** An argument in memory: where it begins, and how far it is to the next call's. */
  place(argument, value, count, many, texts, arrays) {
    const { memory } = this.component, { type } = argument;
    if (argument.isInput && value === undefined) {
      if (argument.optional) return { at: 0, stride: 0 };
      throw new TypeError('is missing');
    }
    if (type.rank > 0) {
      const at = memory.take(4);
      arrays.push(at);
      if (value !== undefined && value !== null) {
        const array = this.newArray(type, value);  // before the view: memory may grow
        memory.view.setUint32(at, array, true);
      }
      return { at, stride: 0 };
    }
    if (type.name === 'String') {
      const at = memory.take(4);
      if (value !== undefined && typeof value !== 'string') throw new TypeError('has to be a text');
      texts.push(at);
      if (value !== undefined) {
        const text = memory.newText(value);
        memory.view.setUint32(at, text, true);
      }
      return { at, stride: 0 };
    }
    const each = !argument.isInput || (many && isList(value));
    const written = argument.isOutput || argument.direction === 'in,lent';
    const room = each || written ? count : 1;
    const at = memory.take(room * type.size);
    if (argument.isInput) {
      if (isList(value) && !many) throw new TypeError('has to be one number, not an array');
      const to = memory.elements(type.array, at, room);
      for (let k = 0; k < room; ++k) to[k] = toNumber(isList(value) ? value[k] : value, type.name);
    }
    return { at, stride: room > 1 ? type.size : 0 };
  }

  newArray(type, value) {
    const { memory, memory: { of: exports } } = this.component;
    if (!isList(value)) throw new TypeError('has to be an array');
    const rows = value.length;
    let columns = 1;
    if (type.rank === 2) {
      columns = rows > 0 && isList(value[0]) ? value[0].length : 0;
      if (![...value].every((row) => isList(row) && row.length === columns)) {
        throw new TypeError('has to be an array of rows of one length');
      }
    }
    if (rows * columns * type.size > MOST_BYTES) throw new RangeError(`has ${rows * columns} elements`);
    const bounds = memory.take(16);
    const sizes = type.rank === 2 ? [rows, 1, columns, 1] : [rows, 1];
    memory.elements(Uint32Array, bounds, 4).set(sizes);
    const array = exports.SafeArrayCreate(type.code, type.rank, bounds);
    if (array === 0) throw new RangeError(`has ${rows * columns} elements: no memory for them`);
    const to = memory.elements(type.array, memory.view.getUint32(array + 12, true), rows * columns);
    try {
      if (type.rank === 1 && value instanceof type.array && type.name !== 'Boolean') to.set(value);
      else for (let k = 0; k < to.length; ++k) {
        const element = type.rank === 1 ? value[k] : value[k % rows][Math.floor(k / rows)];
        try {
          to[k] = toNumber(element, type.name);
        } catch (error) {
          throw new error.constructor(`element [${type.rank === 1 ? k : `${k % rows}][${Math.floor(k / rows)}`}] `
            + error.message);
        }
      }
    } catch (error) {
      exports.SafeArrayDestroy(array);
      throw error;
    }
    return array;
  }

  value(type, at, count, many, ours) {
    const { memory } = this.component;
    if (type.rank > 0) return this.arrayValue(type, memory.view.getUint32(at, true));
    if (type.name === 'String') {
      const text = memory.view.getUint32(at, true);
      return ours ? memory.takenText(text) : memory.text(text);
    }
    if (many) {
      const values = memory.elements(type.array, at, count).slice();
      return type.name === 'Boolean' ? Array.from(values, (v) => v !== 0) : values;
    }
    const value = memory.view[type.get](at, true);
    return type.name === 'Boolean' ? value !== 0 : type.name === 'Date' ? dateOf(value) : value;
  }

  /** The elements from index 1 on: a typed array, or an array of rows. */
  arrayValue(type, array) {
    const { memory } = this.component, { view } = memory;
    if (array === 0) return type.name === 'Boolean' || type.rank === 2 ? [] : new type.array(0);
    const data = view.getUint32(array + 12, true);
    const bounds = [...Array(type.rank).keys()].map((k) => [
      view.getUint32(array + 16 + 8 * k, true), view.getInt32(array + 20 + 8 * k, true)]).reverse();
    const total = bounds.reduce((product, [size]) => product * size, 1);
    const all = memory.elements(type.array, data, total);
    const element = (k) => type.name === 'Boolean' ? all[k] !== 0 : all[k];
    const [[rows, low]] = bounds, skip = Math.max(0, 1 - low);
    if (type.rank === 1) {
      return type.name === 'Boolean' ? Array.from(all.slice(skip), (v) => v !== 0) : all.slice(skip);
    }
    const [, [columns, left]] = bounds, made = [];
    for (let i = skip; i < rows; ++i) {
      made.push([]);
      for (let j = Math.max(0, 1 - left); j < columns; ++j) made.at(-1).push(element(i + j * rows));
    }
    return made;
  }
}

function makeClass(component, of) {
  const calls = of.members.map((member) => [member, new Call(component, of, member)]);
  const { exports } = component;
  const registry = new FinalizationRegistry((pointer) => exports.vq_release(pointer));
  const made = class {
    #pointer;

    constructor(settings = {}) {
      const memory = component.memory, id = memory.take(16);
      const [a, b, c, d, e] = of.classId.split('-');
      memory.view.setUint32(id, parseInt(a, 16), true);
      memory.view.setUint16(id + 4, parseInt(b, 16), true);
      memory.view.setUint16(id + 6, parseInt(c, 16), true);
      for (let k = 0; k < 8; ++k) memory.view.setUint8(id + 8 + k, parseInt((d + e).slice(2 * k, 2 * k + 2), 16));
      this.#pointer = exports.vq_create(id);
      memory.free();
      if (this.#pointer === 0) throw new RangeError(`no memory for a ${of.name}`);
      registry.register(this, this.#pointer);
      for (const [name, value] of Object.entries(settings)) {
        if (!calls.some(([m]) => m.kind === 'let' && m.name === name)) {
          throw new TypeError(`${of.name} has no property '${name}' to set`);
        }
        this[name] = value;
      }
    }

    static call(object, call, given) {
      return call.make(object.#pointer, given);
    }
  };
  Object.defineProperty(made, 'name', { value: of.name });
  made.members = of.members;
  made.help = of.help;
  for (const [member, call] of calls) {
    const { prototype } = made, before = Object.getOwnPropertyDescriptor(prototype, member.name) ?? {};
    if (member.kind === 'method' || (member.kind === 'get' && call.inputs.length > 0)) {
      prototype[member.name] = { [member.name](...given) { return made.call(this, call, given); } }[member.name];
    } else if (member.kind === 'get') {
      Object.defineProperty(prototype, member.name,
        { ...before, configurable: true, get() { return made.call(this, call, []); } });
    } else {
      Object.defineProperty(prototype, member.name,
        { ...before, configurable: true, set(value) { made.call(this, call, [value]); } });
    }
  }
  delete made.call.prototype;
  return made;
}

/** What the component asks of the system: the clock, and to be told of memory that grows. */
function imports(instance) {
  const view = () => new DataView(instance().exports.memory.buffer);
  const known = {
    clock_time_get(_, __, at) { view().setBigUint64(at, BigInt(Date.now()) * 1000000n, true); return 0; },
    environ_sizes_get(count, size) { view().setUint32(count, 0, true); view().setUint32(size, 0, true); return 0; },
    environ_get: () => 0,
    proc_exit(code) { throw new Error(`the component ended with ${code}`); },
    emscripten_notify_memory_growth: () => undefined,
    _tzset_js: () => undefined, _localtime_js: () => undefined,
  };
  // Whatever else a C library knows of files has none here.
  return new Proxy({}, { get: (_, module) => new Proxy(known, { get: (all, name) => all[name] ?? (() => 52) }),
    has: () => true });
}

function component(instance) {
  const { exports } = instance, memory = new Memory(exports);
  const describe = (identifier) => {
    const out = memory.take(4);
    let id = 0;
    if (identifier) {
      id = memory.take(2 * identifier.length + 2);
      const to = memory.elements(Uint16Array, id, identifier.length);
      for (let k = 0; k < identifier.length; ++k) to[k] = identifier.charCodeAt(k);
    }
    exports.VqDescribe(id, out);
    const text = memory.takenText(memory.view.getUint32(out, true));
    memory.free();
    return text.split('\n').filter((line) => line !== '').map((line) => line.split('\t'));
  };
  const made = { memory, exports };
  const classes = {};
  for (const [programmaticId, name, help, classId] of describe('')) {
    const members = describe(programmaticId).map(parsedMember);
    const each = makeClass(made, { name, help, classId, members });
    classes[name] = each;
    classes[name.replace(/^zt/, '')] = each;
  }
  return classes;
}

/** The classes, by their names and by those without "zt", of the bytes of vqmath63.wasm. */
export async function load(bytes) {
  let made;
  const { instance } = await WebAssembly.instantiate(bytes, imports(() => made));
  made = instance;
  instance.exports._initialize?.();
  return component(instance);
}

/** The same at once, where a host allows it (small pages do not in their main thread). */
export function loadNow(bytes) {
  let made;
  const instance = new WebAssembly.Instance(new WebAssembly.Module(bytes), imports(() => made));
  made = instance;
  instance.exports._initialize?.();
  return component(instance);
}
