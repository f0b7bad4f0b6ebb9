// SPDX-License-Identifier: MIT
// The list is filled anew whenever the drivers report something else, which is rare.

#include "host/window/devices/DevicePane.h"

#include "host/base/Text.h"
#include "host/bundle/SerialPort.h"
#include "host/window/base/Accessible.h"
#include "host/window/base/Layout.h"
#include "host/window/base/Translation.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace host {
namespace {

constexpr int kWidth = 300;           // of the pane, in pixels
constexpr int kMostInNarrowLine = 32; // characters; a longer text is wrapped
constexpr int kMostOfDeviceName = 80; // characters; the row wraps them

Gtk::Label* leftLabel(const std::string& text)
{
    auto* const label =
        Gtk::make_managed<Gtk::Label>(displayText(text, kMostOfDeviceName), Gtk::Align::START);
    label->set_wrap(true);
    label->set_max_width_chars(kMostInNarrowLine);
    label->set_xalign(0);
    return label;
}

std::string nameOf(const DriverState& driver, const Device& device)
{
    return displayText(device.name && device.name != device.location ? *device.name : driver.title,
                       kMostOfDeviceName);
}

Gtk::Widget* rowOf(const DriverState& driver, const Device& device)
{
    auto* const row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    row->set_margin(kGap / 2);
    row->append(*leftLabel(nameOf(driver, device)));
    auto* const location = leftLabel(device.location);
    location->add_css_class("dim-label");
    location->add_css_class("caption");
    row->append(*location);
    return row;
}

} // namespace

DevicePane::DevicePane(Handlers handlers)
    : Gtk::Box(Gtk::Orientation::VERTICAL, kGap), handlers_(std::move(handlers)),
      view_({.picked =
                 [this](const std::string& control, std::size_t item) {
                     if (const auto row = selectedRow())
                         handlers_.picked(places_[*row].driver, control, item);
                 },
             .pressed =
                 [this](const std::string& control) {
                     if (const auto row = selectedRow())
                         handlers_.pressed(places_[*row].driver, control);
                 }})
{
    set_size_request(kWidth);
    set_margin(kGap);
    nameForReaders(list_, tr("Devices"));
    list_.add_css_class("boxed-list");
    list_.signal_row_selected().connect([this](Gtk::ListBoxRow*) { rowSelected(); });
    download_.add_css_class("suggested-action");
    download_.signal_clicked().connect([this] { startDownload(); });
    stop_.signal_clicked().connect([this] { handlers_.stop(); });
    eject_.set_tooltip_text(tr("Write everything to the receiver, and switch it off"));
    eject_.signal_clicked().connect([this] {
        if (const auto receiver = selected())
            handlers_.eject(receiver->address);
    });
    for (auto* const kind : {&waypoints_, &routes_, &tracks_}) {
        kind->set_active(true);
        kind->signal_toggled().connect([this] { updateButtons(); });
    }
    newOnly_.set_tooltip_text(
        tr("Leaves out what you have exported after such a download, and what was saved "
           "automatically. The command line's option --new-only does the same."));
    newOnly_.signal_toggled().connect([this] {
        if (!isUpdating_)
            handlers_.newOnlyChanged(newOnly_.get_active());
    });
    for (Gtk::Widget* const widget : std::initializer_list<Gtk::Widget*>{
             &list_, &unmounted_, &empty_, &view_, &waypoints_, &routes_, &tracks_, &newOnly_,
             &download_, &stop_, &eject_, &progress_})
        append(*widget);
    setBusy(false);
}

void DevicePane::setState(const ReceiverState& state)
{
    state_ = state;
    isUpdating_ = true;
    while (auto* const row = list_.get_row_at_index(0))
        list_.remove(*row);
    places_.clear();
    for (std::size_t driver = 0; driver < state.drivers.size(); ++driver)
        addRows(driver, state.drivers[driver]);
    list_.set_visible(!places_.empty());
    showUnmounted();
    empty_.set_visible(!firstCandidate());
    empty_.show(state.failure, state.explanation);
    const auto same = std::find_if(places_.begin(), places_.end(),
                                   [&](const Place& place) { return place.location == wanted_; });
    if (same != places_.end())
        selectRow(static_cast<std::size_t>(same - places_.begin()));
    else
        selectRow(firstCandidate());
    isUpdating_ = false;
    showSelected();
}

void DevicePane::showUnmounted()
{
    while (auto* const button = unmounted_.get_first_child())
        unmounted_.remove(*button);
    for (const auto& disk : state_.unmounted) {
        auto* const button = Gtk::make_managed<Gtk::Button>(
            Glib::ustring::compose(tr("Mount %1"), displayText(disk.title, kMostInNarrowLine)));
        button->set_tooltip_text(displayText(disk.node));
        // A new state follows, with a new button.
        button->signal_clicked().connect([this, button, node = disk.node] {
            button->set_sensitive(false);
            handlers_.mount(node);
        });
        unmounted_.append(*button);
    }
}

// A port may be anything; it is asked only if it is an adapter or known to be a receiver's, or if
// the user selects it.
std::optional<std::size_t> DevicePane::firstCandidate() const
{
    const auto candidate = std::find_if(places_.begin(), places_.end(), [&](const Place& place) {
        const auto& device = state_.drivers[place.driver].devices[place.device];
        return !isSerialPort(device.location) || device.isOnUsb || device.isKnownReceiver;
    });
    return candidate != places_.end()
               ? std::optional{static_cast<std::size_t>(candidate - places_.begin())}
               : std::nullopt;
}

void DevicePane::addRows(std::size_t driver, const DriverState& state)
{
    for (std::size_t i = 0; i < state.devices.size(); ++i) {
        places_.push_back({driver, i, state.devices[i].location});
        auto* const row = rowOf(state, state.devices[i]);
        list_.append(*row);
        nameForReaders(*row->get_parent(), nameOf(state, state.devices[i]).c_str());
    }
}

void DevicePane::selectRow(std::optional<std::size_t> row)
{
    if (row) {
        list_.select_row(*list_.get_row_at_index(static_cast<int>(*row)));
        wanted_ = places_[*row].location; // it must not change because another one appears
    } else {
        view_.setControls({});
    }
}

void DevicePane::rowSelected()
{
    if (isUpdating_)
        return;
    if (const auto row = selectedRow())
        wanted_ = places_[*row].location;
    showSelected();
}

// A device that is selected in the list is selected in its driver, too.
void DevicePane::showSelected()
{
    if (const auto row = selectedRow()) {
        const auto& place = places_[*row];
        const auto& driver = state_.drivers[place.driver];
        view_.setControls(driver.controls);
        showKinds(driver.kinds);
        if (!driver.devices[place.device].isSelected)
            handlers_.picked(place.driver, "deviceListMenu", place.device);
    } else {
        showKinds({});
    }
    updateButtons();
    handlers_.selected(selected());
}

void DevicePane::showKinds(const std::vector<gps::TransferKind>& kinds)
{
    using enum gps::TransferKind;
    for (const auto& [box, kind] :
         {std::pair{&waypoints_, kWaypoints}, {&routes_, kRoutes}, {&tracks_, kTracks}})
        box->set_visible(std::find(kinds.begin(), kinds.end(), kind) != kinds.end());
}

std::optional<DevicePane::Selection> DevicePane::selected() const
{
    const auto row = selectedRow();
    if (!row)
        return std::nullopt;
    const auto& driver = state_.drivers[places_[*row].driver];
    const auto& device = driver.devices[places_[*row].device];
    return Selection{{places_[*row].driver, device.location}, device.name.value_or(driver.title)};
}

std::optional<std::size_t> DevicePane::selectedRow() const
{
    const auto* const row = list_.get_selected_row();
    return row != nullptr ? std::optional{static_cast<std::size_t>(row->get_index())}
                          : std::nullopt;
}

void DevicePane::startDownload()
{
    if (const auto row = selectedRow(); row && download_.get_sensitive()) {
        handlers_.download({places_[*row].driver, places_[*row].location},
                           {.kinds = {.waypoints = waypoints_.get_active(),
                                      .routes = routes_.get_active(),
                                      .tracks = tracks_.get_active()},
                            .isNewOnly = newOnly_.get_active()});
    }
}

void DevicePane::setNewOnly(bool isNewOnly)
{
    isUpdating_ = true;
    newOnly_.set_active(isNewOnly);
    isUpdating_ = false;
}

void DevicePane::setProgress(const TransferProgress& progress)
{
    progress_.showProgress(progress);
}

void DevicePane::setBusy(bool isBusy)
{
    isBusy_ = isBusy;
    progress_.set_fraction(0);
    progress_.set_text("");
    updateButtons();
}

void DevicePane::updateButtons()
{
    const bool isAnyKind = waypoints_.get_active() || routes_.get_active() || tracks_.get_active();
    const auto row = selectedRow();
    const bool isReady = row && state_.drivers[places_[*row].driver].isReady;
    for (Gtk::Widget* const widget : std::initializer_list<Gtk::Widget*>{&newOnly_, &download_})
        widget->set_visible(row.has_value());
    download_.set_sensitive(!isBusy_ && isReady && isAnyKind);
    eject_.set_visible(row && std::find(state_.ejectable.begin(), state_.ejectable.end(),
                                        places_[*row].location) != state_.ejectable.end());
    list_.set_sensitive(!isBusy_);
    view_.set_sensitive(!isBusy_);
    stop_.set_visible(isBusy_);
    progress_.set_visible(isBusy_);
}

} // namespace host
