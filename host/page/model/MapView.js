// SPDX-License-Identifier: MIT
// The visible part of the map: an equirectangular projection at the latitude of the map's middle,
// north up. Converts between degrees and pixels.

import { isEmpty } from "./bounds.js";
import { radians } from "./geodesy.js";

const kMaxScale = 4e6;          // about 36 pixels per metre
const kMinParallelScale = 0.02; // at the poles a degree of longitude has no length
const kMinExtent = 0.003;       // degrees: a single point is shown with its surroundings
const kMaxMargin = 56;          // pixels around the bounds that fit() shows

export class MapView {
  constructor(width = 1, height = 1) {
    this.x = 0; // the middle, in degrees
    this.latitude = 0;
    this.scale = 1; // pixels per degree of latitude
    this.width = width; // pixels
    this.height = height;
  }

  // The length of a degree of longitude, relative to one of latitude.
  get parallelScale() {
    return Math.max(Math.cos(radians(this.latitude)), kMinParallelScale);
  }

  toPixelX(x) {
    return this.width / 2 + (x - this.x) * this.scale * this.parallelScale;
  }

  toPixelY(latitude) {
    return this.height / 2 - (latitude - this.latitude) * this.scale;
  }

  fromPixelX(px) {
    return this.x + (px - this.width / 2) / (this.scale * this.parallelScale);
  }

  fromPixelY(py) {
    return this.latitude - (py - this.height / 2) / this.scale;
  }

  contains(px, py) {
    return px >= 0 && px <= this.width && py >= 0 && py <= this.height;
  }

  // At the smallest scale, two globes fit side by side.
  setScale(scale) {
    this.scale = Math.min(Math.max(scale, this.width / 720, 1), kMaxScale);
  }

  // Shows all of `bounds`, as large as possible. Does nothing if they are empty.
  fit(bounds) {
    if (isEmpty(bounds))
      return;
    this.x = (bounds.west + bounds.east) / 2;
    this.latitude = (bounds.south + bounds.north) / 2;
    const margin = Math.min(kMaxMargin, this.width / 8);
    const across = Math.max(bounds.east - bounds.west, kMinExtent) * this.parallelScale;
    const down = Math.max(bounds.north - bounds.south, kMinExtent);
    this.setScale(
      Math.min((this.width - 2 * margin) / across, (this.height - 2 * margin) / down));
  }

  // Keeps the point under (px, py) where it is.
  zoomAt(factor, px, py) {
    const x = this.fromPixelX(px), latitude = this.fromPixelY(py);
    this.setScale(this.scale * factor);
    this.setLatitude(latitude + (py - this.height / 2) / this.scale);
    this.x = x - (px - this.width / 2) / (this.scale * this.parallelScale);
  }

  // Moves the map's content by pixels.
  panBy(dx, dy) {
    this.x -= dx / (this.scale * this.parallelScale);
    this.setLatitude(this.latitude + dy / this.scale);
  }

  setLatitude(latitude) {
    this.latitude = Math.min(Math.max(latitude, -90), 90);
  }
}
