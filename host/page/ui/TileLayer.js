// SPDX-License-Identifier: MIT
// Map tiles below everything else on the map. Loads nothing before start().

import { keyOf, kTilePixels, parentOf, tilesFor, urlOf } from "../model/tiles.js";

const kDelay = 120;      // milliseconds without a movement after which tiles are loaded
const kMostImages = 400; // kept in memory
const kMostLevels = 6;   // how much larger a tile can be that takes the place of a missing one

export class TileLayer {
  // Calls `onLoad()` when the map has to be drawn again, and `onReport({ loading, failed, total })`
  // with counts of the tiles on the map.
  constructor(template, { onLoad, onReport }) {
    this.isOn = false;
    this.template_ = template;
    this.onLoad_ = onLoad;
    this.onReport_ = onReport;
    this.images_ = new Map(); // by the tile's key; the first was used longest ago
    this.wanted_ = [];
    this.timer_ = 0;
  }

  // Tiles that could not be loaded are tried again.
  start() {
    this.isOn = true;
    for (const [key, image] of this.images_)
      if (image.dataset.state === "failed")
        this.images_.delete(key);
  }

  stop() {
    this.isOn = false;
    clearTimeout(this.timer_);
  }

  draw(context, view) {
    if (!this.isOn)
      return;
    this.wanted_ = tilesFor(view);
    context.save();
    context.globalAlpha =
      Number(getComputedStyle(document.documentElement).getPropertyValue("--tile-opacity"));
    for (const tile of this.wanted_)
      this.drawTile_(context, tile);
    context.restore();
    clearTimeout(this.timer_);
    this.timer_ = setTimeout(() => this.load_(), kDelay);
    this.report_();
  }

  // Draws the tile, or its part of a larger one until it is there. On whole pixels, so that there
  // is no gap to the next tile.
  drawTile_(context, tile) {
    const left = Math.round(tile.left), top = Math.round(tile.top);
    const place = [left, top, Math.round(tile.left + tile.size) - left,
      Math.round(tile.top + tile.size) - top];
    for (let levels = 0; levels <= Math.min(kMostLevels, tile.zoom); ++levels) {
      const { x, y, size, ...larger } = parentOf(tile, levels);
      const image = this.images_.get(keyOf(larger));
      if (image?.dataset.state !== "here")
        continue;
      const scale = image.naturalWidth / kTilePixels; // tiles can be of a higher resolution
      context.drawImage(image, x * scale, y * scale, size * scale, size * scale, ...place);
      return;
    }
  }

  load_() {
    for (const tile of this.wanted_) {
      const key = keyOf(tile), image = this.images_.get(key) ?? this.begin_(tile);
      this.images_.delete(key);
      this.images_.set(key, image);
    }
    const spare = this.images_.size - Math.max(kMostImages, this.wanted_.length);
    for (const key of [...this.images_.keys()].slice(0, Math.max(spare, 0)))
      this.images_.delete(key);
  }

  begin_(tile) {
    const image = new Image();
    image.dataset.state = "loading";
    const end = (state) => {
      image.dataset.state = state;
      if (!this.isOn)
        return;
      this.report_();
      if (state === "here")
        this.onLoad_();
    };
    image.addEventListener("load", () => end("here"));
    image.addEventListener("error", () => end("failed"));
    image.setAttribute("src", urlOf(this.template_, tile));
    return image;
  }

  report_() {
    const states = this.wanted_.map((tile) => this.images_.get(keyOf(tile))?.dataset.state);
    const failed = states.filter((state) => state === "failed").length;
    const here = states.filter((state) => state === "here").length;
    this.onReport_({ loading: states.length - failed - here, failed, total: states.length });
  }
}
