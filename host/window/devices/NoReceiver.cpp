// SPDX-License-Identifier: MIT
// The explanation is long on a computer with many volumes, so it is folded.

#include "host/window/devices/NoReceiver.h"

#include "host/window/base/Accessible.h"
#include "host/window/base/Layout.h"
#include "host/window/base/WrappedText.h"

namespace host {
namespace {

constexpr int kMostInLine = 32; // characters; the list of receivers decides

} // namespace

NoReceiver::NoReceiver() : Gtk::Box(Gtk::Orientation::VERTICAL, kGap)
{
    for (auto* const label : {&sentence_, &explanation_}) {
        wrapText(*label);
        label->set_max_width_chars(kMostInLine);
    }
    openFolder_.set_action_name("win.open-folder");
    openFolder_.set_tooltip_text(tr("Open a copy of a receiver"));
    explanation_.set_selectable(true);
    explanation_.add_css_class("dim-label");
    explanation_.set_margin_top(kSmallGap);
    why_.set_child(explanation_);
    nameForReaders(why_, tr("Why Is Mine Missing?"));
    append(sentence_);
    append(openFolder_);
    append(why_);
}

void NoReceiver::show(const std::string& failure, const std::string& explanation)
{
    sentence_.set_text(failure.empty() ? tr("Plug a receiver in.") : failure);
    explanation_.set_text(explanation);
    why_.set_visible(failure.empty() && !explanation.empty());
    openFolder_.set_visible(failure.empty());
}

} // namespace host
