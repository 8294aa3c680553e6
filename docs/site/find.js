// On the page of search results: the members that a task leads to, before the pages that have its words.
addEventListener('DOMContentLoaded', () => {
  const results = document.getElementById('search-results');
  if (!results) return;
  const root = document.querySelector('script[src*="find.js"]').src.replace(/_static\/find\.js.*$/, '');
  const PASSED_OVER = new Set(('a an and are as at be by do for from get find how i in into is it me my of on or '
    + 'over the this to two what where which with').split(' '));
  const stem = (word) => word.length > 4 ? word.replace(/(ing|ed|ly|ies|es|s|al|y)$/, '') : word.replace(/s$/, '');
  const split = (text) => text.toLowerCase().split(/[^a-z0-9]+/).filter((word) => word && !PASSED_OVER.has(word))
    .map((word) => stem(word.replace('iz', 'is')));
  function alike(one, other) {
    if (one === other) return 1;
    let common = 0;
    while (common < one.length && one[common] === other[common]) ++common;
    return common >= 4 && common >= 0.85 * Math.min(one.length, other.length) ? 0.5 : 0;
  }

  /** The members that a query's words are found with, those with most of them first. */
  window.vqFind = (query, members) => {
    const words = split(query);
    const best = (word, text) => split(text).reduce((most, each) => Math.max(most, alike(word, each)), 0);
    const found = members.map(([of, name, help, tasks, property]) => {
      let met = 0, score = property ? 0 : 1.5;
      for (const word of words) {
        const each = [3 * best(word, name.replace(/([a-z])([A-Z])/g, '$1 $2')), 3 * (word === name.toLowerCase()),
          2 * best(word, help), 2 * best(word, tasks), best(word, of)];
        met += Math.max(...each) > 0;
        score += Math.max(...each);
      }
      return { of, name, help, met, score };
    });
    const most = Math.max(...found.map((each) => each.met));
    return found.filter((each) => each.met > 0 && each.met === most && 2 * most >= words.length)
      .sort((a, b) => b.score - a.score).slice(0, 8);
  };

  const query = new URLSearchParams(location.search).get('q') ?? '';
  const script = document.createElement('script');
  script.src = `${root}_static/members.js`;
  script.onload = () => {
    const list = document.createElement('ul');
    for (const { of, name, help } of query ? window.vqFind(query, window.vqMembers) : []) {
      const link = Object.assign(document.createElement('a'), { textContent: `${of} > ${name}`,
        href: `${root}reference/${of}.html#${name.toLowerCase()}` });
      const line = document.createElement('li');
      line.append(link, ` ${help}`);
      list.append(line);
    }
    if (list.childElementCount === 0) return;
    const heading = Object.assign(document.createElement('h2'), { textContent: 'Members' });
    const all = Object.assign(document.createElement('p'), { innerHTML: `<a href="${root}reference.html#by-task">All tasks</a>` });
    const found = document.createElement('div');
    found.id = 'vq-found';
    found.append(heading, list, all);
    results.before(found);
  };
  document.head.append(script);
});
