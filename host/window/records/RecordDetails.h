// SPDX-License-Identifier: MIT
// RecordDetails: all that is known about the selected record, as texts to select. [main loop]

#pragma once

#include "host/words/RecordDetail.h"

#include <vector>

#include <gtkmm.h>

namespace host {

class RecordDetails : public Gtk::ScrolledWindow {
public:
    RecordDetails();

    void setLines(const std::vector<DetailLine>& lines);

private:
    Gtk::Grid grid_;
};

} // namespace host
