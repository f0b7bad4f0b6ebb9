// SPDX-License-Identifier: MIT
// Constant once main() has set it, so threads may share it.

#include "host/base/Translation.h"

namespace host {
namespace {

Translations& translations() noexcept
{
    static Translations kept;
    return kept;
}

} // namespace

void setTranslations(const Translations& chosen) noexcept
{
    translations() = chosen;
}

// The translation of an empty text would be the catalogue's own description.
const char* tr(const char* text)
{
    return *text == 0 ? text : translations().text(text);
}

const char* tr(const char* one, const char* many, unsigned long count)
{
    return translations().counted(one, many, count);
}

const char* tr(const CountedText& text, unsigned long count)
{
    return tr(text.one, text.many, count);
}

} // namespace host
