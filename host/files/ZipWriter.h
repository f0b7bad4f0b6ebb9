// SPDX-License-Identifier: MIT
// ZipWriter: writes a ZIP archive that holds one compressed file, while its text arrives. Nothing
// is changed afterwards, so the archive can go to a stream. One thread at a time.
// Source of the format: PKWARE's APPNOTE.TXT 6.3; RFC 1951 for the compression.

#pragma once

#include "host/files/Output.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace host {

class ZipWriter {
public:
    /// The largest file that an archive of this form holds, and the largest archive, in bytes.
    static constexpr std::uint64_t kMostBytes = 0xFFFF'FFFE;

    /// @param output  gets the archive; must outlive this object
    /// @param name    of the file in the archive: ASCII
    ZipWriter(Output& output, std::string name);
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;

    void write(std::string_view text);

    /// Ends the file and the archive. A file that is too large for it is a failure of the output.
    void finish();

private:
    struct Deflate;

    [[nodiscard]] off_t writeHead();
    void compress(std::string_view text, int flush);
    [[nodiscard]] std::string sizes() const;

    Output& output_;
    std::string name_;
    std::unique_ptr<Deflate> deflate_;
    off_t start_; // of the archive in the output
    off_t data_;  // in the output
    std::uint64_t size_ = 0;
    std::uint64_t compressedSize_ = 0;
    std::uint32_t checksum_ = 0;
};

} // namespace host
