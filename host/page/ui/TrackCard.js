// SPDX-License-Identifier: MIT
// The card of one track: its switch, its figures and its profile.

import { stretchFigures, trackFigures } from "../model/figures.js";
import {
  durationText, isKnown, kilometresText, metresText, slopeText, speedText,
} from "../model/format.js";
import { readingText, timeSpanText } from "../model/itemTexts.js";
import { shortName } from "../model/labels.js";
import { trackColour, trackDash } from "../model/trackStyle.js";
import { element, nameElement, svgElement } from "./dom.js";
import { ProfileChart } from "./ProfileChart.js";

export class TrackCard {
  // `onSwitch()` is called after the track was shown or hidden, `onShow(track)` when the reader
  // wants to see it on the map.
  constructor(track, { mark, stretch }, { onSwitch, onShow }) {
    this.track = track;
    this.chart = new ProfileChart(track, mark, stretch);
    this.figures_ = null; // computed when the card comes into view
    this.list_ = element("dl");
    this.stretch_ = element("p", { className: "stretch", role: "status", hidden: true });
    this.checkbox_ = element("input", { type: "checkbox", checked: true });
    this.checkbox_.addEventListener("change", () => {
      this.setShown(this.checkbox_.checked);
      onSwitch();
    });
    this.reading_ = element("p", { className: "reading", textContent: timeSpanText(track) });
    this.element = element("article", { className: "track", id: `track-${track.index}` },
      this.makeHeader_(onShow), this.list_, this.chart.element, this.reading_, this.stretch_);
    this.element.style.setProperty("--line", `var(${trackColour(track)})`);
    this.showFigures_();
  }

  // Completes a card that comes into view.
  draw() {
    this.prepare();
    this.chart.draw();
  }

  // Computes the figures. Also before the card comes into view, for those who search the page or
  // listen to it.
  prepare() {
    if (this.figures_)
      return;
    this.figures_ = trackFigures(this.track);
    this.showFigures_();
  }

  // Shows everything again, in other units or along another axis.
  redraw(axisName) {
    const wasDrawn = this.chart.isDrawn;
    this.chart.reset(axisName);
    this.showFigures_();
    if (wasDrawn)
      this.chart.draw();
  }

  // Shows the figures of the marked stretch, if it is one of this track.
  showStretch({ track, from, to }) {
    const isOurs = track === this.track;
    this.stretch_.hidden = !isOurs;
    this.stretch_.replaceChildren(...(isOurs ? stretchTexts(stretchFigures(track, from, to)) : []));
    this.chart.showBand(isOurs ? from : 0, isOurs ? to : 0);
  }

  showFigures_() {
    const { track, figures_: known } = this;
    const laterText = (key, text) => known ? text(known[key]) : "…";
    const figures = [
      ["Length", kilometresText(track.kilometres)],
      ["Ascent", metresText(track.ascent)],
      ["Descent", metresText(track.descent)],
      ["Moving", durationText(track.moving)],
      ["Average moving", laterText("movingAverage", speedText)],
      ["Average", laterText("average", speedText)],
      ["Top speed", laterText("top", speedText)],
      ["Highest", laterText("highest", metresText)],
      ["Lowest", laterText("lowest", metresText)],
    ];
    this.list_.replaceChildren(...figures.map(([name, text]) => element("div", {},
      element("dt", { textContent: name }), element("dd", { textContent: text }))));
  }

  // Shows or hides the track.
  setShown(isShown) {
    this.track.isShown = this.checkbox_.checked = isShown;
    this.element.classList.toggle("off", !isShown);
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

function stretchTexts({ metres, seconds, ascent, descent, slope, average }) {
  const texts = [kilometresText(metres / 1000)];
  if (isKnown(seconds))
    texts.push(durationText(seconds), speedText(average));
  if (isKnown(ascent))
    texts.push(`${metresText(ascent)} up, ${metresText(descent)} down`,
      `mean slope ${slopeText(slope)}`);
  return [element("b", { textContent: "Stretch: " }), texts.join(" · ")];
}
