// SPDX-License-Identifier: MIT
// Round numbers for the lines of a scale.

// Returns 1, 2 or 5 times a power of ten: the smallest that is at least `least`, which must be
// positive. Forgives a rounding error in `least`.
export function roundStep(least) {
  const power = 10 ** Math.floor(Math.log10(least));
  return power * ([1, 2, 5].find((factor) => factor * power >= least * 0.999999) ?? 10);
}
