// SPDX-License-Identifier: MIT
// MagellanSnapshot: what a mounted receiver holds, read once before a send, and the plan of that
// send. The driver creates one for its host. Immutable once constructed, but for the texts of the
// last plan. [host thread]

#pragma once

#include "../common/RecordKind.h"
#include "NamedLines.h"
#include "PlannedTexts.h"
#include "SendOrder.h"

#include <gps/GPSFileDevice.h>
#include <gps/Value.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace magellan {

class MagellanSnapshot final : public gps::DeviceSnapshot {
public:
    /// Reads the waypoint, geocache and route files of a receiver.
    /// @param folderNames  the folder dictionary of the volume
    /// @param failures     what could not be read before this; what cannot be read now is added
    MagellanSnapshot(std::string volume, gps::Dictionary folderNames,
                     std::optional<std::string> identifier = {},
                     std::vector<gps::Error> failures = {});

    [[nodiscard]] const std::vector<gps::DeviceFile>& files() const override { return files_; }
    [[nodiscard]] const std::vector<gps::Error>& failures() const override { return failures_; }
    [[nodiscard]] const std::optional<std::string>& identifier() const override
    {
        return identifier_;
    }
    [[nodiscard]] std::vector<std::string> dataFolders() const override { return dataFolders_; }
    void visitRecords(const gps::RecordVisitor& visit) const override;
    void visitChosenRecords(const gps::RecordFilter& isChosen,
                            const gps::RecordVisitor& visit) const override;
    void reportTracks(gps::GPSOutputReceiver& status) const override;
    [[nodiscard]] gps::SendPlan planSend(const gps::Dictionary& data) const override;

    /// The texts of the last plan; empty before the first.
    [[nodiscard]] std::shared_ptr<const PlannedTexts> plannedTexts() const { return planned_; }

private:
    /// A file in a kind's data folder.
    struct KindFile {
        std::size_t index;               // in files_
        gps::LineAccount account;        // of its lines
        std::optional<NamedLines> lines; // nullopt for routes, and if a sentence is truncated
    };

    /// A kind's data folder.
    struct Folder {
        RecordKind kind;
        std::vector<KindFile> files;
    };

    void readFolder(RecordKind kind, const std::string& path);
    [[nodiscard]] KindFile readKindFile(RecordKind kind, const std::string& path);
    std::size_t readFile(const std::string& path);
    [[nodiscard]] const gps::DeviceFile* findPresent(const std::string& path) const;
    [[nodiscard]] const KindFile* findLines(RecordKind kind, const std::string& path) const;

    void planJob(const SendJob& job, gps::SendPlan& plan) const;
    void planTracks(const SendJob& job, gps::SendPlan& plan) const;
    void planMerge(const SendJob& job, gps::SendPlan& plan) const;
    void planNamed(const SendJob& job, const std::string& path, gps::SendPlan& plan) const;
    void planRoutes(const SendJob& job, const std::string& path, gps::SendPlan& plan) const;

    std::string volume_;
    gps::Dictionary folderNames_; // by folder key
    std::optional<std::string> identifier_;
    std::vector<gps::Error> failures_;
    std::vector<std::string> dataFolders_;
    std::vector<gps::DeviceFile> files_;
    std::unordered_map<std::string, std::size_t> fileIndex_; // by path
    std::vector<Folder> folders_;
    std::shared_ptr<PlannedTexts> planned_ = std::make_shared<PlannedTexts>();
};

/// Visits the records in the text of a data file, as gps::GPSFileDevice::visitRecordsIn() does.
void visitRecordsInFile(std::string_view path, std::string_view text,
                        const gps::RecordVisitor& visit);

/// Visits only their points, as gps::GPSFileDevice::visitPointsIn() does.
void visitPointsInFile(std::string_view path, std::string_view text,
                       const gps::PointVisitor& visit);

/// Visits the points of a file of routes that none of them uses, as
/// gps::GPSUnusedRoutePoints::visitUnusedRoutePointsIn() does.
void visitUnusedRoutePointsInFile(std::string_view path, std::string_view text,
                                  const std::function<void(const gps::Dictionary& record)>& visit);

/// The data folders of a volume that exist, as absolute paths, each once.
/// @param folders   the folder dictionary of the volume
/// @param failures  the errors of the folders of which it is not known whether they exist are added
[[nodiscard]] std::vector<std::string> existingDataFolders(const gps::Dictionary& folders,
                                                           const std::string& volume,
                                                           std::vector<gps::Error>& failures);

} // namespace magellan
