// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { unpackDigits } from "../../host/page/model/digits.js";

test("numbers of one character are unpacked, and longer ones", () => {
  // The same as in tests/host/formats/HtmlData_test.cpp.
  assert.deepEqual(unpackDigits(" #!PO"), [0, 1, -1, 22, -22]);
  assert.deepEqual(unpackDigits("R!Q!~PRQ!QQ!"), [23, -23, 1012, 1013, -1013]);
  assert.deepEqual(unpackDigits("plX/olX/beQTo_bw|'"), [600000, -600000, 2 ** 51]);
});

test("an empty text has no numbers", () => {
  assert.deepEqual(unpackDigits(""), []);
});
