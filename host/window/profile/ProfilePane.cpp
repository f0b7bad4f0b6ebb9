// SPDX-License-Identifier: MIT
// A track of millions of points takes a second to measure, so another thread does.

#include "host/window/profile/ProfilePane.h"

#include "host/window/base/Layout.h"
#include "host/window/base/Translation.h"
#include "host/words/ProfileText.h"

#include <initializer_list>
#include <string_view>
#include <utility>

namespace host {
namespace {

constexpr int kLineHeight = 15; // pixels, of a small text

void makeText(Gtk::Label& label)
{
    label.set_xalign(0);
    label.set_yalign(0);
    label.set_wrap(true);
    label.set_margin_start(kSmallGap);
    label.set_margin_end(kSmallGap);
    label.add_css_class("caption");
}

std::string_view zoneOf(const TrackProfile& track, const Presentation& presentation)
{
    return track.size() > 0 ? shownZone(track.point(0), presentation) : std::string_view{};
}

// Empty if nothing is missing.
Glib::ustring missingText(const ProfileData& data)
{
    const bool hasHeights =
        data.line(ProfileValue::kElevation, ProfileAxis::kDistance).canBeDrawn() ||
        data.line(ProfileValue::kElevation, ProfileAxis::kTime).canBeDrawn();
    const bool hasSpeeds = data.line(ProfileValue::kSpeed, ProfileAxis::kDistance).canBeDrawn() ||
                           data.line(ProfileValue::kSpeed, ProfileAxis::kTime).canBeDrawn();
    if (hasHeights && hasSpeeds)
        return "";
    if (hasHeights)
        return tr("This track has no times, and so no speeds.");
    if (hasSpeeds)
        return tr("This track has no heights.");
    return data.track().length() > 0 ? tr("This track has neither heights nor times.")
                                     : tr("A track without length has no profile.");
}

} // namespace

ProfilePane::ProfilePane(Handlers handlers)
    : Gtk::Box(Gtk::Orientation::VERTICAL, kSmallGap), handlers_(std::move(handlers)),
      view_([this] { cursorMoved(); })
{
    set_margin_bottom(kSmallGap);
    makeText(reading_);
    makeText(stretchText_);
    makeText(missing_);
    missing_.add_css_class("dim-label");
    // Whatever they say, the profile between them keeps its height.
    reading_.set_size_request(-1, 2 * kLineHeight);
    stretchText_.set_size_request(-1, 3 * kLineHeight);
    for (Gtk::Widget* const widget :
         std::initializer_list<Gtk::Widget*>{&reading_, &view_, &missing_})
        append(*widget);
    addAxes();
    clear();
}

void ProfilePane::addAxes()
{
    distance_.set_label(tr("Distance"));
    time_.set_label(tr("Time"));
    time_.set_group(distance_);
    distance_.set_active(true);
    distance_.signal_toggled().connect(
        [this] { setAxis(distance_.get_active() ? ProfileAxis::kDistance : ProfileAxis::kTime); });
    auto* const axes = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL);
    axes->add_css_class("linked");
    axes->set_valign(Gtk::Align::START);
    axes->append(distance_);
    axes->append(time_);
    auto* const line = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kSmallGap);
    line->set_margin_end(kSmallGap);
    stretchText_.set_hexpand(true);
    line->append(stretchText_);
    line->append(*axes);
    append(*line);
}

void ProfilePane::setTrack(std::shared_ptr<const RecordSet> records, std::size_t track)
{
    clear();
    tracks_.run([this, records = std::move(records), track] {
        auto data = std::make_shared<const ProfileData>(records, track);
        return [this, data = std::move(data), track] { show(data, track); };
    });
}

void ProfilePane::clear()
{
    tracks_.run([] { return [] {}; }); // what is running comes too late
    show(nullptr, 0);
}

void ProfilePane::show(std::shared_ptr<const ProfileData> data, std::size_t track)
{
    data_ = std::move(data);
    view_.setTrack(data_, lineColor(track));
    time_.set_sensitive(data_ && data_->hasAxis(ProfileAxis::kTime));
    distance_.set_sensitive(data_ && data_->hasAxis(ProfileAxis::kDistance));
    if (time_.get_active() && !time_.get_sensitive())
        distance_.set_active(true);
    else if (distance_.get_active() && !distance_.get_sensitive() && time_.get_sensitive())
        time_.set_active(true);
    explain();
    cursorMoved();
    if (data_)
        handlers_.measured();
}

void ProfilePane::explain()
{
    const auto text = data_ ? missingText(*data_) : Glib::ustring{};
    missing_.set_text(text);
    missing_.set_visible(!text.empty());
    view_.set_visible(!data_ || data_->hasAxis(ProfileAxis::kDistance) ||
                      data_->hasAxis(ProfileAxis::kTime));
}

void ProfilePane::setAxis(ProfileAxis axis)
{
    view_.setAxis(axis);
}

void ProfilePane::setPresentation(const Presentation& presentation)
{
    presentation_ = presentation;
    view_.setUnits(presentation.units);
    stretch_.reset();
    cursorMoved();
}

void ProfilePane::cursorMoved()
{
    const auto point = data_ ? view_.cursor().point() : std::nullopt;
    const auto text = point
                          ? readingText(data_->track(), *point,
                                        zoneOf(data_->track(), presentation_), presentation_.units)
                          : std::string{};
    // Without a cursor, the figures of the whole track.
    const bool showsAll = !point && data_;
    reading_.set_text(showsAll ? stretchText(data_->figures(), presentation_.units) : text);
    view_.setCursorText(text);
    handlers_.pointed(point ? std::optional{data_->track().point(*point)} : std::nullopt);
    showStretch();
}

void ProfilePane::showStretch()
{
    const auto stretch = data_ ? view_.cursor().stretch() : std::nullopt;
    if (!stretch)
        stretchText_.set_text("");
    if (stretch == stretch_)
        return;
    stretch_ = stretch;
    stretches_.run([this, data = data_, stretch, units = presentation_.units] {
        const auto text =
            stretch
                ? Glib::ustring::compose(
                      tr("Stretch: %1"),
                      stretchText(stretchFigures(data->track(), stretch->from, stretch->to), units))
                : Glib::ustring{};
        return [this, text] { stretchText_.set_text(text); };
    });
}

} // namespace host
