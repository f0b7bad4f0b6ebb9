// SPDX-License-Identifier: MIT
// Without a translation, tr() returns the text itself, which the compiler has checked.

#include "host/base/TranslatedFormat.h"

namespace host {

std::string formatEither(const char* translation, const char* text, fmt::format_args arguments)
{
    if (translation != text) {
        try {
            return fmt::vformat(translation, arguments);
        } catch (const fmt::format_error&) {
            // A mistake of the translator's must not cost the user the text.
        }
    }
    return fmt::vformat(text, arguments);
}

} // namespace host
