// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import {
  durationText, formatNumber, isKnown, kilometresText, latitudeText,
  longitudeText, metresText, positionText, scaleText, speedText,
} from "../../host/page/model/format.js";

const kTexts = [kilometresText, metresText, speedText, durationText];

function assertTexts(text, expected) {
  for (const [value, wanted] of expected)
    assert.equal(text(value), wanted, `${value}`);
}

test("a value that is not known is a dash", () => {
  for (const text of kTexts) {
    assert.equal(text(null), "–");
    assert.equal(text(NaN), "–");
    assert.notEqual(text(0), "–");
  }
  assert.deepEqual([null, NaN, 0, -1].map(isKnown), [false, false, true, true]);
});

test("numbers have their decimals and thousands separators", () => {
  assert.equal(formatNumber(1234567), "1,234,567");
  assert.equal(formatNumber(999), "999");
  assert.equal(formatNumber(0.5, 2), "0.50");
  assert.equal(formatNumber(-0), "0");
});

test("metres are whole", () => {
  assertTexts(metresText, [[1234.4, "1,234 m"], [1234.5, "1,235 m"]]);
});

test("a negative number has a minus sign, not a hyphen", () => {
  assertTexts(metresText, [[-12, "−12 m"], [-1000, "−1,000 m"]]);
  assert.equal(scaleText(-1.5), "−1.5");
});

test("an elevation just below the sea is 0", () => {
  assertTexts(metresText, [[-0.5, "0 m"], [-0.3, "0 m"], [-0.6, "−1 m"]]);
});

test("kilometres have two decimals, speeds one", () => {
  assertTexts(kilometresText, [[0, "0.00 km"], [1234.567, "1,234.57 km"]]);
  assertTexts(speedText, [[1, "3.6 km/h"], [0.01, "0.0 km/h"]]);
});

test("durations use larger units from a minute, an hour and two days on", () => {
  assertTexts(durationText, [
    [0, "0 s"], [59, "59 s"], [60, "1 min"], [89, "1 min"], [90, "2 min"], [3569, "59 min"],
    [3570, "1 h 00 min"], [3600, "1 h 00 min"], [47 * 3600 + 59 * 60, "47 h 59 min"],
    [48 * 3600, "2 d 0 h"], [51 * 3600 + 1800, "2 d 3 h"], [1000 * 86400, "1,000 d 0 h"],
  ]);
});

test("coordinates have letters instead of signs, zero has none", () => {
  assert.equal(latitudeText(46.5), "46.50000° N");
  assert.equal(latitudeText(-46.5), "46.50000° S");
  assert.equal(longitudeText(7.25), "7.25000° E");
  assert.equal(longitudeText(-7.25, 1), "7.3° W");
  assert.equal(latitudeText(0.5), "0.50000° N");
  assert.equal(longitudeText(0.00001), "0.00001° E");
  assert.equal(latitudeText(0.000004), "0.00000°");
  assert.equal(latitudeText(-0.000004), "0.00000°");
  assert.equal(latitudeText(-0.00001), "0.00001° S");
});

test("a longitude on a map over the date line is a usual one", () => {
  assert.equal(longitudeText(190), "170.00000° W");
  assert.equal(longitudeText(180), "180.00000° E");
  assert.equal(positionText(1, 181, 0), "1° N, 179° W");
});
