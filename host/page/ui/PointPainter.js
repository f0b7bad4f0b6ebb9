// SPDX-License-Identifier: MIT
// Draws waypoints and geocaches on the map's canvas: with the picture of their symbol where there
// is room for it, as dots and diamonds otherwise. A geocache that was found has a tick.

import { kIconSize } from "../model/icons.js";
import { pointsWithRoom } from "../model/room.js";
import { themeColour } from "./dom.js";

const kFont = "12px system-ui, sans-serif";
const kRadius = 9;      // pixels of a disc with a picture, and of a diamond with a tick
const kPicture = 12;    // pixels of a picture
const kRoom = 15;       // pixels from one point to the next
const kSmallDot = 3.5;
const kSmallDiamond = 5.5;

export class PointPainter {
  constructor(context, view) {
    this.context_ = context;
    this.view_ = view;
    this.paths_ = new Map(); // by the text of the path
  }

  // Takes over the colours of the current theme. Before anything else is drawn.
  startFrame() {
    this.ink_ = themeColour("--ink");
    this.paper_ = themeColour("--paper");
    this.geocache_ = themeColour("--geocache");
  }

  // Returns the labels. Dots come last, so that no picture hides them.
  draw(waypoints, geocaches) {
    const roomy = pointsWithRoom([...geocaches, ...waypoints], this.view_, kRoom);
    const pictured = waypoints.filter((point) => point.icon && roomy.has(point));
    const ticked = geocaches.filter((cache) => cache.found && roomy.has(cache));
    const large = new Set([...pictured, ...ticked]);
    pictured.forEach((point) => this.drawPicture_(point));
    ticked.forEach((cache) => this.drawTick_(cache));
    for (const point of waypoints)
      if (!large.has(point))
        this.drawDot(point, kSmallDot, this.ink_);
    for (const cache of geocaches)
      if (!large.has(cache))
        this.drawDiamond_(cache, kSmallDiamond);
    return [...waypoints, ...geocaches].map((point) => ({
      name: point.name, x: point.x, latitude: point.latitude, colour: this.ink_, font: kFont,
      radius: large.has(point) ? kRadius : undefined,
    }));
  }

  drawDot({ x, latitude }, radius, fill) {
    const { context_: context, view_: view } = this;
    context.beginPath();
    context.arc(view.toPixelX(x), view.toPixelY(latitude), radius, 0, 2 * Math.PI);
    this.fillWithEdge_(fill);
  }

  drawPicture_(point) {
    const { context_: context, view_: view } = this;
    this.drawDot(point, kRadius, this.ink_);
    context.save();
    context.translate(view.toPixelX(point.x) - kPicture / 2,
      view.toPixelY(point.latitude) - kPicture / 2);
    context.scale(kPicture / kIconSize, kPicture / kIconSize);
    context.fillStyle = this.paper_;
    context.fill(this.pathOf_(point.icon), "evenodd");
    context.restore();
  }

  pathOf_(icon) {
    if (!this.paths_.has(icon))
      this.paths_.set(icon, new Path2D(icon));
    return this.paths_.get(icon);
  }

  drawTick_(cache) {
    const { context_: context, view_: view } = this;
    this.drawDiamond_(cache, kRadius);
    const px = view.toPixelX(cache.x), py = view.toPixelY(cache.latitude);
    context.beginPath();
    context.moveTo(px - 3.5, py);
    context.lineTo(px - 1, py + 2.5);
    context.lineTo(px + 3.5, py - 2.5);
    this.stroke_(this.paper_, 2);
  }

  drawDiamond_({ x, latitude }, radius) {
    const { context_: context, view_: view } = this;
    const px = view.toPixelX(x), py = view.toPixelY(latitude);
    context.beginPath();
    context.moveTo(px, py - radius);
    context.lineTo(px + radius, py);
    context.lineTo(px, py + radius);
    context.lineTo(px - radius, py);
    context.closePath();
    this.fillWithEdge_(this.geocache_);
  }

  fillWithEdge_(fill) {
    this.context_.fillStyle = fill;
    this.context_.fill();
    this.stroke_(this.paper_, 1.5);
  }

  stroke_(colour, width) {
    this.context_.strokeStyle = colour;
    this.context_.lineWidth = width;
    this.context_.setLineDash([]);
    this.context_.stroke();
  }
}
