// SPDX-License-Identifier: MIT
// The columns of the page's four tables.
//
// A column has a `title`, `value(item)` to sort by, and `text(item)` to show; without `text`, the
// value is shown. Numbers are aligned to the right (`isNumber`), long texts are cut (`isLong`), a
// name shows its item on the map (`isName`), a hint is shown on request (`isHint`); `icon(item)`
// is the picture before a text.

import { dateTimeText, endTimeText, zoneText } from "./clock.js";
import {
  durationText, formatNumber, isKnown, kDash, kilometresText, latitudeText, longitudeText,
  metresText,
} from "./format.js";

// Returns the tables that have rows: `{ title, columns, items }`.
export function tablesOf({ tracks, routes, waypoints, geocaches }) {
  return [
    { title: "Tracks", columns: trackColumns, items: tracks },
    { title: "Routes", columns: routeColumns, items: routes },
    { title: "Waypoints", columns: waypointColumns, items: waypoints },
    { title: "Geocaches", columns: geocacheColumns, items: geocaches },
  ].filter(({ items }) => items.length > 0);
}

function textColumn(title, key, options = {}) {
  return { title, value: (item) => item[key], ...options };
}

function numberColumn(title, value, text) {
  return { title, value, text: (item) => text(value(item)), isNumber: true };
}

function timeColumn(title, value) {
  return { title, value, text: (item) => dateTimeText(value(item), item.zone) };
}

const nameColumn = textColumn("Name", "name", { isName: true });
const commentColumn = textColumn("Comment", "comment", { isLong: true });
const lengthColumn = numberColumn("Length", (line) => line.kilometres, kilometresText);
const pointsColumn = numberColumn("Points", (line) => line.count, formatNumber);

const positionColumns = [
  numberColumn("Latitude", (point) => point.latitude, latitudeText),
  numberColumn("Longitude", (point) => point.longitude, longitudeText),
  numberColumn("Elevation", (point) => point.elevation, metresText),
];

const trackColumns = [
  nameColumn,
  textColumn("Where", "place"),
  timeColumn("From", (track) => track.first),
  {
    title: "To", value: (track) => track.last,
    text: ({ first, last, zone }) => endTimeText(first, last, zone),
  },
  { title: "Time zone", value: (track) => isKnown(track.first) ? zoneText(track.zone) : "" },
  numberColumn("Time span", timeSpan, durationText),
  numberColumn("Moving", (track) => track.moving, durationText),
  lengthColumn,
  numberColumn("Ascent", (track) => track.ascent, metresText),
  numberColumn("Descent", (track) => track.descent, metresText),
  pointsColumn,
];

const routeColumns = [nameColumn, lengthColumn, pointsColumn, commentColumn];

const waypointColumns = [
  nameColumn,
  ...positionColumns,
  textColumn("Symbol", "symbol", { icon: (waypoint) => waypoint.icon }),
  commentColumn,
];

const geocacheColumns = [
  nameColumn,
  textColumn("Type", "type"),
  textColumn("Difficulty", "difficulty", { isNumber: true }),
  textColumn("Terrain", "terrain", { isNumber: true }),
  ...positionColumns,
  textColumn("Owner", "owner"),
  textColumn("Placed", "placed"),
  { title: "Found", value: (cache) => cache.found, text: foundText },
  textColumn("Hint", "hint", { isLong: true, isHint: true }),
  commentColumn,
];

function foundText({ found }) {
  return found ? `✓ ${found}` : kDash;
}

function timeSpan(track) {
  return isKnown(track.first) ? track.last - track.first : null;
}
