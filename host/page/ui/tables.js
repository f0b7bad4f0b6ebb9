// SPDX-License-Identifier: MIT
// The tables below the map, which a click on a heading sorts.

import { kDash } from "../model/format.js";
import { compareValues } from "../model/sorting.js";
import { byId, element, nameElement } from "./dom.js";
import { hintElement } from "./hint.js";
import { iconElement } from "./symbols.js";

const kShort = 12;           // characters
const kTime = /^[\d :-]+$/; // as a date and time
const kLongWord = /\S{24}/; // only such a word is broken on paper

// `tables` as tablesOf() returns them. A click on a name calls `onShow(item)`. Returns a function
// that fills all cells, and does so again for another clock or other units.
export function showTables(tables, onShow) {
  const shown = tables.map(({ title, columns, items }) => {
    const { table, refresh } = makeTable(columns, items, onShow);
    return { section: makeSection(title, items.length, table), refresh };
  });
  byId("tables").replaceChildren(...shown.map(({ section }) => section));
  return () => shown.forEach(({ refresh }) => refresh());
}

function makeSection(title, count, table) {
  return element("section", { id: `table-${title.toLowerCase()}` },
    element("h2", {}, title, element("span", { className: "count", textContent: String(count) })),
    element("div", { className: "scroll", tabIndex: 0, role: "region", "aria-label": title },
      table));
}

function makeTable(columns, items, onShow) {
  const rows = items.map((item) => ({ item, row: element("tr") }));
  const body = element("tbody");
  // One by one: a call cannot have as many arguments as a receiver has waypoints.
  const fill = () => rows.forEach(({ row }) => body.append(row));
  fill();
  const refresh = () => rows.forEach(({ item, row }) =>
    row.replaceChildren(...columns.map((column) => makeCell(column, item, onShow))));
  const sort = (column, direction) => {
    rows.sort((a, b) => compareValues(column.value(a.item), column.value(b.item), direction));
    fill();
  };
  const headings = element("tr", {}, ...columns.map((column) => makeHeading(column, sort)));
  return { table: element("table", {}, element("thead", {}, headings), body), refresh };
}

// A click sorts by the column, a second one in the other direction.
function makeHeading(column, sort) {
  const button = element("button", { type: "button", textContent: column.title });
  const heading = element("th", {
    scope: "col", className: column.isNumber ? "number" : "", "aria-sort": "none",
    "data-title": column.title,
  }, button);
  button.addEventListener("click", () => {
    const isAscending = heading.getAttribute("aria-sort") !== "ascending";
    for (const other of heading.parentElement.children)
      other.setAttribute("aria-sort", "none");
    heading.setAttribute("aria-sort", isAscending ? "ascending" : "descending");
    sort(column, isAscending ? 1 : -1);
  });
  return heading;
}

// How a text is broken into lines on paper: a short one, for example a date, stays in one piece.
function breakClass(text) {
  if (text.length <= kShort || kTime.test(text))
    return " short";
  return kLongWord.test(text) ? " breaks" : "";
}

function makeCell(column, item, onShow) {
  const text = column.text ? column.text(item) : column.value(item) || kDash;
  const breaks = breakClass(text);
  if (column.isName) {
    const button = element("button", { type: "button", className: "link" }, nameElement(text));
    button.addEventListener("click", () => onShow(item));
    return element("td", { className: breaks.trim() }, button);
  }
  if (column.isNumber)
    return element("td", { className: `number${breaks}` }, text);
  if (column.isHint && text !== kDash)
    return element("td", { className: `long${breaks}` }, hintElement(item));
  const icon = column.icon?.(item);
  const title = column.isLong && text !== kDash ? text : "";
  return element("td", { className: `${column.isLong ? "long" : ""}${breaks}` },
    ...icon ? [iconElement(icon)] : [], element("bdi", { textContent: text, title }));
}
