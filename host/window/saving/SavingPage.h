// SPDX-License-Identifier: MIT
// SavingPage: the switch that saves everything new automatically, where it goes, and what was
// saved. [main loop]

#pragma once

#include "host/window/saving/Saver.h"
#include "host/window/settings/PathRow.h"
#include "host/window/settings/SettingRows.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <string>

#include <adwaita.h>
#include <gtkmm.h>

namespace host {

class SavingPage : public Gtk::Box {
public:
    struct Handlers {
        /// The user has changed the switch or the folder.
        std::function<void(bool isOn, const std::string& folder)> changed;
    };

    SavingPage(bool isOn, const std::string& folder, Handlers handlers);

    void add(const SavingEvent& event);

private:
    static constexpr std::size_t kMostRows = 100; // of what was saved

    void toggle();
    void setFolder(const std::string& path);
    void addRow(const SavingEvent& event);

    Handlers handlers_;
    std::string folder_;
    PathRow folderRow_;
    SwitchRow switch_;
    Gtk::Label state_;
    AdwPreferencesGroup* saved_;
    std::deque<GtkWidget*> rows_; // the latest first
};

} // namespace host
