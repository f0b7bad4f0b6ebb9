// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import test from "node:test";

import { trackColour, trackDash } from "../../host/page/model/trackStyle.js";

test("eight tracks have different colours, the ninth has the first one dashed", () => {
  const colours = Array.from({ length: 8 }, (_, index) => trackColour({ index }));
  assert.equal(new Set(colours).size, 8);
  assert.equal(trackColour({ index: 8 }), trackColour({ index: 0 }));
  assert.deepEqual(trackDash({ index: 7 }), []);
  assert.notDeepEqual(trackDash({ index: 8 }), []);
});

test("32 tracks look different, the 33rd looks like the first", () => {
  const look = (index) => `${trackColour({ index })} ${trackDash({ index })}`;
  assert.equal(new Set(Array.from({ length: 32 }, (_, index) => look(index))).size, 32);
  assert.equal(look(32), look(0));
});

test("the style sheet has every colour", () => {
  const style = readFileSync(new URL("../../host/page/page.css", import.meta.url), "utf-8");
  for (let index = 0; index < 8; ++index)
    assert.ok(style.includes(`${trackColour({ index })}:`), `${index}`);
});
