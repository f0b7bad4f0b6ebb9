// SPDX-License-Identifier: MIT
// The chart in a track's card: elevation and speed along the way or over time, with a cursor at the
// marked point and the marked stretch. It is drawn when it is first needed: there can be hundreds.

import { axisOf, axisTicks, indexAt } from "../model/axis.js";
import { shortName } from "../model/labels.js";
import { kPlotKinds, kPlotWidth, plotOf, trackLength } from "../model/profile.js";
import { element, svgElement } from "./dom.js";

const kKeyHelp = "Arrows move along it, with shift they mark a stretch.";
const kDragStart = 5; // pixels

export class ProfileChart {
  constructor(track, mark, stretch) {
    this.element = element("div", {
      className: "chart", tabIndex: 0, role: "slider",
      "aria-label": `Profile of ${shortName(track.name)}. ${kKeyHelp}`,
      "aria-valuemin": 0, "aria-valuemax": Math.max(track.count - 1, 0), "aria-valuenow": 0,
    });
    this.isDrawn = false;
    this.axis = axisOf(track);
    this.track_ = track;
    this.mark_ = mark;
    this.stretch_ = stretch;
    this.plots_ = [];
    this.cursor_ = element("i", { className: "cursor", hidden: true });
    this.band_ = element("i", { className: "band", hidden: true });
    this.listenToPointer_();
    this.listenToKeys_();
  }

  get hasPlots() {
    return this.plots_.length > 0;
  }

  // Replaces the chart with a sentence if there is nothing to plot.
  draw() {
    if (this.isDrawn)
      return;
    this.isDrawn = true;
    const { axis, track_: track } = this;
    this.plots_ = kPlotKinds.map((kind) => plotElement(track, kind, axis)).filter(Boolean);
    if (!this.hasPlots) {
      this.element.replaceWith(element("p", { className: "no-profile",
        textContent: trackLength(track) > 0 ? "This track has neither elevations nor times." :
          "A track without length has no profile." }));
      return;
    }
    this.element.replaceChildren(...this.plots_.map(({ box }) => box), axisElement(axis),
      this.band_, this.cursor_);
  }

  // Has the chart drawn anew, along the axis "distance" or "time".
  reset(axisName) {
    this.axis = axisOf(this.track_, axisName);
    this.isDrawn = this.isDrawn && !this.hasPlots; // a sentence stays
    this.showBand(0, 0);
  }

  // `text` describes the point for assistive technology. The chart must have plots.
  showCursor(index, text) {
    this.cursor_.hidden = false;
    this.cursor_.style.left = this.percentAt_(index);
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

  // Shades the stretch between two points; none if they are the same.
  showBand(from, to) {
    this.band_.hidden = from === to;
    this.band_.style.left = this.percentAt_(from);
    this.band_.style.width =
      percent((this.axis.values[to] - this.axis.values[from]) / this.axis.length);
  }

  percentAt_(index) {
    return percent(this.axis.values[index] / this.axis.length);
  }

  indexOf_(event) {
    const box = this.element.getBoundingClientRect();
    return indexAt(this.axis, (event.clientX - box.left) / box.width * this.axis.length);
  }

  // Pointing marks, a click pins the mark, and dragging marks a stretch.
  listenToPointer_() {
    const { element: chart, mark_: mark, stretch_: stretch, track_: track } = this;
    let pressed = null; // where a drag may have begun
    const listen = (type, action) => chart.addEventListener(type, (event) => {
      if (this.hasPlots)
        action(event, this.indexOf_(event));
    });
    listen("pointerdown", (event, index) => {
      pressed = { x: event.clientX, index, isDrag: false };
      chart.setPointerCapture(event.pointerId);
      mark.point(track, index);
    });
    listen("pointermove", (event, index) => {
      mark.point(track, index);
      if (!pressed)
        return;
      pressed.isDrag = pressed.isDrag || Math.abs(event.clientX - pressed.x) >= kDragStart;
      if (pressed.isDrag)
        stretch.set(track, pressed.index, index);
    });
    listen("pointerup", (event, index) => {
      if (pressed && !pressed.isDrag) {
        stretch.clear();
        mark.pin(track, index);
      }
      pressed = null;
    });
    listen("pointercancel", () => { pressed = null; });
    listen("pointerleave", (event) => {
      if (event.pointerType === "mouse")
        mark.leave();
    });
  }

  // Shift marks the stretch from where the mark was.
  listenToKeys_() {
    const { mark_: mark, stretch_: stretch, track_: track } = this;
    this.element.addEventListener("keydown", (event) => {
      if (!this.hasPlots)
        return;
      const index = mark.item === track ? mark.index : 0;
      if (event.key === "Enter")
        mark.pin(track, index);
      const next = this.indexAfterKey_(event, index);
      if (next === null)
        return;
      event.preventDefault();
      if (event.shiftKey)
        stretch.extend(track, index, next);
      mark.set(track, next);
    });
  }

  // The arrows move the mark by a hundredth of the track's points, with the control key by one
  // point. The page keys move it by a tenth. Returns null for other keys.
  indexAfterKey_({ key, ctrlKey, altKey, metaKey }, index) {
    const last = this.track_.count - 1;
    if (altKey || metaKey)
      return null;
    if (key === "Home" || key === "End")
      return key === "Home" ? 0 : last;
    const share = { ArrowLeft: -0.01, ArrowRight: 0.01, PageDown: -0.1, PageUp: 0.1 }[key];
    if (!share)
      return null;
    const stride = ctrlKey ? 1 : Math.max(1, Math.round(last * Math.abs(share)));
    return Math.min(Math.max(index + Math.sign(share) * stride, 0), last);
  }
}

function percent(fraction) {
  return `${100 * fraction}%`;
}

// One plot: its heading, ticks with labels, the filled area, the line and the spot that marks a
// point. Null if there is nothing to plot.
function plotElement(track, kind, axis) {
  const plot = plotOf(track, kind, axis);
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
  const spot = makeSpot(axis, track[key], plot);
  frame.append(spot.element);
  const heading = element("p", { textContent: `${key} (${unit()})` });
  return { box: element("div", { className: `plot ${key}` }, heading, frame), spot };
}

function makeSpot(axis, values, { low, high }) {
  const spot = element("i", { className: "spot", hidden: true });
  return {
    element: spot,
    show(index) {
      spot.hidden = Number.isNaN(values[index]);
      spot.style.left = percent(axis.values[index] / axis.length);
      spot.style.top = percent(1 - (values[index] - low) / (high - low));
    },
    hide() {
      spot.hidden = true;
    },
  };
}

function axisElement(axis) {
  return element("div", { className: "distances" }, ...axisTicks(axis).map((tick) => {
    const label = element("span", { textContent: tick.text });
    label.style.left = percent(tick.fraction);
    return label;
  }));
}
