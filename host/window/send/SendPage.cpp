// SPDX-License-Identifier: MIT
// A preview reads the whole receiver, so it is made once the user has stopped ticking, and only
// while the page is seen.

#include "host/window/send/SendPage.h"

#include "host/base/Text.h"
#include "host/window/base/Accessible.h"
#include "host/window/base/Layout.h"
#include "host/window/base/Translation.h"
#include "host/window/base/WrappedText.h"
#include "host/words/RecordDetail.h"

#include <utility>
#include <vector>

namespace host {
namespace {

using Fate = PlannedRecord::Fate;

constexpr int kPlanHeight = 60;         // pixels: at least, of the list of changes
constexpr int kMostPlanHeight = 150;    // likewise, at most
constexpr int kRecordsHeight = 90;      // likewise, at least, of the list of records
constexpr unsigned kPause = 300;        // milliseconds without a change, before a preview is made
constexpr std::size_t kMostOfName = 60; // characters of a name

const PlannedRecord* find(const PlannedRecords& records, RecordKind ofKind, std::size_t index)
{
    const auto& kind = ofKind == RecordKind::kTrack   ? records.tracks
                       : ofKind == RecordKind::kRoute ? records.routes
                                                      : records.points;
    return index < kind.size() ? &kind[index] : nullptr;
}

// What the receiver changes in a record that it gets.
Glib::ustring changesOf(const PlannedRecord& record)
{
    Glib::ustring text;
    for (const auto& key : record.changedTexts) {
        if (key == "name")
            text = Glib::ustring::compose(tr("as “%1”"), displayText(record.name, kMostOfName));
    }
    const bool isMore = record.changedTexts.size() > (text.empty() ? 0U : 1U);
    return isMore ? text + (text.empty() ? "" : ", ") + tr("texts changed") : text;
}

// A row: a box to tick, the record's name, and below it what becomes of the record.
class RowWidget : public Gtk::Box {
public:
    RowWidget() : Gtk::Box(Gtk::Orientation::HORIZONTAL, kGap)
    {
        name_.set_ellipsize(Pango::EllipsizeMode::END);
        name_.set_xalign(0);
        set_margin_start(kGap / 2);
        set_margin_end(kGap);
        for (auto* const label : {&kind_, &note_}) {
            label->add_css_class("dim-label");
            label->add_css_class("caption");
        }
        note_.set_ellipsize(Pango::EllipsizeMode::END);
        note_.set_hexpand(true);
        note_.set_xalign(0);
        auto* const below = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap);
        below->append(kind_);
        below->append(note_);
        auto* const texts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
        texts->set_hexpand(true);
        texts->append(name_);
        texts->append(*below);
        append(box_);
        append(*texts);
    }

    void show(const std::string& name, const std::string& kind, bool isTicked,
              std::function<void(bool isTicked)> toggled)
    {
        disarm(); // the record that was shown before must not hear of the change
        name_.set_text(name);
        kind_.set_text(kind);
        nameForReaders(box_, Glib::ustring::compose(tr("Send %1"), name).c_str());
        box_.set_active(isTicked);
        toggled_ = box_.signal_toggled().connect(
            [this, toggled = std::move(toggled)] { toggled(box_.get_active()); });
    }

    /// Makes the box do nothing, until a record is shown.
    void disarm() { toggled_.disconnect(); }

    void setNote(const std::string& note)
    {
        note_.set_text(note);
        const auto& name = name_.get_text();
        set_tooltip_text(note.empty() ? name : name + "\n" + note_.get_text());
    }

    sigc::connection previewed; ///< to the page that knows the note

private:
    Gtk::CheckButton box_;
    Gtk::Label name_;
    Gtk::Label kind_;
    Gtk::Label note_;
    sigc::connection toggled_;
};

RowWidget& rowWidgetOf(Gtk::ListItem& row)
{
    return dynamic_cast<RowWidget&>(*row.get_child());
}

Gtk::ScrolledWindow* scrolled(Gtk::Widget& child)
{
    auto* const scrolled = Gtk::make_managed<Gtk::ScrolledWindow>();
    scrolled->set_child(child);
    return scrolled;
}

} // namespace

SendPage::SendPage(Handlers handlers)
    : Gtk::Box(Gtk::Orientation::VERTICAL), handlers_(std::move(handlers)),
      empty_(ADW_STATUS_PAGE(adw_status_page_new()))
{
    adw_status_page_set_icon_name(empty_, "document-send-symbolic");
    adw_status_page_set_title(empty_, tr("Nothing to Send"));
    gtk_widget_set_vexpand(GTK_WIDGET(empty_), TRUE);
    gtk_box_append(gobj(), GTK_WIDGET(empty_));
    receiver_.add_css_class("heading");
    receiver_.set_margin(kGap);
    wrapText(receiver_);
    content_.append(receiver_);
    content_.append(*recordView());
    content_.append(*planView());
    content_.append(*actionBar());
    append(content_);
    signal_map().connect([this] { requestPreview(); });
    showState();
}

Gtk::Widget* SendPage::recordView()
{
    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([](const Glib::RefPtr<Gtk::ListItem>& row) {
        row->set_child(*Gtk::make_managed<RowWidget>());
    });
    factory->signal_bind().connect(
        [this](const Glib::RefPtr<Gtk::ListItem>& row) { bindRecord(*row.get()); });
    factory->signal_unbind().connect([this](const Glib::RefPtr<Gtk::ListItem>& row) {
        bound_.erase(row.get());
        stale_.erase(row.get());
        rowWidgetOf(*row.get()).previewed.disconnect();
    });
    auto* const view = Gtk::make_managed<Gtk::ListView>(Gtk::NoSelection::create(items_), factory);
    nameForReaders(*view, tr("Records to send"));
    auto* const pane = scrolled(*view);
    pane->set_min_content_height(kRecordsHeight);
    pane->set_vexpand(true);
    return pane;
}

Gtk::Widget* SendPage::planView()
{
    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([](const Glib::RefPtr<Gtk::ListItem>& row) {
        auto* const label = Gtk::make_managed<Gtk::Label>();
        wrapText(*label);
        row->set_child(*label);
    });
    factory->signal_bind().connect(
        [this](const Glib::RefPtr<Gtk::ListItem>& row) { bindLine(*row.get()); });
    auto* const view = Gtk::make_managed<Gtk::ListView>(Gtk::NoSelection::create(lines_), factory);
    nameForReaders(*view, tr("What changes on the receiver"));
    auto* const pane = scrolled(*view);
    pane->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    pane->set_min_content_height(kPlanHeight);
    pane->set_max_content_height(kMostPlanHeight);
    pane->set_propagate_natural_height(true);
    plan_.set_label(tr("What Changes on the Receiver"));
    nameForReaders(plan_, tr("What Changes on the Receiver"));
    plan_.set_expanded(true);
    plan_.set_margin(kGap);
    plan_.set_child(*pane);
    return &plan_;
}

Gtk::Widget* SendPage::actionBar()
{
    auto* const bar = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap);
    bar->add_css_class("toolbar");
    wrapText(summary_);
    summary_.set_hexpand(true);
    send_.set_label(tr("Send"));
    send_.add_css_class("suggested-action");
    send_.signal_clicked().connect([this] { handlers_.send(choice_, preview_); });
    bar->append(spinner_);
    bar->append(summary_);
    bar->append(send_);
    return bar;
}

void SendPage::setRecords(std::shared_ptr<const RecordSet> records, const TickedRecords& ticked)
{
    if (records == choice_.records && ticked == listed_)
        return; // the page keeps its own ticks
    listed_ = ticked;
    choice_ = {std::move(records), ticked};
    ticks_ = RecordTicks{ticked};
    items_->set(choice_.records, ticked);
    for (auto* const row : bound_)
        rowWidgetOf(*row).disarm();
    stale_ = bound_;
    if (!std::exchange(isArranging_, true))
        add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>&) {
            isArranging_ = arrangeSome();
            return isArranging_;
        });
    refresh();
}

void SendPage::setReceiver(const std::string& name, const std::string& location)
{
    const auto title = Glib::ustring::compose(tr("To %1"), displayText(name));
    if (location == location_ && title.raw() == receiver_.get_text().raw())
        return;
    location_ = location;
    receiver_.set_text(title);
    refresh();
}

void SendPage::setPreview(SendPreview preview)
{
    if (!isAsked_)
        return; // it is of what was shown before
    isAsked_ = false;
    preview_ = std::move(preview);
    isPreviewed_ = true;
    std::vector<Glib::ustring> lines;
    for (const auto* const some : {&preview_.problems, &preview_.lines}) {
        for (const auto& line : *some)
            lines.emplace_back(displayText(line));
    }
    lines_->splice(0, lines_->get_n_items(), lines);
    previewed_.emit();
    showState();
}

void SendPage::setBusy(bool isBusy)
{
    isBusy_ = isBusy;
    if (!isBusy)
        refresh();
    showState();
}

void SendPage::bindRecord(Gtk::ListItem& row)
{
    bound_.insert(&row);
    stale_.erase(&row);
    fill(row);
}

// Making, filling and laying out a row takes a part of a frame that only a few rows may share.
// Returns whether there is more to do.
bool SendPage::arrangeSome()
{
    constexpr int kRows = 20;
    if (stale_.empty())
        return items_->step();
    for (int i = 0; i < kRows && !stale_.empty(); ++i)
        fill(*stale_.extract(stale_.begin()).value());
    return true;
}

void SendPage::fill(Gtk::ListItem& row)
{
    const auto record = items_->row(row.get_position());
    if (!record) // it is about to be removed
        return;
    auto& widget = rowWidgetOf(row);
    const auto name = rowName(*record);
    nameForReaders(*widget.get_parent(), name.c_str());
    widget.show(name, std::string{kindName(*record)}, ticks_.isTicked(record->kind, record->index),
                [this, kind = record->kind, index = record->index](bool isTicked) {
                    tick(kind, index, isTicked);
                });
    const auto showNote = [this, kind = record->kind, index = record->index, &widget] {
        widget.setNote(noteOn(kind, index));
    };
    widget.previewed.disconnect();
    widget.previewed = previewed_.connect(showNote);
    showNote();
}

void SendPage::bindLine(Gtk::ListItem& row) const
{
    auto& label = dynamic_cast<Gtk::Label&>(*row.get_child());
    const auto line = lines_->get_string(row.get_position());
    label.set_text(line);
    nameForReaders(*label.get_parent(), line.c_str());
    if (row.get_position() < preview_.problems.size())
        label.add_css_class("error");
    else
        label.remove_css_class("error");
}

void SendPage::tick(RecordKind kind, std::size_t index, bool isTicked)
{
    ticks_.tick(kind, index, isTicked);
    choice_.ticked = ticks_.records();
    refresh();
}

// The preview is of something else now.
void SendPage::refresh()
{
    isPreviewed_ = false;
    isAsked_ = false;
    waiting_.disconnect();
    waiting_ = Glib::signal_timeout().connect(
        [this] {
            requestPreview();
            return false;
        },
        kPause);
    showState();
}

void SendPage::requestPreview()
{
    if (isPreviewed_ || isBusy_ || !get_mapped() || location_.empty() || items_->isEmpty())
        return;
    isAsked_ = true;
    handlers_.preview(choice_);
}

void SendPage::showState()
{
    const bool isReady = !location_.empty() && !items_->isEmpty();
    gtk_widget_set_visible(GTK_WIDGET(empty_), isReady ? FALSE : TRUE);
    adw_status_page_set_description(
        empty_, location_.empty()
                    ? tr("Connect a receiver that mounts as a disk.")
                    : tr("Import files or download records, and tick what you want to send."));
    content_.set_visible(isReady);
    const bool isWaiting = isReady && !isPreviewed_ && !isBusy_;
    spinner_.set_spinning(isWaiting);
    spinner_.set_visible(isWaiting);
    summary_.set_text(isPreviewed_ ? preview_.summary : "");
    send_.set_sensitive(isPreviewed_ && !isBusy_ && preview_.canSend);
}

std::string SendPage::noteOn(RecordKind kind, std::size_t index) const
{
    const auto* const record = isPreviewed_ ? find(preview_.records, kind, index) : nullptr;
    if (record == nullptr)
        return {};
    switch (record->fate) {
    case Fate::kNotTicked:
        return tr("not sent");
    case Fate::kPresent:
        return tr("on the receiver already");
    case Fate::kRepeated:
        return tr("listed more than once: sent once");
    case Fate::kEmpty:
        return tr("left out: it has no points");
    case Fate::kMissing:
        return kind == RecordKind::kTrack ? tr("does not fit: no number is free")
                                          : tr("will not be on the receiver");
    case Fate::kPartial:
        return tr("not all of it fits");
    case Fate::kSent:
        break;
    }
    return changesOf(*record);
}

} // namespace host
