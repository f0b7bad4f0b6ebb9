// SPDX-License-Identifier: MIT
// The list of track cards. It follows the mark, and draws each card's chart when the card comes
// into view.

import { orderTracks } from "../model/trackOrder.js";
import { byId, element as makeElement, scrollBehavior } from "./dom.js";
import { TrackCard } from "./TrackCard.js";

const kPreload = "400px"; // the distance from the visible area at which a chart is drawn

export class TrackCards {
  // For `actions`, see TrackCard.
  constructor(tracks, { mark, stretch }, actions) {
    this.cards = tracks.map((track) => new TrackCard(track, { mark, stretch }, actions));
    this.marked_ = null;
    this.list_ = byId("cards");
    this.cards.forEach((card) => this.list_.append(card.element));
    this.drawChartsInView_();
    this.prepareWhenIdle_(0);
    mark.onChange((item, index) => this.followMark_(item, index));
    stretch.onChange(() => {
      for (const card of this.cards)
        card.showStretch(stretch);
    });
  }

  of(track) {
    return this.cards[track.index];
  }

  // After the reader has chosen another clock.
  showTimes() {
    for (const card of this.cards)
      card.hideReading();
  }

  // Goes to the card of a track, which is shown from now on.
  show(track) {
    const card = this.of(track);
    card.setShown(true);
    card.draw();
    scrollIntoView(card.element);
  }

  // For paper, on which nothing comes into view.
  drawAllCharts() {
    for (const card of this.cards)
      card.draw();
  }

  // Shows everything again, in other units or along another axis: "distance" or "time".
  redraw(axisName) {
    for (const card of this.cards)
      card.redraw(axisName);
  }

  // Begins with the tracks that start within `bounds`.
  goTo(bounds) {
    const { here, elsewhere } = orderTracks(this.cards.map(({ track }) => track), bounds);
    const elementsOf = (tracks) => tracks.map((track) => this.of(track).element);
    const isDivided = here.length > 0 && elsewhere.length > 0;
    this.list_.replaceChildren(...elementsOf(here),
      ...(isDivided ? [makeElement("p", { className: "divider", textContent: "Elsewhere" })] : []),
      ...elementsOf(elsewhere));
    this.list_.scrollTop = 0;
  }

  followMark_(item, index) {
    const card = item?.kind === "track" ? this.of(item) : null;
    if (card !== this.marked_) {
      this.marked_?.hideReading();
      this.marked_ = card;
      if (card) {
        card.draw();
        scrollIntoView(card.element);
      }
    }
    card?.showReading(index);
  }

  prepareWhenIdle_(next) {
    if (next < this.cards.length)
      whenIdle(() => {
        this.cards[next].prepare();
        this.prepareWhenIdle_(next + 1);
      });
  }

  drawChartsInView_() {
    const cardOf = new Map(this.cards.map((card) => [card.element, card]));
    const observer = new IntersectionObserver((entries) => {
      for (const { isIntersecting, target } of entries)
        if (isIntersecting)
          cardOf.get(target).draw();
    }, { rootMargin: kPreload });
    for (const { element } of this.cards)
      observer.observe(element);
  }
}

// Not every browser knows when it is idle.
function whenIdle(action) {
  if (window.requestIdleCallback)
    requestIdleCallback(action);
  else
    setTimeout(action, 50);
}

// Scrolls the list, but never the page.
function scrollIntoView(card) {
  const list = card.parentElement;
  const top = card.offsetTop - list.offsetTop;
  const isInView = top >= list.scrollTop &&
    top + card.offsetHeight <= list.scrollTop + list.clientHeight;
  if (list.scrollHeight > list.clientHeight && !isInView)
    list.scrollTo({ top, behavior: scrollBehavior() });
}
