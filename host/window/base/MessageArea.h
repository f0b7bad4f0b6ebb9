// SPDX-License-Identifier: MIT
// MessageArea: the messages above the pages, one bar for each topic, so that news of one topic does
// not replace what the user has to know about another. [main loop]

#pragma once

#include "host/window/base/MessageBar.h"
#include "host/words/Message.h"

#include <array>
#include <vector>

#include <gtkmm.h>

namespace host {

enum class MessageTopic {
    kWritten,  ///< what became of a file or of a receiver's content
    kReceived, ///< what a download or an import has brought
    kReceiver, ///< a receiver that cannot be used
    kSettings,
};

class MessageArea : public Gtk::Box {
public:
    MessageArea();

    /// Shows one sentence, and the messages below "Details", until the user closes them or the next
    /// message on the topic.
    void show(MessageTopic topic, const Glib::ustring& sentence,
              const std::vector<Message>& messages = {}, bool isError = true);

private:
    std::array<MessageBar, 4> bars_; // by topic
};

} // namespace host
