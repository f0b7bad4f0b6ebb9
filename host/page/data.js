// SPDX-License-Identifier: MIT
// What came, from the page's data element: numbers unpacked into typed arrays, longitudes put side by side on one map.
"use strict";

const kEarthRadius = 6371008.8; // metres, the mean
const kHoleDegrees = 0.1;       // how finely the widest gap between longitudes is looked for

function radians(degrees) {
  return degrees * Math.PI / 180;
}

// Metres along the great circle (haversine).
function metresBetween(latitudeA, longitudeA, latitudeB, longitudeB) {
  const half = (a) => Math.sin(radians(a) / 2) ** 2;
  const h = half(latitudeB - latitudeA) +
    Math.cos(radians(latitudeA)) * Math.cos(radians(latitudeB)) * half(longitudeB - longitudeA);
  return 2 * kEarthRadius * Math.asin(Math.sqrt(Math.min(h, 1)));
}

function emptyLine(count) {
  return {
    count,
    latitude: new Float64Array(count),
    longitude: new Float64Array(count), // as the device has it
    x: new Float64Array(count),         // degrees on the map, which may go on past 180
    breaks: new Set(),                  // points that no line leads to
  };
}

function unpackTrack(raw, index) {
  const track = Object.assign(emptyLine(raw.points.length / 4), {
    kind: "track", index, name: raw.name || "Unnamed track", isOn: true,
    kilometres: raw.kilometres, first: raw.first, last: raw.last,
    ascent: raw.ascent, descent: raw.descent, moving: raw.moving,
  });
  track.elevation = new Float64Array(track.count);
  track.time = new Float64Array(track.count);
  track.distance = new Float64Array(track.count);
  const sums = [0, 0, 0, 0];
  for (let i = 0; i < track.count; ++i) {
    for (let column = 0; column < 4; ++column)
      sums[column] += raw.points[4 * i + column] ?? 0;
    track.latitude[i] = sums[0] / 1e6;
    track.longitude[i] = sums[1] / 1e6;
    track.elevation[i] = raw.points[4 * i + 2] === null || raw.ascent === null ? NaN : sums[2] / 10;
    track.time[i] = raw.points[4 * i + 3] === null ? NaN : sums[3];
    track.distance[i] = i === 0 ? 0 : track.distance[i - 1] +
      metresBetween(track.latitude[i - 1], track.longitude[i - 1], track.latitude[i], track.longitude[i]);
  }
  track.speed = speedsOf(track);
  return track;
}

// Metres a second at each timed point, over the nearest half minute: from fix to fix a receiver's positions waver too much.
function speedsOf(track) {
  const speed = new Float64Array(track.count).fill(NaN);
  const timed = [];
  for (let i = 0; i < track.count; ++i) {
    if (track.time[i] > (timed.length ? track.time[timed[timed.length - 1]] : -Infinity))
      timed.push(i);
  }
  let from = 0, to = 0;
  for (let at = 0; at < timed.length; ++at) {
    const now = track.time[timed[at]];
    while (from + 1 < at && track.time[timed[from + 1]] <= now - 15)
      ++from;
    while (to < timed.length - 1 && (to <= at || track.time[timed[to]] < now + 15))
      ++to;
    const a = timed[Math.min(from, at)], b = timed[to];
    if (b !== a)
      speed[timed[at]] = (track.distance[b] - track.distance[a]) / (track.time[b] - track.time[a]);
  }
  return speed;
}

function unpackPlace(raw, kind) {
  const [latitude, longitude, elevation, time] = raw.at;
  return {
    ...raw, kind, name: raw.name || "Unnamed", latitude: latitude / 1e6, longitude: longitude / 1e6,
    elevation: elevation === null ? NaN : elevation / 10, time: time ?? NaN,
  };
}

function unpackRoute(raw, index) {
  const places = raw.places.map((place) => unpackPlace(place, "route"));
  const route = Object.assign(emptyLine(places.length), {
    kind: "route", index, name: raw.name || "Unnamed route", comment: raw.comment, kilometres: raw.kilometres, places,
  });
  places.forEach((place, i) => {
    route.latitude[i] = place.latitude;
    route.longitude[i] = place.longitude;
  });
  return route;
}

// The longitude at which the map begins: near the end of the widest gap that nothing lies in. Not at the very end: a place that
// lies there by its number may lie before it by rounding, and would be put all the way around the globe.
function westernEdge(longitudes) {
  const bins = Math.round(360 / kHoleDegrees);
  const isUsed = new Uint8Array(bins);
  for (const list of longitudes)
    for (const longitude of list)
      isUsed[Math.floor((longitude + 360) / kHoleDegrees) % bins] = 1;
  let edge = -180, widest = 0, gap = 0;
  for (let i = 0; i < 2 * bins; ++i) {
    if (!isUsed[i % bins]) {
      ++gap;
    } else {
      if (gap > widest && gap < bins) {
        widest = gap;
        edge = (i - 0.5) * kHoleDegrees;
      }
      gap = 0;
    }
  }
  return edge;
}

function fromEdge(edge, longitude) {
  return edge + (((longitude - edge) % 360) + 360) % 360;
}

// Follows a line from point to point, so that it goes on over the date line. At a pole it is cut: there the map's points lie
// far apart that are close on the globe.
function layOut(line, edge) {
  for (let i = 0; i < line.count; ++i) {
    const x = fromEdge(edge, line.longitude[i]);
    const near = i === 0 ? x : x + 360 * Math.round((line.x[i - 1] - x) / 360);
    const isOverPole = i > 0 && Math.abs(near - line.x[i - 1]) > 60 &&
      Math.max(Math.abs(line.latitude[i]), Math.abs(line.latitude[i - 1])) > 75;
    line.x[i] = isOverPole ? x : near;
    if (isOverPole)
      line.breaks.add(i);
  }
}

function unpack(raw) {
  const held = {
    note: raw.note,
    tracks: raw.tracks.map(unpackTrack),
    routes: raw.routes.map(unpackRoute),
    waypoints: raw.waypoints.map((place) => unpackPlace(place, "waypoint")),
    geocaches: raw.geocaches.map((place) => unpackPlace(place, "geocache")),
  };
  const lines = [...held.tracks, ...held.routes];
  const places = [...held.waypoints, ...held.geocaches];
  const edge = westernEdge([...lines.map((line) => line.longitude), places.map((place) => place.longitude)]);
  for (const line of lines)
    layOut(line, edge);
  for (const place of places)
    place.x = fromEdge(edge, place.longitude);
  for (const route of held.routes)
    route.places.forEach((place, i) => { place.x = route.x[i]; });
  return held;
}

const held = unpack(JSON.parse(document.getElementById("data").textContent));
