// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { roundStep } from "../../host/page/model/roundStep.js";

test("a step is the next 1, 2 or 5 times a power of ten", () => {
  for (const [least, step] of [[1, 1], [1.01, 2], [2, 2], [2.01, 5], [5, 5], [5.01, 10],
    [9.99, 10], [123, 200], [0.3, 0.5], [0.006, 0.01]])
    assert.equal(roundStep(least), step, `${least}`);
});

test("a rounding error does not double the step", () => {
  assert.equal(roundStep(2 * (1 + 1e-9)), 2);
  assert.equal(roundStep(1 - 1e-12), 1);
});
