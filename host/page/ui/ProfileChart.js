// SPDX-License-Identifier: MIT
// The chart in a track's card: elevation and speed along the way, with a cursor at the marked
// point. It is drawn when it is first needed: a page can have hundreds of tracks.

import { shortName } from "../model/labels.js";
import {
  distanceTicks, indexAtDistance, kPlotKinds, kPlotWidth, plotOf, trackLength,
} from "../model/profile.js";
import { element, svgElement } from "./dom.js";

export class ProfileChart {
  constructor(track, mark) {
    this.element = element("div", {
      className: "chart", tabIndex: 0, role: "slider",
      "aria-label": `Profile of ${shortName(track.name)}`,
      "aria-valuemin": 0, "aria-valuemax": Math.max(track.count - 1, 0), "aria-valuenow": 0,
    });
    this.isDrawn = false;
    this.track_ = track;
    this.mark_ = mark;
    this.plots_ = [];
    this.cursor_ = element("i", { className: "cursor", hidden: true });
  }

  get hasPlots() {
    return this.plots_.length > 0;
  }

  // Replaces the chart with a sentence if there is nothing to plot.
  draw() {
    if (this.isDrawn)
      return;
    this.isDrawn = true;
    const length = trackLength(this.track_);
    this.plots_ = kPlotKinds.map((kind) => plotElement(this.track_, kind)).filter(Boolean);
    if (!this.hasPlots) {
      this.element.replaceWith(element("p", { className: "no-profile", textContent: length > 0 ?
        "This track has neither elevations nor times." :
        "A track without length has no profile." }));
      return;
    }
    this.element.append(...this.plots_.map(({ box }) => box), distanceAxis(length), this.cursor_);
    this.listenToPointer_();
    this.listenToKeys_();
  }

  // `text` describes the point for assistive technology. The chart must have plots.
  showCursor(index, text) {
    this.cursor_.hidden = false;
    this.cursor_.style.left = percent(this.track_.distance[index] / trackLength(this.track_));
    for (const { spot } of this.plots_)
      spot.show(index);
    this.element.setAttribute("aria-valuenow", index);
    this.element.setAttribute("aria-valuetext", text);
  }

  hideCursor() {
    this.cursor_.hidden = true;
    for (const { spot } of this.plots_)
      spot.hide();
  }

  listenToPointer_() {
    const follow = (event) => {
      const box = this.element.getBoundingClientRect();
      const fraction = (event.clientX - box.left) / box.width;
      const index = indexAtDistance(this.track_, fraction * trackLength(this.track_));
      this.mark_.set(this.track_, index);
    };
    this.element.addEventListener("pointermove", follow);
    this.element.addEventListener("pointerdown", follow);
    this.element.addEventListener("pointerleave", (event) => {
      if (event.pointerType === "mouse")
        this.mark_.clear();
    });
  }

  listenToKeys_() {
    this.element.addEventListener("keydown", (event) => {
      if (event.key === "Escape")
        this.mark_.clear();
      const next = this.indexAfterKey_(event);
      if (next === null)
        return;
      event.preventDefault();
      this.mark_.set(this.track_, next);
    });
  }

  // The arrows move the mark by a hundredth of the track's points, with shift by one point. The
  // page keys move it by a tenth. Returns null for other keys.
  indexAfterKey_({ key, shiftKey }) {
    const last = this.track_.count - 1;
    const index = this.mark_.item === this.track_ ? this.mark_.index : 0;
    const share = { ArrowLeft: -0.01, ArrowRight: 0.01, PageDown: -0.1, PageUp: 0.1 }[key];
    if (key === "Home" || key === "End")
      return key === "Home" ? 0 : last;
    if (!share)
      return null;
    const isPage = Math.abs(share) > 0.05;
    const stride = shiftKey && !isPage ? 1 : Math.max(1, Math.round(last * Math.abs(share)));
    return Math.min(Math.max(index + Math.sign(share) * stride, 0), last);
  }
}

function percent(fraction) {
  return `${100 * fraction}%`;
}

// One plot: its heading, ticks with labels, the filled area, the line and the spot that marks a
// point. Null if there is nothing to plot.
function plotElement(track, kind) {
  const plot = plotOf(track, kind);
  if (!plot)
    return null;
  const { height, key, unit } = kind;
  const svg = svgElement("svg", {
    viewBox: `0 0 ${kPlotWidth} ${height}`, preserveAspectRatio: "none", "aria-hidden": "true",
  });
  const frame = element("div", { className: "frame" }, svg);
  for (const { y, text } of plot.ticks) {
    svg.append(svgElement("line", { x1: 0, x2: kPlotWidth, y1: y, y2: y, class: "tick" }));
    const label = element("span", { textContent: text });
    label.style.top = percent(y / height);
    frame.append(label);
  }
  svg.append(svgElement("path", { d: plot.fill, class: "area" }),
    svgElement("path", { d: plot.stroke, class: "line" }));
  const spot = makeSpot(track, track[key], plot);
  frame.append(spot.element);
  const heading = element("p", { textContent: `${key} (${unit})` });
  return { box: element("div", { className: `plot ${key}` }, heading, frame), spot };
}

function makeSpot(track, values, { low, high }) {
  const spot = element("i", { className: "spot", hidden: true });
  return {
    element: spot,
    show(index) {
      spot.hidden = Number.isNaN(values[index]);
      spot.style.left = percent(track.distance[index] / trackLength(track));
      spot.style.top = percent(1 - (values[index] - low) / (high - low));
    },
    hide() {
      spot.hidden = true;
    },
  };
}

function distanceAxis(length) {
  return element("div", { className: "distances" }, ...distanceTicks(length).map((tick) => {
    const label = element("span", { textContent: tick.text });
    label.style.left = percent(tick.fraction);
    return label;
  }));
}
