// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { compareValues } from "../../host/page/model/sorting.js";

function sorted(values, direction) {
  return [...values].sort((a, b) => compareValues(a, b, direction));
}

test("numbers are sorted by value", () => {
  assert.deepEqual(sorted([10, 9, -1], 1), [-1, 9, 10]);
  assert.deepEqual(sorted([10, 9, -1], -1), [10, 9, -1]);
});

test("numbers within texts count as numbers, and case does not count", () => {
  assert.deepEqual(sorted(["Day 10", "day 2", "Camp"], 1), ["Camp", "day 2", "Day 10"]);
});

test("what is not known comes last in both directions", () => {
  assert.deepEqual(sorted([NaN, 2, null, 1], 1).slice(0, 2), [1, 2]);
  assert.deepEqual(sorted([NaN, 2, null, 1], -1).slice(0, 2), [2, 1]);
  assert.deepEqual(sorted(["", "a", "b"], 1), ["a", "b", ""]);
  assert.deepEqual(sorted(["", "a", "b"], -1), ["b", "a", ""]);
});

test("0 is known", () => {
  assert.deepEqual(sorted([1, 0, NaN], 1), [0, 1, NaN]);
});
