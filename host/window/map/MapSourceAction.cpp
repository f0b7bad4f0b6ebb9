// SPDX-License-Identifier: MIT
// The state changes once the map has changed: a file may turn out not to be a map.

#include "host/window/map/MapSourceAction.h"

#include "host/window/base/Translation.h"

#include <array>
#include <utility>

namespace host {
namespace {

using Tiles = WindowSettings::Tiles;

struct SourceChoice {
    Tiles tiles;
    const char* name;
};

constexpr std::array kSources{SourceChoice{Tiles::kNone, "none"},
                              SourceChoice{Tiles::kOpenStreetMap, "openstreetmap"},
                              SourceChoice{Tiles::kFile, "file"}};

const char* nameOf(Tiles tiles)
{
    for (const auto& choice : kSources) {
        if (choice.tiles == tiles)
            return choice.name;
    }
    return "";
}

} // namespace

void addMapSourceAction(Gtk::ApplicationWindow& window, TrackMap& map,
                        std::function<void(PathChosen chosen)> chooseFile)
{
    const auto action = window.add_action_radio_string("map-source", nameOf(map.source()));
    action->signal_activate().connect([&map, chooseFile = std::move(chooseFile)](
                                          const Glib::VariantBase& parameter) {
        const auto name =
            Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(parameter).get().raw();
        if (name == nameOf(Tiles::kFile))
            chooseFile([&map](const std::string& path) { map.setSource(Tiles::kFile, path); });
        else
            map.setSource(name == nameOf(Tiles::kNone) ? Tiles::kNone : Tiles::kOpenStreetMap);
    });
    map.signalSourceChanged().connect([action](Tiles tiles, const std::string&) {
        action->set_state(Glib::Variant<Glib::ustring>::create(nameOf(tiles)));
    });
}

Glib::RefPtr<Gio::Menu> mapSourceMenu()
{
    auto menu = Gio::Menu::create();
    menu->append(tr("_Coasts and Places"), "win.map-source::none");
    menu->append(tr("_OpenStreetMap"), "win.map-source::openstreetmap");
    menu->append(tr("_Map File…"), "win.map-source::file");
    return menu;
}

} // namespace host
