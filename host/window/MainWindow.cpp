// SPDX-License-Identifier: MIT
// A header, the devices on one side, map and list on the other.

#include "host/window/MainWindow.h"

#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/base/TranslatedFormat.h"
#include "host/files/Files.h"
#include "host/formats/Formats.h"
#include "host/transfer/MapFileImport.h"
#include "host/window/About.h"
#include "host/window/Shortcuts.h"
#include "host/window/base/FileDrop.h"
#include "host/window/base/Question.h"
#include "host/window/base/Translation.h"
#include "host/window/map/MapSourceAction.h"
#include "host/window/settings/PreferencesWindow.h"
#include "host/words/RecordCountText.h"
#include "host/words/RestoreText.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>
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
    files->append(tr("_Backups"), "win.backups");
    const auto help = Gio::Menu::create();
    help->append(tr("_Preferences"), "win.preferences");
    help->append(tr("_Keyboard Shortcuts"), "win.shortcuts");
    help->append(tr("_About"), "win.about");
    auto menu = Gio::Menu::create();
    menu->append_section(files);
    menu->append_section(help);
    return menu;
}

Glib::ustring sentenceOn(const ReceivedRecords& received)
{
    const auto counts = recordCountText(received.counts);
    if (!counts.empty())
        return received.isComplete ? trFormat("Received: {}.", counts)
                                   : trFormat("Received, but not complete: {}.", counts);
    if (!received.isComplete)
        return tr("Nothing was received.");
    return received.news ? tr("There is nothing new.") : tr("There are no records.");
}

// Empty if nothing was left out.
Glib::ustring sentenceOnLeftOut(const ReceivedRecords& received)
{
    const auto counts = received.news ? recordCountText(received.news->leftOut) : "";
    if (counts.empty())
        return {};
    return Glib::ustring::compose(
        tr("Left out because it was saved before: %1. To see everything, untick “Only what is "
           "new”, and download again."),
        counts);
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
                        sources_.clear();
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
      frame_(application, devices_, messages_, mainMenu())
{
    frame_.window().set_title("Magellan GPS");
    messages_.append(exporting_);
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
                [this](const std::vector<RefusedFolder>& folders) { importFrom(folders); },
            .previewed = [this](SendPreview preview) { send_.setPreview(std::move(preview)); },
            .sent = [this](const SendResult& result) { setSent(result); },
            .backupsListed = [this](const BackupState& state) { backups_.setBackups(state); },
            .backupCompared =
                [this](const ComparedBackup& compared) {
                    backups_.setComparison(compared.backup, compared.comparison);
                },
            .restored = [this](const RestoreReport& report) { setRestored(report); },
            .saved = [this](const SavingEvent& event) { showSaving(event); }});
    open(paths);
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
    acceptFiles(frame_.window(), [this](const auto& paths) { drop(paths); });
    frame_.addPage(saving_, "saving", tr("Saving"), "folder-download-symbolic");
}

void MainWindow::addActions()
{
    auto& window = frame_.window();
    window.add_action("download", [this] { devices_.startDownload(); });
    window.add_action("open-folder", [this] { chooseFolder(); });
    window.add_action("import", [this] { chooseFiles(); });
    window.add_action("export", [this] { chooseExport(); })->set_enabled(false);
    window.add_action("backups", [this] { frame_.showPage("backups"); });
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
    window.signal_close_request().connect([this] { return asksBeforeClosing(); }, false);
}

bool MainWindow::isIdle() const
{
    return !isBusy_ && !isSaving_ && !exporting_.isRunning();
}

// What a transfer is writing is finished, whatever the answer is.
bool MainWindow::asksBeforeClosing()
{
    if (isIdle() || closesWhenIdle_)
        return false;
    const bool isTransfer = isBusy_ || isSaving_;
    ask(frame_.window(), isTransfer ? tr("Stop the Transfer?") : tr("Stop the Export?"),
        isTransfer ? tr("A transfer is running. What is being written now is finished first.")
                   : tr("A file is being written. If you stop now, there is no such file."),
        {.cancel = tr("_Continue"), .accept = tr("_Stop and Close")}, [this, isTransfer] {
            closesWhenIdle_ = true;
            receivers_->stop();
            receivers_->stopSaving();
            if (!isTransfer)
                exporting_.stop();
            closeWhenIdle();
        });
    return true;
}

void MainWindow::closeWhenIdle()
{
    if (isIdle())
        frame_.window().close();
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
    if (closesWhenIdle_)
        closeWhenIdle();
}

// What a second import brought would replace what the user has not seen yet.
void MainWindow::open(const std::vector<std::string>& paths)
{
    std::vector<std::string> folders;
    std::vector<std::string> files;
    for (const auto& path : paths) {
        std::error_code ignored;
        if (path.empty())
            messages_.show(MessageTopic::kReceived,
                           tr("A file that is not on this computer cannot be opened. Copy it, and "
                              "open the copy."));
        else
            (std::filesystem::is_directory(path, ignored) ? folders : files).push_back(path);
    }
    if (folders.empty()) {
        if (!files.empty())
            import(files);
        return;
    }
    devices_.select(folders.back());
    opened_.insert(opened_.end(), files.begin(), files.end()); // importFrom() follows
    receivers_->addFolders(folders);
}

// A folder that is not a receiver may be a memory card, or a copy of one.
void MainWindow::importFrom(const std::vector<RefusedFolder>& folders)
{
    auto files = std::exchange(opened_, {});
    for (const auto& folder : folders) {
        files.push_back(folder.path);
        notReceivers_.push_back({true, folder.reason});
    }
    if (!files.empty())
        import(files);
}

void MainWindow::import(const std::vector<std::string>& files)
{
    if (isBusy_) {
        messages_.show(MessageTopic::kReceived,
                       tr("The files were not imported, because another transfer is running. Wait "
                          "for its end, and open them again."));
        return;
    }
    setBusy(true);
    sources_ = files;
    receivers_->import(files);
}

// Map files that are dropped while a receiver is there are meant for it.
void MainWindow::drop(const std::vector<std::string>& paths)
{
    isSendNext_ = devices_.selected() && std::any_of(paths.begin(), paths.end(), isMapFile);
    open(paths);
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
           !isBusy_ && !exporting_.isRunning() && shown_.records && !shown_.records->isEmpty());
}

void MainWindow::enable(const char* action, bool isEnabled)
{
    std::dynamic_pointer_cast<Gio::SimpleAction>(frame_.window().lookup_action(action))
        ->set_enabled(isEnabled);
}

void MainWindow::setReceived(ReceivedRecords received)
{
    if (closesWhenIdle_) {
        setBusy(false);
        closeWhenIdle();
        return;
    }
    const bool isNothing = !received.isComplete && received.records->isEmpty();
    const auto notReceivers = std::exchange(notReceivers_, {});
    if (isNothing)
        received.messages.insert(received.messages.begin(), notReceivers.begin(),
                                 notReceivers.end());
    messages_.show(MessageTopic::kReceived, sentenceOn(received), received.messages,
                   !received.isComplete);
    const char* const page = std::exchange(isSendNext_, false) ? "send" : "records";
    // What was received before may not have been saved.
    const bool isKept = isNothing && shown_.records;
    if (!isKept)
        shown_ = std::move(received);
    setBusy(false);
    if (isKept)
        return;
    records_.setRecords(shown_.records);
    records_.setNote(sentenceOnLeftOut(shown_));
    frame_.showPage(page);
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
    setBusy(false);
    if (closesWhenIdle_)
        closeWhenIdle();
    else
        messages_.show(MessageTopic::kWritten, result.sentence, result.messages,
                       !result.isComplete);
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
    setBusy(false);
    if (closesWhenIdle_) {
        closeWhenIdle();
        return;
    }
    backups_.refresh();
    auto messages = restoreMessages(report);
    for (auto& line : restoreLines(report))
        messages.push_back({false, std::move(line)});
    messages_.show(MessageTopic::kWritten,
                   report.isComplete()
                       ? tr("The backup is restored: the receiver holds what it held then.")
                       : tr("The backup was not restored, or not completely."),
                   messages, !report.isComplete());
}

void MainWindow::chooseFolder()
{
    choose(tr("Open a Copy of a Receiver"), Gtk::FileChooser::Action::SELECT_FOLDER,
           [this](const std::vector<std::string>& paths) { open(paths); })
        .show();
}

void MainWindow::chooseFiles()
{
    auto& dialog = choose(tr("Import Files"), Gtk::FileChooser::Action::OPEN,
                          [this](const std::vector<std::string>& paths) { open(paths); });
    dialog.set_select_multiple(true);
    dialog.show();
}

void MainWindow::chooseExport()
{
    auto& dialog =
        choose(tr("Export the Ticked Records"), Gtk::FileChooser::Action::SAVE,
               [this](const std::vector<std::string>& paths) { exportTo(paths.front()); });
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

void MainWindow::exportTo(const std::string& path)
{
    if (const auto obstacle = whyNotExport(path)) {
        messages_.show(MessageTopic::kWritten, *obstacle);
        return;
    }
    ExportRequest request{
        .path = path, .format = findFormat(fileTypeOf(path)), .origin = shown_.origin};
    request.origin.title = std::filesystem::path{path}.stem().string();
    const auto ticked = records_.ticked();
    exporting_.write(shown_.records, ticked, std::move(request),
                     [this, path, isComplete = shown_.isComplete, news = shown_.news,
                      ticked](const ExportReport& report) {
                         if (report.isComplete() && news)
                             receivers_->noteSaved(news, ticked);
                         setExported(path, isComplete, report);
                     });
    updateExport();
}

std::optional<Glib::ustring> MainWindow::whyNotExport(const std::string& path) const
{
    if (findFormat(fileTypeOf(path)) == nullptr)
        return Glib::ustring::compose(tr("The name of the file must end in one of these: %1."),
                                      formatNames());
    if (isOneOfFiles(path, sources_))
        return tr("The file was not replaced, because it is what the records were imported "
                  "from, and may hold more than is shown. Choose another name.");
    return std::nullopt;
}

// A failure keeps the window open, although the user has asked for its end.
void MainWindow::setExported(const std::string& path, bool isComplete, const ExportReport& report)
{
    updateExport();
    if (report.error) {
        closesWhenIdle_ = false;
        messages_.show(MessageTopic::kWritten, sentencesOf(*report.error));
        return;
    }
    if (report.isStopped)
        messages_.show(MessageTopic::kWritten,
                       Glib::ustring::compose(
                           tr("Stopped: %1 was not written. A file that had this name before is "
                              "unchanged."),
                           displayText(path)),
                       {}, false);
    else
        messages_.show(MessageTopic::kWritten,
                       Glib::ustring::compose(tr("Saved: %1"), displayText(path)),
                       {{false, report.remark},
                        {true, isComplete ? "" : tr("What was received is not complete.")}},
                       !isComplete);
    if (closesWhenIdle_)
        closeWhenIdle();
}

} // namespace host
