// Put into a page by check.py: makes calls by each form, and bad input in each of its fields. What the forms
// show is left in the page.
// At once: the browser's time, which runs ahead here, would not wait for a compilation beside it.
WebAssembly.instantiate = async (bytes, imports) =>
  ({ instance: new WebAssembly.Instance(new WebAssembly.Module(bytes), imports) });

addEventListener('load', async () => {
  const fill = (form, values) => {
    for (const input of form.querySelectorAll('input, textarea')) input.value = values[input.name] ?? '';
    form.requestSubmit();
  };
  const seen = (place) => {
    const shown = {};
    for (const each of place.querySelectorAll('.vq-output > div')) {
      const rows = [...each.querySelectorAll('tr')].map((row) => [...row.cells].map((cell) => cell.textContent));
      shown[each.firstChild.textContent] = rows.length ? rows
        : each.querySelector('em') ? [] : each.querySelector('code').textContent;
    }
    return { shown, error: place.querySelector('.vq-error')?.textContent ?? '',
      plot: place.querySelector('svg path')?.getAttribute('d') ?? '' };
  };
  const made = [];
  for (const details of document.querySelectorAll('details.vq-live')) {
    details.open = true;
    const title = details.closest('section').querySelector('h3').firstChild.textContent.trim();
    for (let waited = 0; !details.querySelector('form, .vq-error') && waited < 200; ++waited) {
      await new Promise((go) => setTimeout(go, 10));
    }
    const which = details.querySelector('select');
    for (let at = 0; at < (which?.options.length ?? 1); ++at) {
      if (which) { which.selectedIndex = at; which.dispatchEvent(new Event('change')); }
      const place = details.querySelector('div'), form = place.querySelector('form');
      const each = { title, member: form?.member.name, first: seen(place), calls: [], bad: [],
        arguments: form?.member.args.map((a) => [a.name, a.direction, a.type.name + a.type.rank]) };
      made.push(each);
      if (!form) continue;
      const values = Object.fromEntries([...form.querySelectorAll('input, textarea')].map((input) => [input.name, input.value]));
      for (const job of window.vqJobs[each.member] ?? []) {
        fill(form, { ...Object.fromEntries(each.arguments.map(([name], k) => [name, job.given[k]])), ...job.set });
        each.calls.push({ line: job.line, ...seen(place) });
      }
      for (const input of form.querySelectorAll('input, textarea')) {
        const type = input.nextSibling.textContent, column = type.includes('column'), table = type.includes('table');
        if (type.startsWith('String')) continue;
        const lists = [...(column || table ? ['1\n\n3'] : []), ...(column ? ['1\t1\n0\t0', '1 two'] : []), ...(table ? ['1\t\t1'] : [])];
        for (const text of ['two', '1,234', ...lists, ...(type.includes('empty') || column || table ? [] : [' '])]) {
          fill(form, { ...values, [input.name]: text });
          each.bad.push([input.name, text, seen(place).error]);
        }
      }
      if (each.member === 'Median') {
        const clipboardData = new DataTransfer();
        clipboardData.setData('text', Array.from({ length: 1000000 }, (_, k) => `${k + 1}\r\n`).join(''));
        form.querySelector('textarea').dispatchEvent(new ClipboardEvent('paste', { clipboardData, cancelable: true }));
        form.requestSubmit();
        each.million = seen(place).shown.result ?? 'nothing';
      }
    }
  }
  document.body.append(Object.assign(document.createElement('pre'), { id: 'vq-report', textContent: JSON.stringify(made) }));
});
