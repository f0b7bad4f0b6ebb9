// SPDX-License-Identifier: MIT
// Elements and colours. Texts from a device enter the page here, as children and properties only,
// never as markup.

const kSvg = "http://www.w3.org/2000/svg";

export function byId(id) {
  return document.getElementById(id);
}

// `properties` are those of the element; a name that the element does not have is an attribute.
export function element(name, properties = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(properties)) {
    if (key in made)
      made[key] = value;
    else
      made.setAttribute(key, value);
  }
  made.append(...children);
  return made;
}

export function svgElement(name, attributes, ...children) {
  const made = document.createElementNS(kSvg, name);
  for (const [key, value] of Object.entries(attributes))
    made.setAttribute(key, value);
  made.append(...children);
  return made;
}

// A name from a device, whose direction of writing does not affect its surroundings. Cut to one
// line; the whole name is shown on hovering.
export function nameElement(name) {
  return element("bdi", { className: "name", title: name, textContent: name });
}

// A colour of the style sheet in the current theme, in a notation that a canvas understands: an
// element resolves light-dark().
export function themeColour(variable) {
  const probe = byId("probe");
  probe.style.color = `var(${variable})`;
  return getComputedStyle(probe).color;
}

// How to scroll: without an animation for those who asked their system for reduced motion.
export function scrollBehavior() {
  return matchMedia("(prefers-reduced-motion: reduce)").matches ? "instant" : "smooth";
}
