// SPDX-License-Identifier: MIT
// Everything that the page shows, unpacked from the page's data element into typed arrays. The
// format of the data is described in host/formats/HtmlWriter.h.
//
// A collection holds items: tracks and routes, which are lines, and waypoints and geocaches, which
// are points. `item.kind` is "track", "route", "waypoint" or "geocache"; the points of a route have
// the kind "route point". Numbers that are not known are NaN, or null where they come from the data
// unchanged.

import { contains } from "./bounds.js";
import { eastOfEdge, kAroundTheWorld, layOutLine, westernEdge } from "./dateLine.js";
import { unpackDigits } from "./digits.js";
import { metresBetween } from "./geodesy.js";
import { iconFinder } from "./icons.js";
import { speedsOf } from "./rates.js";

const kHalfUnit = 0.5e-6; // degrees: the points at the bounds are within them, however they round

export function unpackCollection(raw) {
  const collection = {
    note: raw.note, title: raw.title, receiver: raw.receiver, identifier: raw.identifier,
    made: raw.made, tiles: raw.tiles,
    tracks: raw.tracks.map(unpackTrack),
    routes: raw.routes.map(unpackRoute),
    waypoints: raw.waypoints.map((point) => unpackPoint(point, "waypoint")),
    geocaches: raw.geocaches.map((point) => unpackPoint(point, "geocache")),
  };
  const edge = layOut(collection);
  collection.areas = raw.areas.map((area) => unpackArea(area, edge));
  collection.places = raw.places.map((place) => unpackPlace(place, collection.areas));
  collection.land = raw.land.map(unpackLand);
  const iconOf = iconFinder(raw.icons);
  for (const waypoint of collection.waypoints)
    waypoint.icon = iconOf(waypoint.symbol);
  for (const item of [...collection.waypoints, ...collection.geocaches,
    ...collection.routes.flatMap((route) => route.points)])
    item.zone = zoneAt(collection.areas, item);
  return collection;
}

// A name of nothing but spaces and joiners cannot be seen.
function nameOr(name, substitute) {
  return /[^\s\u200c\u200d]/.test(name) ? name : substitute;
}

function emptyLine(count) {
  return {
    count,
    latitude: new Float64Array(count),
    longitude: new Float64Array(count), // from the device: -180 to 180
    x: new Float64Array(count),         // on the map, in degrees: can exceed 180
    breaks: new Set(),                  // indices of points that no line leads to
  };
}

function unpackTrack(raw, index) {
  const { kilometres, first, last, ascent, descent, moving, place, zone } = raw;
  const track = {
    kind: "track", index, name: nameOr(raw.name, "Unnamed track"), isShown: true,
    kilometres, first, last, ascent, descent, moving, place, zone,
    ...emptyLine(raw.points.length / 4),
  };
  track.breaks = new Set(raw.breaks);
  track.elevation = new Float64Array(track.count); // metres
  track.time = new Float64Array(track.count);      // seconds since 1970-01-01 UTC
  track.distance = new Float64Array(track.count);  // metres from the start
  unpackTrackPoints(track, raw.points);
  track.speed = speedsOf(track);
  return track;
}

// Each number is the difference from the last one in its column that is not null.
function unpackTrackPoints(track, numbers) {
  // A receiver without elevations writes 0 in every point. Such a track has no ascent.
  const hasElevations = track.ascent !== null;
  const sums = [0, 0, 0, 0];
  for (let i = 0; i < track.count; ++i) {
    for (let column = 0; column < 4; ++column)
      sums[column] += numbers[4 * i + column] ?? 0;
    track.latitude[i] = sums[0] / 1e6;
    track.longitude[i] = sums[1] / 1e6;
    track.elevation[i] = hasElevations && numbers[4 * i + 2] !== null ? sums[2] / 10 : NaN;
    track.time[i] = numbers[4 * i + 3] === null ? NaN : sums[3];
    track.distance[i] = i === 0 ? 0 : track.distance[i - 1] + stepTo(track, i);
  }
}

// The metres from the point before. No way leads across a break.
function stepTo({ latitude, longitude, breaks }, i) {
  return breaks.has(i) ? 0 :
    metresBetween(latitude[i - 1], longitude[i - 1], latitude[i], longitude[i]);
}

function unpackPoint(raw, kind) {
  const [latitude, longitude, elevation, time] = raw.at;
  return {
    ...raw, kind, name: nameOr(raw.name, "Unnamed"),
    latitude: latitude / 1e6, longitude: longitude / 1e6,
    elevation: elevation === null ? NaN : elevation / 10, time: time ?? NaN,
  };
}

function unpackRoute(raw, index) {
  const { comment, kilometres } = raw;
  const points = raw.points.map((point) => unpackPoint(point, "route point"));
  const route = {
    kind: "route", index, name: nameOr(raw.name, "Unnamed route"), comment, kilometres, points,
    ...emptyLine(points.length),
  };
  points.forEach((point, i) => {
    route.latitude[i] = point.latitude;
    route.longitude[i] = point.longitude;
  });
  return route;
}

// A part of the world with points: where it is in words, its time zone and its bounds on the map.
function unpackArea({ place, zone, bounds }, edge) {
  const [west, south, east, north] = bounds.map((millionths) => millionths / 1e6);
  const isAroundTheWorld = east - west > kAroundTheWorld;
  const x = isAroundTheWorld ? edge : eastOfEdge(edge, west);
  return { place, zone, bounds: {
    west: x - kHalfUnit, east: x + east - west + kHalfUnit,
    south: south - kHalfUnit, north: north + kHalfUnit,
  } };
}

// Towns are around areas, so possibly west of where the map starts.
function unpackPlace({ name, at: [latitude, longitude] }, areas) {
  const turns = areas.map(({ bounds: { west, east } }) => {
    const middle = (west + east) / 2, x = longitude / 1e6;
    return x + 360 * Math.round((middle - x) / 360);
  });
  const distanceTo = (x) => Math.min(...areas.map(({ bounds: { west, east } }) =>
    Math.max(west - x, x - east, 0)));
  const x = turns.reduce((a, b) => distanceTo(b) < distanceTo(a) ? b : a);
  return { name, latitude: latitude / 1e6, x };
}

// The outlines of the land within `bounds`, as arrays of longitudes and latitudes in turn.
function unpackLand({ bounds, unit, outlines }) {
  const [west, south, east, north] = bounds.map((millionths) => millionths / 1e6);
  const unpackOutline = (text) => {
    const steps = unpackDigits(text);
    const outline = new Float64Array(steps.length), last = [0, 0];
    steps.forEach((step, i) => {
      last[i % 2] += step;
      outline[i] = (i % 2 === 0 ? west : south) + last[i % 2] * unit / 1e6;
    });
    return outline;
  };
  return { bounds: { west, east, south, north }, outlines: outlines.map(unpackOutline) };
}

// The time zone of a point; empty, which stands for UTC, if it is not in an area that is known.
function zoneAt(areas, { x, latitude }) {
  return areas.find(({ bounds }) => contains(bounds, x, latitude))?.zone ?? "";
}

// Gives every point its `x` on the map, and returns the longitude at which the map starts.
function layOut({ tracks, routes, waypoints, geocaches }) {
  const lines = [...tracks, ...routes];
  const points = [...waypoints, ...geocaches];
  const edge = westernEdge(
    [...lines.map((line) => line.longitude), points.map((point) => point.longitude)]);
  for (const line of lines)
    layOutLine(line, edge);
  for (const point of points)
    point.x = eastOfEdge(edge, point.longitude);
  for (const route of routes)
    route.points.forEach((point, i) => { point.x = route.x[i]; });
  return edge;
}
