// SPDX-License-Identifier: MIT
// Light or dark: as the system is set, until the reader presses the button.

import { byId } from "./dom.js";

export class Theme {
  // `onChange` is called after the colours have changed.
  constructor(onChange) {
    this.onChange_ = onChange;
    this.system_ = matchMedia("(prefers-color-scheme: dark)");
    this.chosen_ = null; // null: the system's
    this.button_ = byId("theme");
    this.button_.addEventListener("click", () => {
      this.chosen_ = this.resolve_(this.chosen_) === "dark" ? "light" : "dark";
      this.apply();
    });
    this.system_.addEventListener("change", () => this.apply());
    this.apply();
  }

  // Applies `theme` instead of the reader's choice until the next call.
  apply(theme = this.chosen_) {
    const { dataset } = document.documentElement;
    if (theme)
      dataset.theme = theme;
    else
      delete dataset.theme;
    this.button_.textContent = this.resolve_(theme) === "dark" ? "Light" : "Dark";
    this.onChange_();
  }

  resolve_(theme) {
    return theme ?? (this.system_.matches ? "dark" : "light");
  }
}
