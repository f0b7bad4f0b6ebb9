// SPDX-License-Identifier: MIT
// A small device and a folder for its backups.

#pragma once

#include "host/backup/Backup.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace support {

class BackupFixture : public testing::Test {
protected:
    BackupFixture()
    {
        device_.put("Points/a.upt", "one\r\n");
        device_.put("Points/deep/b.bin", std::string{"\0\xFF", 2});
        device_.put("Other/c", "not data");
        device_.makeFolder("Ways");
    }

    [[nodiscard]] host::DataFolders source() const
    {
        return {device_.path(), "42", {device_.path("Points"), device_.path("Ways")}};
    }

    [[nodiscard]] host::BackupPolicy policy() const { return {kept_.path("kept"), count_, {}}; }

    /// Makes a backup of the device into `made_`. It is a new one only if the device was changed.
    std::optional<gps::Error> make(gps::FileSystem& files = gps::FileSystem::system())
    {
        return make(policy(), files);
    }

    std::optional<gps::Error> make(const host::BackupPolicy& policy,
                                   gps::FileSystem& files = gps::FileSystem::system())
    {
        host::MadeBackup made;
        auto failure = host::makeBackup(policy, source(), made, files);
        if (failure)
            return failure;
        made_ = made.backup;
        isNew_ = made.isNew;
        skipped_ = made.skipped;
        deleted_ = made.deleted;
        return failure;
    }

    /// Gives the device files that it never had before.
    void change() { device_.put("Points/a.upt", "change " + std::to_string(++changes_)); }

    [[nodiscard]] std::vector<host::Backup> list() const
    {
        return host::listBackups(kept_.path("kept"), "42");
    }

    /// A path of the last backup, relative to `kept_`.
    [[nodiscard]] std::string inMade(const std::string& name) const
    {
        return std::filesystem::path{made_.path}.lexically_relative(kept_.path()).string() +
               "/files/" + name;
    }

    TemporaryFolder device_;
    TemporaryFolder kept_;
    std::size_t count_ = host::BackupPolicy::kDefaultCount;
    host::Backup made_;
    bool isNew_ = false;
    std::vector<std::string> skipped_;
    std::vector<std::string> deleted_;
    int changes_ = 0;
};

} // namespace support
