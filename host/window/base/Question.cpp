// SPDX-License-Identifier: MIT
// The dialog belongs to the library, which destroys it after the answer.

#include "host/window/base/Question.h"

#include "host/window/base/MainLoop.h"

#include <utility>

#include <adwaita.h>

namespace host {
namespace {

using Accepted = std::function<void()>;

// What the user has accepted may close the window of the dialog, which is still answering here.
void answered(const char* /*answer*/, Accepted* accepted)
{
    onMainLoop(std::move(*accepted));
}

} // namespace

void ask(Gtk::Window& window, const char* question, const char* explanation, const Answers& answers,
         std::function<void()> accepted)
{
    auto* const dialog =
        ADW_MESSAGE_DIALOG(adw_message_dialog_new(window.gobj(), question, explanation));
    adw_message_dialog_add_responses(dialog, "cancel", answers.cancel, "accept", answers.accept,
                                     nullptr);
    adw_message_dialog_set_response_appearance(dialog, "accept", ADW_RESPONSE_DESTRUCTIVE);
    adw_message_dialog_set_default_response(dialog, "cancel");
    adw_message_dialog_set_close_response(dialog, "cancel");
    g_signal_connect_data(
        dialog, "response::accept",
        G_CALLBACK(+[](AdwMessageDialog*, const char* answer, Accepted* accept) {
            answered(answer, accept);
        }),
        new Accepted{std::move(accepted)},
        [](gpointer accept, GClosure*) { delete static_cast<Accepted*>(accept); }, GConnectFlags{});
    gtk_window_present(GTK_WINDOW(dialog));
}

} // namespace host
