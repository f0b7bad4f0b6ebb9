// SPDX-License-Identifier: MIT
// WrappedText: labels whose text takes as many lines as it needs. [main loop]

#pragma once

#include <gtkmm.h>

namespace host {

/// Breaks lines between words, and within a word that is longer than a line: names may be of any
/// length, and one of them would make all lines as wide as itself.
inline void wrapText(Gtk::Label& label)
{
    label.set_wrap(true);
    label.set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    label.set_xalign(0);
}

} // namespace host
