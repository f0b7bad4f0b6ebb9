// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { Mark } from "../../host/page/model/Mark.js";

test("every listener is told what is marked, in the order of registration", () => {
  const mark = new Mark(), item = {}, calls = [];
  mark.onChange((...values) => calls.push(["first", ...values]));
  mark.onChange((...values) => calls.push(["second", ...values]));
  mark.set(item, 5);
  assert.deepEqual(calls, [["first", item, 5], ["second", item, 5]]);
  assert.deepEqual([mark.item, mark.index], [item, 5]);
});

test("a cleared mark has no item", () => {
  const mark = new Mark(), items = [];
  mark.onChange((item) => items.push(item));
  mark.set({}, 5);
  mark.clear();
  assert.equal(mark.item, null);
  assert.equal(mark.index, 0);
  assert.equal(items.at(-1), null);
});
