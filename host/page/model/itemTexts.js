// SPDX-License-Identifier: MIT
// What the page says about an item or the whole collection.

import {
  dateText, dateTimeText, formatNumber, isKnown, kilometresText, metresText, positionText,
  speedText,
} from "./format.js";

const kTitle = "Tracks and places";

// The lines under the name of what is marked on the map.
export function tipLines(item, index) {
  if (item.kind !== "track") {
    return [positionText(item.latitude, item.longitude), ...textIfKnown(item.time, utcText),
      ...textIfKnown(item.elevation, metresText), item.comment].filter(Boolean);
  }
  const elevation = item.elevation[index];
  return [positionText(item.latitude[index], item.longitude[index]),
    isKnown(item.time[index]) ? utcText(item.time[index]) : "no time",
    [isKnown(elevation) ? metresText(elevation) : "no elevation",
      ...textIfKnown(item.speed[index], speedText)].join(" · ")];
}

// The line under a track's profile for one of its points.
export function readingText(track, index) {
  return [...textIfKnown(track.time[index], utcText), kilometresText(track.distance[index] / 1000),
    ...textIfKnown(track.elevation[index], metresText),
    ...textIfKnown(track.speed[index], speedText)].join(" · ");
}

// The line under a track's profile when no point is marked: from when to when. The day is not
// repeated.
export function timeSpanText(track) {
  if (!isKnown(track.first))
    return track.count === 0 ? "no points" : "no times";
  const from = dateTimeText(track.first), to = dateTimeText(track.last);
  const isSameDay = dateText(track.first) === dateText(track.last);
  return `${from} – ${isSameDay ? to.slice(11) : to} UTC`;
}

// The page's title: with the first and the last day of all tracks.
export function titleText({ tracks }) {
  return [kTitle, daysOf(tracks).join(" – ")].filter(Boolean).join(", ");
}

// The line under the heading.
export function summaryText({ tracks, routes, waypoints, geocaches }) {
  const length = tracks.reduce((sum, track) => sum + track.kilometres, 0);
  return [countText(tracks.length, "track"), tracks.length > 0 ? kilometresText(length) : "",
    countText(routes.length, "route"), countText(waypoints.length, "waypoint"),
    countText(geocaches.length, "geocache"), daysOf(tracks).join(" to ")]
    .filter(Boolean).join(" · ");
}

function utcText(seconds) {
  return `${dateTimeText(seconds)} UTC`;
}

function textIfKnown(value, text) {
  return isKnown(value) ? [text(value)] : [];
}

function countText(count, noun) {
  return count === 0 ? "" : `${formatNumber(count)} ${noun}${count === 1 ? "" : "s"}`;
}

// No day, one, or the first and the last.
function daysOf(tracks) {
  const timed = tracks.filter((track) => isKnown(track.first));
  if (timed.length === 0)
    return [];
  const first = timed.reduce((time, track) => Math.min(time, track.first), Infinity);
  const last = timed.reduce((time, track) => Math.max(time, track.last), -Infinity);
  return [...new Set([dateText(first), dateText(last)])];
}
