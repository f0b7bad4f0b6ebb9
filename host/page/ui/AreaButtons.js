// SPDX-License-Identifier: MIT
// The buttons above the map that go to a part of the world: to everything, to the areas with most
// points, and a list of the others. There are none if there is just one area.

import { positionText } from "../model/format.js";
import { byId, element } from "./dom.js";

const kMaxButtons = 7; // of areas; more would take too much of the map's height

export class AreaButtons {
  // Calls `onGo(bounds)`.
  constructor(areas, wholeBounds, onGo) {
    this.areas = areas.map(({ place, bounds }) =>
      ({ title: place || middleText(bounds), bounds }));
    this.box_ = byId("areas");
    this.others_ = null;
    this.onGo_ = onGo;
    if (areas.length < 2)
      return;
    for (const area of [{ title: "Everything", bounds: wholeBounds },
      ...this.areas.slice(0, kMaxButtons)])
      this.box_.append(this.makeButton_(area));
    if (areas.length > kMaxButtons)
      this.box_.append(this.makeList_(this.areas.slice(kMaxButtons)));
  }

  // Goes to the area with most points.
  goToFirst() {
    const [first] = this.areas;
    this.go_(first.bounds, this.box_.children[1]);
  }

  // After the reader has moved the map: it shows something else.
  release() {
    for (const one of this.box_.querySelectorAll("button"))
      one.setAttribute("aria-pressed", false);
    if (this.others_)
      this.others_.value = "";
  }

  go_(bounds, button) {
    this.onGo_(bounds);
    button?.setAttribute("aria-pressed", true);
  }

  makeButton_({ title, bounds }) {
    const button = element("button",
      { type: "button", title, textContent: title, "aria-pressed": false });
    button.addEventListener("click", () => this.go_(bounds, button));
    return button;
  }

  makeList_(areas) {
    this.others_ = element("select", { "aria-label": "Other areas" },
      new Option(`${areas.length} more`, ""), ...areas.map(({ title }, i) => new Option(title, i)));
    this.others_.addEventListener("change", () => {
      const chosen = this.others_.value;
      if (chosen === "")
        return;
      this.go_(areas[chosen].bounds);
      this.others_.value = chosen; // going there has released it
    });
    return this.others_;
  }
}

function middleText({ west, east, south, north }) {
  return positionText((south + north) / 2, (west + east) / 2, 1);
}
