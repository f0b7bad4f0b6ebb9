// SPDX-License-Identifier: MIT
// The items of a collection in general.

export function allItems({ tracks, routes, waypoints, geocaches }) {
  return [...tracks, ...routes, ...waypoints, ...geocaches];
}

export function isLine(item) {
  return item.kind === "track" || item.kind === "route";
}
