// SPDX-License-Identifier: MIT
// DevicePane: the devices, the view of the selected one's driver, and the download from it.
// [main loop]

#pragma once

#include "host/transfer/DownloadRequest.h"
#include "host/transfer/TransferProgress.h"
#include "host/window/base/TransferBar.h"
#include "host/window/base/Translation.h"
#include "host/window/devices/DriverView.h"
#include "host/window/devices/NoReceiver.h"
#include "host/window/devices/ReceiverState.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gtkmm.h>

namespace host {

class DevicePane : public Gtk::Box {
public:
    /// The receiver that the user has selected.
    struct Selection {
        DeviceAddress address;
        std::string name;
    };

    struct Handlers {
        std::function<void(std::size_t driver, const std::string& control, std::size_t item)>
            picked;
        std::function<void(std::size_t driver, const std::string& control)> pressed;
        std::function<void(const DeviceAddress& device, const DownloadChoice& choice)> download;
        std::function<void(bool isNewOnly)> newOnlyChanged; ///< by the user
        std::function<void()> stop;
        std::function<void(const std::string& node)> mount;
        std::function<void(const DeviceAddress& device)> eject;
        std::function<void(const std::optional<Selection>& receiver)> selected;
    };

    explicit DevicePane(Handlers handlers);

    /// Shows other devices. The one that is selected stays selected while it is there; otherwise it
    /// is the first one.
    void setState(const ReceiverState& state);

    /// Ticks the box beside the kinds, without a call of the handler.
    void setNewOnly(bool isNewOnly);

    /// Selects a device as soon as it is there.
    void select(const std::string& location) { wanted_ = location; }

    /// Downloads what is ticked from the selected device, if the button for it can be pressed.
    void startDownload();

    /// Shows how far a transfer is. While one runs, no other can be started.
    void setProgress(const TransferProgress& progress);

    [[nodiscard]] std::optional<Selection> selected() const;

    /// Shows that a transfer has begun or ended.
    void setBusy(bool isBusy);

private:
    /// A row of the list.
    struct Place {
        std::size_t driver;
        std::size_t device;
        std::string location;
    };

    void showUnmounted();
    void addRows(std::size_t driver, const DriverState& state);
    void selectRow(std::optional<std::size_t> row);
    [[nodiscard]] std::optional<std::size_t> firstCandidate() const;
    void rowSelected();
    void showSelected();
    void showKinds(const std::vector<gps::TransferKind>& kinds);
    void updateButtons();
    [[nodiscard]] std::optional<std::size_t> selectedRow() const;

    Handlers handlers_;
    ReceiverState state_;
    std::vector<Place> places_;
    std::string wanted_; // the location to select; empty: any
    bool isBusy_ = false;
    bool isUpdating_ = false; // the list is being filled: no choice of the user's

    Gtk::ListBox list_;
    NoReceiver empty_;
    Gtk::Box unmounted_{Gtk::Orientation::VERTICAL}; // a button for each disk
    DriverView view_;
    Gtk::CheckButton waypoints_{tr("Waypoints and geocaches")};
    Gtk::CheckButton routes_{tr("Routes")};
    Gtk::CheckButton tracks_{tr("Tracks")};
    Gtk::CheckButton newOnly_{tr("Only what is new")};
    Gtk::Button download_{tr("Download")};
    Gtk::Button stop_{tr("Stop")};
    Gtk::Button eject_{tr("Eject")};
    TransferBar progress_;
};

} // namespace host
