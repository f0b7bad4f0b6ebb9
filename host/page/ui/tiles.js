// SPDX-License-Identifier: MIT
// The button below the map that loads its tiles, what the reader is told about them, and whose
// map it is.

import { serverOf, tilesText } from "../model/tiles.js";
import { byId, element } from "./dom.js";
import { TileLayer } from "./TileLayer.js";

const kOpenStreetMap = /(^|\.)openstreetmap\.org(:|$)/;
const kCopyright = "https://www.openstreetmap.org/copyright";

// Nothing is loaded before the reader asks for it, because the server learns what they look at.
export function showTiles(map, { url, attribution }) {
  if (!url)
    return;
  const server = serverOf(url);
  const button = element("button",
    { type: "button", id: "tiles", "aria-pressed": false, textContent: "Map" });
  const text = element("span", { role: "status", textContent: `from ${server}` });
  const source = element("p", { className: "attribution", hidden: true },
    sourceElement(server, attribution));
  map.tiles = new TileLayer(url, {
    onLoad: () => map.drawSoon(),
    onReport: (counts) => {
      const said = tilesText(counts, server);
      if (text.textContent !== said) // a screen reader would say it again
        text.textContent = said;
    },
  });
  button.addEventListener("click", () => {
    const isOn = !map.tiles.isOn;
    button.setAttribute("aria-pressed", isOn);
    source.hidden = !isOn || !attribution;
    if (isOn)
      map.tiles.start();
    else
      map.tiles.stop();
    text.textContent = isOn ? "" : `from ${server}`;
    map.view.useMercator(isOn);
    map.drawSoon();
  });
  map.box.append(source);
  byId("switches").prepend(element("span", { className: "tiles" }, button, text));
}

function sourceElement(server, attribution) {
  return kOpenStreetMap.test(server) ?
    element("a", { href: kCopyright, rel: "noreferrer", textContent: attribution }) :
    element("bdi", { textContent: attribution });
}
