// SPDX-License-Identifier: MIT
// The units in which the page shows lengths, heights and speeds. Everything is computed in metres
// and seconds; only texts, ticks and scales know other units.

const kLengths = {
  km: { name: "km", metres: 1000, speed: "km/h", small: { name: "m", metres: 1 } },
  mi: { name: "mi", metres: 1609.344, speed: "mph", small: { name: "ft", metres: 0.3048 } },
};
const kHeights = { m: kLengths.km.small, ft: kLengths.mi.small };

// The choices, with the texts for the reader.
export const kUnitChoices = {
  "km-m": "km, m", "mi-ft": "miles, ft", "mi-m": "miles, m", "km-ft": "km, ft",
};

// The units in use. `length` has a `speed` and a unit for `small` lengths.
export const units = { length: kLengths.km, height: kHeights.m };

// Changes the units to one of kUnitChoices. Anything else is ignored: what a browser remembers can
// be from another version of the page.
export function chooseUnits(choice) {
  if (!Object.keys(kUnitChoices).includes(choice))
    return;
  const [length, height] = choice.split("-");
  units.length = kLengths[length];
  units.height = kHeights[height];
}
