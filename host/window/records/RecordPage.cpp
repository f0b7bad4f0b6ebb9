// SPDX-License-Identifier: MIT
// Each part reports what the user has selected, and this page shows it in the others.

#include "host/window/records/RecordPage.h"

#include "host/window/base/Accessible.h"
#include "host/window/base/Layout.h"
#include "host/window/base/Translation.h"
#include "host/words/ProfileText.h"

#include <iterator>
#include <utility>

namespace host {
namespace {

constexpr int kListWidth = 340; // pixels
constexpr int kMapWidth = 340;  // at least
constexpr int kMapHeight = 300; // at first

// The toolkit makes each button so wide that three of them do not fit in a narrow window.
void makeNarrow(Gtk::StackSwitcher& switcher)
{
    const auto style = Gtk::CssProvider::create();
    style->load_from_data("stackswitcher.records > button { min-width: 60px; }");
    Gtk::StyleContext::add_provider_for_display(switcher.get_display(), style,
                                                GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    switcher.add_css_class("records");
}

} // namespace

RecordPage::RecordPage()
    : Gtk::Box(Gtk::Orientation::VERTICAL),
      map_(
          {.selected = [this](RecordKind kind, std::size_t index) { selectFromMap(kind, index); }}),
      list_({.ticked = [this] { map_.setTicked(list_.ticked()); },
             .selected = [this](const RecordRow& row) { select(row); },
             .activated =
                 [this](const RecordRow& row) {
                     select(row);
                     showMap();
                 }}),
      profile_({.pointed = [this](const auto& point) { map_.setMarker(point); },
                .measured = [this] { showDetails(profile_.figures()); }}),
      leaflet_(ADW_LEAFLET(adw_leaflet_new()))
{
    list_.set_size_request(kListWidth);
    toMap_.set_label(tr("Show the Map"));
    toMap_.set_margin(kSmallGap);
    toMap_.signal_clicked().connect([this] { showMap(); });
    list_.append(toMap_);
    note_.set_wrap(true);
    note_.set_xalign(0);
    note_.set_max_width_chars(30); // the list's own width decides
    note_.set_margin(2 * kSmallGap);
    setNote({});
    list_.prepend(note_);
    adw_leaflet_append(leaflet_, GTK_WIDGET(list_.gobj()));
    auto* const line = gtk_separator_new(GTK_ORIENTATION_VERTICAL);
    adw_leaflet_page_set_navigatable(adw_leaflet_append(leaflet_, line), FALSE);
    adw_leaflet_append(leaflet_, mapColumn());
    adw_leaflet_set_can_navigate_back(leaflet_, TRUE);
    // It comes while widgets get their places, which must not be exchanged then.
    g_signal_connect_swapped(leaflet_, "notify::folded", G_CALLBACK(+[](RecordPage* self) {
                                 Glib::signal_idle().connect_once(
                                     sigc::mem_fun(*self, &RecordPage::fold));
                             }),
                             this);
    fold();
    gtk_widget_set_vexpand(GTK_WIDGET(leaflet_), TRUE);
    gtk_box_append(gobj(), GTK_WIDGET(leaflet_));
}

GtkWidget* RecordPage::mapColumn()
{
    nothing_.set_text(tr("Select a record to see its profile and details."));
    nothing_.set_wrap(true);
    nothing_.add_css_class("dim-label");
    panel_.add(nothing_, "nothing");
    panel_.add(narrowMap_, "map", tr("Map"));
    panel_.get_page(narrowMap_)->set_visible(false);
    panel_.add(profile_, "profile", tr("Profile"));
    panel_.add(details_, "details", tr("Details"));
    panel_.set_vexpand(true);
    switcher_.set_stack(panel_);
    makeNarrow(switcher_);
    nameForReaders(switcher_, tr("View of the records"));
    switcher_.set_halign(Gtk::Align::CENTER);
    switcher_.set_margin(kSmallGap);
    switcher_.set_visible(false);
    auto* const lower = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    lower->append(switcher_);
    lower->append(panel_);
    column_.set_start_child(map_);
    column_.set_end_child(*lower);
    column_.set_shrink_end_child(false);
    column_.set_position(kMapHeight);
    column_.set_vexpand(true);

    auto* const back = Gtk::make_managed<Gtk::Button>(tr("Back to the List"));
    back->signal_clicked().connect(
        [this] { adw_leaflet_navigate(leaflet_, ADW_NAVIGATION_DIRECTION_BACK); });
    selectedName_.set_ellipsize(Pango::EllipsizeMode::END);
    selectedName_.set_margin_start(kSmallGap);
    toList_.set_margin(kSmallGap);
    toList_.append(*back);
    toList_.append(selectedName_);
    auto* const column = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    column->set_size_request(kMapWidth);
    column->set_hexpand(true);
    column->append(toList_);
    column->append(column_);
    return GTK_WIDGET(column->gobj());
}

void RecordPage::setRecords(std::shared_ptr<const RecordSet> records)
{
    records_ = std::move(records);
    selected_.reset();
    selectedName_.set_text("");
    profile_.clear();
    showPanel(false);
    map_.setRecords(records_);
    list_.setRecords(records_);
}

void RecordPage::setNote(const Glib::ustring& note)
{
    note_.set_text(note);
    note_.set_visible(!note.empty());
}

void RecordPage::setSettings(const WindowSettings& settings)
{
    presentation_ = {.units = settings.units, .isUtc = settings.isUtc};
    list_.setPresentation(presentation_);
    profile_.setPresentation(presentation_);
    map_.setUnits(settings.units);
    if (selected_)
        showDetails(profile_.figures());
}

void RecordPage::startSearch()
{
    adw_leaflet_navigate(leaflet_, ADW_NAVIGATION_DIRECTION_BACK);
    list_.startSearch();
}

void RecordPage::select(const RecordRow& row)
{
    map_.select(row.kind, row.index);
    map_.show(row.kind, row.index);
    showSelected(row);
}

void RecordPage::selectFromMap(RecordKind kind, std::size_t index)
{
    const auto* const row = list_.find(kind, index);
    if (row == nullptr)
        return;
    list_.select(kind, index);
    map_.select(kind, index);
    showSelected(*row);
}

void RecordPage::showSelected(const RecordRow& row)
{
    const bool isTrack = row.kind == RecordKind::kTrack;
    const bool wasTrack = selected_ && selected_->kind == RecordKind::kTrack;
    selected_ = row;
    selectedName_.set_text(rowName(row));
    showDetails(nullptr);
    panel_.get_page(profile_)->set_visible(isTrack);
    if (isTrack)
        profile_.setTrack(records_, row.index);
    else
        profile_.clear();
    showPanel(wasTrack);
}

// What the user has chosen stays, if the record has it.
void RecordPage::showPanel(bool wasTrack)
{
    const auto shown = panel_.get_visible_child_name();
    const bool isTrack = selected_ && selected_->kind == RecordKind::kTrack;
    switcher_.set_visible(isTrack || (selected_ && isFolded_)); // if there is a choice
    if (!selected_)
        panel_.set_visible_child(isFolded_ ? "map" : "nothing");
    else if (isFolded_ && (shown == "nothing" || (shown == "profile" && !isTrack)))
        panel_.set_visible_child("map");
    else if (!isFolded_ && !isTrack)
        panel_.set_visible_child("details");
    else if (!isFolded_ && !wasTrack)
        panel_.set_visible_child("profile");
}

// The figures of a track follow, once they are computed.
void RecordPage::showDetails(const StretchFigures* figures)
{
    auto lines = recordDetails(*records_, *selected_, presentation_);
    if (figures != nullptr) {
        auto more = figureLines(*figures, presentation_.units);
        std::move(more.begin(), more.end(), std::back_inserter(lines));
    }
    details_.setLines(lines);
}

void RecordPage::showMap()
{
    adw_leaflet_navigate(leaflet_, ADW_NAVIGATION_DIRECTION_FORWARD);
    if (isFolded_)
        panel_.set_visible_child("map");
}

void RecordPage::fold()
{
    const bool isFolded = adw_leaflet_get_folded(leaflet_) != FALSE;
    toList_.set_visible(isFolded);
    toMap_.set_visible(isFolded);
    list_.set_hexpand(isFolded);
    if (isFolded == isFolded_)
        return;
    isFolded_ = isFolded;
    panel_.get_page(narrowMap_)->set_visible(isFolded);
    if (isFolded) {
        gtk_paned_set_start_child(column_.gobj(), nullptr);
        narrowMap_.append(map_);
    } else {
        narrowMap_.remove(map_);
        column_.set_start_child(map_);
    }
    showPanel(false);
}

} // namespace host
