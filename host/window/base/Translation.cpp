// SPDX-License-Identifier: MIT
// The installed tree can be moved, so the folder is found from the program.

#include "host/window/base/Translation.h"

#include <clocale>
#include <filesystem>
#include <system_error>

#include <glib.h>
#include <libintl.h>

namespace host {

void openTranslations()
{
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread runs yet
    std::setlocale(LC_ALL, "");
    std::setlocale(LC_NUMERIC, "C"); // as the files have them
    // NOLINTEND(concurrency-mt-unsafe)
    std::error_code ignored;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", ignored);
    const auto folder = program.parent_path().parent_path() / "share" / "locale";
    bindtextdomain(kTranslationDomain, folder.c_str());
    bind_textdomain_codeset(kTranslationDomain, "UTF-8");
    setTranslations({.text = [](const char* text) { return g_dgettext(kTranslationDomain, text); },
                     .counted =
                         [](const char* one, const char* many, unsigned long count) {
                             return g_dngettext(kTranslationDomain, one, many, count);
                         }});
}

} // namespace host
