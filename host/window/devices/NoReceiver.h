// SPDX-License-Identifier: MIT
// NoReceiver: stands where the receivers would be. Says what to do, and why what is there was not
// taken. [main loop]

#pragma once

#include "host/window/base/Translation.h"

#include <string>

#include <gtkmm.h>

namespace host {

class NoReceiver : public Gtk::Box {
public:
    NoReceiver();

    /// @param failure      why no receiver can be looked for; empty if they can
    /// @param explanation  how each volume and port was judged
    void show(const std::string& failure, const std::string& explanation);

private:
    Gtk::Label sentence_;
    Gtk::Button openFolder_{tr("Open Folder…")};
    Gtk::Expander why_{tr("Why Is Mine Missing?")};
    Gtk::Label explanation_;
};

} // namespace host
