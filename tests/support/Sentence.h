// SPDX-License-Identifier: MIT
// Sentences as receivers write them, and damaged ones. The checksum is computed here independently
// of the code under test.

#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace support {

/// "$", the body, "*" and its checksum.
inline std::string sentence(std::string_view body)
{
    unsigned sum = 0;
    for (const char c : body)
        sum ^= static_cast<unsigned char>(c);
    std::string line = "$";
    line.append(body).append(1, '*');
    line += "0123456789ABCDEF"[sum / 16];
    line += "0123456789ABCDEF"[sum % 16];
    return line;
}

/// The last sentence of a file.
inline constexpr char kClosing[] = "$PMGNCMD,END*3D";

/// The sentence with a wrong checksum.
inline std::string breakChecksum(std::string line)
{
    line.back() = line.back() == '0' ? '1' : '0';
    return line;
}

/// The body's first fields.
inline std::string firstFields(std::string_view body, std::size_t count)
{
    std::size_t end = 0;
    for (; count > 0 && end != std::string_view::npos; --count)
        end = body.find(',', end == 0 ? 0 : end + 1);
    return std::string{body.substr(0, end)};
}

/// The body with another text in one of its fields.
inline std::string withField(std::string_view body, std::size_t position, std::string_view text)
{
    const std::size_t begin = position == 0 ? 0 : firstFields(body, position).size() + 1;
    const std::size_t end = firstFields(body, position + 1).size();
    return std::string{body.substr(0, begin)}.append(text).append(body.substr(end));
}

/// Lines as a receiver's file holds them, each with its CR LF.
inline std::string fileOf(std::initializer_list<std::string_view> lines)
{
    std::string text;
    for (const auto line : lines)
        text.append(line).append("\r\n");
    return text;
}

/// Calls `take` with the sentence once for each way to change or to drop one of its characters.
template <typename Take> void forEachDamage(const std::string& line, Take&& take)
{
    for (std::size_t at = 0; at < line.size(); ++at) {
        std::string damaged = line;
        for (int byte = 0; byte < 256; ++byte) {
            damaged[at] = static_cast<char>(byte);
            if (damaged != line)
                take(damaged);
        }
        take(std::string{line}.erase(at, 1));
    }
}

} // namespace support
