// SPDX-License-Identifier: MIT
// The page as a whole: its head, the parts of the world that the map can go to, the theme, and paper.

const allThings = [...held.tracks, ...held.routes, ...held.waypoints, ...held.geocaches];

function countText(count, one, many = `${one}s`) {
  return count === 0 ? null : `${wholeFormat.format(count)} ${count === 1 ? one : many}`;
}

function headline() {
  const timed = held.tracks.filter((track) => isKnown(track.first));
  const day = (time) => momentText(time).slice(0, 10);
  const days = timed.length === 0 ? [] :
    [...new Set([day(Math.min(...timed.map((track) => track.first))), day(Math.max(...timed.map((track) => track.last)))])];
  const length = held.tracks.reduce((sum, track) => sum + track.kilometres, 0);
  document.title = ["Tracks and places", days.join(" – ")].filter(Boolean).join(", ");
  document.getElementById("summary").textContent = [
    countText(held.tracks.length, "track"), held.tracks.length > 0 ? kilometresText(length) : null,
    countText(held.routes.length, "route"), countText(held.waypoints.length, "waypoint"), countText(held.geocaches.length, "geocache"),
    days.join(" to ")].filter(Boolean).join(" · ");
}

function showOnMap(thing) {
  fit(boundsOf([thing]));
  if (thing.kind === "track" && !thing.isOn)
    cards[thing.index].element.querySelector("input").click();
  if (thing.kind === "waypoint" || thing.kind === "geocache")
    mark(thing);
  mapBox.scrollIntoView({ block: "nearest", behavior: scrolling() });
}

// Things that lie within about a degree of each other, in the order of how much lies there: people travel, and a map of all the
// world shows nothing of a walk.
function findAreas() {
  const cells = new Map();
  const keyOf = (x, latitude) => `${Math.floor(x)},${Math.floor(latitude)}`;
  const enter = (x, latitude) => {
    const key = keyOf(x, latitude);
    if (!cells.has(key))
      cells.set(key, { x: Math.floor(x), latitude: Math.floor(latitude), bounds: noBounds(), weight: 0 });
    extend(cells.get(key).bounds, x, latitude);
    return cells.get(key);
  };
  for (const thing of allThings) {
    for (let i = 0; i < (thing.count ?? 0); ++i)
      enter(thing.x[i], thing.latitude[i]).weight += thing.kind === "track" ? 10 : 1;
    if (thing.count === undefined)
      enter(thing.x, thing.latitude).weight += 1;
  }
  const areas = [];
  for (const first of cells.values()) {
    if (first.isTaken)
      continue;
    const area = { bounds: noBounds(), weight: 0 };
    const open = [first];
    first.isTaken = true;
    while (open.length > 0) {
      const cell = open.pop();
      extend(area.bounds, cell.bounds.west, cell.bounds.south);
      extend(area.bounds, cell.bounds.east, cell.bounds.north);
      area.weight += cell.weight;
      for (let i = 0; i < 9; ++i) {
        const next = cells.get(`${cell.x + i % 3 - 1},${cell.latitude + Math.floor(i / 3) - 1}`);
        if (next && !next.isTaken) {
          next.isTaken = true;
          open.push(next);
        }
      }
    }
    areas.push(area);
  }
  return areas.sort((a, b) => b.weight - a.weight);
}

// Shows a part of the world, and the profiles of what lies there.
function goTo(bounds) {
  fit(bounds);
  const first = cards.find(({ track }) => track.count > 0 && track.x[0] >= bounds.west && track.x[0] <= bounds.east &&
    track.latitude[0] >= bounds.south && track.latitude[0] <= bounds.north);
  if (first)
    bringIntoSight(first.element);
}

function makeAreas() {
  const areas = findAreas();
  const list = document.getElementById("areas");
  const add = (text, bounds, isFirst) => {
    const chip = element("button", { type: "button", textContent: text, "aria-pressed": isFirst });
    chip.addEventListener("click", () => {
      for (const other of list.children)
        other.setAttribute("aria-pressed", other === chip);
      goTo(bounds);
    });
    list.append(chip);
  };
  if (areas.length > 1) {
    add("Everything", boundsOf(allThings), false);
    areas.slice(0, 7).forEach(({ bounds }, i) =>
      add(placeText((bounds.south + bounds.north) / 2, (bounds.west + bounds.east) / 2, 1), bounds, i === 0));
  }
  return areas.length > 0 ? areas[0].bounds : { west: -180, east: 180, south: -90, north: 90 }; // tracks without points
}

function makeSwitches() {
  const add = (kind, list, sign) => {
    if (list.length === 0)
      return;
    const box = element("input", { type: "checkbox", checked: true });
    box.addEventListener("change", () => {
      isShown[kind] = box.checked;
      mark(null);
      drawSoon();
    });
    document.getElementById("switches").append(
      element("label", {}, box, element("i", { className: `sign ${sign}` }), `${kind[0].toUpperCase()}${kind.slice(1)} ${wholeFormat.format(list.length)}`));
  };
  add("routes", held.routes, "dashes");
  add("waypoints", held.waypoints, "disc");
  add("geocaches", held.geocaches, "diamond");
}

const darkness = matchMedia("(prefers-color-scheme: dark)");
let chosenTheme = null;
function applyTheme(theme) {
  document.documentElement.style.colorScheme = theme ?? "";
  document.getElementById("theme").textContent = (theme ?? (darkness.matches ? "dark" : "light")) === "dark" ? "Light" : "Dark";
  if (allThings.length > 0)
    drawSoon();
}
document.getElementById("theme").addEventListener("click", () => {
  chosenTheme = (chosenTheme ?? (darkness.matches ? "dark" : "light")) === "dark" ? "light" : "dark";
  applyTheme(chosenTheme);
});
darkness.addEventListener("change", () => applyTheme(chosenTheme));

// On paper the map has a size of its own, in pixels, since nothing is drawn anew once the paper's layout is made: a map as on the
// screen would be stretched. It shows what the screen does, as sharp as a printer can.
const kPaperMap = { width: 680, height: 416 };
const kPaperRatio = 3;
let onScreen = null; // the view, while the map is laid out for paper

function layMapForPaper() {
  onScreen = { ...view };
  Object.assign(mapBox.style, { flex: "none", width: `${kPaperMap.width}px`, height: `${kPaperMap.height}px` });
  measureMap();
  setScale(onScreen.scale * Math.min(view.width / onScreen.width, view.height / onScreen.height));
  draw(kPaperRatio);
}

function layMapForScreen() {
  Object.assign(mapBox.style, { flex: "", width: "", height: "" });
  Object.assign(view, onScreen);
  onScreen = null;
  measureMap();
}

// On paper everything is light, and every profile is there.
addEventListener("beforeprint", () => {
  mark(null);
  cards.filter((card) => !card.isFilled).forEach(fillChart);
  applyTheme("light");
  if (allThings.length > 0 && !onScreen)
    layMapForPaper();
});
addEventListener("afterprint", () => {
  applyTheme(chosenTheme);
  if (onScreen)
    layMapForScreen();
});

document.getElementById("note").textContent = held.note ? `${held.note}.` : "";
headline();
if (allThings.length > 0) {
  makeSwitches();
  measureMap();
  goTo(makeAreas());
  new ResizeObserver(measureMap).observe(mapBox);
} else {
  document.getElementById("nothing").hidden = false;
  document.getElementById("bench").remove();
}
applyTheme(null);
document.documentElement.dataset.ready = "";
