// SPDX-License-Identifier: MIT
// The card of one track: its switch, its figures and its profile.

import { durationText, kilometresText, metresText } from "../model/format.js";
import { readingText, timeSpanText } from "../model/itemTexts.js";
import { shortName } from "../model/labels.js";
import { trackColour, trackDash } from "../model/trackStyle.js";
import { element, nameElement, svgElement } from "./dom.js";
import { ProfileChart } from "./ProfileChart.js";

export class TrackCard {
  // `onSwitch()` is called after the track was shown or hidden, `onShow(track)` when the reader
  // wants to see it on the map.
  constructor(track, mark, { onSwitch, onShow }) {
    this.track = track;
    this.chart = new ProfileChart(track, mark);
    this.checkbox_ = element("input", { type: "checkbox", checked: true });
    this.checkbox_.addEventListener("change", () => {
      track.isShown = this.checkbox_.checked;
      this.element.classList.toggle("off", !track.isShown);
      onSwitch();
    });
    this.reading_ = element("p", { className: "reading", textContent: timeSpanText(track) });
    this.element = element("article", { className: "track", id: `track-${track.index}` },
      this.makeHeader_(onShow), figuresElement(track), this.chart.element, this.reading_);
    this.element.style.setProperty("--line", `var(${trackColour(track)})`);
  }

  // Shows the track if it is hidden.
  switchOn() {
    if (!this.track.isShown)
      this.checkbox_.click();
  }

  // Shows the values of the marked point, if there is a profile to show it in.
  showReading(index) {
    this.element.classList.add("marked");
    if (!this.chart.hasPlots)
      return;
    const text = readingText(this.track, index);
    this.reading_.textContent = text;
    this.chart.showCursor(index, text);
  }

  hideReading() {
    this.element.classList.remove("marked");
    this.reading_.textContent = timeSpanText(this.track);
    this.chart.hideCursor();
  }

  makeHeader_(onShow) {
    const { track } = this;
    const button = element("button", {
      type: "button", className: "goto", title: "Show on the map", textContent: "Show",
      "aria-label": `Show ${shortName(track.name)} on the map`,
    });
    button.addEventListener("click", () => onShow(track));
    return element("header", {},
      element("h3", {},
        element("label", {}, this.checkbox_, swatch(track), nameElement(track.name))), button);
  }
}

// A piece of the track's line as it is on the map.
function swatch(track) {
  const dash = trackDash(track).map((length) => length * 0.8).join(" ");
  return svgElement("svg", { class: "swatch", viewBox: "0 0 28 10", "aria-hidden": "true" },
    svgElement("line", { x1: 2, x2: 26, y1: 5, y2: 5, "stroke-dasharray": dash }));
}

function figuresElement(track) {
  const figures = [
    ["Length", kilometresText(track.kilometres)],
    ["Ascent", metresText(track.ascent)],
    ["Descent", metresText(track.descent)],
    ["Moving", durationText(track.moving)],
  ];
  return element("dl", {}, ...figures.map(([name, text]) => element("div", {},
    element("dt", { textContent: name }), element("dd", { textContent: text }))));
}
