// SPDX-License-Identifier: MIT
// The page on paper: light, with every profile, and with a map of every area in a fixed size.

import { isShownWell } from "../model/bounds.js";
import { formatNumber } from "../model/format.js";
import { byId, element } from "./dom.js";

// The browser does not redraw a canvas for the paper's layout; it would stretch the map drawn for
// the screen. So the map is drawn in the size that it has on paper: within the margins of A4 and of
// Letter, of which two fit on a page.
const kPaperMap = { width: 680, height: 370 }; // pixels
const kPaperRatio = 3;                         // sharp enough for a printer
const kMostPaperMaps = 20;                     // of nine megabytes each

// `areas`: `{ title, bounds }` of each area.
export function listenToPrinting({ map, cards, mark, theme, areas }) {
  let screenView = null; // the view to return to
  addEventListener("beforeprint", () => {
    mark.clear();
    cards.drawAllCharts();
    theme.apply("light");
    if (screenView) // two events can come in a row
      return;
    screenView = { ...map.view };
    layOutForPaper(map, screenView);
    drawOtherAreas(map, areas);
  });
  addEventListener("afterprint", () => {
    theme.apply();
    byId("paper").replaceChildren();
    if (screenView)
      layOutForScreen(map, screenView);
    screenView = null;
  });
}

function layOutForPaper(map, screenView) {
  const { view } = map;
  Object.assign(map.box.style,
    { flex: "none", width: `${kPaperMap.width}px`, height: `${kPaperMap.height}px` });
  map.measure();
  view.setScale(screenView.scale *
    Math.min(view.width / screenView.width, view.height / screenView.height));
  map.draw(kPaperRatio);
}

// Adds a map for each area that the reader does not see anyway.
function drawOtherAreas(map, areas) {
  const chosenView = { ...map.view };
  const others = areas.filter(({ bounds }) => !isShownWell(bounds, map.view));
  for (const { title, bounds } of others.slice(0, kMostPaperMaps)) {
    map.view.fit(bounds);
    map.draw(kPaperRatio);
    byId("paper").append(element("section", {}, element("h2", { textContent: title }),
      copyOfMap(map)));
  }
  if (others.length > kMostPaperMaps)
    byId("paper").append(element("p", { textContent:
      `${formatNumber(others.length - kMostPaperMaps)} more areas have no map on paper.` }));
  Object.assign(map.view, chosenView);
  map.draw(kPaperRatio);
}

// A copy of what the map shows. A canvas is copied without its picture.
function copyOfMap({ box, canvas }) {
  const copy = element("div", { className: "map" });
  Object.assign(copy.style, { width: box.style.width, height: box.style.height });
  const picture = element("canvas", { width: canvas.width, height: canvas.height });
  picture.getContext("2d").drawImage(canvas, 0, 0);
  copy.append(picture);
  for (const part of box.querySelectorAll(".north, .scale, .attribution")) {
    const twin = part.cloneNode(true);
    twin.removeAttribute("id");
    copy.append(twin);
  }
  return copy;
}

function layOutForScreen(map, screenView) {
  Object.assign(map.box.style, { flex: "", width: "", height: "" });
  Object.assign(map.view, screenView);
  map.measure();
}
