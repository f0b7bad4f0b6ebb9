// SPDX-License-Identifier: MIT
// Texts come from files and receivers, so they are shown as text, never as markup.

#include "host/window/base/MessageBar.h"

#include "host/base/Text.h"
#include "host/window/base/Accessible.h"
#include "host/window/base/Layout.h"

#include <string>

namespace host {

MessageBar::MessageBar()
{
    set_show_close_button(true);
    namePartsForReaders(*this, GTK_TYPE_BUTTON, tr("Close the message"));
    signal_response().connect([this](int) { set_revealed(false); });
    auto* const box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, kSmallGap);
    box->set_margin(kSmallGap);
    for (auto* const label : {&sentence_, &messages_}) {
        label->set_wrap(true);
        label->set_xalign(0);
        label->set_selectable(true);
    }
    details_.set_child(messages_);
    nameForReaders(details_, tr("Details"));
    box->append(sentence_);
    box->append(details_);
    add_child(*box);
    set_revealed(false);
}

void MessageBar::show(const Glib::ustring& sentence, const std::vector<Message>& messages,
                      bool isError)
{
    sentence_.set_text(sentence);
    std::string lines;
    for (const auto& message : messages) {
        if (!message.text.empty())
            lines.append(lines.empty() ? "" : "\n").append(displayText(message.text));
    }
    messages_.set_text(lines);
    details_.set_visible(!lines.empty());
    details_.set_expanded(true); // what was damaged is not to be overlooked
    set_message_type(isError ? Gtk::MessageType::WARNING : Gtk::MessageType::INFO);
    set_revealed(!sentence.empty());
}

} // namespace host
