// A form beside each member of the reference: numbers are typed and columns pasted, and the component
// itself, as WebAssembly, works on them. It is loaded when the first form is opened. What stands in a form
// at first is a worked call; a property is shown by a call that it acts on, or that works it out.
addEventListener('DOMContentLoaded', () => {
  const article = document.querySelector('article[role="main"], article');
  const name = (document.querySelector('article h1')?.firstChild?.textContent ?? '').trim();
  const examples = window.vqCalls?.[name];
  if (!article || !examples) return;
  const root = document.querySelector('script[src*="live.js"]').src.replace(/live\.js.*$/, '');
  const make = (tag, words = {}, ...children) => {
    const made = Object.assign(document.createElement(tag), words);
    made.append(...children);
    return made;
  };
  const script = (file) => new Promise((done, failed) => {
    document.head.append(make('script', { src: root + file, onload: done, onerror: () => failed(new Error(`${file} is missing`)) }));
  });

  let loaded;
  function component() {
    loaded ??= (async () => {
      if (typeof WebAssembly !== 'object') throw new Error('This browser has no WebAssembly, which the forms need.');
      await script('vqmath63.js');
      await script('vqmath63_wasm.js');
      const bytes = Uint8Array.from(atob(window.vqWasm), (c) => c.charCodeAt(0));
      delete window.vqWasm;
      return window.vqComponent.load(bytes);
    })();
    return loaded;
  }

  const LONG = 100000;  // characters that are pasted: more stay behind the field, where they need no room

  // What is typed. A column from a sheet has a line a row; a table has cells between tabs or blanks.
  function number(text) {
    if (/^[-+]?\d{1,3}(,\d{3})+$/.test(text)) {  // 1.234 to some, 1234 to others
      throw new TypeError(`'${text}' can be read in two ways; please write it with a point, or without the comma`);
    }
    const plain = text.replace(',', '.');
    if (!/^([-+]?(\d+\.?\d*|\.\d+)(e[-+]?\d+)?|[-+]?Infinity|NaN)$/i.test(plain)) throw new TypeError(`'${text}' is no number`);
    return Number(plain);
  }
  function truth(text) {
    if (!/^(true|false|yes|no|0|-?1)$/i.test(text)) throw new TypeError(`'${text}' is neither True nor False`);
    return /^(true|yes|-?1)$/i.test(text);
  }
  function date(text) {
    const parts = /^(\d{4})-(\d\d?)-(\d\d?)(?:[ T](\d\d?):(\d\d))?$/.exec(text) ?? [];
    const [, year, month, day, hour, minute] = parts.map((part) => Number(part ?? 0));
    const made = new Date(year, month - 1, day, hour, minute);
    if (made.getDate() !== day) throw new TypeError(`'${text}' is no date such as 2023-01-31 or 2023-01-31 06:00`);
    return made;
  }
  const cells = (line) => (line.includes('\t') ? line.split('\t') : line.trim().split(/[\s;]+/)).map((cell) => cell.trim());
  function read(type, text) {
    const one = { Boolean: truth, Date: date }[type.name] ?? number;
    if (type.name === 'String') return text;
    if (type.rank === 0 && text.trim() === '') throw new TypeError('is empty');
    if (type.rank === 0) return one(text.trim());
    const rows = text.replace(/\s+$/, '').split('\n').map(cells);
    const at = (cell, words) => {
      try {
        if (cell === '') throw new TypeError('is empty');
        return one(cell);
      } catch (error) { throw new TypeError(`${words}: ${error.message}`); }
    };
    if (type.rank === 2) return rows.map((row, i) => row.map((cell, j) => at(cell, `row ${i + 1}, column ${j + 1}`)));
    if (rows.length > 1 && rows.some((row) => row.length > 1)) {
      const most = rows.reduce((before, row) => Math.max(before, row.length), 0);
      throw new TypeError(`has ${most} columns; it has to be one column or one row`);
    }
    return rows.flat().map((cell, k) => at(cell, `element ${k + 1}`));
  }

  const written = (value) => value instanceof Date ? value.toLocaleString('sv').replace(' 00:00:00', '') : String(value);
  function shown(value) {
    if (!(Array.isArray(value) || ArrayBuffer.isView(value))) return make('code', { textContent: written(value) });
    const rows = Array.from(value.slice(0, 500)).map((row) => make('tr', {},
      ...(Array.isArray(row) ? row : [row]).map((cell) => make('td', { textContent: written(cell) }))));
    const more = value.length > 500 ? `the first 500 of ${value.length}` : '';
    return value.length ? make('table', {}, ...rows, make('caption', { textContent: more })) : make('em', { textContent: 'no elements' });
  }

  function plot(call, at, whole) {
    const spread = Math.max(2, 2 * Math.abs(at)), low = at - spread, n = 240;
    const points = [];
    for (let k = 0; k <= n; ++k) {
      const x = low + 2 * spread * k / n;
      try {
        const y = call(whole ? Math.round(x) : x);
        points.push(Math.abs(y) < 1e300 ? [x, y] : null);
      } catch { points.push(null); }
    }
    const ys = points.filter((p) => p).map((p) => p[1]).sort((a, b) => a - b);
    if (ys.length < 2) return '';
    let [bottom, top] = [ys[Math.floor(ys.length * 0.03)], ys[Math.ceil(ys.length * 0.97) - 1]];
    if (top === bottom) [bottom, top] = [bottom - 1, top + 1];
    let path = '', pen = false;
    for (const p of points) {
      const y = p ? 8 + 144 * (top - p[1]) / (top - bottom) : NaN;
      if (!(y > -50 && y < 210)) { pen = false; continue; }
      path += `${pen ? 'L' : 'M'}${(400 * (p[0] - low) / (2 * spread)).toFixed(1)} ${y.toFixed(1)}`;
      pen = true;
    }
    const figure = make('figure');
    figure.innerHTML = `<svg viewBox="0 0 400 160" role="img" aria-label="plot"><path d="${path}"/></svg>`;
    const told = (x) => Number(x.toPrecision(4));
    figure.append(make('figcaption', { textContent: `from ${told(low)} to ${told(low + 2 * spread)}; ${told(bottom)} to ${told(top)}` }));
    return figure;
  }

  /** A form that calls `member` of a new object, beginning with `sample`; of properties it shows `wanted`, or all. */
  function form(of, member, sample, wanted) {
    const fields = [];
    const field = (label, type, text = '', optional, setting) => {
      const rows = Math.min(Math.max(text.split('\n').length, 2), 8);
      const input = make(type.rank > 0 ? 'textarea' : 'input', { value: text, rows, spellcheck: false, wrap: 'off', name: label });
      const each = { label, type, input, optional, setting };
      input.onpaste = (event) => {
        const pasted = event.clipboardData.getData('text');
        if (type.rank === 0 || pasted.length < LONG) return;
        event.preventDefault();
        [each.held, input.value] = [pasted, `(${pasted.trimEnd().split('\n').length} rows)`];
      };
      input.oninput = () => { delete each.held; };
      const hint = type.name + ['', ', a column', ', a table'][type.rank] + (optional ? '; may be empty' : '');
      fields.push(each);
      return make('label', {}, make('span', { textContent: label }), input, make('small', { textContent: hint }));
    };
    const inputs = member.args.flatMap((a, k) => a.isInput ? [field(a.name, a.type, sample.given[k], a.optional, false)] : []);
    const lets = of.members.filter((m) => m.kind === 'let').sort((a, b) => wanted.includes(b.name) - wanted.includes(a.name));
    const sets = lets.map((m) => field(m.name, m.args[0].type, sample.set[m.name], true, true));
    const output = make('div', { className: 'vq-output' });
    output.setAttribute('aria-live', 'polite');
    const tell = (words) => output.append(make('p', { className: 'vq-error', textContent: words }));
    const put = (label, value) => output.append(make('div', {}, make('span', { textContent: label }), shown(value)));
    const value = ({ type, input, label, optional, held }) => {
      if (input.value.trim() === '' && type.rank > 0) return null;
      if (input.value.trim() === '' && optional) return undefined;
      try { return read(type, held ?? input.value); } catch (error) { throw new TypeError(`${label}: ${error.message}`); }
    };
    const run = () => {
      output.replaceChildren();
      const object = new of();
      const call = (...sent) => object[member.name](...sent);
      let made, given, ended = true;
      try {
        for (const each of fields.filter((f) => f.setting && f.input.value.trim() !== '')) object[each.label] = value(each);
        given = fields.filter((f) => !f.setting).map(value);
        made = call(...given);
      } catch (error) {
        tell(error.lines?.map((l) => l.line).join('\n') ?? error.message);
        if (!error.lines) return;
        [made, ended] = [error.result, false];
      }
      const back = [...(member.result ? ['result'] : []), ...member.args.filter((a) => a.isOutput).map((a) => a.name)];
      if (back.length === 1) put(back[0], made);
      else for (const label of back) if (made !== undefined) put(label, made[label]);
      const summary = of.members.filter((m) => m.kind === 'get' && m.args.length === 0);
      const all = back.length === 1 && made === true && !member.result && wanted.every((each) => lets.some((m) => m.name === each));
      for (const m of summary.filter((each) => all || wanted.includes(each.name))) put(m.name, object[m.name]);
      if (back.length === 0) output.append(make('em', { textContent: 'done' }));
      const [only] = member.args;
      if (ended && member.args.length === 1 && only.type.rank === 0 && ['Double', 'Long'].includes(only.type.name)) {
        output.append(plot(call, given[0], only.type.name === 'Long'));
      }
    };
    const button = make('button', { type: 'submit', textContent: `Call ${member.name}` });
    const whole = make('form', { onsubmit: (event) => { event.preventDefault(); run(); } }, ...inputs);
    if (sets.length) whole.append(make('fieldset', {}, make('legend', { textContent: 'Properties set before' }), ...sets));
    whole.append(button, make('small', { textContent: ' of a new object, which keeps nothing for the next call' }));
    whole.member = member;
    run();
    return [whole, output];
  }

  /** The forms of a heading: one a method; for properties one, of the call that shows most of them. */
  function forms(of, names) {
    const callable = (m) => m.kind === 'method' || m.kind === 'get' && m.args.length > 0;
    const known = (each) => of.members.find((m) => m.name === each && callable(m));
    const methods = names.map(known).filter(Boolean);
    if (methods.length) {
      return methods.map((m) => [m.name, () => form(of, m, examples.calls[examples.shows[m.name][0]], [])]);
    }
    const count = (at) => names.filter((each) => examples.shows[each]?.includes(at)).length;
    const sample = examples.calls.map((each, at) => [each, count(at)]).sort((a, b) => b[1] - a[1])[0][0];
    return [[sample.member, () => form(of, known(sample.member), sample, names)]];
  }

  for (const heading of document.querySelectorAll('article h3')) {
    const names = (heading.firstChild?.textContent ?? '').trim().split(', ');
    if (!names.every((each) => each in examples.shows)) continue;
    const details = make('details', { className: 'vq-live' }, make('summary', { textContent: 'Try it here' }));
    details.addEventListener('toggle', async () => {
      if (!details.open || details.childElementCount > 1) return;
      const place = make('div');
      details.append(place);
      try {
        const of = (await component())[name], made = forms(of, names);
        const choose = (at) => place.replaceChildren(...(made.length > 1 ? [which] : []), ...made[at][1]());
        const which = make('select', { onchange: () => choose(which.selectedIndex), ariaLabel: 'Method' },
          ...made.map(([text]) => make('option', { textContent: text })));
        choose(0);
      } catch (error) {
        place.append(make('p', { className: 'vq-error', textContent: error.message }));
      }
    });
    heading.closest('section').append(details);
  }
  if (location.hash === '#try-all') {
    for (const each of document.querySelectorAll('details.vq-live')) each.open = true;
  }
});
