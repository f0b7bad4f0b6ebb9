// SPDX-License-Identifier: MIT
// Makes a download with any texts and numbers of an input, and writes it in the format that its
// first byte selects. Whatever a receiver sends, the output is well-formed, and a page runs no
// script but its own.

#include "Bytes.h"
#include "FuzzTarget.h"
#include "InputFile.h"

#include <gps/Value.h>
#include <host/base/JsonText.h>
#include <host/files/Output.h>
#include <host/files/ZipArchive.h>
#include <host/formats/Formats.h>
#include <host/formats/GpxReader.h>
#include <host/formats/XmlCheck.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

namespace {

using host::Event;
using host::EventKind;

constexpr char kSpoolFolder[] = "/dev/shm"; // in memory, so that thousands of inputs take seconds

/// An output to a memory file.
class MemoryOutput {
public:
    [[nodiscard]] host::Output& output() noexcept { return output_; }

    [[nodiscard]] std::string text()
    {
        output_.flush();
        std::string text(static_cast<std::size_t>(lseek(file_, 0, SEEK_END)), '\0');
        fuzz::require(pread(file_, text.data(), text.size(), 0) ==
                          static_cast<ssize_t>(text.size()),
                      "the output can be read");
        return text;
    }

private:
    static int emptyFile()
    {
        static const int file = memfd_create("output", MFD_CLOEXEC);
        fuzz::require(file >= 0 && ftruncate(file, 0) == 0 && lseek(file, 0, SEEK_SET) == 0,
                      "a memory file can be created");
        return file;
    }

    int file_ = emptyFile();
    host::Output output_{file_, "output"};
};

gps::GPSPoint point(fuzz::Bytes& bytes)
{
    // Any number, or one that is a coordinate.
    const auto degrees = [&bytes](std::int16_t most) {
        return bytes.below(8) == 0 ? bytes.number<double>()
                                   : static_cast<double>(bytes.number<std::int16_t>() % most);
    };
    gps::GPSPoint point;
    point.latitude = degrees(91);
    point.longitude = degrees(181);
    point.altitude = degrees(9000);
    point.time = bytes.below(8) == 0 ? bytes.number<std::int64_t>() : bytes.number<std::uint32_t>();
    return point;
}

/// A record with any of the keys that drivers use.
gps::Dictionary record(fuzz::Bytes& bytes)
{
    constexpr std::array kKeys{"name",         "comment",      "symbol",     "geocacheOwner",
                               "geocacheHint", "geocacheType", "datePlaced", "dateFound",
                               "difficulty",   "terrain",      "trackName",  "lastIndex"};
    gps::Dictionary record;
    const auto chosen = bytes.number<std::uint16_t>();
    for (std::size_t i = 0; i < kKeys.size(); ++i) {
        if ((chosen >> i & 1U) != 0)
            record.set(kKeys[i], bytes.text());
    }
    if ((chosen >> kKeys.size() & 1U) != 0)
        record.set("symbol", "Geocache Found");
    return record;
}

/// Plays a driver that downloads what is in the input.
class Download {
public:
    Download(fuzz::Bytes& bytes, host::Writer& writer) : bytes_(bytes), writer_(writer) {}

    void run()
    {
        event_.state = 1;
        send(EventKind::kStateChange);
        while (!bytes_.isEmpty())
            transfer(static_cast<gps::TransferKind>(1 + bytes_.below(3)));
        event_.state = 0;
        send(EventKind::kStateChange);
    }

private:
    void transfer(gps::TransferKind kind)
    {
        event_.transfer = kind;
        send(EventKind::kStartTransfer);
        for (auto records = bytes_.below(16); records > 0; --records)
            sendRecord(kind);
        send(EventKind::kEndTransfer);
    }

    void sendRecord(gps::TransferKind kind)
    {
        if (kind == gps::TransferKind::kWaypoints)
            return sendPoint(EventKind::kWayPoint);
        const bool isTrack = kind == gps::TransferKind::kTracks;
        event_.record = record(bytes_);
        event_.record.set("name", bytes_.text());
        send(isTrack ? EventKind::kNewTrack : EventKind::kNewRoute);
        for (auto points = bytes_.below(8); points > 0; --points)
            sendPoint(isTrack ? EventKind::kTrackPoint : EventKind::kWayPoint);
    }

    void sendPoint(EventKind kind)
    {
        event_.point = point(bytes_);
        event_.record = record(bytes_);
        send(kind);
    }

    void send(EventKind kind)
    {
        event_.kind = kind;
        writer_.event(event_);
    }

    fuzz::Bytes& bytes_;
    host::Writer& writer_;
    Event event_;
};

std::string written(const host::Format& format, std::string_view input)
{
    MemoryOutput memory;
    const auto writer = format.make(memory.output(), kSpoolFolder, {});
    fuzz::Bytes bytes{input};
    Download{bytes, *writer}.run();
    writer->result(std::nullopt);
    fuzz::require(!writer->close(), "the output can be written");
    return memory.text();
}

void requireXml(const std::string& text)
{
    fuzz::require(!host::checkXml(text).flaw, "the output is well-formed XML");
}

void requireJson(std::string_view text)
{
    fuzz::require(!host::jsonErrorOffset(text), "the output is valid JSON");
}

std::size_t countOf(std::string_view text, std::string_view part)
{
    std::size_t count = 0;
    for (auto at = text.find(part); at != text.npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

void requirePage(const host::Format& format, std::string_view text)
{
    static const auto& empty = *new auto(written(format, {}));
    for (const auto* const part : {"<script", "</script", "<!--", "]]>", "</noscript"})
        fuzz::require(countOf(text, part) == countOf(empty, part),
                      "data cannot end the element that holds them");
}

// Two quotes within a quoted cell end it and begin it again.
void requireTables(std::string_view text)
{
    std::size_t columns = 0;
    std::size_t cells = 1;
    std::size_t row = 0; // where it begins
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        isQuoted = isQuoted != (text[i] == '"');
        if (isQuoted || (text[i] != ',' && text[i] != '\n'))
            continue;
        if (text[i] == ',') {
            ++cells;
            continue;
        }
        fuzz::require(text[i - 1] == '\r', "each row ends as the format demands");
        if (text.substr(row).starts_with("kind,"))
            columns = cells;
        fuzz::require(cells == columns, "each row has as many cells as its header");
        row = i + 1;
        cells = 1;
    }
    fuzz::require(row == text.size() && !isQuoted, "the last row is complete");
}

void checkOutput(const host::Format& format, const std::string& text)
{
    if (format.name == "gpx") {
        requireXml(text);
        gps::Dictionary records;
        fuzz::require(!host::readGpx(fuzz::asFile(text), records), "our own GPX can be sent");
    } else if (format.name == "kml") {
        requireXml(text);
    } else if (format.name == "kmz") {
        constexpr std::size_t kMost = std::size_t{64} << 20; // bytes
        std::string kml;
        fuzz::require(host::extractFromZip(text, ".kml", kMost, kml).empty(), "it is an archive");
        requireXml(kml);
    } else if (format.name == "geojson") {
        requireJson(text);
    } else if (format.name == "html") {
        requirePage(format, text);
    } else if (format.name == "csv") {
        requireTables(text);
    } else {
        for (std::string_view lines = text; !lines.empty();) {
            const auto end = lines.find('\n');
            fuzz::require(end != lines.npos, "each event is a line");
            requireJson(lines.substr(0, end));
            lines.remove_prefix(end + 1);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const auto formats = host::formats();
    const auto& format = formats[data[0] % formats.size()];
    checkOutput(format, written(format, fuzz::textOf(data + 1, size - 1)));
    return 0;
}
