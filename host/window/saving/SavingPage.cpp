// SPDX-License-Identifier: MIT
// The list is short, so its rows are not recycled.

#include "host/window/saving/SavingPage.h"

#include "host/base/Text.h"
#include "host/window/base/Accessible.h"
#include "host/window/base/Translation.h"

#include <utility>

namespace host {
namespace {

AdwPreferencesGroup* newGroup(AdwPreferencesPage* page, const char* title)
{
    auto* const group = ADW_PREFERENCES_GROUP(adw_preferences_group_new());
    adw_preferences_group_set_title(group, title);
    adw_preferences_page_add(page, group);
    return group;
}

} // namespace

SavingPage::SavingPage(bool isOn, const std::string& folder, Handlers handlers)
    : handlers_(std::move(handlers)), folder_(folder),
      folderRow_(tr("Folder"), tr("None chosen"), Gtk::FileChooser::Action::SELECT_FOLDER,
                 [this](const std::string& path) { setFolder(path); }),
      switch_(newSwitchRow(tr("Save Everything New Automatically"),
                           tr("From each receiver that is plugged in while this window is open"),
                           isOn && !folder.empty(), [this](bool) { toggle(); }))
{
    auto* const page = ADW_PREFERENCES_PAGE(adw_preferences_page_new());
    auto* const choice = newGroup(page, "");
    adw_preferences_group_add(choice, GTK_WIDGET(switch_.row));
    adw_preferences_group_add(choice, GTK_WIDGET(folderRow_.row()));
    folderRow_.setPath(folder);
    saved_ = newGroup(page, tr("Saved"));
    state_.set_text(tr("Nothing was saved yet."));
    state_.set_wrap(true);
    state_.set_xalign(0);
    adw_preferences_group_add(saved_, GTK_WIDGET(state_.gobj()));
    gtk_widget_set_hexpand(GTK_WIDGET(page), TRUE);
    gtk_box_append(gobj(), GTK_WIDGET(page));
    namePartsForReaders(*this, GTK_TYPE_LIST_BOX, tr("Saving"));
}

// Without a folder, the user chooses one first.
void SavingPage::toggle()
{
    const bool isOn = switch_.control->get_active();
    if (isOn && folder_.empty()) {
        switch_.control->set_active(false);
        folderRow_.choose();
        return;
    }
    handlers_.changed(isOn, folder_);
}

void SavingPage::setFolder(const std::string& path)
{
    folder_ = path;
    handlers_.changed(switch_.control->get_active(), folder_);
}

void SavingPage::add(const SavingEvent& event)
{
    state_.set_text(event.isRunning ? tr("A receiver is being read…") : "");
    state_.set_visible(event.isRunning);
    if (!event.text.empty())
        addRow(event);
}

// A group has no way to add a row in front, so it gets all of them again.
void SavingPage::addRow(const SavingEvent& event)
{
    auto* const row = newActionRow(displayText(event.text).c_str());
    adw_action_row_set_title_lines(row, 0);
    if (event.isError)
        adw_action_row_set_icon_name(row, "dialog-warning-symbolic");
    for (auto* const old : rows_) {
        g_object_ref(old);
        adw_preferences_group_remove(saved_, old);
    }
    adw_preferences_group_add(saved_, GTK_WIDGET(row));
    rows_.push_front(GTK_WIDGET(row));
    for (std::size_t i = 1; i < rows_.size(); ++i) {
        if (i < kMostRows)
            adw_preferences_group_add(saved_, rows_[i]);
        g_object_unref(rows_[i]);
    }
    if (rows_.size() > kMostRows)
        rows_.pop_back();
}

} // namespace host
