// SPDX-License-Identifier: MIT
// Draws tracks on the map's canvas: lines in one colour or by a value, the marked stretch, start,
// end, direction and distances.

import { kClassCount, traceClasses } from "../model/colouring.js";
import { boxAround } from "../model/labels.js";
import { lineMarks } from "../model/lineMarks.js";
import { trackColour, trackDash } from "../model/trackStyle.js";
import { indicesBetween, traceLine, VisiblePoints } from "../model/visibleLines.js";
import { themeColour } from "./dom.js";

const kPiece = 16;           // points
const kEndHalf = 4;          // pixels: half the side of the square
const kUnknownDash = [1, 6]; // dots: no colour means that a value is not known

const kMarkFont = "10px system-ui, sans-serif";
const kNameFont = "600 12px system-ui, sans-serif";

export class TrackPainter {
  constructor(context, view) {
    this.highlighted = null; // the track that is drawn wider than and above the others
    this.stretch = null;
    this.colouring = null;   // null: each track has its colour
    this.context_ = context;
    this.view_ = view;
    this.visiblePoints_ = new VisiblePoints();
  }

  // Traces a line, also a route.
  trace(line) {
    this.context_.beginPath();
    traceLine(line, this.visiblePoints_.of(line, this.view_), this.view_, this.context_);
  }

  // Returns the labels, `names` and `distances`, and the boxes of the `ends`.
  draw(shownTracks) {
    const { highlighted } = this;
    this.paper_ = themeColour("--paper");
    const tracks = shownTracks.filter(({ count }) => count > 0);
    tracks.sort((a, b) => (a === highlighted) - (b === highlighted));
    this.classColours_ = Array.from({ length: this.colouring ? kClassCount : 0 },
      (_, i) => themeColour(`--class-${i}`));
    this.drawStretch_();
    const distances = [], names = [], ends = [];
    for (const track of tracks) {
      const colour = themeColour(trackColour(track));
      this.drawLine_(track, colour);
      distances.push(...this.drawMarks_(track, colour));
      ends.push(this.drawEnds_(track, colour));
      const { name, x, latitude } = track;
      names.push({ name, x: x[0], latitude: latitude[0], colour, font: kNameFont });
    }
    return { names, distances, ends };
  }

  drawLine_(track, colour) {
    const width = track === this.highlighted ? 4.5 : 2.75, dash = trackDash(track);
    this.strokeInPieces_(track, this.paper_, width + 3);
    if (this.colouring)
      this.strokeClasses_(track, width);
    else if (dash.length === 0)
      this.strokeInPieces_(track, colour, width);
    else {
      this.trace(track);
      this.stroke_(colour, width, dash);
    }
  }

  // The visible points in pieces, each of which begins with the last point of the one before. A
  // browser takes far longer for a path that crosses itself than for its pieces.
  pieces_(track) {
    const indices = this.visiblePoints_.of(track, this.view_), pieces = [];
    for (let k = 0; k < indices.length - 1; k += kPiece)
      pieces.push(indices.slice(k, k + kPiece + 1));
    return pieces;
  }

  strokeInPieces_(track, colour, width) {
    for (const piece of this.pieces_(track)) {
      this.context_.beginPath();
      traceLine(track, piece, this.view_, this.context_);
      this.stroke_(colour, width);
    }
  }

  strokeClasses_(track, width) {
    const classes = this.colouring.classesOf(track);
    for (const indices of this.pieces_(track)) {
      const paths = new Map();
      const penOf = (index) => {
        if (!paths.has(index))
          paths.set(index, new Path2D());
        return paths.get(index);
      };
      traceClasses(track, { indices, classes, view: this.view_, penOf });
      for (const [index, path] of paths)
        this.stroke_(this.classColours_[index] ?? themeColour("--soft"), width,
          index < kClassCount ? [] : kUnknownDash, path);
    }
  }

  // Below the lines, and wider, so that the line's colour stays to be seen.
  drawStretch_() {
    const { track, from, to } = this.stretch ?? {};
    if (!track?.isShown)
      return;
    this.context_.beginPath();
    traceLine(track, indicesBetween(this.visiblePoints_.of(track, this.view_), from, to),
      this.view_, this.context_);
    this.stroke_(themeColour("--soft"), 13);
    this.stroke_(this.paper_, 9);
  }

  // Arrows and distances between the ends.
  drawMarks_(track, colour) {
    const { context_: context, view_: view } = this;
    const { distances, arrows } = lineMarks(track, view);
    context.beginPath();
    for (const { px, py, angle } of arrows)
      this.traceArrow_(px, py, angle);
    this.stroke_(this.paper_, 4);
    this.stroke_(colour, 2);
    for (const { x, latitude } of distances)
      this.drawDisc_(x, latitude, 2.5, this.paper_, colour);
    return distances.map((mark) => ({ ...mark, colour, font: kMarkFont }));
  }

  // A disc at the start, a square at the end. On a small scale the disc is all there is to see of a
  // track. Returns the box of the end.
  drawEnds_({ count, x, latitude }, colour) {
    const { context_: context, view_: view } = this;
    const last = count - 1, px = view.toPixelX(x[last]), py = view.toPixelY(latitude[last]);
    context.beginPath();
    context.rect(px - kEndHalf, py - kEndHalf, 2 * kEndHalf, 2 * kEndHalf);
    this.fill_(colour, this.paper_);
    this.drawDisc_(x[0], latitude[0], 4, colour, this.paper_);
    return boxAround(px, py, kEndHalf, kEndHalf);
  }

  traceArrow_(px, py, angle) {
    const barb = (turn) => [px - 7 * Math.cos(angle + turn), py - 7 * Math.sin(angle + turn)];
    this.context_.moveTo(...barb(0.6));
    this.context_.lineTo(px, py);
    this.context_.lineTo(...barb(-0.6));
  }

  drawDisc_(x, latitude, radius, fill, edge) {
    const { context_: context, view_: view } = this;
    context.beginPath();
    context.arc(view.toPixelX(x), view.toPixelY(latitude), radius, 0, 2 * Math.PI);
    this.fill_(fill, edge);
  }

  fill_(colour, edge) {
    this.context_.fillStyle = colour;
    this.context_.fill();
    this.stroke_(edge, 1.5);
  }

  // Strokes what is traced, or `path`.
  stroke_(colour, width, dash = [], path = undefined) {
    const { context_: context } = this;
    context.strokeStyle = colour;
    context.lineWidth = width;
    context.setLineDash(dash);
    if (path)
      context.stroke(path);
    else
      context.stroke();
  }
}
