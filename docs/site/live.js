// A form beside each member of the reference: numbers are typed and columns pasted, and the component
// itself, as WebAssembly, works on them. It is loaded when the first form is opened.
addEventListener('DOMContentLoaded', () => {
  const article = document.querySelector('article[role="main"], article');
  const name = (document.querySelector('article h1')?.firstChild?.textContent ?? '').trim();
  const calls = window.vqCalls?.[name];
  if (!article || !calls) return;
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

  // What is typed. A column from a sheet has a line a row; a table has cells between tabs or blanks.
  const word = (text) => text.trim() === '' ? NaN : Number(text.trim().replace(',', '.'));
  function number(text) {
    if (Number.isNaN(word(text))) throw new TypeError(`'${text.trim()}' is no number`);
    return word(text);
  }
  const truth = (text) => /^(true|1|yes)$/i.test(text.trim());
  function read(type, text) {
    const one = type.name === 'Boolean' ? truth : number;
    const cells = (line) => line.trim().split(/[\s;]+/).filter((cell) => cell !== '').map(one);
    if (type.rank === 2) return text.split('\n').filter((line) => line.trim() !== '').map(cells);
    if (type.rank === 1) return cells(text);
    if (type.name === 'String') return text;
    if (type.name === 'Date') {
      const [year, month, day] = text.trim().split('-').map(Number);
      if (!day) throw new TypeError(`'${text.trim()}' is no date such as 2023-01-31`);
      return new Date(year, month - 1, day);
    }
    return one(text);
  }
  const written = (value) => value instanceof Date ? value.toLocaleDateString('sv') : String(value);
  function shown(value) {
    if (!(Array.isArray(value) || ArrayBuffer.isView(value))) return make('code', { textContent: written(value) });
    const rows = Array.from(value).slice(0, 500).map((row) => make('tr', {},
      ...(Array.isArray(row) ? row : [row]).map((cell) => make('td', { textContent: written(cell) }))));
    const more = value.length > 500 ? `the first 500 of ${value.length}` : '';
    return value.length ? make('table', {}, ...rows, make('caption', { textContent: more })) : make('em', { textContent: 'no elements' });
  }

  function plot(call, at) {
    const spread = Math.max(2, 2 * Math.abs(at)), low = at - spread, n = 240;
    const points = [];
    for (let k = 0; k <= n; ++k) {
      const x = low + 2 * spread * k / n;
      try {
        const y = call(x);
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
    figure.innerHTML = `<svg viewBox="0 0 400 160" role="img"><path d="${path}"/></svg>`;
    const told = (x) => Number(x.toPrecision(4));
    figure.append(make('figcaption', { textContent: `from ${told(low)} to ${told(low + 2 * spread)}; ${told(bottom)} to ${told(top)}` }));
    return figure;
  }

  function form(classes, member, into) {
    const of = classes[name], lets = of.members.filter((m) => m.kind === 'let');
    const sample = calls[member.name];
    const fields = [];
    const field = (label, type, text, optional, setting) => {
      const area = type.rank > 0 || type.name === 'String' && text.includes('\n');
      const input = make(area ? 'textarea' : 'input', { value: text ?? '', rows: 4, spellcheck: false });
      const hint = type.name + ['', ', a column', ', a table'][type.rank] + (setting || optional ? '; may be empty' : '');
      fields.push({ label, type, input, optional, setting });
      return make('label', {}, make('span', { textContent: label }), input, make('small', { textContent: hint }));
    };
    const settings = member.kind === 'let' ? [] : lets;
    const inputs = member.args.map((a, k) => a.isInput && field(a.name, a.type, sample.given[k] ?? '', a.optional, false)).filter(Boolean);
    const sets = settings.map((m) => field(m.name, m.args[0].type, sample.set[m.name] ?? '', true, true));
    const output = make('div', { className: 'vq-output' });
    output.setAttribute('aria-live', 'polite');
    const run = () => {
      output.replaceChildren();
      try {
        const object = new of();
        const value = ({ type, input, label, optional }) => {
          if (input.value.trim() === '' && type.rank > 0) return null;
          if (input.value.trim() === '' && optional) return undefined;
          try { return read(type, input.value); } catch (error) { throw new TypeError(`${label}: ${error.message}`); }
        };
        for (const each of fields.filter((f) => f.setting && f.input.value.trim() !== '')) object[each.label] = value(each);
        const given = fields.filter((f) => !f.setting).map(value);
        const call = (...sent) => member.kind === 'let' ? void (object[member.name] = sent[0])
          : member.kind === 'get' && member.args.length === 0 ? object[member.name] : object[member.name](...sent);
        const summary = of.members.filter((m) => m.kind === 'get' && m.args.length === 0);
        let made;
        try { made = call(...given); } catch (error) {
          output.append(make('p', { className: 'vq-error', textContent: error.lines ? error.lines.map((l) => l.line).join('\n') : error.message }));
          made = error.result;
        }
        let parts = made !== null && typeof made === 'object' && !Array.isArray(made) && !ArrayBuffer.isView(made) && !(made instanceof Date)
          ? Object.entries(made) : made === undefined ? [] : [['result', made]];
        if (parts.length === 1 && parts[0][1] === true && member.kind === 'method' && summary.length) {
          parts = [...parts, ...summary.map((m) => [m.name, object[m.name]])];
        }
        for (const [label, part] of parts) output.append(make('div', {}, make('span', { textContent: label }), shown(part)));
        const [only] = member.args;
        if (member.kind === 'method' && member.args.length === 1 && only.type.rank === 0 && only.type.name === 'Double' && given.length === 1) {
          output.append(plot(call, given[0]));
        }
      } catch (error) {
        output.append(make('p', { className: 'vq-error', textContent: error.message }));
      }
    };
    const button = make('button', { type: 'submit', textContent: 'Call' });
    const whole = make('form', { onsubmit: (event) => { event.preventDefault(); run(); } }, ...inputs);
    if (sets.length) whole.append(make('fieldset', {}, make('legend', { textContent: 'Properties set before' }), ...sets));
    whole.append(button);
    into.append(whole, output);
    run();
  }

  for (const heading of document.querySelectorAll('article h3')) {
    const title = (heading.firstChild?.textContent ?? '').trim();
    if (!(title in calls)) continue;
    const details = make('details', { className: 'vq-live' }, make('summary', { textContent: 'Try it here' }));
    details.addEventListener('toggle', async () => {
      if (!details.open || details.childElementCount > 1) return;
      const place = make('div');
      details.append(place);
      try {
        const classes = await component();
        const { members } = classes[name];
        const member = members.find((m) => m.name === title && m.kind !== 'let') ?? members.find((m) => m.name === title);
        form(classes, member, place);
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
