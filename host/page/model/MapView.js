// SPDX-License-Identifier: MIT
// The visible part of the map: an equirectangular projection at the latitude of the map's middle,
// or the Mercator projection of map tiles; north up. Converts between degrees and pixels. In the
// middle, both projections have the same scale.

import { isEmpty } from "./bounds.js";
import { radians } from "./geodesy.js";
import { latitudeOf, northOf } from "./mercator.js";

const kMaxScale = 4e6;          // about 36 pixels per metre
const kMinParallelScale = 0.02; // at the poles a degree of longitude has no length
const kMinExtent = 0.003;       // degrees: a single point is shown with its surroundings
const kMercatorEnd = 88.5;      // degrees: the middle of the map is not nearer to a pole
const kMaxMargin = 56;          // pixels around the bounds that fit() shows

export class MapView {
  constructor(width = 1, height = 1) {
    this.x = 0; // the middle, in degrees
    this.latitude = 0;
    this.scale = 1; // pixels per degree of latitude, in the middle
    this.isMercator = false;
    this.width = width; // pixels
    this.height = height;
  }

  // The length of a degree of longitude, relative to one of latitude.
  get parallelScale() {
    return Math.max(Math.cos(radians(this.latitude)), kMinParallelScale);
  }

  // Changes the projection around the middle of the map.
  useMercator(isMercator) {
    this.isMercator = isMercator;
    this.setLatitude(this.latitude);
    this.setScale(this.scale);
  }

  // Pixels per degree of latitude where the map shows `latitude`.
  scaleAt(latitude) {
    return this.isMercator ?
      this.scale * this.parallelScale / Math.max(Math.cos(radians(latitude)), kMinParallelScale) :
      this.scale;
  }

  toPixelX(x) {
    return this.width / 2 + (x - this.x) * this.scale * this.parallelScale;
  }

  toPixelY(latitude) {
    return this.height / 2 - (this.north_(latitude) - this.north_(this.latitude)) * this.yScale_;
  }

  fromPixelX(px) {
    return this.x + (px - this.width / 2) / (this.scale * this.parallelScale);
  }

  fromPixelY(py) {
    return this.latitudeOf_(this.north_(this.latitude) - (py - this.height / 2) / this.yScale_);
  }

  contains(px, py) {
    return px >= 0 && px <= this.width && py >= 0 && py <= this.height;
  }

  // At the smallest scale, two globes fit side by side.
  setScale(scale) {
    const least = Math.max(this.width / 720, 1) / (this.isMercator ? this.parallelScale : 1);
    this.scale = Math.min(Math.max(scale, least), kMaxScale);
  }

  // Shows all of `bounds`, as large as possible. Does nothing if they are empty.
  fit(bounds) {
    if (isEmpty(bounds))
      return;
    this.x = (bounds.west + bounds.east) / 2;
    const south = this.north_(bounds.south), north = this.north_(bounds.north);
    this.setLatitude(this.latitudeOf_((south + north) / 2));
    const margin = Math.min(kMaxMargin, this.width / 8);
    const across = Math.max(bounds.east - bounds.west, kMinExtent) * this.parallelScale;
    const down = Math.max(north - south, kMinExtent) * this.yScale_ / this.scale;
    this.setScale(
      Math.min((this.width - 2 * margin) / across, (this.height - 2 * margin) / down));
  }

  // Keeps the point under (px, py) where it is.
  zoomAt(factor, px, py) {
    const x = this.fromPixelX(px), latitude = this.fromPixelY(py);
    this.setScale(this.scale * factor);
    this.moveTo_(this.north_(latitude) + (py - this.height / 2) / this.yScale_);
    this.x = x - (px - this.width / 2) / (this.scale * this.parallelScale);
  }

  // Moves the map's content by pixels.
  panBy(dx, dy) {
    this.x -= dx / (this.scale * this.parallelScale);
    this.moveTo_(this.north_(this.latitude) + dy / this.yScale_);
  }

  setLatitude(latitude) {
    const most = this.isMercator ? kMercatorEnd : 90;
    this.latitude = Math.min(Math.max(latitude, -most), most);
  }

  // A latitude as a distance from the equator on the map; there, a unit has `yScale_` pixels.
  north_(latitude) {
    return this.isMercator ? northOf(latitude) : latitude;
  }

  latitudeOf_(north) {
    return this.isMercator ? latitudeOf(north) : north;
  }

  get yScale_() {
    return this.isMercator ? this.scale * this.parallelScale : this.scale;
  }

  // On a Mercator map, the size of things stays the same however far it is moved.
  moveTo_(north) {
    const pixels = this.scale * this.parallelScale;
    this.setLatitude(this.latitudeOf_(north));
    if (this.isMercator)
      this.scale = pixels / this.parallelScale;
  }
}
