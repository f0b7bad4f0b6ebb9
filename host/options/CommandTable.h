// SPDX-License-Identifier: MIT
// CommandTable: every command and option of magellangps, with its help. Parsing, --help and
// completion all work from this table. [host thread]

#pragma once

#include "host/commandline/Arguments.h"
#include "host/options/RawOptions.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

class CommandTable {
public:
    CommandTable();
    CommandTable(const CommandTable&) = delete; // the app is bound to the members
    CommandTable& operator=(const CommandTable&) = delete;

    [[nodiscard]] CLI::App& app() noexcept { return app_; }
    [[nodiscard]] const CLI::App& app() const noexcept { return app_; }
    [[nodiscard]] const std::vector<Exclusion>& exclusions() const noexcept { return exclusions_; }

    /// What has been parsed so far.
    [[nodiscard]] const RawOptions& raw() const noexcept { return raw_; }

    /// Takes back what was parsed since a copy of raw() was made.
    void restore(const RawOptions& raw) { raw_ = raw; }

private:
    CLI::App& addCommand(const char* name, const char* description, Command command,
                         const char* examples);
    void addGlobalOptions();
    void addDevices();
    void addAcquire();
    void addImport();
    void addOpen();
    void addSend();
    void addRestore();
    void addWatch();
    void addHelp();

    CLI::Option* addDriverOption(CLI::App& command, std::optional<std::string>& driver,
                                 const char* description);
    void addDiskDeviceOptions(CLI::App& command, std::optional<std::string>& driver,
                              std::optional<std::string>& device);
    std::vector<const CLI::Option*> addDiskOptions(CLI::App& command, DiskOptions& disk);
    void addDownloadOptions(CLI::App& command, DownloadOptions& options);
    static void addTitleOption(CLI::App& command, DownloadOptions& options);
    static void addTilesOptions(CLI::App& command, DownloadOptions& options);
    void addOutputOptions(CLI::App& command, DownloadOptions& options);
    void addRecordOptions(CLI::App& command, DownloadOptions& options);
    CLI::Option* addDeviceOption(CLI::App& command, std::optional<std::string>& device);
    void addFixDatesOption(CLI::App& command, DateRule& rule);
    static void addSplitGapOption(CLI::App& command, GapRule& rule);
    static void addTimeOption(CLI::App& command, const char* name, RecordChoice& choice,
                              std::int64_t TimeRange::*end, const char* description);
    static void addChoiceOptions(CLI::App& command, RecordChoice& choice);
    CLI::Option* addBackupOptions(CLI::App& command, std::optional<std::string>& folder,
                                  std::uint32_t& mostBackups);
    void exclude(const CLI::Option* first, const CLI::Option* second);

    RawOptions raw_;
    std::vector<Exclusion> exclusions_;
    CLI::App app_;
};

} // namespace host
