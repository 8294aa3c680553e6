// The package: its component is loaded as it is imported, in Node and in browsers.
import { load } from './component.mjs';

export { VqError } from './component.mjs';

async function bytes() {
  const url = new URL('./vqmath63.wasm', import.meta.url);
  if (url.protocol !== 'file:') return (await fetch(url)).arrayBuffer();
  const { readFile } = await import('node:fs/promises');
  return readFile(url);
}

const vqmath63 = await load(await bytes());
export default vqmath63;
