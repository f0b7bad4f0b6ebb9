// SPDX-License-Identifier: MIT
// The order of the track cards: those in the shown area first, each group by date.

import { contains } from "./bounds.js";

// Compares two tracks by their first times. Those without times are last, in the receiver's order.
export function byDate(a, b) {
  const timeA = a.first ?? Infinity, timeB = b.first ?? Infinity;
  return timeA === timeB ? a.index - b.index : timeA - timeB;
}

// Returns the tracks that start within `bounds` and the others.
export function orderTracks(tracks, bounds) {
  const sorted = [...tracks].sort(byDate);
  const isHere = ({ count, x, latitude }) => count > 0 && contains(bounds, x[0], latitude[0]);
  return {
    here: sorted.filter(isHere),
    elsewhere: sorted.filter((track) => !isHere(track)),
  };
}
