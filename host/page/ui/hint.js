// SPDX-License-Identifier: MIT
// The hint to a geocache, which readers see only if they ask for it: it spoils the search.

import { element } from "./dom.js";

const asked = new WeakSet(); // the geocaches

// A button that the hint replaces; calls `onShow()` then.
export function hintElement(cache, onShow = () => {}) {
  const text = element("bdi", { className: "hint", tabIndex: -1, textContent: cache.hint });
  if (asked.has(cache))
    return text;
  const button = element("button", { type: "button", className: "ask", textContent: "Show hint" });
  button.addEventListener("click", () => {
    asked.add(cache);
    button.replaceWith(text);
    text.focus();
    onShow();
  });
  return button;
}
