// SPDX-License-Identifier: MIT
// The marked point: the one that the reader points at, shown on the map and in a profile together.

export class Mark {
  constructor() {
    this.item = null; // a track, a waypoint, a geocache or a point of a route
    this.index = 0;   // of the track's point
    this.isPinned = false; // stays while the reader points elsewhere
    this.listeners_ = [];
  }

  // Calls `listener(item, index)` whenever the mark is set or cleared.
  onChange(listener) {
    this.listeners_.push(listener);
  }

  set(item, index = 0) {
    this.item = item;
    this.index = index;
    for (const listener of this.listeners_)
      listener(item, index);
  }

  // Marks and pins an item; null releases the mark.
  pin(item, index = 0) {
    this.isPinned = item !== null;
    this.set(item, index);
  }

  clear() {
    this.pin(null);
  }

  // Has the mark shown again, after texts or the map have changed.
  refresh() {
    if (this.item)
      this.set(this.item, this.index);
  }

  // What the pointer refers to, and that it refers to nothing any more. A pinned mark stays.
  point(item, index = 0) {
    if (!this.isPinned)
      this.set(item, index);
  }

  leave() {
    this.point(null);
  }
}
