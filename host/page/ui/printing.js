// SPDX-License-Identifier: MIT
// The page on paper: light, with every profile, and with a map of a fixed size.

// The browser does not redraw a canvas for the paper's layout; it would stretch the map drawn for
// the screen. So the map is drawn in the size that it has on paper: within the margins of A4 and of
// Letter.
const kPaperMap = { width: 680, height: 416 }; // pixels
const kPaperRatio = 3;                         // sharp enough for a printer

export function listenToPrinting({ map, cards, mark, theme }) {
  let screenView = null; // the view to return to
  addEventListener("beforeprint", () => {
    mark.clear();
    cards.drawAllCharts();
    theme.apply("light");
    if (!screenView) // two events can come in a row
      screenView = layOutForPaper(map);
  });
  addEventListener("afterprint", () => {
    theme.apply();
    if (screenView)
      layOutForScreen(map, screenView);
    screenView = null;
  });
}

// Returns the view that was on the screen.
function layOutForPaper(map) {
  const { view } = map;
  const screenView = { ...view };
  Object.assign(map.box.style,
    { flex: "none", width: `${kPaperMap.width}px`, height: `${kPaperMap.height}px` });
  map.measure();
  view.setScale(screenView.scale *
    Math.min(view.width / screenView.width, view.height / screenView.height));
  map.draw(kPaperRatio);
  return screenView;
}

function layOutForScreen(map, screenView) {
  Object.assign(map.box.style, { flex: "", width: "", height: "" });
  Object.assign(map.view, screenView);
  map.measure();
}
