// SPDX-License-Identifier: MIT
// Figures of a track and of a stretch of it. Ascent, descent and moving time follow the same rules
// as in host/points/TrackFigures.h and TrackProfile.h; figures.txt and stretches.txt in
// tests/host/points/ hold both to the same numbers.

import { metresBetween } from "./geodesy.js";
import { isKnown } from "./format.js";
import { topSpeedOf } from "./rates.js";

const kTurn = 3;           // metres
const kSlowest = 0.2;      // metres per second
const kLongestStep = 300;  // seconds

// A change of direction counts in full, but only from kTurn on: a receiver's elevation wavers.
class Climb {
  constructor() {
    this.heading_ = 0; // 1: up, -1: down; 0 until the first turn, when both ends follow
    this.low_ = this.high_ = NaN; // of the current leg
    this.up_ = this.down_ = 0;    // of all earlier legs
  }

  get ascent() {
    return this.up_ + (this.heading_ > 0 ? this.high_ - this.low_ : 0);
  }

  get descent() {
    return this.down_ + (this.heading_ < 0 ? this.high_ - this.low_ : 0);
  }

  add(metres) {
    if (Number.isNaN(this.low_))
      this.low_ = this.high_ = metres;
    if (this.heading_ <= 0 && metres - this.low_ >= kTurn)
      this.turnUp_(metres);
    else if (this.heading_ >= 0 && this.high_ - metres >= kTurn)
      this.turnDown_(metres);
    else if (this.heading_ <= 0)
      this.low_ = Math.min(this.low_, metres);
    if (this.heading_ >= 0)
      this.high_ = Math.max(this.high_, metres);
  }

  turnUp_(metres) {
    if (this.heading_ < 0)
      this.down_ += this.high_ - this.low_;
    this.heading_ = 1;
    this.high_ = metres;
  }

  turnDown_(metres) {
    if (this.heading_ > 0)
      this.up_ += this.high_ - this.low_;
    this.heading_ = -1;
    this.low_ = metres;
  }
}

// The figures of the points from index `from` to index `to`, in metres, seconds and metres per
// second; `slope` is in metres per metre, `moving` in seconds. Unknown figures are NaN.
export function stretchFigures(track, from, to) {
  const metres = to > from ? track.distance[to] - track.distance[from] : 0;
  const { seconds, moving, movingMetres } = timesOf(track, from, to);
  return {
    metres, seconds, moving, ...heightsOf(track, from, to),
    average: seconds > 0 ? metres / seconds : NaN,
    movingAverage: moving > 0 ? movingMetres / moving : NaN,
  };
}

// The same for all of a track, with its `top` speed.
export function trackFigures(track) {
  return { ...stretchFigures(track, 0, track.count - 1), top: topSpeedOf(track) };
}

function heightsOf({ distance, elevation }, from, to) {
  let first = -1, last = -1, lowest = NaN, highest = NaN;
  const climb = new Climb();
  for (let i = from; i <= to; ++i) {
    const metres = elevation[i];
    if (Number.isNaN(metres))
      continue;
    if (first < 0)
      first = i;
    last = i;
    lowest = metres > lowest ? lowest : metres; // the comparison is false for the first
    highest = metres < highest ? highest : metres;
    climb.add(metres);
  }
  if (first < 0)
    return { ascent: NaN, descent: NaN, lowest, highest, slope: NaN };
  const length = distance[last] - distance[first];
  const slope = length > 0 ? (elevation[last] - elevation[first]) / length : NaN;
  return { ascent: climb.ascent, descent: climb.descent, lowest, highest, slope };
}

// `seconds` is from the earliest time to the latest: times can run backward.
function timesOf(track, from, to) {
  let earliest = Infinity, latest = -Infinity, moving = 0, movingMetres = 0, last = -1;
  for (let i = from; i <= to; ++i) {
    if (track.breaks.has(i))
      last = -1; // no way leads here
    const now = track.time[i];
    if (!isKnown(now))
      continue;
    earliest = Math.min(earliest, now);
    latest = Math.max(latest, now);
    const step = last < 0 ? 0 : now - track.time[last];
    if (step > 0 && step <= kLongestStep) {
      const metres = metresFrom(track, last, i);
      if (metres >= kSlowest * step) {
        moving += step;
        movingMetres += metres;
      }
    }
    last = i;
  }
  return earliest > latest ? { seconds: NaN, moving: NaN, movingMetres: 0 } :
    { seconds: latest - earliest, moving, movingMetres };
}

// Straight from one timed point to the next, past those without a time.
function metresFrom({ latitude, longitude, distance }, from, to) {
  return to === from + 1 ? distance[to] - distance[from] :
    metresBetween(latitude[from], longitude[from], latitude[to], longitude[to]);
}
