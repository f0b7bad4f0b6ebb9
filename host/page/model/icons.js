// SPDX-License-Identifier: MIT
// The pictures of waypoints, by the names of their symbols. A picture is a path in a square of 16
// units, filled by the even-odd rule.

export const kIconSize = 16;

const kMaxNames = 4; // in a row of the legend

// Returns a function that finds the picture of a symbol; null if there is none.
export function iconFinder(icons) {
  const paths = new Map(icons.flatMap(({ symbols, path }) =>
    symbols.map((symbol) => [symbol, path])));
  return (symbol) => paths.get(symbol.toLowerCase()) ?? null;
}

// What each picture on the map stands for: `{ path, text }`, by text.
export function iconLegend(waypoints) {
  const names = new Map();
  for (const { icon, symbol } of waypoints)
    if (icon)
      names.set(icon, (names.get(icon) ?? new Set()).add(symbol));
  const rows = [...names].map(([path, symbols]) =>
    ({ path, text: [...symbols].sort().slice(0, kMaxNames).join(", ") }));
  return rows.sort((a, b) => a.text < b.text ? -1 : 1);
}
