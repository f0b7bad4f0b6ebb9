// SPDX-License-Identifier: MIT
// Texts come from files and receivers, so they are shown as text, never as markup.

#include "host/window/base/MessageBar.h"

#include "host/base/Text.h"
#include "host/window/base/Accessible.h"
#include "host/window/base/Layout.h"
#include "host/window/base/WrappedText.h"

#include <string>

namespace host {
namespace {

constexpr int kMostHeight = 100; // pixels of the details; what is above a page must leave it room

} // namespace

MessageBar::MessageBar()
{
    set_show_close_button(true);
    namePartsForReaders(*this, GTK_TYPE_BUTTON, tr("Close the message"));
    signal_response().connect([this](int) { set_revealed(false); });
    auto* const box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, kSmallGap);
    box->set_margin(kSmallGap);
    box->set_hexpand(true); // what scrolls asks for little width
    for (auto* const label : {&sentence_, &messages_}) {
        wrapText(*label);
        label->set_selectable(true);
    }
    auto* const pane = Gtk::make_managed<Gtk::ScrolledWindow>();
    pane->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    pane->set_propagate_natural_height(true);
    pane->set_max_content_height(kMostHeight);
    pane->set_child(messages_);
    details_.set_child(*pane);
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
