// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import {
  clock, dateText, dateTimeText, endTimeText, zoneText,
} from "../../host/page/model/clock.js";

const kSummer = 1717236061; // 2024-06-01 10:01:01 UTC
const kWinter = 1704103261; // 2024-01-01 10:01:01 UTC

test("without a zone times are UTC", () => {
  assert.equal(dateTimeText(0, ""), "1970-01-01 00:00:00");
  assert.equal(dateTimeText(kSummer, ""), "2024-06-01 10:01:01");
  assert.equal(zoneText(""), "UTC");
});

test("times are those of the zone, in summer and in winter", () => {
  assert.equal(dateTimeText(kSummer, "Europe/Zurich"), "2024-06-01 12:01:01");
  assert.equal(dateTimeText(kWinter, "Europe/Zurich"), "2024-01-01 11:01:01");
  assert.equal(dateTimeText(kSummer, "Asia/Kathmandu"), "2024-06-01 15:46:01");
});

test("midnight is 00:00:00, not 24:00:00", () => {
  assert.equal(dateTimeText(1717200000, ""), "2024-06-01 00:00:00");
  assert.equal(dateTimeText(1717192800, "Europe/Zurich"), "2024-06-01 00:00:00");
});

test("the day is that of the place", () => {
  assert.equal(dateText(1717199999, ""), "2024-05-31");
  assert.equal(dateText(1717200000, ""), "2024-06-01");
  assert.equal(dateText(1717199999, "Pacific/Auckland"), "2024-06-01");
  assert.equal(dateText(1717200000, "America/Lima"), "2024-05-31");
});

test("a zone is called after its city", () => {
  assert.equal(zoneText("Pacific/Auckland"), "Auckland time");
  assert.equal(zoneText("America/Argentina/Buenos_Aires"), "Buenos Aires time");
});

test("a zone that the browser does not know is UTC, and is called so", () => {
  assert.equal(dateTimeText(kSummer, "Mars/Olympus"), "2024-06-01 10:01:01");
  assert.equal(zoneText("Mars/Olympus"), "UTC");
});

test("with the clock at UTC no zone counts", () => {
  clock.isUtc = true;
  assert.equal(dateTimeText(kSummer, "Europe/Zurich"), "2024-06-01 10:01:01");
  assert.equal(zoneText("Europe/Zurich"), "UTC");
  clock.isUtc = false;
});

test("a time that is not known is a dash", () => {
  for (const unknown of [null, NaN]) {
    assert.equal(dateTimeText(unknown, "Europe/Zurich"), "–");
    assert.equal(dateText(unknown, ""), "–");
  }
});

test("a year of five digits is shown whole", () => {
  assert.equal(dateText(253402300799, ""), "9999-12-31");
  assert.equal(dateText(253402300800, ""), "10000-01-01");
  assert.equal(endTimeText(253402300800, 253402300801, ""), "00:00:01");
});

test("a time that a browser's dates cannot hold is a dash", () => {
  assert.notEqual(dateTimeText(8.64e12, ""), "–");
  assert.equal(dateTimeText(8.64e12 + 1, ""), "–");
  assert.equal(dateText(8.64e12 + 1, ""), "–");
});

test("the end of a span has the day only if it is another one, by the clock of the place", () => {
  assert.equal(endTimeText(kSummer, kSummer + 60, ""), "10:02:01");
  assert.equal(endTimeText(kSummer, kSummer + 13 * 3600, ""), "23:01:01");
  assert.equal(endTimeText(kSummer, kSummer + 13 * 3600, "Europe/Zurich"), "2024-06-02 01:01:01");
  assert.equal(endTimeText(null, null, ""), "–");
});
