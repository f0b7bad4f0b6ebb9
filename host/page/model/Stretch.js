// SPDX-License-Identifier: MIT
// The marked stretch of a track, from one of its points to another.

export class Stretch {
  constructor() {
    this.track = null;
    this.anchor = 0; // the index at which the reader began
    this.end = 0;    // the index at which they are; before or after the anchor
    this.listeners_ = [];
  }

  get from() {
    return Math.min(this.anchor, this.end);
  }

  get to() {
    return Math.max(this.anchor, this.end);
  }

  // Calls `listener(stretch)` whenever the stretch changes.
  onChange(listener) {
    this.listeners_.push(listener);
  }

  // Two equal indices clear the stretch.
  set(track, anchor, end) {
    Object.assign(this, { track: anchor === end ? null : track, anchor, end });
    for (const listener of this.listeners_)
      listener(this);
  }

  // Marks up to `end`: from the last stretch's anchor if that one ended at `index`, or else from
  // `index`.
  extend(track, index, end) {
    const goesOn = this.track === track && this.end === index;
    this.set(track, goesOn ? this.anchor : index, end);
  }

  clear() {
    if (this.track)
      this.set(null, 0, 0);
  }

  // Has the stretch shown again, after texts or the map have changed.
  refresh() {
    if (this.track)
      this.set(this.track, this.anchor, this.end);
  }
}
