// SPDX-License-Identifier: MIT
// The handlers may belong to a window that has been closed, so each call on the main loop first
// looks whether this object still exists.

#include "host/window/devices/Receivers.h"

#include "host/base/HostError.h"
#include "host/base/Sentences.h"
#include "host/base/Translation.h"
#include "host/bundle/DeviceSearch.h"
#include "host/bundle/Disk.h"
#include "host/bundle/SerialPort.h"
#include "host/desktop/DeviceDisk.h"
#include "host/desktop/UDisks.h"
#include "host/records/RecordKeeper.h"
#include "host/transfer/Download.h"
#include "host/transfer/InputFiles.h"
#include "host/watching/KnownRecords.h"
#include "host/watching/NewRecordFilter.h"
#include "host/window/base/Disposal.h"
#include "host/window/base/MainLoop.h"
#include "host/words/DownloadMessages.h"
#include "host/words/Explanation.h"

#include <gps/GPSFileDevice.h>
#include <gps/View.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

#include <gtkmm.h>

namespace host {
namespace {

// nullopt for a device that is not there any more.
std::optional<DataFolders> foldersOf(const ChosenDevice& device)
{
    return device.location.empty() ? std::nullopt : dataFoldersOf(device);
}

// nullopt for a folder that a driver lists.
std::optional<gps::Error> whyNoReceiver(const std::vector<Driver>& drivers,
                                        const std::string& folder)
{
    for (const auto& driver : drivers) {
        for (const auto& device : devicesOf(*driver)) {
            if (device.location == folder)
                return std::nullopt;
        }
    }
    return explainFolder(drivers, folder);
}

// Null if the driver's devices are not folders of files.
const gps::GPSFileDevice* filesOf(const gps::GPSPlugInProtocol& driver)
{
    return dynamic_cast<const gps::GPSFileDevice*>(&driver);
}

SplitReport splitsIn(const RecordSet& records)
{
    SplitReport splits;
    for (const auto& track : records.tracks) {
        splits.tracks += track.gaps.empty() ? 0U : 1U;
        splits.gaps += track.gaps.size();
    }
    return splits;
}

gps::Error noDeviceToRestore()
{
    return hostError(tr("There is no receiver that a backup can be put back on"),
                     tr("Plug the receiver in, and select it"));
}

} // namespace

Receivers::Receivers(std::optional<std::string> bundle, std::vector<std::string> folders,
                     Handlers handlers)
    : handlers_(std::move(handlers)), folders_(std::move(folders)),
      thread_([this](const gps::DeviceChanges& changes) { refresh(changes); })
{
    thread_.post([this, bundle = std::move(bundle)] { load(bundle); });
}

Receivers::~Receivers()
{
    *isAlive_ = false;
    isStopped_ = true;
    isSavingStopped_ = true;
}

void Receivers::load(const std::optional<std::string>& bundle)
{
    DeviceRequest request;
    request.testFolders = folders_;
    prepareDrivers(request);
    const auto path = findBundle(bundle);
    if (!path)
        failure_ = tr("No plug-in bundle was found beside the program or where it is installed.");
    else if (const auto failure = loadBundle(*path, plugIn_))
        failure_ = sentencesOf(*failure);
    lookAround();
    publish();
}

void Receivers::refresh(const gps::DeviceChanges& changes)
{
    if (changes.serialPorts)
        addNewDrivers(plugIn_);
    for (const auto& driver : plugIn_.drivers) {
        if ((changes.volumes && driver->needsFileSystemRefresh()) ||
            (changes.serialPorts && driver->needsSerialRefresh()))
            driver->refreshDeviceList();
    }
    lookAround();
    publish();
    if (changes.volumes)
        lookForNew();
}

// Calls a handler on the main loop's thread, if this object still exists then.
template <typename Value>
void Receivers::deliver(const std::function<void(Value)>& handler, Value value) const
{
    onMainLoop([alive = isAlive_, &handler, value = std::move(value)]() mutable {
        if (*alive)
            handler(std::move(value));
    });
}

// What volumes and ports change, but no choice of the user's.
void Receivers::lookAround()
{
    surroundings_ = {.failure = failure_};
    const auto disks = unmountedDisks();
    for (const auto& disk : disks)
        surroundings_.unmounted.push_back({disk.node, describeFileSystem(disk)});
    surroundings_.ejectable = ejectableDevices();
    if (failure_.empty())
        surroundings_.explanation = explanationOf(plugIn_, disks);
}

void Receivers::publish()
{
    auto state = surroundings_;
    for (const auto& driver : plugIn_.drivers)
        state.drivers.push_back(stateOf(*driver));
    deliver(handlers_.changed, std::move(state));
}

std::vector<std::string> Receivers::ejectableDevices() const
{
    std::vector<std::string> ejectable;
    for (const auto& driver : plugIn_.drivers) {
        for (auto& device : devicesOf(*driver)) {
            if (!isSerialPort(device.location) && !removableDiskAt(device.location).empty())
                ejectable.push_back(std::move(device.location));
        }
    }
    return ejectable;
}

void Receivers::pick(std::size_t driver, const std::string& control, std::size_t item)
{
    thread_.post([this, driver, control, item] {
        if (auto* const menu = plugIn_.drivers[driver]->gpsView()->find<gps::PopUpButton>(control))
            menu->pick(item);
        publish();
    });
}

void Receivers::press(std::size_t driver, const std::string& control)
{
    thread_.post([this, driver, control] {
        if (auto* const button = plugIn_.drivers[driver]->gpsView()->find<gps::Button>(control))
            button->press();
        lookAround(); // a driver may list more devices then
        publish();
    });
}

void Receivers::addFolders(const std::vector<std::string>& folders)
{
    thread_.post([this, folders] {
        for (const auto& folder : folders) {
            if (std::find(folders_.begin(), folders_.end(), folder) == folders_.end())
                folders_.push_back(folder);
        }
        setTestFolders(folders_);
        refresh({.volumes = true});
        std::vector<RefusedFolder> refused;
        for (const auto& folder : folders) {
            if (const auto reason = whyNoReceiver(plugIn_.drivers, folder))
                refused.push_back({folder, sentencesOf(*reason)});
        }
        deliver(handlers_.notReceivers, std::move(refused));
    });
}

void Receivers::mount(const std::string& node)
{
    thread_.post([this, node] {
        UDisks disks;
        std::string folder;
        if (const auto failure = disks.mount(node, folder))
            deliver(handlers_.refused, sentencesOf(*failure));
        refresh({.volumes = true});
    });
}

void Receivers::eject(const DeviceAddress& device)
{
    thread_.post([this, device] {
        UDisks service;
        DeviceDisk disk{{.eject = true}, service};
        DeviceRequest request;
        request.device = device.location;
        ChosenDevice chosen;
        DeviceDisk::Release release;
        release.error = disk.choose(plugIn_.drivers, request, chosen);
        if (!release.error)
            release = disk.release(true);
        refresh({.volumes = true});
        deliver(handlers_.ejected, release.error ? Message{true, sentencesOf(*release.error)}
                                                 : Message{false, release.note});
    });
}

void Receivers::download(const DeviceAddress& device, const DownloadChoice& choice)
{
    isStopped_ = false;
    thread_.post([this, device, choice] {
        const auto chosen = choose(device);
        if (chosen.location.empty()) {
            deliver(handlers_.received, nothing(receiverGone(device.location)));
            return;
        }
        DownloadRequest request{
            .location = chosen.location, .kinds = choice.kinds, .isDriverReused = true};
        deliver(handlers_.received, choice.isNewOnly
                                        ? receiveNew(*chosen.driver, std::move(request))
                                        : receive(*chosen.driver, std::move(request)));
    });
}

void Receivers::import(const std::vector<std::string>& files)
{
    isStopped_ = false;
    thread_.post([this, files] {
        Driver importer;
        auto sources = files;
        const auto failure = prepareImport(importer, sources);
        auto received = failure
                            ? nothing(*failure)
                            : receive(*importer, {.sourceFiles = sources, .isDriverReused = true});
        received.sources = std::move(sources);
        deliver(handlers_.received, std::move(received));
    });
}

std::optional<gps::Error> Receivers::prepareImport(Driver& importer,
                                                   std::vector<std::string>& files) const
{
    if (auto failure = chooseImporter(plugIn_.drivers, std::nullopt, importer))
        return failure;
    const auto types = importer->fileTypes().value_or(std::vector<std::string>{});
    if (auto failure = expandFolders(files, types))
        return failure;
    return checkImport(files, types);
}

// Nobody announces that a folder was deleted, as they do of a disk that was unplugged.
void Receivers::forgetMissingFolders()
{
    const auto isMissing = [](const std::string& folder) {
        std::error_code ignored;
        return !std::filesystem::is_directory(folder, ignored);
    };
    if (std::erase_if(folders_, isMissing) == 0)
        return;
    setTestFolders(folders_);
    refresh({.volumes = true});
}

// Another device may be selected in the driver meanwhile: by the saving of what is new, or because
// devices came and went.
ChosenDevice Receivers::choose(const DeviceAddress& device)
{
    forgetMissingFolders();
    ChosenDevice chosen{.driver = plugIn_.drivers[device.driver], .location = {}};
    const auto devices = devicesOf(*chosen.driver);
    const auto found =
        std::find_if(devices.begin(), devices.end(), [&device](const Device& listed) {
            return listed.location == device.location;
        });
    if (found == devices.end())
        return chosen;
    auto* const menu = deviceMenu(*chosen.driver);
    if (!found->isSelected && menu != nullptr)
        menu->pick(static_cast<std::size_t>(found - devices.begin()));
    chosen.location = found->location;
    return chosen;
}

// A request that comes while the receiver is read makes the answer worthless.
void Receivers::preview(const DeviceAddress& device, const SendChoice& choice,
                        const BackupPolicy& backup)
{
    const auto number = ++previews_;
    thread_.post([this, number, device, choice, backup] {
        if (number != previews_)
            return;
        onMainLoop([this, alive = isAlive_, number,
                    preview = previewSend(choose(device), choice, backup)]() mutable {
            if (*alive && number == previews_)
                handlers_.previewed(std::move(preview));
        });
    });
}

void Receivers::send(const DeviceAddress& device, const SendChoice& choice, const SendPreview& seen,
                     const BackupPolicy& backup)
{
    isStopped_ = false;
    ++previews_; // one that is due would be of a receiver that is being written
    thread_.post([this, device, choice, seen, backup] {
        const SendCalls calls{.progress =
                                  [this](const TransferProgress& progress) {
                                      deliver(handlers_.progressed, progress);
                                  },
                              .stopRequested = [this] { return isStopped_.load(); }};
        deliver(handlers_.sent, sendRecords(choose(device), choice, seen, backup, calls));
    });
}

ReceivedRecords Receivers::receive(gps::GPSPlugInProtocol& driver, DownloadRequest request)
{
    RecordKeeper keeper;
    request.consumers.push_back(&keeper);
    request.stopRequested = [this] { return isStopped_.load(); };
    request.progress = [this](const TransferProgress& progress) {
        deliver(handlers_.progressed, progress);
    };
    const auto report = host::download(driver, request);
    (void)keeper.close(); // it cannot fail
    auto records = keeper.take();
    const auto splits = splitsIn(records);
    ReceivedRecords received{
        .records = freedElsewhere(std::make_unique<const RecordSet>(std::move(records))),
        .counts = report.chosen,
        .origin = originOf(driver, request),
        .isComplete = report.isComplete()};
    for (const auto& operation : report.operations) {
        auto messages = operationMessages(operation);
        std::move(messages.begin(), messages.end(), std::back_inserter(received.messages));
    }
    received.messages.push_back({false, splitText(splits)});
    return received;
}

// The list may change before the records are in a file, so it is read again then.
ReceivedRecords Receivers::receiveNew(gps::GPSPlugInProtocol& driver, DownloadRequest request)
{
    const auto lists = knownRecordsFolder();
    if (!lists)
        return nothing(hostError(tr("There is no folder to remember what was saved"),
                                 tr("Set HOME or XDG_STATE_HOME, or download everything")));
    const auto list = knownRecordsFile(*lists, identifierOf(driver, request.location));
    KnownRecords known{list};
    const auto unusable = known.load();
    NewRecordFilter filter{known};
    request.filters.push_back(&filter);
    auto received = receive(driver, std::move(request));
    received.news = std::make_shared<const NewRecords>(
        NewRecords{.list = list, .keys = filter.takePassed(), .leftOut = filter.leftOut()});
    if (unusable)
        received.messages.push_back({false, sentencesOf(*unusable)});
    return received;
}

void Receivers::noteSaved(std::shared_ptr<const NewRecords> records, const TickedRecords& ticked)
{
    thread_.post([this, records = std::move(records), ticked] {
        if (const auto failure = noteAsSaved(*records, ticked))
            deliver(handlers_.refused, sentencesOf(*failure));
    });
}

void Receivers::listBackups(const std::optional<DeviceAddress>& device)
{
    thread_.post([this, device] {
        std::optional<DeviceBackups> selected;
        const auto chosen = device ? choose(*device) : ChosenDevice{};
        const auto* const files = chosen.driver ? filesOf(*chosen.driver) : nullptr;
        if (files != nullptr && !chosen.location.empty())
            selected = DeviceBackups{.identifier = files->deviceIdentifier().value_or(""),
                                     .location = chosen.location};
        deliver(handlers_.backupsListed,
                backupsIn(defaultBackupFolder().value_or(""), std::move(selected)));
    });
}

void Receivers::compareBackup(const DeviceAddress& device, const std::string& backup)
{
    thread_.post([this, device, backup] {
        ComparedBackup compared{.backup = backup};
        const auto chosen = choose(device);
        if (const auto folders = foldersOf(chosen))
            compared.comparison = host::compareBackup(*folders, backup, *filesOf(*chosen.driver));
        else
            compared.comparison.error = noDeviceToRestore();
        deliver(handlers_.backupCompared, std::move(compared));
    });
}

void Receivers::restore(const DeviceAddress& device, const std::string& backup,
                        const BackupPolicy& policy)
{
    isStopped_ = false;
    thread_.post([this, device, backup, policy] {
        RestoreRequest request{.backup = backup,
                               .policy = policy,
                               .progress =
                                   [this](const TransferProgress& progress) {
                                       deliver(handlers_.progressed, progress);
                                   },
                               .stopRequested = [this] { return isStopped_.load(); }};
        RestoreReport report;
        if (const auto folders = foldersOf(choose(device)))
            report = restoreBackup(*folders, request);
        else
            report.error = noDeviceToRestore();
        deliver(handlers_.restored, std::move(report));
    });
}

ReceivedRecords Receivers::nothing(const gps::Error& error)
{
    return {.records = std::make_shared<const RecordSet>(),
            .messages = {{true, sentencesOf(error)}}};
}

void Receivers::saveNew(const std::string& folder)
{
    isSavingStopped_ = false;
    thread_.post([this, folder] {
        saver_ = std::make_unique<Saver>(
            plugIn_, folder,
            [this](SavingEvent event) { deliver(handlers_.saved, std::move(event)); },
            [this] { return isSavingStopped_.load(); });
        lookForNew();
    });
}

void Receivers::stopSaving()
{
    isSavingStopped_ = true;
    thread_.post([this] { saver_.reset(); });
}

// A look selects the device that it reads.
void Receivers::lookForNew()
{
    if (!saver_ || isSavingStopped_)
        return;
    const bool hasAppeared = saver_->look();
    publish();
    if (hasAppeared)
        onMainLoop([this, alive = isAlive_] {
            if (*alive)
                lookAgain();
        });
}

// A volume can be visible before its files can be read. [main loop]
void Receivers::lookAgain()
{
    for (const auto delay : Watcher::kFurtherLooks)
        Glib::signal_timeout().connect_once(
            [this, alive = isAlive_] {
                if (*alive)
                    thread_.post([this] { lookForNew(); });
            },
            static_cast<unsigned>(delay.count()));
}

} // namespace host
