// SPDX-License-Identifier: MIT
// Small collections for the tests of the page's modules.

import { unpackCollection } from "../../host/page/model/collection.js";

// The data of a page, of which a test gives the lists that matter to it.
export function collectionOf(lists) {
  const empty = {
    title: "", receiver: "", identifier: "", made: null, note: "",
    tiles: { url: "", attribution: "" },
    areas: [], places: [], land: [], icons: [],
    tracks: [], routes: [], waypoints: [], geocaches: [],
  };
  return unpackCollection({ ...empty, ...lists });
}

// A track's data. Each point is [latitude, longitude, metres, seconds]; what is left out is null.
export function rawTrack(points, values = {}) {
  const last = [0, 0, 0, 0];
  const numbers = points.flatMap((point) => [0, 1, 2, 3].map((column) => {
    const value = point[column] ?? null;
    if (value === null)
      return null;
    const number = Math.round(value * [1e6, 1e6, 10, 1][column]);
    const difference = number - last[column];
    last[column] = number;
    return difference;
  }));
  return {
    name: "Track", points: numbers, kilometres: 0, first: null, last: null, ascent: 0, descent: 0,
    moving: null, place: "", zone: "", ...values,
  };
}

export function rawPoint(latitude, longitude, values = {}) {
  const at = [Math.round(latitude * 1e6), Math.round(longitude * 1e6), null, null];
  return { name: "Point", comment: "", symbol: "", at, ...values };
}

export function rawRoute(points, values = {}) {
  const raw = points.map(([latitude, longitude]) => rawPoint(latitude, longitude));
  return { name: "Route", comment: "", kilometres: 0, points: raw, ...values };
}

export function trackOf(points, values) {
  return collectionOf({ tracks: [rawTrack(points, values)] }).tracks[0];
}
