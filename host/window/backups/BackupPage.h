// SPDX-License-Identifier: MIT
// BackupPage: the backups of each device. A backup of the selected device unfolds to what restoring
// it would change, and can be restored. [main loop]

#pragma once

#include "host/transfer/BackupComparison.h"
#include "host/transfer/TransferProgress.h"
#include "host/window/backups/BackupState.h"
#include "host/window/base/TransferBar.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <adwaita.h>
#include <gtkmm.h>

namespace host {

class BackupPage : public Gtk::ScrolledWindow {
public:
    struct Handlers {
        std::function<void()> list;                           ///< what setBackups() then shows
        std::function<void(const std::string& path)> compare; ///< setComparison(): likewise
        /// @param explanation  what the user is to know before the restore
        std::function<void(const std::string& path, const Glib::ustring& explanation)> restore;
    };

    explicit BackupPage(Handlers handlers);

    /// Lists the backups again if the page is shown; otherwise once it is.
    void refresh();

    /// Shows the backups. The one that was unfolded is compared again, if it is still there.
    void setBackups(const BackupState& state);

    /// Shows times in UTC, or else by this computer's clock.
    void setUtc(bool isUtc);

    /// Shows what restoring the backup that is unfolded would change.
    /// @param path  of the backup that was compared
    void setComparison(const std::string& path, const BackupComparison& comparison);

    /// Shows how far a restore is.
    void setProgress(const TransferProgress& progress);

    /// Shows that a transfer has begun or ended. While one runs, nothing can be restored.
    void setBusy(bool isBusy);

private:
    /// A backup of the selected device.
    struct Row {
        std::string path;
        std::string time; // for the user
        AdwExpanderRow* expander;
        Gtk::Label* changes;
        Gtk::Button* restore;
        std::size_t changedFiles = 0;
    };

    void fill();
    void addDevice(const DeviceBackups& device);
    void addBackups(Gtk::ListBox& list, Gtk::Button& more, const DeviceBackups& device,
                    std::size_t begin);
    void addRow(Gtk::ListBox& list, const Backup& backup);
    void setUnfolded(const std::string& path, bool isUnfolded);
    [[nodiscard]] Row* findRow(const std::string& path);
    void askFor(const std::string& path);
    void updateButtons();

    Handlers handlers_;
    BackupState state_;
    std::map<std::string, std::size_t> shown_; // how many backups, by the devices' identifiers
    std::vector<Row> rows_;
    std::string unfolded_; // the path of the backup that is unfolded; empty: none
    bool isBusy_ = false;
    bool isUtc_ = false;

    Gtk::Box content_{Gtk::Orientation::VERTICAL};
    TransferBar progress_;
    Gtk::Label empty_;
    Gtk::Box devices_{Gtk::Orientation::VERTICAL};
};

} // namespace host
