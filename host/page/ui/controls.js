// SPDX-License-Identifier: MIT
// The controls above and below the map: buttons that go to a part of the world, and switches for
// routes, waypoints and geocaches.

import { clock } from "../model/clock.js";
import { kClassCount } from "../model/colouring.js";
import { formatNumber, positionText } from "../model/format.js";
import { byId, element } from "./dom.js";

// Shows a button for everything and one for each of the largest areas, unless there is just one.
// Calls `onGo(bounds)`. Returns the areas that have a button, as `{ title, bounds }`.
export function showAreaButtons(areas, wholeBounds, onGo) {
  const shown = areas.map(({ place, bounds }) => ({ title: place || middleText(bounds), bounds }));
  if (areas.length < 2)
    return shown;
  const list = byId("areas");
  const add = (text, bounds, isPressed) => {
    const button = element("button",
      { type: "button", textContent: text, "aria-pressed": isPressed });
    button.addEventListener("click", () => {
      for (const other of list.children)
        other.setAttribute("aria-pressed", other === button);
      onGo(bounds);
    });
    list.append(button);
  };
  add("Everything", wholeBounds, false);
  shown.forEach(({ title, bounds }, i) => add(title, bounds, i === 0));
  return shown;
}

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

function middleText({ west, east, south, north }) {
  return positionText((south + north) / 2, (west + east) / 2, 1);
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

// Shows the colours of `colouring` with the values at both ends; nothing if it is null.
export function showLegend(colouring) {
  byId("legend")?.remove();
  if (!colouring)
    return;
  const [low, high] = colouring.legendTexts();
  const colours = Array.from({ length: kClassCount }, (_, i) => {
    const colour = element("i");
    colour.style.background = `var(--class-${i})`;
    return colour;
  });
  byId("switches").append(element("span", { id: "legend" }, low, ...colours, high));
}
