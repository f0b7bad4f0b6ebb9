// SPDX-License-Identifier: MIT
// The reader's choices, which the browser remembers if it is allowed to. A page in a file often is
// not: then each visit begins with the defaults.

const kPrefix = "magellangps.";

export function remembered(name) {
  try {
    return localStorage.getItem(kPrefix + name);
  } catch {
    return null;
  }
}

export function remember(name, value) {
  try {
    localStorage.setItem(kPrefix + name, value);
  } catch {
    // Refused, or full: the choice holds until the page is closed.
  }
}

// Fills a list with `choices`, texts by value, and selects the remembered one, or else the first.
// Calls `onChoose(value)` at once and after each change.
export function listenToChoice(list, name, choices, onChoose) {
  for (const [value, text] of Object.entries(choices))
    list.append(new Option(text, value));
  const known = remembered(name);
  if (Object.keys(choices).includes(known))
    list.value = known;
  onChoose(list.value);
  list.addEventListener("change", () => {
    remember(name, list.value);
    onChoose(list.value);
  });
}
