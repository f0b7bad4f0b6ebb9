// SPDX-License-Identifier: MIT
// Receivers: the drivers as the widgets see them. Requests go to the device thread, answers come
// back through functions that are called on the main loop's thread. [main loop]

#pragma once

#include "host/bundle/PlugInBundle.h"
#include "host/formats/RecordOrigin.h"
#include "host/records/NewRecords.h"
#include "host/records/RecordSet.h"
#include "host/transfer/BackupComparison.h"
#include "host/transfer/DeviceRestore.h"
#include "host/transfer/DownloadRequest.h"
#include "host/transfer/TransferProgress.h"
#include "host/window/backups/BackupState.h"
#include "host/window/devices/DeviceThread.h"
#include "host/window/devices/ReceiverState.h"
#include "host/window/saving/Saver.h"
#include "host/window/send/SendWork.h"
#include "host/words/Message.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// What a download or an import has brought.
struct ReceivedRecords {
    std::shared_ptr<const RecordSet> records{};
    RecordCounts counts{}; ///< of these
    RecordOrigin origin{};
    std::vector<std::string> sources{};       ///< the files that they were imported from
    std::shared_ptr<const NewRecords> news{}; ///< null: all records were to be received
    std::vector<Message> messages{};          ///< what went wrong, or is worth knowing
    bool isComplete = false;
};

/// What restoring a backup would change.
struct ComparedBackup {
    std::string backup; ///< its path
    BackupComparison comparison{};
};

/// A folder that was to be opened as a receiver, but is not one.
struct RefusedFolder {
    std::string path;
    std::string reason; ///< in sentences
};

class Receivers {
public:
    struct Handlers {
        std::function<void(ReceiverState state)> changed;
        std::function<void(TransferProgress progress)> progressed;
        std::function<void(ReceivedRecords received)> received;
        /// A disk that cannot be mounted, or saved records that cannot be noted.
        std::function<void(std::string reason)> refused;
        std::function<void(Message result)> ejected;
        /// Of the folders that were added: those that are not receivers, perhaps none.
        std::function<void(std::vector<RefusedFolder> folders)> notReceivers;
        std::function<void(SendPreview preview)> previewed; ///< of the latest request
        std::function<void(SendResult result)> sent;
        std::function<void(BackupState backups)> backupsListed{};
        std::function<void(ComparedBackup compared)> backupCompared{};
        std::function<void(RestoreReport report)> restored{};
        std::function<void(SavingEvent event)> saved{};
    };

    /// Loads the plug-in and finds what is connected.
    /// @param bundle    the path of the plug-in's bundle; nullopt: where it usually is
    /// @param folders   copies of receivers, which drivers treat like mounted volumes
    Receivers(std::optional<std::string> bundle, std::vector<std::string> folders,
              Handlers handlers);

    /// Stops what is running, and waits for its end.
    ~Receivers();
    Receivers(const Receivers&) = delete;
    Receivers& operator=(const Receivers&) = delete;

    /// The user picked an item of a driver's menu, or pressed a driver's button.
    void pick(std::size_t driver, const std::string& control, std::size_t item);
    void press(std::size_t driver, const std::string& control);

    /// Treats folders like mounted volumes until the end.
    void addFolders(const std::vector<std::string>& folders);

    /// Downloads from a device.
    void download(const DeviceAddress& device, const DownloadChoice& choice);

    /// Adds records that are in a file now to what counts as saved.
    void noteSaved(std::shared_ptr<const NewRecords> records, const TickedRecords& ticked);

    /// Mounts a disk.
    void mount(const std::string& node);

    /// Writes out what is still to be written to a device, unmounts it, and switches it off.
    void eject(const DeviceAddress& device);

    /// Reads sentence files and map files, and those of receivers in folders.
    void import(const std::vector<std::string>& files);

    /// Looks what a send to a device would do.
    void preview(const DeviceAddress& device, const SendChoice& choice, const BackupPolicy& backup);

    /// Sends, if that still does what the user has seen.
    void send(const DeviceAddress& device, const SendChoice& choice, const SendPreview& seen,
              const BackupPolicy& backup);
    /// Saves what is new on the receivers that are there and on each that appears, until
    /// stopSaving(). One that is being read is read to its end first.
    void saveNew(const std::string& folder);
    void stopSaving();

    /// Lists the backups of all devices, first those of the one that is selected in a driver.
    void listBackups(const std::optional<DeviceAddress>& device);

    /// Compares a backup with the device that is selected in a driver, and puts one back.
    /// @param backup  its path
    /// @param policy  for the backup of the present files
    void compareBackup(const DeviceAddress& device, const std::string& backup);
    void restore(const DeviceAddress& device, const std::string& backup,
                 const BackupPolicy& policy);

    /// Stops the running download, import or restore; what has arrived is kept.
    void stop() noexcept { isStopped_ = true; }

private:
    void load(const std::optional<std::string>& bundle);
    void refresh(const gps::DeviceChanges& changes);
    template <typename Value>
    void deliver(const std::function<void(Value)>& handler, Value value) const;
    void lookAround();
    void publish();
    [[nodiscard]] std::vector<std::string> ejectableDevices() const;
    void forgetMissingFolders();
    [[nodiscard]] ChosenDevice choose(const DeviceAddress& device);
    [[nodiscard]] ReceivedRecords receive(gps::GPSPlugInProtocol& driver, DownloadRequest request);
    [[nodiscard]] ReceivedRecords receiveNew(gps::GPSPlugInProtocol& driver,
                                             DownloadRequest request);
    [[nodiscard]] std::optional<gps::Error> prepareImport(Driver& importer,
                                                          std::vector<std::string>& files) const;
    [[nodiscard]] static ReceivedRecords nothing(const gps::Error& error);
    void lookForNew();
    void lookAgain();

    Handlers handlers_;
    std::atomic<bool> isStopped_{false};
    std::atomic<unsigned> previews_{0}; // requested so far
    std::atomic<bool> isSavingStopped_{false};
    std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true); // read and set by the main loop

    // These belong to the device thread.
    std::vector<std::string> folders_;
    PlugInBundle plugIn_;
    std::string failure_;          // to load the plug-in
    ReceiverState surroundings_;   // without the drivers
    std::unique_ptr<Saver> saver_; // while everything new is saved

    DeviceThread thread_; // last: it uses all of the above
};

} // namespace host
