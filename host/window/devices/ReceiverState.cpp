// SPDX-License-Identifier: MIT
// A view is a tree, of which a hidden group hides what is in it.

#include "host/window/devices/ReceiverState.h"

#include "host/operations/Operation.h"

#include <utility>

namespace host {
namespace {

void addControls(const gps::View& view, std::vector<ControlState>& controls)
{
    if (view.isHidden())
        return;
    ControlState control{.identifier = view.identifier(), .title = view.title()};
    if (const auto* const menu = dynamic_cast<const gps::PopUpButton*>(&view)) {
        control.kind = ControlState::Kind::kMenu;
        control.items = menu->items();
        control.selected = menu->selected();
        controls.push_back(std::move(control));
    } else if (dynamic_cast<const gps::Button*>(&view) != nullptr) {
        controls.push_back(std::move(control));
    }
    for (const auto& subview : view.subviews())
        addControls(*subview, controls);
}

} // namespace

DriverState stateOf(const gps::GPSPlugInProtocol& driver)
{
    DriverState state{.name = driverName(driver),
                      .title = driver.gpsName(),
                      .devices = devicesOf(driver),
                      .kinds = requestedKinds(operationOptions({}), driver),
                      .isReady = driver.isReady()};
    if (const auto view = driver.gpsView())
        addControls(*view, state.controls);
    return state;
}

} // namespace host
