// SPDX-License-Identifier: MIT
// The box has no label of its own, so that a click on the texts selects the row.

#include "host/window/records/RecordRowWidget.h"

#include "host/window/base/Accessible.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {
namespace {

constexpr int kColumnGap = 8;  // pixels
constexpr int kIconWidth = 20; // pixels, of the line, too

void makeLine(Gtk::Label& label)
{
    label.set_xalign(0);
    label.set_ellipsize(Pango::EllipsizeMode::END);
}

// A line ends between two figures only, such as "1 h 39 min · 23 m up", not within one.
std::string breakingBetweenFigures(std::string_view detail)
{
    constexpr std::string_view kDot = "·";
    constexpr std::string_view kUnbreakable = "\u00A0";
    std::string text;
    for (const char c : detail) {
        if (c == ' ' && !text.ends_with(kDot))
            text += kUnbreakable;
        else
            text += c;
    }
    return text;
}

} // namespace

RecordRowWidget::RecordRowWidget() : Gtk::Box(Gtk::Orientation::HORIZONTAL, kColumnGap)
{
    set_margin_start(kColumnGap / 2);
    set_margin_end(kColumnGap);
    box_.set_valign(Gtk::Align::CENTER);
    box_.signal_toggled().connect([this] {
        if (toggled_)
            toggled_(box_.get_active());
    });
    icon_.set_size_request(kIconWidth);
    line_.set_size_request(kIconWidth);
    line_.set_draw_func([this](const Cairo::RefPtr<Cairo::Context>& cairo, int width, int height) {
        drawLine(cairo, width, height);
    });
    makeLine(name_);
    makeLine(detail_);
    detail_.set_wrap(true);
    detail_.set_lines(2);
    detail_.add_css_class("dim-label");
    detail_.add_css_class("caption");
    auto* const texts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    texts->set_hexpand(true);
    texts->append(name_);
    texts->append(detail_);
    append(box_);
    append(icon_);
    append(line_);
    append(*texts);
}

void RecordRowWidget::show(const Look& look, bool isTicked,
                           std::function<void(bool isTicked)> toggled)
{
    setTicked(isTicked);
    toggled_ = std::move(toggled);
    name_.set_text(look.name);
    detail_.set_text(breakingBetweenFigures(look.detail));
    detail_.set_tooltip_text(look.detail);
    color_ = look.line;
    isDashed_ = look.isDashed;
    icon_.set_visible(!look.line);
    line_.set_visible(look.line.has_value());
    icon_.set_from_icon_name(look.icon);
    line_.queue_draw();
    nameForReaders(box_, look.name.c_str());
    nameForReaders(*get_parent(), look.name.c_str());
}

void RecordRowWidget::setTicked(bool isTicked)
{
    const auto toggled = std::exchange(toggled_, {});
    box_.set_active(isTicked);
    toggled_ = toggled;
}

void RecordRowWidget::drawLine(const Cairo::RefPtr<Cairo::Context>& cairo, int width,
                               int height) const
{
    if (!color_)
        return;
    constexpr double kSampleWidth = 4;
    cairo->set_source_rgb(color_->red, color_->green, color_->blue);
    cairo->set_line_width(kSampleWidth);
    if (isDashed_)
        cairo->set_dash(std::vector<double>{5, 2.5}, 0);
    cairo->move_to(0, height / 2.0);
    cairo->line_to(width, height / 2.0);
    cairo->stroke();
}

} // namespace host
