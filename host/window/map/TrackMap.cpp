// SPDX-License-Identifier: MIT
// The library's map does the moving and zooming. From below: tiles or coasts, the records, a marked
// position, and the controls.

#include "host/window/map/TrackMap.h"

#include "host/base/TranslatedFormat.h"
#include "host/points/Points.h"
#include "host/window/base/Accessible.h"
#include "host/window/base/Layout.h"
#include "host/window/base/MainLoop.h"
#include "host/window/base/Translation.h"
#include "host/window/map/CoastPainter.h"
#include "host/window/map/MapNote.h"
#include "host/window/map/MapSourceAction.h"
#include "host/window/map/TileSource.h"
#include "host/words/RecordDetail.h"

#include <gps/Geocache.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace host {
namespace {

constexpr double kLeastZoom = 1;
constexpr double kMostZoom = 20;
constexpr double kMostFittedZoom = 16; // a single point needs no more
constexpr const char* kOwnSources = "Natural Earth, GeoNames (CC BY 4.0)"; // of the coasts

bool hasLicense(ShumateMapSource* source)
{
    const char* const license = shumate_map_source_get_license(source);
    return license != nullptr && *license != 0;
}

// The library's widget keeps an empty line for sources without a license.
void showAttribution(ShumateLicense* license, const std::string& text)
{
    shumate_license_set_extra_text(license, text.c_str());
    for (auto* child = gtk_widget_get_first_child(GTK_WIDGET(license)); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (GTK_IS_LABEL(child))
            gtk_widget_set_visible(child, *gtk_label_get_text(GTK_LABEL(child)) != 0);
    }
}

ShumateMapSource* openStreetMap()
{
    ShumateMapSourceRegistry* const sources = shumate_map_source_registry_new_with_defaults();
    auto* const source =
        shumate_map_source_registry_get_by_id(sources, SHUMATE_MAP_SOURCE_OSM_MAPNIK);
    g_object_ref(source);
    g_object_unref(sources);
    return source;
}

// The marked position: a ring.
GtkWidget* newRing()
{
    constexpr int kSize = 18;
    auto* const area = gtk_drawing_area_new();
    gtk_drawing_area_set_content_width(GTK_DRAWING_AREA(area), kSize);
    gtk_drawing_area_set_content_height(GTK_DRAWING_AREA(area), kSize);
    gtk_drawing_area_set_draw_func(
        GTK_DRAWING_AREA(area),
        [](GtkDrawingArea*, cairo_t* cairo, int width, int height, gpointer) {
            const auto ring = [&](double gray, double line) {
                cairo_set_source_rgb(cairo, gray, gray, gray);
                cairo_set_line_width(cairo, line);
                cairo_arc(cairo, width / 2.0, height / 2.0, width / 2.0 - 3, 0, 7);
                cairo_stroke(cairo);
            };
            ring(1, 5);
            ring(0, 2.5);
        },
        nullptr, nullptr);
    return area;
}

Gtk::Button* newControl(const char* icon, const char* name, const std::function<void()>& pressed)
{
    auto* const button = Gtk::make_managed<Gtk::Button>();
    button->set_icon_name(icon);
    button->set_tooltip_text(name);
    button->add_css_class("osd");
    button->set_halign(Gtk::Align::END);
    nameForReaders(*button, name);
    button->signal_clicked().connect(pressed);
    return button;
}

std::string nameOfUnnamed(const RecordSet& records, const RecordRef& record)
{
    const bool isPoint = record.kind == RecordKind::kPoint;
    return unnamedText(record.kind,
                       isPoint && gps::isGeocache(records.points[record.index].record));
}

} // namespace

TrackMap::TrackMap(Handlers handlers)
    : handlers_(std::move(handlers)), map_(shumate_map_new()),
      viewport_(shumate_map_get_viewport(map_)), scale_(shumate_scale_new(viewport_)),
      license_(shumate_license_new()), markers_(shumate_marker_layer_new(viewport_)),
      coasts_(viewport_, {}), drawn_(viewport_, [this] { resized(); })
{
    shumate_map_add_layer(map_, coasts_.layer());
    shumate_map_add_layer(map_, drawn_.layer());
    shumate_map_add_layer(map_, SHUMATE_LAYER(markers_));
    overlay_.set_child(*Glib::wrap(GTK_WIDGET(map_)));
    overlay_.set_expand(true);
    append(overlay_);
    addControls();
    addInput();
    setProjection();
    coasts_.setPaint(paintCoasts);
    showAttribution(license_, kOwnSources);
    updateNote();
}

TrackMap::~TrackMap()
{
    *isAlive_ = false;
    g_signal_handlers_disconnect_by_data(viewport_, this);
}

void TrackMap::addControls()
{
    // Side by side, so that a long attribution wraps instead of covering the scale.
    auto* const bottom = Gtk::make_managed<Gtk::Box>();
    gtk_widget_set_valign(GTK_WIDGET(scale_), GTK_ALIGN_END);
    bottom->append(*Glib::wrap(GTK_WIDGET(scale_)));
    gtk_widget_set_valign(GTK_WIDGET(license_), GTK_ALIGN_END);
    gtk_widget_set_halign(GTK_WIDGET(license_), GTK_ALIGN_END);
    gtk_widget_set_hexpand(GTK_WIDGET(license_), TRUE);
    bottom->append(*Glib::wrap(GTK_WIDGET(license_)));
    bottom->set_valign(Gtk::Align::END);
    overlay_.add_overlay(*bottom);

    controls_.set_halign(Gtk::Align::END);
    controls_.set_valign(Gtk::Align::START);
    controls_.set_margin(kSmallGap);
    controls_.append(
        *newControl("zoom-fit-best-symbolic", tr("Show Everything"), [this] { showEverything(); }));
    controls_.append(
        *newControl("zoom-in-symbolic", tr("Zoom In"), [this] { shumate_map_zoom_in(map_); }));
    controls_.append(
        *newControl("zoom-out-symbolic", tr("Zoom Out"), [this] { shumate_map_zoom_out(map_); }));
    auto* const menu = Gtk::make_managed<Gtk::MenuButton>();
    menu->set_label(tr("Map"));
    nameForReaders(*menu, tr("Map"));
    menu->set_menu_model(mapSourceMenu());
    menu->add_css_class("osd");
    controls_.append(*menu);
    overlay_.add_overlay(controls_);

    note_.set_wrap(true);
    note_.set_justify(Gtk::Justification::CENTER);
    note_.set_halign(Gtk::Align::CENTER);
    note_.set_valign(Gtk::Align::START);
    note_.set_margin(kSmallGap);
    note_.set_margin_top(60); // below the buttons
    note_.add_css_class("osd");
    note_.add_css_class("toolbar"); // room around the text
    note_.set_can_target(false);
    overlay_.add_overlay(note_);
}

void TrackMap::addInput()
{
    auto* const map = Glib::wrap(GTK_WIDGET(map_));
    nameForReaders(*map, tr("Map"));
    map->set_focusable(true);
    const auto click = Gtk::GestureClick::create();
    click->signal_pressed().connect([map](int, double, double) { map->grab_focus(); });
    click->signal_released().connect([this](int presses, double x, double y) {
        if (presses == 1)
            this->click(x, y);
    });
    map->add_controller(click);
    map->set_has_tooltip(true);
    map->signal_query_tooltip().connect(
        [this](int x, int y, bool isByKeyboard, const Glib::RefPtr<Gtk::Tooltip>& tooltip) {
            return !isByKeyboard && describe(x, y, tooltip);
        },
        false);
    const auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType) { return pressKey(key); }, false);
    map->add_controller(keys);
    for (const char* const change : {"notify::latitude", "notify::longitude", "notify::zoom-level"})
        g_signal_connect_swapped(viewport_, change, G_CALLBACK(+[](TrackMap* self) {
                                     if (!self->isMoving_)
                                         self->fitted_ = {};
                                 }),
                                 this);
}

// Whole steps without animation: keys are pressed faster than that lasts.
bool TrackMap::pressKey(guint key)
{
    constexpr double kStep = 80; // pixels
    switch (key) {
    case GDK_KEY_plus:
    case GDK_KEY_equal:
    case GDK_KEY_KP_Add:
        zoomBy(1);
        return true;
    case GDK_KEY_minus:
    case GDK_KEY_KP_Subtract:
        zoomBy(-1);
        return true;
    case GDK_KEY_Left:
        moveBy(-kStep, 0);
        return true;
    case GDK_KEY_Right:
        moveBy(kStep, 0);
        return true;
    case GDK_KEY_Up:
        moveBy(0, -kStep);
        return true;
    case GDK_KEY_Down:
        moveBy(0, kStep);
        return true;
    case GDK_KEY_Home:
        showEverything();
        return true;
    default:
        return false;
    }
}

void TrackMap::zoomBy(double levels)
{
    shumate_map_stop_go_to(map_);
    shumate_viewport_set_zoom_level(viewport_, shumate_viewport_get_zoom_level(viewport_) + levels);
}

// In pixels, eastward and southward.
void TrackMap::moveBy(double x, double y)
{
    const auto seen = drawn_.view();
    const MapPosition center{seen.center.x + x / seen.scale,
                             std::clamp(seen.center.y + y / seen.scale, 0.0, 1.0)};
    shumate_map_stop_go_to(map_);
    shumate_location_set_location(SHUMATE_LOCATION(viewport_), latitudeOf(center),
                                  longitudeOf(center));
}

// The scale knows no nautical miles. Those who use them have heights in metres.
void TrackMap::setUnits(UnitSystem units)
{
    shumate_scale_set_unit(scale_, units == UnitSystem::kImperial ? SHUMATE_UNIT_IMPERIAL
                                                                  : SHUMATE_UNIT_METRIC);
}

void TrackMap::setSource(WindowSettings::Tiles tiles, const std::string& file)
{
    opening_.run([this, tiles, file] { return prepared(tiles, file); });
}

// Runs on a worker: a file on a slow disk must not hold up the window.
Background::Result TrackMap::prepared(WindowSettings::Tiles tiles, const std::string& file)
{
    if (tiles != WindowSettings::Tiles::kFile)
        return [this, tiles] {
            const bool isOnline = tiles == WindowSettings::Tiles::kOpenStreetMap;
            changeSource(tiles, {}, isOnline ? openStreetMap() : nullptr, {});
        };
    std::string failure;
    const auto opened = TileFile::open(file, failure);
    return [this, file, opened, failure] {
        if (opened) {
            changeSource(WindowSettings::Tiles::kFile, file, newTileSource(opened),
                         opened->description().attribution);
            return;
        }
        sourceFailure_ = failure;
        updateNote();
    };
}

// Takes over a reference.
void TrackMap::changeSource(WindowSettings::Tiles tiles, const std::string& file,
                            ShumateMapSource* source, const std::string& attribution)
{
    setTiles(source);
    const auto sources = attribution.empty() ? kOwnSources : attribution + '\n' + kOwnSources;
    showAttribution(license_, sources);
    shownSource_ = tiles;
    sourceFailure_.clear();
    updateNote();
    sourceChanged_.emit(tiles, file);
}

// Coasts stay below the tiles, for where there are none: without a network, or beyond a file's part
// of the world.
void TrackMap::setTiles(ShumateMapSource* source)
{
    if (tiles_ != nullptr) {
        shumate_map_remove_layer(map_, tiles_);
        if (hasLicense(source_))
            shumate_license_remove_map_source(license_, source_);
        g_clear_object(&source_);
        tiles_ = nullptr;
    }
    if (source == nullptr)
        return;
    source_ = source;
    tiles_ = SHUMATE_LAYER(shumate_map_layer_new(source, viewport_));
    shumate_map_insert_layer_behind(map_, tiles_, drawn_.layer());
    if (hasLicense(source))
        shumate_license_append_map_source(license_, source);
}

// How the world is projected, which is the same for all maps.
void TrackMap::setProjection()
{
    auto* const reference = openStreetMap();
    shumate_viewport_set_reference_map_source(viewport_, reference);
    g_object_unref(reference);
    shumate_viewport_set_min_zoom_level(viewport_, static_cast<guint>(kLeastZoom));
    shumate_viewport_set_max_zoom_level(viewport_, static_cast<guint>(kMostZoom));
}

void TrackMap::setRecords(std::shared_ptr<const RecordSet> records)
{
    records_ = std::move(records);
    scene_ = {.ticked = std::make_shared<TickedRecords>(TickedRecords::all(*records_))};
    wanted_.reset();
    drawn_.clear();
    setMarker(std::nullopt);
    note_.set_visible(false);
    preparation_.run([this, records = records_]() -> Background::Result {
        return [this, contents = mapRecordsOf(records)] { setContents(contents); };
    });
}

void TrackMap::setContents(std::shared_ptr<MapRecords> contents)
{
    scene_.records = std::move(contents);
    if (wanted_)
        moveTo(scene_.records->extentOf(*std::exchange(wanted_, std::nullopt)));
    else
        showEverything();
    repaint();
}

void TrackMap::repaint()
{
    if (!scene_.records)
        return;
    drawn_.setPaint([scene = scene_, painter = painter_](const MapView& view) {
        return painter->paint(scene, view);
    });
    updateNote();
}

void TrackMap::updateNote()
{
    const auto note = !sourceFailure_.empty() ? sourceFailure_
                      : scene_.records        ? mapNote(scene_.records.get(), *scene_.ticked)
                                              : mapNote(nullptr, {});
    note_.set_text(note);
    note_.set_visible(!note.empty());
}

void TrackMap::setTicked(const TickedRecords& ticked)
{
    scene_.ticked = std::make_shared<TickedRecords>(ticked);
    repaint();
}

void TrackMap::select(RecordKind kind, std::size_t index)
{
    scene_.selected = RecordRef{kind, index};
    repaint();
}

void TrackMap::clearSelection()
{
    scene_.selected.reset();
    repaint();
}

void TrackMap::show(RecordKind kind, std::size_t index)
{
    if (scene_.records)
        moveTo(scene_.records->extentOf({kind, index}));
    else
        wanted_ = RecordRef{kind, index};
}

void TrackMap::showEverything()
{
    if (scene_.records)
        moveTo(scene_.records->extent);
}

void TrackMap::setMarker(const std::optional<gps::GPSPoint>& position)
{
    if (!position || !isOnGlobe(*position)) {
        shumate_marker_layer_remove_all(markers_);
        marker_ = nullptr;
        return;
    }
    if (marker_ == nullptr) {
        marker_ = shumate_marker_new();
        shumate_marker_set_child(marker_, newRing());
        gtk_widget_set_can_target(GTK_WIDGET(marker_), FALSE);
        shumate_marker_layer_add_marker(markers_, marker_);
    }
    shumate_location_set_location(SHUMATE_LOCATION(marker_), position->latitude,
                                  position->longitude);
}

// A group is shown in detail; one whose points are at the same position selects the first of them.
void TrackMap::click(double x, double y)
{
    const auto hit = drawn_.hitAt({x, y});
    if (!hit)
        return;
    const bool isGroup = hit->count > 1;
    if (isGroup &&
        std::max(hit->extent.right - hit->extent.left, hit->extent.bottom - hit->extent.top) > 1e-8)
        moveTo(hit->extent);
    else
        handlers_.selected(hit->record.kind, hit->record.index);
}

bool TrackMap::describe(double x, double y, const Glib::RefPtr<Gtk::Tooltip>& tooltip)
{
    const auto hit = drawn_.hitAt({x, y});
    if (!hit || !scene_.records)
        return false;
    if (hit->count > 1) {
        tooltip->set_text(trCounted(hit->count, "{} waypoint or geocache",
                                    "{} waypoints and geocaches", hit->count));
        return true;
    }
    constexpr std::size_t kMostCharacters = 100;
    const auto name = nameOnMap(*records_, hit->record, kMostCharacters);
    tooltip->set_text(name.empty() ? nameOfUnnamed(*records_, hit->record) : name);
    return true;
}

void TrackMap::moveTo(const Extent& extent)
{
    if (extent.isEmpty())
        return;
    fitted_ = extent;
    fit();
}

// Beside the controls, and with room for icons and names at the edges.
void TrackMap::fit()
{
    constexpr double kBefore = 30; // pixels
    constexpr double kAfter = 70;
    constexpr double kAbove = 70;
    constexpr double kBelow = 60;
    constexpr double kLeastSide = 40;
    const auto seen = drawn_.view();
    if (fitted_.isEmpty() || seen.width <= 0 || seen.height <= 0)
        return; // resized() comes back to it
    const double width = std::max(seen.width - kBefore - kAfter, kLeastSide);
    const double height = std::max(seen.height - kAbove - kBelow, kLeastSide);
    const double world =
        std::min(width / (fitted_.right - fitted_.left), height / (fitted_.bottom - fitted_.top));
    const double zoom =
        std::clamp(std::log2(world / MapPath::kTileSize), kLeastZoom, kMostFittedZoom);
    const double pixel = 1 / (MapPath::kTileSize * std::exp2(zoom));
    const double side = get_direction() == Gtk::TextDirection::RTL ? -1 : 1;
    auto center = fitted_.center();
    center.x += side * (kAfter - kBefore) / 2 * pixel;
    center.y += (kBelow - kAbove) / 2 * pixel;
    isMoving_ = true;
    shumate_map_stop_go_to(map_);
    shumate_viewport_set_zoom_level(viewport_, zoom);
    shumate_location_set_location(SHUMATE_LOCATION(viewport_), latitudeOf(center),
                                  longitudeOf(center));
    isMoving_ = false;
}

// The map must not be moved while it is being laid out.
void TrackMap::resized()
{
    beforeNextFrame([this, alive = isAlive_] {
        if (*alive)
            fit();
    });
}

} // namespace host
