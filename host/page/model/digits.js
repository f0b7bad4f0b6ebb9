// SPDX-License-Identifier: MIT
// Whole numbers in few characters, as appendDigits() of host/formats/HtmlData.h writes them.

const kBase = 45;

// The digits 0 to 44 of a number's end, and then those that others follow.
const kDigits = Array.from({ length: 95 }, (_, i) => String.fromCharCode(32 + i))
  .filter((character) => !"\"&<>\\".includes(character)).join("");

// Returns the numbers in a text.
export function unpackDigits(text) {
  const numbers = [];
  let value = 0, weight = 1;
  for (const character of text) {
    const digit = kDigits.indexOf(character);
    value += digit % kBase * weight;
    weight *= kBase;
    if (digit < kBase) {
      numbers.push(value % 2 === 0 ? value / 2 : -(value + 1) / 2);
      value = 0;
      weight = 1;
    }
  }
  return numbers;
}
