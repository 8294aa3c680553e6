"use strict";
// The page is whole without this: a button to copy, the numbers under the pointer, tables in print.
for (const block of document.querySelectorAll("details.csv")) {
  const text = block.querySelector("pre");
  const button = document.createElement("button");
  button.textContent = "Copy";
  button.addEventListener("click", async () => {
    getSelection().selectAllChildren(text);
    let done = true;
    try {
      await navigator.clipboard.writeText(text.textContent);
    } catch {
      done = document.execCommand("copy");
    }
    button.textContent = done ? "Copied" : "Selected: copy it by the keyboard";
    setTimeout(() => { button.textContent = "Copy"; }, 2000);
  });
  text.before(button);
}

for (const picture of document.querySelectorAll("svg[data-rows]")) {
  const edges = picture.dataset.rows.split(" ").map(Number);
  const table = picture.closest("figure").querySelector("table");
  const heads = [...table.tHead.rows[0].cells].map((cell) => cell.textContent);
  const rows = table.tBodies[0].rows;
  const cursor = document.createElement("div");
  const tip = document.createElement("div");
  cursor.className = "cursor";
  tip.className = "tip";
  const leave = () => {
    cursor.remove();
    tip.remove();
  };
  picture.addEventListener("pointerleave", leave);
  picture.addEventListener("pointermove", (event) => {
    const box = picture.getBoundingClientRect();
    const at = 1000 * (event.clientX - box.left) / box.width;
    const row = edges.findLastIndex((edge) => at >= edge);
    if (!rows[row] || row + 1 === edges.length) {
      leave();
      return;
    }
    cursor.style.left = edges[row] / 10 + "%";
    cursor.style.width = (edges[row + 1] - edges[row]) / 10 + "%";
    const cells = [...rows[row].cells];
    tip.textContent = cells.map((cell, i) => heads[i] + "  " + cell.textContent).join("\n");
    tip.style.left = at > 500 ? "auto" : "calc(" + edges[row + 1] / 10 + "% + .5rem)";
    tip.style.right = at > 500 ? "calc(" + (100 - edges[row] / 10) + "% + .5rem)" : "auto";
    picture.after(cursor, tip);
  });
}

addEventListener("beforeprint", () => {
  for (const each of document.querySelectorAll("details.numbers:not([open])")) {
    if (each.closest(".panels")) continue;  // many and alike: those that are open are printed
    each.open = true;
    each.dataset.shut = "";
  }
});
addEventListener("afterprint", () => {
  for (const each of document.querySelectorAll("details[data-shut]")) {
    each.open = false;
    delete each.dataset.shut;
  }
});
