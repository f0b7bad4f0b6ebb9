// SPDX-License-Identifier: MIT
// The short list of tracks, to find one among many and to choose which ones are shown. Its rows are
// made when it is opened.

import { dateText } from "../model/clock.js";
import { formatNumber, kilometresText } from "../model/format.js";
import { shortName } from "../model/labels.js";
import { byDate } from "../model/trackOrder.js";
import { trackColour } from "../model/trackStyle.js";
import { byId, element, nameElement } from "./dom.js";

export class TrackList {
  // `setShown(tracks, isShown)` shows or hides tracks; `onShow(track)` goes to one.
  constructor(tracks, { setShown, onShow }) {
    this.tracks_ = [...tracks].sort(byDate);
    this.setShown_ = setShown;
    this.onShow_ = onShow;
    this.rows_ = [];
    this.search_ = element("input",
      { type: "search", placeholder: "Search", "aria-label": "Search for a track" });
    this.search_.addEventListener("input", () => this.filter_());
    this.body_ = element("ul");
    this.nothing_ = element("p", { role: "status", hidden: true,
      textContent: "No track has this in its name or date." });
    this.element = element("details", { id: "list" },
      element("summary", { textContent: `List of ${formatNumber(tracks.length)} tracks` }),
      element("div", { className: "row" }, this.search_,
        this.makeButton_("All", "Show all tracks in the list", () => this.switch_(true)),
        this.makeButton_("None", "Hide all tracks in the list", () => this.switch_(false))),
      this.nothing_, this.body_);
    this.element.addEventListener("toggle", () => {
      if (this.rows_.length === 0)
        this.fill();
    });
    byId("tools").append(this.element);
  }

  // Follows what was shown, hidden or formatted elsewhere.
  refresh() {
    for (const { track, checkbox, figures } of this.rows_) {
      checkbox.checked = track.isShown;
      figures.textContent = figuresText(track);
    }
    this.filter_();
  }

  fill() {
    this.rows_ = this.tracks_.map((track) => this.makeRow_(track));
    this.body_.replaceChildren(...this.rows_.map(({ row }) => row));
    this.filter_();
  }

  makeRow_(track) {
    const checkbox = element("input", { type: "checkbox", checked: track.isShown });
    checkbox.addEventListener("change", () => this.setShown_([track], checkbox.checked));
    const figures = element("span", { className: "figures", textContent: figuresText(track) });
    const row = element("li", { className: "row" },
      element("label", {}, checkbox, nameElement(track.name)), figures,
      this.makeButton_("Only", `Show only ${shortName(track.name)}`, () => {
        this.setShown_(this.tracks_, false);
        this.onShow_(track); // which shows it
      }));
    row.style.setProperty("--line", `var(${trackColour(track)})`);
    return { track, row, checkbox, figures };
  }

  makeButton_(text, title, onClick) {
    const button = element("button",
      { type: "button", className: "goto", textContent: text, title, "aria-label": title });
    button.addEventListener("click", onClick);
    return button;
  }

  filter_() {
    const wanted = this.search_.value.trim().toLocaleLowerCase();
    for (const { track, row } of this.rows_)
      row.hidden = !`${track.name} ${dayOf(track)}`.toLocaleLowerCase().includes(wanted);
    this.nothing_.hidden = this.rows_.some(({ row }) => !row.hidden);
  }

  // All those that the search has found.
  switch_(isShown) {
    const found = this.rows_.filter(({ row }) => !row.hidden).map(({ track }) => track);
    this.setShown_(found, isShown);
  }
}

function figuresText(track) {
  return `${dayOf(track)} · ${kilometresText(track.kilometres)}`;
}

function dayOf({ first, zone }) {
  return dateText(first, zone);
}
