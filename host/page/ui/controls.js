// SPDX-License-Identifier: MIT
// The controls of the page: the clock's, those of the layers below the map, and their legend.

import { clock } from "../model/clock.js";
import { kClassCount } from "../model/colouring.js";
import { formatNumber } from "../model/format.js";
import { byId, element } from "./dom.js";

// Calls `onSwitch()` when the reader has switched between the time of the place and UTC.
export function showClockButton(onSwitch) {
  const button = byId("clock");
  button.hidden = false;
  button.addEventListener("click", () => {
    clock.isUtc = !clock.isUtc;
    button.setAttribute("aria-pressed", clock.isUtc);
    onSwitch();
  });
}

// Calls `onSwitch(layer, isShown)`.
export function showLayerSwitches({ routes, waypoints, geocaches }, onSwitch) {
  const add = (layer, title, items, sign) => {
    if (items.length === 0)
      return;
    const checkbox = element("input", { type: "checkbox", checked: true });
    checkbox.addEventListener("change", () => onSwitch(layer, checkbox.checked));
    byId("switches").append(element("label", {}, checkbox,
      element("i", { className: `sign ${sign}` }), `${title} ${formatNumber(items.length)}`));
  };
  add("routes", "Routes", routes, "dashes");
  add("waypoints", "Waypoints", waypoints, "disc");
  add("geocaches", "Geocaches", geocaches, "diamond");
}

// Shows the colours of `colouring` with the values at both ends, and how a line without a value
// looks if there is one in `tracks`. Shows nothing if `colouring` is null.
export function showLegend(colouring, tracks) {
  byId("legend")?.remove();
  if (!colouring)
    return;
  const [low, high] = colouring.legendTexts();
  const colours = Array.from({ length: kClassCount }, (_, i) => {
    const colour = element("i");
    colour.style.background = `var(--class-${i})`;
    return colour;
  });
  const unknown = colouring.hasGaps(tracks) ?
    [element("span", { className: "unknown", textContent: "not known" })] : [];
  byId("colouring").append(
    element("span", { id: "legend" }, low, ...colours, high, ...unknown));
}
