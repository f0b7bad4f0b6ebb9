// SPDX-License-Identifier: MIT
// The pictures of waypoints in tables and in the legend, with their meanings.

import { iconLegend, kIconSize } from "../model/icons.js";
import { byId, element, svgElement } from "./dom.js";

export function iconElement(path) {
  return svgElement("svg",
    { class: "icon", viewBox: `0 0 ${kIconSize} ${kIconSize}`, "aria-hidden": "true" },
    svgElement("path", { d: path, "fill-rule": "evenodd" }));
}

// A diamond with a tick cut out.
function foundElement() {
  const made = iconElement("M8 0l8 8-8 8-8-8zM4.8 6.6L3.4 8l3.2 3.2 6-6-1.4-1.4-4.6 4.6z");
  made.classList.add("found");
  return made;
}

// Shows a legend below the map, if there is anything to explain.
export function showSymbols({ waypoints, geocaches }) {
  const rows = iconLegend(waypoints).map(({ path, text }) =>
    element("li", {}, iconElement(path), element("bdi", { textContent: text })));
  if (geocaches.some(({ found }) => found))
    rows.push(element("li", {}, foundElement(), "Geocache that was found"));
  if (rows.length > 0)
    byId("switches").append(element("details", { id: "symbols" },
      element("summary", {}, "Symbols"), element("ul", {}, ...rows)));
}
