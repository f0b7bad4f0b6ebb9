// SPDX-License-Identifier: MIT
// MessageBar: what went wrong, or is worth knowing, above what it is about. Never a dialog: the
// user need not answer. [main loop]

#pragma once

#include "host/window/base/Translation.h"
#include "host/words/Message.h"

#include <vector>

#include <gtkmm.h>

namespace host {

class MessageBar : public Gtk::InfoBar {
public:
    MessageBar();

    /// Shows one sentence, and the messages below "Details"; hides the bar if there is nothing.
    void show(const Glib::ustring& sentence, const std::vector<Message>& messages, bool isError);

private:
    Gtk::Label sentence_;
    Gtk::Expander details_{tr("Details")};
    Gtk::Label messages_;
};

} // namespace host
