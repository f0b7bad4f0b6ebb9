// SPDX-License-Identifier: MIT
// The labels are made anew for each record: there are a dozen.

#include "host/window/records/RecordDetails.h"

#include "host/window/base/Accessible.h"
#include "host/window/base/Layout.h"
#include "host/window/base/Translation.h"
#include "host/window/base/WrappedText.h"

namespace host {

RecordDetails::RecordDetails()
{
    grid_.set_margin(kGap);
    grid_.set_column_spacing(kGap);
    grid_.set_row_spacing(kGap / 3);
    nameForReaders(grid_, tr("Details"));
    set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    set_child(grid_);
}

void RecordDetails::setLines(const std::vector<DetailLine>& lines)
{
    while (auto* const child = grid_.get_first_child())
        grid_.remove(*child);
    for (int row = 0; row < static_cast<int>(lines.size()); ++row) {
        const auto& line = lines[static_cast<std::size_t>(row)];
        auto* const label = Gtk::make_managed<Gtk::Label>(tr(line.label.c_str()));
        label->set_xalign(1);
        label->set_valign(Gtk::Align::START);
        label->add_css_class("dim-label");
        auto* const value = Gtk::make_managed<Gtk::Label>(line.value);
        wrapText(*value);
        value->set_hexpand(true);
        value->set_selectable(true);
        value->set_focusable(false); // keys pass over it; the pointer selects
        grid_.attach(*label, 0, row);
        grid_.attach(*value, 1, row);
    }
    get_vadjustment()->set_value(0);
}

} // namespace host
