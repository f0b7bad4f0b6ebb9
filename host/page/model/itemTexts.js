// SPDX-License-Identifier: MIT
// What the page says about an item or the whole collection.

import { dateText, dateTimeText, endTimeText, zoneText } from "./clock.js";
import {
  formatNumber, isKnown, kilometresText, metresText, positionText,
  speedText,
} from "./format.js";

export const kTitle = "Tracks and places"; // of a page without one

// The lines under the name of what is marked on the map.
export function tipLines(item, index) {
  if (item.kind !== "track") {
    return [...meaningTexts(item), positionText(item.latitude, item.longitude),
      ...timeIfKnown(item.time, item.zone), ...textIfKnown(item.elevation, metresText)]
      .filter(Boolean);
  }
  const elevation = item.elevation[index];
  return [positionText(item.latitude[index], item.longitude[index]),
    timeIfKnown(item.time[index], item.zone)[0] ?? "no time",
    [isKnown(elevation) ? metresText(elevation) : "no elevation",
      ...textIfKnown(item.speed[index], speedText)].join(" · ")];
}

// What a waypoint's symbol, or a geocache's type, says.
function meaningTexts({ kind, symbol, type, difficulty, terrain, found }) {
  if (kind !== "geocache")
    return [symbol];
  return [[type, difficulty && `difficulty ${difficulty}`, terrain && `terrain ${terrain}`]
    .filter(Boolean).join(" · "), found ? `Found ${found}` : "Not found yet"];
}

// The line under a track's profile for one of its points.
export function readingText(track, index) {
  return [...timeIfKnown(track.time[index], track.zone),
    kilometresText(track.distance[index] / 1000),
    ...textIfKnown(track.elevation[index], metresText),
    ...textIfKnown(track.speed[index], speedText)].join(" · ");
}

// The line under a track's profile when no point is marked: where it is, and from when to when. The
// day is not repeated.
export function timeSpanText({ first, last, zone, count, place }) {
  return [place, isKnown(first) ? spanText(first, last, zone) : count === 0 ? "no points" :
    "no times"].filter(Boolean).join(" · ");
}

function spanText(first, last, zone) {
  return `${dateTimeText(first, zone)} – ${endTimeText(first, last, zone)} ${zoneText(zone)}`;
}

// The page's title: with the first and the last day of all tracks.
export function titleText({ title, tracks }) {
  return [title || kTitle, daysOf(tracks).join(" – ")].filter(Boolean).join(", ");
}

// Which receiver the records are from, and when they were downloaded, by the reader's clock.
export function originText({ receiver, identifier, made }) {
  const here = new Intl.DateTimeFormat().resolvedOptions().timeZone;
  const day = isKnown(made) ? dateText(made, here) : "";
  if (!receiver)
    return day && `Made on ${day}`;
  return [receiver, identifier && `serial number ${identifier}`, day && `downloaded on ${day}`]
    .filter(Boolean).join(" · ");
}

// The line under the heading.
export function summaryText({ tracks, routes, waypoints, geocaches, areas }) {
  const length = tracks.reduce((sum, track) => sum + track.kilometres, 0);
  return [countText(tracks.length, "track"), tracks.length > 0 ? kilometresText(length) : "",
    countText(routes.length, "route"), countText(waypoints.length, "waypoint"),
    countText(geocaches.length, "geocache"), placesText(areas), daysOf(tracks).join(" to ")]
    .filter(Boolean).join(" · ");
}

// Where the first area is, and how many others there are.
function placesText(areas) {
  if (!areas[0]?.place)
    return "";
  const others = countText(areas.length - 1, "other area");
  return others ? `${areas[0].place} and ${others}` : areas[0].place;
}

function timeIfKnown(seconds, zone) {
  return isKnown(seconds) ? [`${dateTimeText(seconds, zone)} ${zoneText(zone)}`] : [];
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
  const first = timed.reduce((a, b) => b.first < a.first ? b : a);
  const last = timed.reduce((a, b) => b.last > a.last ? b : a);
  return [...new Set([dateText(first.first, first.zone), dateText(last.last, last.zone)])];
}
