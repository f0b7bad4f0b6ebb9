// SPDX-License-Identifier: MIT
// TemporaryFolder: a new folder that is removed with all its contents at the end of the scope.

#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace support {

class TemporaryFolder {
public:
    explicit TemporaryFolder(
        const std::filesystem::path& parent = std::filesystem::temp_directory_path())
    {
        std::string name = (parent / "magellan-test-XXXXXX").string();
        path_ = ::mkdtemp(name.data());
        // Child processes without privileges must be able to read it.
        std::filesystem::permissions(path_, std::filesystem::perms{0755});
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::string path() const { return path_.string(); }
    [[nodiscard]] std::string path(std::string_view name) const { return (path_ / name).string(); }

    /// Writes a file below the folder and creates missing folders. @return  its path
    std::string put(std::string_view name, std::string_view content) const
    {
        const auto file = path_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream{file, std::ios::binary}.write(content.data(),
                                                    static_cast<std::streamsize>(content.size()));
        return file.string();
    }

    /// Makes a folder below the folder. @return  its path
    std::string makeFolder(std::string_view name) const
    {
        std::filesystem::create_directories(path_ / name);
        return path(name);
    }

    [[nodiscard]] std::string read(std::string_view name) const
    {
        std::ifstream file{path_ / name, std::ios::binary};
        return {std::istreambuf_iterator<char>{file}, {}};
    }

    /// The names of the folder's entries, including hidden ones, in alphabetical order.
    [[nodiscard]] std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator{path_})
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path path_;
};

} // namespace support
