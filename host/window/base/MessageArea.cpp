// SPDX-License-Identifier: MIT
// What was written is first: it is what may have to be done again.

#include "host/window/base/MessageArea.h"

#include <cstddef>

namespace host {

MessageArea::MessageArea() : Gtk::Box(Gtk::Orientation::VERTICAL)
{
    for (auto& bar : bars_)
        append(bar);
}

void MessageArea::show(MessageTopic topic, const Glib::ustring& sentence,
                       const std::vector<Message>& messages, bool isError)
{
    bars_[static_cast<std::size_t>(topic)].show(sentence, messages, isError);
}

} // namespace host
