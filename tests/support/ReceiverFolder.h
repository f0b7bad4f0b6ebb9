// SPDX-License-Identifier: MIT
// ReceiverFolder: a temporary folder with the layout of a mounted receiver, which the driver finds.

#pragma once

#include "Sentence.h"
#include "TemporaryFolder.h"

#include <gps/Value.h>
#include <platform/System/UserDefaults.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace support {

class ReceiverFolder {
public:
    [[nodiscard]] std::string path() const { return folder_.path(); }
    [[nodiscard]] std::string path(std::string_view name) const { return folder_.path(name); }
    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }

    /// Writes a file of lines. @return  its path
    std::string put(std::string_view name, std::initializer_list<std::string_view> lines) const
    {
        return folder_.put(name, fileOf(lines));
    }

    /// Writes the unit file, which makes the folder a receiver. @return  its path
    std::string unitFile(std::string_view serialNumber) const
    {
        return put("USBTRANS/UNIT_ID.DAT", {"Serial Number=" + std::string{serialNumber}});
    }

    /// Writes the file that names the data folders. @return  its path
    std::string languageFile(std::initializer_list<std::string_view> lines) const
    {
        return put("USBTRANS/LANGUAGE.DAT", lines);
    }

private:
    TemporaryFolder folder_;
};

/// Folders that the driver treats as mounted volumes during this object's lifetime, instead of
/// those that the user has set.
class TestFolders {
public:
    explicit TestFolders(gps::Array folders) { set(std::move(folders)); }
    ~TestFolders() { gps::UserDefaults::standard().setForThisRun("MagellanTestFileList", {}); }
    TestFolders(const TestFolders&) = delete;
    TestFolders& operator=(const TestFolders&) = delete;

    static void set(gps::Array folders)
    {
        gps::UserDefaults::standard().setForThisRun("MagellanTestFileList", std::move(folders));
    }
};

} // namespace support
