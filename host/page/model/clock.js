// SPDX-License-Identifier: MIT
// Dates and times of day: by the clocks of the place where something was, unless the reader wants
// UTC. A time zone is a name of the time zone database; an empty one stands for UTC. The browser
// knows the rules of the zones.

import { isKnown, kDash } from "./format.js";

export const clock = { isUtc: false }; // what the reader has chosen

const kMaxSeconds = 8.64e12; // of a JavaScript date

const formatters = new Map(); // by zone: making one takes a while

// A browser can be older than a zone's name.
function formatterOf(zone) {
  let formatter = formatters.get(zone);
  if (!formatter) {
    const options = { dateStyle: "short", timeStyle: "medium" };
    try {
      formatter = new Intl.DateTimeFormat("sv", { ...options, timeZone: zone });
    } catch {
      formatter = new Intl.DateTimeFormat("sv", { ...options, timeZone: "UTC" });
    }
    formatters.set(zone, formatter);
  }
  return formatter;
}

// The zone whose time is shown for a place.
function shownZone(zone) {
  return clock.isUtc || !zone ? "UTC" : zone;
}

// Seconds since 1970 as date and time of day: "2024-06-01 12:00:00".
export function dateTimeText(seconds, zone) {
  return isKnown(seconds) && Math.abs(seconds) <= kMaxSeconds ?
    formatterOf(shownZone(zone)).format(seconds * 1000) : kDash;
}

export function dateText(seconds, zone) {
  return dateTimeText(seconds, zone).split(" ")[0];
}

// The end of a span of time: without the day, unless it is another one than that of the start.
export function endTimeText(first, last, zone) {
  const [day, time] = dateTimeText(last, zone).split(" ");
  return time && day === dateText(first, zone) ? time : dateTimeText(last, zone);
}

// Whose time it is: "UTC", or "Auckland time".
export function zoneText(zone) {
  const shown = shownZone(zone);
  return formatterOf(shown).resolvedOptions().timeZone === "UTC" ? "UTC" :
    `${shown.split("/").at(-1).replaceAll("_", " ")} time`;
}
