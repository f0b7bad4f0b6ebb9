// SPDX-License-Identifier: MIT
// Paths come from devices, so they are made fit to be displayed.

#include "host/words/RestoreText.h"

#include "host/backup/Manifest.h"
#include "host/base/Sentences.h"
#include "host/base/Text.h"
#include "host/words/ProgressText.h"
#include "host/words/RecordCountText.h"
#include "host/words/StopText.h"

#include <platform/System/Paths.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

namespace host {
namespace {

constexpr std::size_t kMostFiles = 20; // that are named

std::string filesText(std::size_t count)
{
    return fmt::format("{} file{}", count, count == 1 ? "" : "s");
}

std::string contentText(const RecordCounts& counts)
{
    const auto text = recordCountText(counts);
    return text.empty() ? "no records" : text;
}

std::string lineFor(const RestoredFile& file)
{
    if (!file.isOnDevice)
        return fmt::format("{}: is made again, with {}.", displayText(file.path),
                           contentText(file.then));
    if (file.now == file.then)
        return fmt::format("{}: is replaced; it has {} before and after.", displayText(file.path),
                           contentText(file.then));
    return fmt::format("{}: gets {} instead of {}.", displayText(file.path), contentText(file.then),
                       contentText(file.now));
}

std::string extraText(const std::vector<std::string>& files)
{
    std::vector<std::string> named;
    for (std::size_t i = 0; i < std::min(files.size(), kMostFiles); ++i)
        named.push_back(displayText(files[i]));
    const auto more = files.size() - named.size();
    return fmt::format("{} not in the backup, and will stay: {}{}.",
                       files.size() == 1 ? "1 file is" : fmt::format("{} files are", files.size()),
                       joined(named, ", "), more > 0 ? fmt::format(", and {} more", more) : "");
}

} // namespace

std::string backupTimeText(std::string_view name)
{
    constexpr std::string_view kForm = "YYYYMMDDTHHMMSSZ";
    if (name.size() < kForm.size() || name[kForm.find('T')] != 'T')
        return displayText(name);
    return fmt::format("{}-{}-{} {}:{}:{} UTC", name.substr(0, 4), name.substr(4, 2),
                       name.substr(6, 2), name.substr(9, 2), name.substr(11, 2),
                       name.substr(13, 2));
}

std::string backupSizeText(const Backup& backup)
{
    return filesText(backup.files) + ", " + byteText(backup.bytes);
}

std::string damagedBackupText(const DamagedBackup& backup)
{
    return fmt::format("{} is damaged: its list of files, manifest.json, cannot be read, so it "
                       "cannot be restored. Copy what you need from {}",
                       backup.name, displayText(gps::joinPath(backup.path, kFilesName)));
}

std::vector<std::string> comparisonLines(const BackupComparison& comparison)
{
    if (comparison.error)
        return {sentencesOf(*comparison.error)};
    std::vector<std::string> lines;
    const auto& files = comparison.files;
    if (files.empty())
        lines.emplace_back(
            "The receiver already holds what the backup holds: there is nothing to restore.");
    else if (comparison.unchangedFiles == 0)
        lines.push_back(fmt::format("{} would be written.", filesText(files.size())));
    else
        lines.push_back(fmt::format("{} would be written; the other {} of the backup {} unchanged "
                                    "on the receiver.",
                                    filesText(files.size()), filesText(comparison.unchangedFiles),
                                    comparison.unchangedFiles == 1 ? "is" : "are"));
    for (std::size_t i = 0; i < std::min(files.size(), kMostFiles); ++i)
        lines.push_back(lineFor(files[i]));
    if (files.size() > kMostFiles)
        lines.push_back(fmt::format("And {} more.", filesText(files.size() - kMostFiles)));
    if (!comparison.extraFiles.empty())
        lines.push_back(extraText(comparison.extraFiles));
    return lines;
}

std::vector<std::string> restoreLines(const RestoreReport& report)
{
    std::vector<std::string> lines;
    const auto add = [&lines](std::string_view what, std::string_view path) {
        lines.push_back(fmt::format("{}{}", what, displayText(path)));
    };
    if (report.wasUpToDate)
        lines.emplace_back("The device already holds what the backup holds.");
    if (report.previous)
        add("The files before the restore are kept in the backup ", report.previous->name);
    for (const auto& name : report.deletedBackups)
        add("deleted, because enough newer backups are kept: ", name);
    for (const auto& path : report.restored)
        add("restored: ", path);
    for (const auto& path : report.extraFiles)
        add("not in the backup, left as it is: ", path);
    return lines;
}

std::vector<Message> restoreMessages(const RestoreReport& report)
{
    std::vector<Message> messages;
    if (report.error)
        messages.push_back({true, sentencesOf(*report.error)});
    const bool isAnyWritten = !report.restored.empty();
    if (report.wasStopped)
        messages.push_back({true, isAnyWritten
                                      ? "The restore was stopped. Restore again to write the rest."
                                      : stoppedEarlyText("restore")});
    if (isAnyWritten && !report.asBefore.empty())
        messages.push_back(
            {true, fmt::format("As before the restore: {}.", joined(report.asBefore, ", "))});
    return messages;
}

} // namespace host
