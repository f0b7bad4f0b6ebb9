// SPDX-License-Identifier: MIT
// Finds what a pointer on the map refers to.

const kTrackReach = 24; // pixels from the pointer
const kPointReach = 8;
const kPointBonus = 6;  // a point wins over a track unless its square distance is larger by 6^2

// Returns `{ item, index }` for the item nearest to a pixel, with the index of the track's nearest
// point; `item` is null if nothing is within reach. A waypoint wins over the track that it is on.
export function itemAt(px, py, view, { tracks, points }) {
  const best = { square: kTrackReach ** 2, item: null, index: 0 };
  for (const track of tracks)
    findNearestPoint(track, px, py, view, best);

  let nearest = best.square + kPointBonus ** 2, found = null;
  for (const point of points) {
    const square = (view.toPixelX(point.x) - px) ** 2 + (view.toPixelY(point.latitude) - py) ** 2;
    if (square < kPointReach ** 2 && square <= nearest) { // of two at one position, the upper one
      nearest = square;
      found = point;
    }
  }
  return found ? { item: found, index: 0 } : { item: best.item, index: best.index };
}

// Compares squares in pixels, with the projection written out: a track can have 100,000 points, and
// the pointer moves once a frame.
function findNearestPoint(track, px, py, view, best) {
  const x = view.fromPixelX(px), latitude = view.fromPixelY(py);
  const xScale = view.scale * view.parallelScale, yScale = view.scaleAt(latitude);
  for (let i = 0; i < track.count; ++i) {
    const dx = (track.x[i] - x) * xScale, dy = (track.latitude[i] - latitude) * yScale;
    const square = dx * dx + dy * dy;
    if (square < best.square) {
      best.square = square;
      best.item = track;
      best.index = i;
    }
  }
}
