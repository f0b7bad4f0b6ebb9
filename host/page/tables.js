// SPDX-License-Identifier: MIT
// Tables that a click on a heading sorts.

const textOrder = new Intl.Collator(undefined, { numeric: true, sensitivity: "base" });

// What is not known comes last, whichever way a column is sorted.
function inOrder(a, b, direction) {
  const isMissing = (value) => value === "" || !isKnown(value);
  if (isMissing(a) || isMissing(b))
    return isMissing(a) - isMissing(b);
  return direction * (typeof a === "string" ? textOrder.compare(a, b) : a - b);
}

function makeCell(column, thing) {
  const text = column.text ? column.text(thing) : column.value(thing) || kDash;
  const cell = element("td", { className: column.isNumber ? "number" : column.isLong ? "long" : "" });
  if (column.isName) {
    const button = element("button", { type: "button", className: "link" }, nameElement(text));
    button.addEventListener("click", () => showOnMap(thing));
    cell.append(button);
  } else {
    cell.append(column.isNumber ? text : element("bdi", { textContent: text, title: column.isLong && text !== kDash ? text : "" }));
  }
  return cell;
}

// A column: title, value (to sort by), text (to show; the value itself without one), isNumber, isLong, isName.
function makeTable(title, columns, things) {
  if (things.length === 0)
    return;
  const rows = things.map((thing) => ({ thing, row: element("tr", {}, ...columns.map((column) => makeCell(column, thing))) }));
  const body = element("tbody", {}, ...rows.map(({ row }) => row));
  const headings = columns.map((column) => {
    const heading = element("th", { scope: "col", className: column.isNumber ? "number" : "", "aria-sort": "none" },
      element("button", { type: "button", textContent: column.title }));
    heading.firstChild.addEventListener("click", () => {
      const direction = heading.getAttribute("aria-sort") === "ascending" ? -1 : 1;
      headings.forEach((other) => other.setAttribute("aria-sort", "none"));
      heading.setAttribute("aria-sort", direction === 1 ? "ascending" : "descending");
      rows.sort((a, b) => inOrder(column.value(a.thing), column.value(b.thing), direction));
      body.append(...rows.map(({ row }) => row));
    });
    return heading;
  });
  document.getElementById("tables").append(element("section", { id: `table-${title.toLowerCase()}` },
    element("h2", {}, title, element("span", { className: "count", textContent: String(things.length) })),
    element("div", { className: "scroll", tabIndex: 0, role: "region", "aria-label": title },
      element("table", {}, element("thead", {}, element("tr", {}, ...headings)), body))));
}

const nameColumn = { title: "Name", value: (thing) => thing.name, isName: true };
const commentColumn = { title: "Comment", value: (thing) => thing.comment, isLong: true };
const placeColumns = [
  { title: "Latitude", value: (place) => place.latitude, text: (place) => latitudeText(place.latitude), isNumber: true },
  { title: "Longitude", value: (place) => place.longitude, text: (place) => longitudeText(place.longitude), isNumber: true },
  { title: "Elevation", value: (place) => place.elevation, text: (place) => metresText(place.elevation), isNumber: true },
];
const lengthColumn = { title: "Length", value: (line) => line.kilometres, text: (line) => kilometresText(line.kilometres), isNumber: true };
const pointsColumn = { title: "Points", value: (line) => line.count, text: (line) => wholeFormat.format(line.count), isNumber: true };

makeTable("Tracks", [
  nameColumn,
  { title: "From (UTC)", value: (track) => track.first, text: (track) => momentText(track.first) },
  { title: "To (UTC)", value: (track) => track.last, text: (track) => momentText(track.last) },
  { title: "Time span", value: (track) => isKnown(track.first) ? track.last - track.first : null,
    text: (track) => durationText(isKnown(track.first) ? track.last - track.first : null), isNumber: true },
  { title: "Moving", value: (track) => track.moving, text: (track) => durationText(track.moving), isNumber: true },
  lengthColumn,
  { title: "Ascent", value: (track) => track.ascent, text: (track) => metresText(track.ascent), isNumber: true },
  { title: "Descent", value: (track) => track.descent, text: (track) => metresText(track.descent), isNumber: true },
  pointsColumn,
], held.tracks);
makeTable("Routes", [nameColumn, lengthColumn, pointsColumn, commentColumn], held.routes);
makeTable("Waypoints", [nameColumn, ...placeColumns, { title: "Symbol", value: (place) => place.symbol }, commentColumn], held.waypoints);
makeTable("Geocaches", [
  nameColumn,
  { title: "Type", value: (cache) => cache.type },
  { title: "Difficulty", value: (cache) => cache.difficulty, isNumber: true },
  { title: "Terrain", value: (cache) => cache.terrain, isNumber: true },
  ...placeColumns,
  { title: "Owner", value: (cache) => cache.owner },
  { title: "Placed", value: (cache) => cache.placed },
  { title: "Found", value: (cache) => cache.found },
  { title: "Hint", value: (cache) => cache.hint, isLong: true },
  commentColumn,
], held.geocaches);
