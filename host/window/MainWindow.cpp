// SPDX-License-Identifier: MIT
// A header, the devices on one side, map and list on the other.

#include "host/window/MainWindow.h"

#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/files/Files.h"
#include "host/formats/Formats.h"
#include "host/window/MainLoop.h"
#include "host/words/RecordCountText.h"

#include <gps/Geocache.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include <adwaita.h>

namespace host {
namespace {

constexpr int kUsualWidth = 1100; // pixels
constexpr int kUsualHeight = 720;

RecordCounts countsOf(const RecordSet& records)
{
    RecordCounts counts{.routes = records.routes.size(), .tracks = records.tracks.size()};
    for (const auto& point : records.points)
        ++(gps::isGeocache(point.record) ? counts.geocaches : counts.waypoints);
    for (const auto& route : records.routes)
        counts.routePoints += route.points.size();
    for (const auto& track : records.tracks)
        counts.trackPoints += track.points.size();
    return counts;
}

Glib::ustring sentenceOn(const ReceivedRecords& received)
{
    const auto counts = recordCountText(countsOf(*received.records));
    if (counts.empty())
        return received.isComplete ? "There are no records." : "Nothing was received.";
    return (received.isComplete ? "Received: " : "Received, but not complete: ") + counts + ".";
}

// The C++ binding has no class for the items of the list.
std::vector<std::string> pathsOf(Gtk::FileChooser& chooser)
{
    std::vector<std::string> paths;
    const auto files = chooser.get_files();
    for (guint i = 0; i < files->get_n_items(); ++i) {
        auto* const item = g_list_model_get_item(files->gobj(), i);
        paths.push_back(Glib::wrap(G_FILE(item))->get_path());
    }
    return paths;
}

} // namespace

MainWindow::MainWindow(Gtk::Application& application, std::optional<std::string> bundle,
                       const std::vector<std::string>& paths)
    : window_(dynamic_cast<Gtk::ApplicationWindow*>(
          Glib::wrap(GTK_WINDOW(adw_application_window_new(application.gobj()))))),
      devices_({.picked = [this](auto driver, const auto& control,
                                 auto item) { receivers_->pick(driver, control, item); },
                .pressed = [this](auto driver,
                                  const auto& control) { receivers_->press(driver, control); },
                .download =
                    [this](auto driver, const auto& kinds) {
                        setBusy(true);
                        sources_.clear();
                        receivers_->download(driver, kinds);
                    },
                .stop = [this] { receivers_->stop(); }}),
      map_({.selected = [](RecordKind, std::size_t) {}}),
      list_({.ticked = [this] { map_.setTicked(list_.ticked()); },
             .selected = [this](const RecordItem& item) { showOnMap(item); }})
{
    window_->set_title("Magellan GPS");
    window_->set_default_size(kUsualWidth, kUsualHeight);
    auto* const content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    fillHeader(*content);
    content->append(messages_);
    auto* const panes = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL);
    panes->append(devices_);
    panes->append(*recordPane());
    content->append(*panes);
    adw_application_window_set_content(ADW_APPLICATION_WINDOW(window_->gobj()),
                                       GTK_WIDGET(content->gobj()));
    addActions();
    receivers_ = std::make_unique<Receivers>(
        std::move(bundle), std::vector<std::string>{},
        Receivers::Handlers{
            .changed = [this](ReceiverState state) { devices_.setState(state); },
            .progressed =
                [this](const TransferProgress& progress) { devices_.setProgress(progress); },
            .received = [this](ReceivedRecords received) { setReceived(std::move(received)); },
            .refused = [this](const std::string& reason) { messages_.show(reason, {}, true); }});
    open(paths);
}

void MainWindow::fillHeader(Gtk::Box& content)
{
    auto* const header = Glib::wrap(adw_header_bar_new());
    content.append(*header);
    for (const auto& [text, action] : {std::pair{"Open Folder…", "win.open-folder"},
                                       {"Import…", "win.import"},
                                       {"Export…", "win.export"}}) {
        auto* const button = Gtk::make_managed<Gtk::Button>(text);
        button->set_action_name(action);
        adw_header_bar_pack_start(ADW_HEADER_BAR(header->gobj()), GTK_WIDGET(button->gobj()));
    }
}

Gtk::Widget* MainWindow::recordPane()
{
    auto* const pane = Gtk::make_managed<Gtk::Paned>(Gtk::Orientation::VERTICAL);
    pane->set_start_child(map_);
    pane->set_end_child(list_);
    pane->set_position(kUsualHeight / 2);
    pane->set_expand(true);
    return pane;
}

void MainWindow::addActions()
{
    window_->add_action("open-folder", [this] { chooseFolder(); });
    window_->add_action("import", [this] { chooseFiles(); });
    window_->add_action("export", [this] { chooseExport(); })->set_enabled(false);
}

// What a second import brought would replace what the user has not seen yet.
void MainWindow::open(const std::vector<std::string>& paths)
{
    std::vector<std::string> files;
    for (const auto& path : paths) {
        std::error_code ignored;
        if (std::filesystem::is_directory(path, ignored))
            receivers_->addFolder(path);
        else
            files.push_back(path);
    }
    if (files.empty())
        return;
    if (isBusy_) {
        messages_.show("The files were not imported, because another transfer is running. Wait for "
                       "its end, and open them again.",
                       {}, true);
        return;
    }
    setBusy(true);
    sources_ = files;
    receivers_->import(files);
}

void MainWindow::setBusy(bool isBusy)
{
    isBusy_ = isBusy;
    devices_.setBusy(isBusy);
    enable("import", !isBusy);
    enable("export", !isBusy && shown_.records && !shown_.records->isEmpty());
}

void MainWindow::enable(const char* action, bool isEnabled)
{
    std::dynamic_pointer_cast<Gio::SimpleAction>(window_->lookup_action(action))
        ->set_enabled(isEnabled);
}

void MainWindow::setReceived(ReceivedRecords received)
{
    shown_ = std::move(received);
    setBusy(false);
    map_.setRecords(shown_.records);
    list_.setRecords(*shown_.records);
    messages_.show(sentenceOn(shown_), shown_.messages, !shown_.isComplete);
}

void MainWindow::showOnMap(const RecordItem& item)
{
    map_.select(item.kind, item.index);
    map_.show(item.kind, item.index);
}

void MainWindow::chooseFolder()
{
    choose("Open a Copy of a Receiver", Gtk::FileChooser::Action::SELECT_FOLDER,
           [this](const std::vector<std::string>& paths) { open(paths); });
    chooser_->show();
}

void MainWindow::chooseFiles()
{
    choose("Import Files", Gtk::FileChooser::Action::OPEN,
           [this](const std::vector<std::string>& paths) { open(paths); });
    chooser_->set_select_multiple(true);
    chooser_->show();
}

void MainWindow::chooseExport()
{
    choose("Export the Ticked Records", Gtk::FileChooser::Action::SAVE,
           [this](const std::vector<std::string>& paths) { exportTo(paths.front()); });
    chooser_->set_current_name("trip.gpx");
    chooser_->show();
}

// The dialog is destroyed before anything else happens: a screen reader that asks for one that is
// only hidden ends the program, because of a fault of the toolkit.
void MainWindow::choose(const char* title, Gtk::FileChooser::Action action,
                        std::function<void(const std::vector<std::string>& paths)> chosen)
{
    chooser_ = Gtk::FileChooserNative::create(title, *window_, action);
    chooser_->signal_response().connect([this, chosen = std::move(chosen)](int response) {
        const auto paths = pathsOf(*chooser_.get());
        onMainLoop([this, chosen, response, paths] {
            chooser_.reset();
            if (response == Gtk::ResponseType::ACCEPT && !paths.empty())
                chosen(paths);
        });
    });
}

void MainWindow::exportTo(const std::string& path)
{
    const auto* const format = findFormat(fileTypeOf(path));
    if (format == nullptr) {
        messages_.show("The name of the file must end in one of these: " + formatNames() + ".", {},
                       true);
        return;
    }
    if (isOneOfFiles(path, sources_)) {
        messages_.show("The file was not replaced, because it is what the records were imported "
                       "from, and may hold more than is shown. Choose another name.",
                       {}, true);
        return;
    }
    auto origin = shown_.origin;
    origin.title = std::filesystem::path{path}.stem().string();
    std::string remark;
    if (const auto failure =
            exportRecords(*shown_.records, list_.ticked(), path, *format, origin, remark))
        messages_.show(sentencesOf(*failure), {}, true);
    else
        messages_.show("Saved: " + displayText(path), {{false, remark}}, false);
}

} // namespace host
