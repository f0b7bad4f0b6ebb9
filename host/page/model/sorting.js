// SPDX-License-Identifier: MIT
// The order of the rows in a sorted table.

import { isKnown } from "./format.js";

// Numbers in texts count as numbers: "Day 2" comes before "Day 10".
const textOrder = new Intl.Collator(undefined, { numeric: true, sensitivity: "base" });

// Compares two numbers or two texts; `direction` is 1 (ascending) or -1. Values that are not known
// come last in either direction.
export function compareValues(a, b, direction) {
  if (isMissing(a) || isMissing(b))
    return isMissing(a) - isMissing(b);
  return direction * (typeof a === "string" ? textOrder.compare(a, b) : a - b);
}

function isMissing(value) {
  return value === "" || !isKnown(value);
}
