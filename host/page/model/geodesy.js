// SPDX-License-Identifier: MIT
// Angles and distances on the globe.

export const kEarthRadius = 6371008.8; // metres: the mean radius R1 of the IUGG

export function radians(degrees) {
  return degrees * Math.PI / 180;
}

// Metres along the great circle.
// Source: the haversine formula (R. W. Sinnott, "Virtues of the Haversine", Sky & Telescope 68,
// 1984).
export function metresBetween(latitudeA, longitudeA, latitudeB, longitudeB) {
  const half = (angle) => Math.sin(radians(angle) / 2) ** 2;
  const h = half(latitudeB - latitudeA) +
    Math.cos(radians(latitudeA)) * Math.cos(radians(latitudeB)) * half(longitudeB - longitudeA);
  return 2 * kEarthRadius * Math.asin(Math.sqrt(Math.min(h, 1))); // rounding can exceed 1
}

// Maps any longitude, for example 190 on a map that crosses the date line, to above -180 and up to
// 180.
export function normalLongitude(longitude) {
  return longitude - 360 * Math.ceil((longitude - 180) / 360);
}
