// SPDX-License-Identifier: MIT
// MainWindow: the window, and the wiring between its parts. [main loop]

#pragma once

#include "host/window/Closing.h"
#include "host/window/Exporter.h"
#include "host/window/Opener.h"
#include "host/window/WindowFrame.h"
#include "host/window/backups/BackupPage.h"
#include "host/window/base/MessageArea.h"
#include "host/window/base/PathChooser.h"
#include "host/window/devices/DevicePane.h"
#include "host/window/devices/Receivers.h"
#include "host/window/records/RecordPage.h"
#include "host/window/saving/SavingPage.h"
#include "host/window/send/SendPage.h"
#include "host/window/settings/SettingsKeeper.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtkmm.h>

namespace host {

class MainWindow {
public:
    /// @param bundle  the path of the plug-in's bundle; nullopt: where it usually is
    /// @param paths   copies of receivers to open, and files to import
    MainWindow(Gtk::Application& application, std::optional<std::string> bundle,
               const std::vector<std::string>& paths);

    void present() { frame_.window().present(); }

    /// Closes the window, after a question if a transfer is running.
    void close() { frame_.window().close(); }

    /// Opens folders as receivers, and imports files. An empty path is that of a file that is not
    /// on this computer.
    void open(const std::vector<std::string>& paths) { opener_.open(paths); }

private:
    void addPages();
    void addActions();
    void stop(bool isTransfer);
    void import(ImportRequest request);
    [[nodiscard]] bool endTransfer();
    void setReceived(ReceivedRecords received);
    void setSent(const SendResult& result);
    void showRecordsToSend();
    void restore(const std::string& backup, const Glib::ustring& explanation);
    void eject(const DeviceAddress& device);
    void setEjected(const Message& result);
    void setRestored(const RestoreReport& report);
    void chooseFolder();
    void chooseFiles();
    void chooseExport();
    void setBusy(bool isBusy);
    void updateExport();
    void enable(const char* action, bool isEnabled);
    [[nodiscard]] Gtk::FileChooserNative& choose(const char* title, Gtk::FileChooser::Action action,
                                                 PathChooser::Chosen chosen);
    void endExport(const ExportReport& report);
    void saveNew(bool isOn, const std::string& folder);
    void showSaving(const SavingEvent& event);
    void apply(const WindowSettings& settings);
    void keepMap(WindowSettings::Tiles tiles, const std::string& file);
    [[nodiscard]] BackupPolicy backups() const;

    DevicePane devices_;
    MessageArea messages_;
    Exporter exporter_;
    SettingsKeeper settings_;
    RecordPage records_;
    SendPage send_;
    BackupPage backups_;
    SavingPage saving_;
    WindowFrame frame_;
    Closing closing_;
    Opener opener_;
    PathChooser chooser_;
    ReceivedRecords shown_;
    ImportRequest importing_;                                  // empty while nothing is imported
    std::pair<WindowSettings::Tiles, std::string> shownMap_{}; // and its file
    bool isBusy_ = false;
    bool isEjecting_ = false;
    bool isSaving_ = false;                // a receiver is being read for that just now
    std::unique_ptr<Receivers> receivers_; // last: it calls the others
};

} // namespace host
