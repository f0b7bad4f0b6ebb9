// SPDX-License-Identifier: MIT
// The list is filled anew whenever it is read. That is rare, and few of many backups are listed at
// first. Titles of rows would be markup unless told otherwise.

#include "host/window/backups/BackupPage.h"

#include "host/base/Text.h"
#include "host/window/base/Accessible.h"
#include "host/window/base/Layout.h"
#include "host/window/base/Translation.h"
#include "host/window/base/WrappedText.h"
#include "host/words/RestoreText.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <utility>

namespace host {
namespace {

constexpr std::size_t kMostOfIdentifier = 60; // characters of an identifier
constexpr std::size_t kBackupsAtOnce = 25;    // of a device, that are added to its list

Gtk::Label* wrappedLabel(const Glib::ustring& text)
{
    auto* const label = Gtk::make_managed<Gtk::Label>(text);
    wrapText(*label);
    return label;
}

void setTitle(AdwPreferencesRow* row, const std::string& title)
{
    adw_preferences_row_set_use_markup(row, FALSE);
    adw_preferences_row_set_title(row, title.c_str());
    gtk_accessible_update_property(GTK_ACCESSIBLE(row), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   title.c_str(), -1);
}

void addTextRow(Gtk::ListBox& list, const std::string& title, const std::string& text)
{
    auto* const row = ADW_ACTION_ROW(adw_action_row_new());
    setTitle(ADW_PREFERENCES_ROW(row), title);
    adw_action_row_set_subtitle(row, text.c_str());
    gtk_list_box_append(list.gobj(), GTK_WIDGET(row));
}

// Calls a function when a property of an object changes, as long as the object exists.
void onChange(gpointer object, const char* signal, std::function<void()> changed)
{
    using Function = std::function<void()>;
    g_signal_connect_data(
        object, signal, G_CALLBACK(+[](GObject*, GParamSpec*, Function* call) { (*call)(); }),
        std::make_unique<Function>(std::move(changed)).release(),
        [](gpointer call, GClosure*) { delete static_cast<Function*>(call); }, GConnectFlags{});
}

Glib::ustring titleOf(const DeviceBackups& device)
{
    const auto name = displayText(device.identifier, kMostOfIdentifier);
    if (name.empty())
        return tr("The Selected Receiver");
    return Glib::ustring::compose(
        device.location.empty() ? tr("Receiver %1") : tr("The Selected Receiver: %1"), name);
}

Glib::ustring remarkOn(const DeviceBackups& device)
{
    if (device.location.empty())
        return tr("To restore one of these, plug the receiver in and select it.");
    if (device.complete.empty())
        return tr("There is no backup of this receiver. One is made before each send.");
    return tr("Open a backup to see what restoring it would change.");
}

} // namespace

BackupPage::BackupPage(Handlers handlers) : handlers_(std::move(handlers))
{
    set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    content_.set_margin(kGap);
    content_.set_spacing(kGap);
    progress_.set_visible(false);
    nameForReaders(progress_, tr("Restoring"));
    empty_.set_wrap(true);
    empty_.set_margin(4 * kGap);
    empty_.set_justify(Gtk::Justification::CENTER);
    empty_.set_visible(false);
    for (Gtk::Widget* const widget :
         std::initializer_list<Gtk::Widget*>{&progress_, &empty_, &devices_})
        content_.append(*widget);
    auto* const clamp = adw_clamp_new();
    adw_clamp_set_child(ADW_CLAMP(clamp), GTK_WIDGET(content_.gobj()));
    gtk_scrolled_window_set_child(gobj(), clamp);
    signal_map().connect([this] { handlers_.list(); });
}

void BackupPage::refresh()
{
    if (get_mapped())
        handlers_.list();
}

void BackupPage::setUtc(bool isUtc)
{
    if (std::exchange(isUtc_, isUtc) != isUtc)
        fill();
}

void BackupPage::setBackups(const BackupState& state)
{
    state_ = state;
    fill();
}

void BackupPage::fill()
{
    rows_.clear();
    while (auto* const child = devices_.get_first_child())
        devices_.remove(*child);
    for (const auto& device : state_.devices)
        addDevice(device);
    empty_.set_visible(state_.devices.empty());
    empty_.set_text(state_.folder.empty()
                        ? tr("There is no home folder for backups.")
                        : tr("There are no backups yet. One is made before each send."));
    if (auto* const row = findRow(std::exchange(unfolded_, {})))
        adw_expander_row_set_expanded(row->expander, TRUE);
}

void BackupPage::addDevice(const DeviceBackups& device)
{
    auto* const title = wrappedLabel(titleOf(device));
    title->add_css_class("heading");
    title->set_margin_top(kGap);
    auto* const remark = wrappedLabel(remarkOn(device));
    remark->add_css_class("dim-label");
    remark->set_margin_bottom(kGap / 2);
    auto* const list = Gtk::make_managed<Gtk::ListBox>();
    list->set_selection_mode(Gtk::SelectionMode::NONE);
    list->add_css_class("boxed-list");
    nameForReaders(*list, titleOf(device).c_str());
    for (const auto& damaged : device.damaged)
        addTextRow(*list, backupTimeText(damaged.name, isUtc_), damagedBackupText(damaged));
    list->set_visible(!device.complete.empty() || !device.damaged.empty());
    auto* const more = Gtk::make_managed<Gtk::Button>();
    more->set_margin_top(kSmallGap);
    more->signal_clicked().connect([this, list, more, &device] {
        addBackups(*list, *more, device, shown_[device.identifier]);
    });
    const auto shown = std::exchange(shown_[device.identifier], 0);
    do
        addBackups(*list, *more, device, shown_[device.identifier]);
    while (shown_[device.identifier] < std::min(shown, device.complete.size()));
    for (Gtk::Widget* const widget : std::initializer_list<Gtk::Widget*>{title, remark, list, more})
        devices_.append(*widget);
}

// Adds some backups after those that are listed already, and says how many the button would add.
void BackupPage::addBackups(Gtk::ListBox& list, Gtk::Button& more, const DeviceBackups& device,
                            std::size_t begin)
{
    const auto end = std::min(begin + kBackupsAtOnce, device.complete.size());
    for (std::size_t i = begin; i < end; ++i) {
        const auto& backup = device.complete[i];
        if (device.location.empty())
            addTextRow(list, backupTimeText(backup.name, isUtc_), backupSizeText(backup));
        else
            addRow(list, backup);
    }
    shown_[device.identifier] = end;
    const auto next = std::min(device.complete.size() - end, kBackupsAtOnce);
    more.set_label(Glib::ustring::compose(tr("Show %1 More", "Show %1 More", next), next));
    more.set_visible(next > 0);
}

void BackupPage::addRow(Gtk::ListBox& list, const Backup& backup)
{
    auto* const expander = ADW_EXPANDER_ROW(adw_expander_row_new());
    Row row{.path = backup.path,
            .time = backupTimeText(backup.name, isUtc_),
            .expander = expander,
            .changes = wrappedLabel({}),
            .restore = Gtk::make_managed<Gtk::Button>(tr("_Restore…"), true)};
    setTitle(ADW_PREFERENCES_ROW(expander), row.time);
    adw_expander_row_set_subtitle(expander, backupSizeText(backup).c_str());
    row.restore->add_css_class("destructive-action");
    row.restore->set_halign(Gtk::Align::END);
    row.restore->set_sensitive(false);
    row.restore->signal_clicked().connect([this, path = backup.path] { askFor(path); });
    auto* const box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, kGap);
    box->set_margin(kGap);
    box->append(*row.changes);
    box->append(*row.restore);
    auto* const details = Gtk::make_managed<Gtk::ListBoxRow>();
    details->set_activatable(false);
    details->set_child(*box);
    nameForReaders(*details, tr("What restoring would change"));
    adw_expander_row_add_row(expander, GTK_WIDGET(details->gobj()));
    onChange(expander, "notify::expanded", [this, expander, path = backup.path] {
        setUnfolded(path, adw_expander_row_get_expanded(expander) != FALSE);
    });
    gtk_list_box_append(list.gobj(), GTK_WIDGET(expander));
    namePartsForReaders(list, GTK_TYPE_LIST_BOX, tr("Backup"));
    rows_.push_back(std::move(row));
}

// One backup at a time is unfolded, and compared.
void BackupPage::setUnfolded(const std::string& path, bool isUnfolded)
{
    if (!isUnfolded) {
        if (unfolded_ == path)
            unfolded_.clear();
        return;
    }
    unfolded_ = path;
    for (auto& row : rows_) {
        if (row.path != path)
            adw_expander_row_set_expanded(row.expander, FALSE);
    }
    auto& row = *findRow(path);
    row.changedFiles = 0;
    row.changes->set_text(tr("Comparing with the receiver…"));
    updateButtons();
    handlers_.compare(path);
}

void BackupPage::setComparison(const std::string& path, const BackupComparison& comparison)
{
    auto* const row = findRow(path);
    if (row == nullptr)
        return;
    row->changedFiles = comparison.files.size();
    row->changes->set_text(joined(comparisonLines(comparison), "\n"));
    updateButtons();
}

void BackupPage::setProgress(const TransferProgress& progress)
{
    progress_.set_visible(isBusy_ && (progress.phase == TransferPhase::kRestoring ||
                                      progress.phase == TransferPhase::kBackingUp));
    progress_.showProgress(progress);
}

void BackupPage::setBusy(bool isBusy)
{
    isBusy_ = isBusy;
    if (!isBusy)
        progress_.set_visible(false);
    updateButtons();
}

void BackupPage::updateButtons()
{
    for (auto& row : rows_)
        row.restore->set_sensitive(!isBusy_ && row.changedFiles > 0);
}

BackupPage::Row* BackupPage::findRow(const std::string& path)
{
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.path == path; });
    return found != rows_.end() ? &*found : nullptr;
}

void BackupPage::askFor(const std::string& path)
{
    const auto& row = *findRow(path);
    handlers_.restore(
        path, Glib::ustring::compose(
                  tr("%1 file of the receiver becomes what it was on %2. What the receiver holds "
                     "now is kept in a new backup first.",
                     "%1 files of the receiver become what they were on %2. What the receiver "
                     "holds now is kept in a new backup first.",
                     row.changedFiles),
                  row.changedFiles, row.time));
}

} // namespace host
