// SPDX-License-Identifier: MIT
// A header, the devices on one side, map and list on the other.

#include "host/window/MainWindow.h"

#include "host/window/About.h"
#include "host/window/Shortcuts.h"
#include "host/window/TransferResults.h"
#include "host/window/base/FileDrop.h"
#include "host/window/base/Question.h"
#include "host/window/base/Translation.h"
#include "host/window/map/MapSourceAction.h"
#include "host/window/settings/PreferencesWindow.h"

#include <cstdint>
#include <utility>

#include <adwaita.h>

namespace host {
namespace {

Glib::RefPtr<Gio::Menu> mainMenu()
{
    const auto files = Gio::Menu::create();
    files->append(tr("_Open Folder…"), "win.open-folder");
    files->append(tr("_Import…"), "win.import");
    files->append(tr("_Export…"), "win.export");
    files->append(tr("_Backups"), "win.page::backups");
    const auto help = Gio::Menu::create();
    help->append(tr("_Preferences"), "win.preferences");
    help->append(tr("_Keyboard Shortcuts"), "win.shortcuts");
    help->append(tr("_About"), "win.about");
    auto menu = Gio::Menu::create();
    menu->append_section(files);
    menu->append_section(help);
    return menu;
}

// The map that some settings ask for: the same whatever file was used before.
std::pair<WindowSettings::Tiles, std::string> mapOf(const WindowSettings& settings)
{
    const bool isFile = settings.tiles == WindowSettings::Tiles::kFile;
    return {settings.tiles, isFile ? settings.tileFile : std::string{}};
}

} // namespace

MainWindow::MainWindow(Gtk::Application& application, std::optional<std::string> bundle,
                       const std::vector<std::string>& paths)
    : devices_({.picked = [this](auto driver, const auto& control,
                                 auto item) { receivers_->pick(driver, control, item); },
                .pressed = [this](auto driver,
                                  const auto& control) { receivers_->press(driver, control); },
                .download =
                    [this](const auto& device, const auto& choice) {
                        setBusy(true);
                        receivers_->download(device, choice);
                    },
                .newOnlyChanged =
                    [this](bool isNewOnly) {
                        auto settings = settings_.settings();
                        settings.isNewOnly = isNewOnly;
                        settings_.set(std::move(settings));
                    },
                .stop = [this] { receivers_->stop(); },
                .mount = [this](const std::string& node) { receivers_->mount(node); },
                .eject = [this](const auto& device) { eject(device); },
                .selected =
                    [this](const auto& receiver) {
                        if (receiver)
                            send_.setReceiver(receiver->name, receiver->address.location);
                        else
                            send_.setReceiver({}, {});
                        backups_.refresh();
                    }}),
      exporter_(messages_, {.saved =
                                [this](auto records, const auto& ticked) {
                                    receivers_->noteSaved(std::move(records), ticked);
                                },
                            .ended = [this](const auto& report) { endExport(report); }}),
      settings_({.changed = [this](const WindowSettings& settings) { apply(settings); },
                 .failed =
                     [this](const std::string& sentence) {
                         messages_.show(MessageTopic::kSettings, sentence);
                     }}),
      send_({.preview =
                 [this](const SendChoice& choice) {
                     if (const auto receiver = devices_.selected())
                         receivers_->preview(receiver->address, choice, backups());
                 },
             .send =
                 [this](const SendChoice& choice, const SendPreview& seen) {
                     const auto receiver = devices_.selected();
                     if (!receiver)
                         return;
                     setBusy(true);
                     receivers_->send(receiver->address, choice, seen, backups());
                 }}),
      backups_({.list =
                    [this] {
                        const auto receiver = devices_.selected();
                        receivers_->listBackups(receiver ? std::optional{receiver->address}
                                                         : std::nullopt);
                    },
                .compare =
                    [this](const auto& backup) {
                        if (const auto receiver = devices_.selected())
                            receivers_->compareBackup(receiver->address, backup);
                    },
                .restore = [this](const auto& backup,
                                  const auto& explanation) { restore(backup, explanation); }}),
      saving_(settings_.settings().isSaving, settings_.settings().saveFolder,
              {.changed = [this](bool isOn, const std::string& folder) { saveNew(isOn, folder); }}),
      frame_(application, devices_, messages_, mainMenu()),
      closing_(frame_.window(), {.isTransferring = [this] { return isBusy_ || isSaving_; },
                                 .isExporting = [this] { return exporter_.isRunning(); },
                                 .stop = [this](bool isTransfer) { stop(isTransfer); }}),
      opener_(messages_, {.addFolders =
                              [this](const auto& folders) {
                                  devices_.select(folders.back());
                                  receivers_->addFolders(folders);
                              },
                          .import = [this](ImportRequest request) { import(std::move(request)); }})
{
    frame_.window().set_title("Magellan GPS");
    addActions();
    addPages();
    receivers_ = std::make_unique<Receivers>(
        std::move(bundle), std::vector<std::string>{},
        Receivers::Handlers{
            .changed = [this](ReceiverState state) { devices_.setState(state); },
            .progressed =
                [this](const TransferProgress& progress) {
                    devices_.setProgress(progress);
                    backups_.setProgress(progress);
                },
            .received = [this](ReceivedRecords received) { setReceived(std::move(received)); },
            .refused =
                [this](const std::string& reason) {
                    messages_.show(MessageTopic::kReceiver, reason);
                },
            .ejected = [this](const Message& result) { setEjected(result); },
            .notReceivers =
                [this](const std::vector<RefusedFolder>& folders) {
                    opener_.importRefused(folders);
                },
            .previewed = [this](SendPreview preview) { send_.setPreview(std::move(preview)); },
            .sent = [this](const SendResult& result) { setSent(result); },
            .backupsListed = [this](const BackupState& state) { backups_.setBackups(state); },
            .backupCompared =
                [this](const ComparedBackup& compared) {
                    backups_.setComparison(compared.backup, compared.comparison);
                },
            .restored = [this](const RestoreReport& report) { setRestored(report); },
            .saved = [this](const SavingEvent& event) { showSaving(event); }});
    opener_.open(paths);
    const auto& settings = settings_.settings();
    apply(settings);
    records_.map().signalSourceChanged().connect(
        [this](WindowSettings::Tiles tiles, const std::string& file) { keepMap(tiles, file); });
    if (settings.isSaving && !settings.saveFolder.empty())
        receivers_->saveNew(settings.saveFolder);
}

void MainWindow::addPages()
{
    frame_.addSourceButton(tr("Import…"), "document-open-symbolic", "win.import");
    frame_.addButton(tr("Export…"), "document-save-as-symbolic", "win.export");
    frame_.addPage(records_, "records", tr("Records"), "mark-location-symbolic");
    frame_.addPage(send_, "send", tr("Send"), "document-send-symbolic");
    frame_.addPage(backups_, "backups", tr("Backups"), "document-revert-symbolic");
    frame_.onPageShown([this](const std::string& name) {
        if (name == "send")
            showRecordsToSend();
    });
    acceptFiles(frame_.window(), [this](const auto& paths) {
        opener_.drop(paths, devices_.selected().has_value());
    });
    frame_.addPage(saving_, "saving", tr("Saving"), "folder-download-symbolic");
}

void MainWindow::addActions()
{
    auto& window = frame_.window();
    window.add_action("download", [this] { devices_.startDownload(); });
    window.add_action("open-folder", [this] { chooseFolder(); });
    window.add_action("import", [this] { chooseFiles(); });
    window.add_action("export", [this] { chooseExport(); })->set_enabled(false);
    window.add_action_with_parameter(
        "page", Glib::VARIANT_TYPE_STRING, [this](const Glib::VariantBase& page) {
            frame_.showPage(
                Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(page).get().c_str());
        });
    window.add_action("search", [this] {
        frame_.showPage("records");
        records_.startSearch();
    });
    window.add_action("preferences", [this] {
        showPreferences(frame_.window(), settings_.settings(),
                        [this](const WindowSettings& settings) { settings_.set(settings); });
    });
    window.add_action("shortcuts", [this] { showShortcuts(frame_.window()); });
    window.add_action("about", [this] { showAbout(frame_.window()); });
    addMapSourceAction(window, records_.map(), [this](PathChosen chosen) {
        choose(tr("Open a Map File"), Gtk::FileChooser::Action::OPEN,
               [chosen = std::move(chosen)](const std::vector<std::string>& paths) {
                   chosen(paths.front());
               })
            .show();
    });
}

void MainWindow::stop(bool isTransfer)
{
    receivers_->stop();
    receivers_->stopSaving();
    if (!isTransfer)
        exporter_.stop();
}

void MainWindow::apply(const WindowSettings& settings)
{
    records_.setSettings(settings);
    devices_.setNewOnly(settings.isNewOnly);
    backups_.setUtc(settings.isUtc);
    const auto before = std::exchange(shownMap_, mapOf(settings));
    if (shownMap_ == before)
        return;
    // Without a network, nothing is below the records instead of the coasts.
    if (settings.tiles != WindowSettings::Tiles::kOpenStreetMap ||
        Gio::NetworkMonitor::get_default()->get_network_available())
        records_.map().setSource(settings.tiles, settings.tileFile);
}

// The menu chooses the map, too.
void MainWindow::keepMap(WindowSettings::Tiles tiles, const std::string& file)
{
    auto settings = settings_.settings();
    settings.tiles = tiles;
    if (tiles == WindowSettings::Tiles::kFile)
        settings.tileFile = file;
    shownMap_ = mapOf(settings);
    settings_.set(std::move(settings));
}

BackupPolicy MainWindow::backups() const
{
    return {.folder = defaultBackupFolder().value_or(""),
            .count = static_cast<std::uint32_t>(settings_.settings().mostBackups)};
}

// The preferences keep other settings meanwhile.
void MainWindow::saveNew(bool isOn, const std::string& folder)
{
    auto settings = settings_.settings();
    settings.isSaving = isOn;
    settings.saveFolder = folder;
    settings_.set(std::move(settings));
    if (isOn)
        receivers_->saveNew(folder);
    else
        receivers_->stopSaving();
}

void MainWindow::showSaving(const SavingEvent& event)
{
    isSaving_ = event.isRunning;
    saving_.add(event);
    closing_.continueWhenIdle();
}

void MainWindow::import(ImportRequest request)
{
    if (isBusy_) {
        messages_.show(MessageTopic::kReceived,
                       tr("The files were not imported, because another transfer is running. Wait "
                          "for its end, and open them again."));
        return;
    }
    setBusy(true);
    importing_ = std::move(request);
    receivers_->import(importing_.paths);
}

void MainWindow::setBusy(bool isBusy)
{
    isBusy_ = isBusy;
    devices_.setBusy(isBusy);
    send_.setBusy(isBusy);
    backups_.setBusy(isBusy);
    enable("import", !isBusy);
    enable("download", !isBusy);
    updateExport();
}

void MainWindow::updateExport()
{
    enable("export",
           !isBusy_ && !exporter_.isRunning() && shown_.records && !shown_.records->isEmpty());
}

void MainWindow::enable(const char* action, bool isEnabled)
{
    std::dynamic_pointer_cast<Gio::SimpleAction>(frame_.window().lookup_action(action))
        ->set_enabled(isEnabled);
}

// Returns whether there is still somebody to see what it brought.
bool MainWindow::endTransfer()
{
    setBusy(false);
    return !closing_.continueWhenIdle();
}

void MainWindow::setReceived(ReceivedRecords received)
{
    const auto request = std::exchange(importing_, {});
    if (!endTransfer())
        return;
    const bool isNothing = !received.isComplete && received.records->isEmpty();
    if (isNothing)
        received.messages.insert(received.messages.begin(), request.notReceivers.begin(),
                                 request.notReceivers.end());
    showReceived(messages_, received);
    // What was received before may not have been saved.
    if (isNothing && shown_.records)
        return;
    shown_ = std::move(received);
    updateExport();
    records_.setRecords(shown_.records);
    records_.setNote(sentenceOnLeftOut(shown_));
    frame_.showPage(request.isToSend ? "send" : "records");
    if (frame_.shownPage() == "send")
        showRecordsToSend();
}

void MainWindow::showRecordsToSend()
{
    if (shown_.records)
        send_.setRecords(shown_.records, records_.ticked());
}

void MainWindow::setSent(const SendResult& result)
{
    if (endTransfer())
        showSent(messages_, result, settings_.settings().isUtc);
}

void MainWindow::restore(const std::string& backup, const Glib::ustring& explanation)
{
    ask(frame_.window(), tr("Restore This Backup?"), explanation.c_str(),
        {.cancel = tr("_Cancel"), .accept = tr("_Restore")},
        [this, backup, receiver = devices_.selected()] {
            if (isBusy_ || !receiver) // something has begun while the question was open
                return;
            setBusy(true);
            receivers_->restore(receiver->address, backup, backups());
        });
}

void MainWindow::eject(const DeviceAddress& device)
{
    if (isEjecting_)
        return;
    if (isBusy_ || isSaving_) {
        messages_.show(MessageTopic::kReceiver,
                       tr("The receiver was not ejected, because a transfer is running. Wait for "
                          "its end, or stop it, and eject the receiver again."),
                       {}, true);
        return;
    }
    isEjecting_ = true;
    messages_.show(MessageTopic::kReceiver,
                   tr("The receiver is being ejected. Leave it connected until that has ended."),
                   {}, false);
    receivers_->eject(device);
}

void MainWindow::setEjected(const Message& result)
{
    isEjecting_ = false;
    messages_.show(MessageTopic::kReceiver, result.text, {}, result.isError);
}

void MainWindow::setRestored(const RestoreReport& report)
{
    if (!endTransfer())
        return;
    backups_.refresh();
    showRestored(messages_, report);
}

void MainWindow::chooseFolder()
{
    choose(tr("Open a Copy of a Receiver"), Gtk::FileChooser::Action::SELECT_FOLDER,
           [this](const std::vector<std::string>& paths) { opener_.open(paths); })
        .show();
}

void MainWindow::chooseFiles()
{
    auto& dialog = choose(tr("Import Files"), Gtk::FileChooser::Action::OPEN,
                          [this](const std::vector<std::string>& paths) { opener_.open(paths); });
    dialog.set_select_multiple(true);
    dialog.show();
}

void MainWindow::chooseExport()
{
    auto& dialog = choose(tr("Export the Ticked Records"), Gtk::FileChooser::Action::SAVE,
                          [this](const std::vector<std::string>& paths) {
                              exporter_.write(paths.front(), shown_, records_.ticked());
                              updateExport();
                          });
    dialog.set_current_name("trip.gpx");
    dialog.show();
}

Gtk::FileChooserNative& MainWindow::choose(const char* title, Gtk::FileChooser::Action action,
                                           PathChooser::Chosen chosen)
{
    auto& dialog = chooser_.make(title, frame_.window(), action, std::move(chosen));
    const auto& folder = settings_.settings().downloadFolder;
    if (action == Gtk::FileChooser::Action::SAVE && !folder.empty())
        dialog.set_current_folder(Gio::File::create_for_path(folder));
    return dialog;
}

// A failure keeps the window open, although the user has asked for its end.
void MainWindow::endExport(const ExportReport& report)
{
    updateExport();
    if (report.error)
        closing_.giveUp();
    else
        closing_.continueWhenIdle();
}

} // namespace host
