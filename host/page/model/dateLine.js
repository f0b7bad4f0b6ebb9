// SPDX-License-Identifier: MIT
// Longitudes side by side on one map. The map starts in the widest gap between longitudes, and a
// line that crosses the date line continues past 180 degrees instead of jumping across the map.

export const kAroundTheWorld = 350; // degrees: the longest extent in one piece

const kBinDegrees = 0.1; // the resolution of the search for the widest gap

// Returns the longitude at which the map starts: inside the widest gap, half a bin before its
// eastern end. At the end itself, rounding could put the westernmost point just before the edge,
// and the map would show it all the way around the globe.
//
// `longitudeLists` holds arrays of longitudes from -180 to 180. The result is from -180 to below
// 180, and -180 if all arrays are empty.
export function westernEdge(longitudeLists) {
  const binCount = Math.round(360 / kBinDegrees);
  const isUsed = new Uint8Array(binCount);
  for (const list of longitudeLists)
    for (const longitude of list)
      isUsed[Math.floor((longitude + 360) / kBinDegrees) % binCount] = 1;

  let edge = -180, widest = 0, gap = 0;
  for (let i = 0; i < 2 * binCount; ++i) { // twice around, for a gap across 180 degrees
    if (!isUsed[i % binCount]) {
      ++gap;
      continue;
    }
    if (gap > widest && gap < binCount) {
      widest = gap;
      edge = (i - 0.5) * kBinDegrees;
    }
    gap = 0;
  }
  return edge - 360 * Math.floor((edge + 180) / 360);
}

// The longitude's position on a map that starts at `edge`: from `edge` to below `edge` + 360.
export function eastOfEdge(edge, longitude) {
  return edge + (((longitude - edge) % 360) + 360) % 360;
}

// Fills `line.x`, in one piece that starts or ends on the map if that is possible. A line around
// the world is cut at the edge, which it then does not leave.
export function layOutLine(line, edge) {
  layOutInOnePiece(line, edge);
  const [least, most] = line.x.reduce(([low, high], x) => [Math.min(low, x), Math.max(high, x)],
    [Infinity, -Infinity]);
  if (most - least > kAroundTheWorld)
    return cutAtEdge(line, edge);
  const shift = 360 * Math.floor(((least + most) / 2 - edge) / 360);
  if (shift !== 0) // also for a line without points
    line.x.forEach((x, i) => { line.x[i] = x - shift; });
}

function cutAtEdge(line, edge) {
  for (let i = 0; i < line.count; ++i) {
    line.x[i] = eastOfEdge(edge, line.longitude[i]);
    if (i > 0 && Math.abs(line.x[i] - line.x[i - 1]) > 180)
      line.breaks.add(i);
  }
}

// Each point is within 180 degrees of the previous one. Across a pole the line is cut by an entry
// in `line.breaks`: points that are close on the globe are far apart on the map there.
function layOutInOnePiece(line, edge) {
  for (let i = 0; i < line.count; ++i) {
    const x = eastOfEdge(edge, line.longitude[i]);
    const nearestX = i === 0 ? x : x + 360 * Math.round((line.x[i - 1] - x) / 360);
    const crossesPole = i > 0 && Math.abs(nearestX - line.x[i - 1]) > 60 &&
      Math.max(Math.abs(line.latitude[i]), Math.abs(line.latitude[i - 1])) > 75;
    line.x[i] = crossesPole ? x : nearestX;
    if (crossesPole)
      line.breaks.add(i);
  }
}
