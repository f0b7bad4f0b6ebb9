// SPDX-License-Identifier: MIT

#include "host/formats/KmzWriter.h"

#include "host/files/ZipArchive.h"
#include "host/formats/KmlWriter.h"
#include "host/formats/Written.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using host::Event;
using support::newTrack;
using support::trackPoint;
using support::wayPoint;

template <typename Writer>
std::string written(const std::vector<Event>& events, std::string* remark = nullptr)
{
    support::Written output;
    Writer writer{output.output(), output.folder()};
    for (const auto& event : events)
        writer.event(event);
    EXPECT_FALSE(writer.close());
    if (remark != nullptr)
        *remark = writer.remark();
    return output.text();
}

TEST(KmzWriter, ArchiveHoldsTheDocumentThatKmlWriterWrites)
{
    std::vector<Event> events{wayPoint({46.5, 7.25, 1200, 0, 0}, {{"name", "A"}}),
                              newTrack({{"name", "T"}})};
    for (int i = 0; i < 5000; ++i)
        events.push_back(trackPoint({i / 100.0, 7, 5, 1717236000 + i, 0}));
    for (const auto& some : {std::vector<Event>{}, events}) {
        std::string document;
        EXPECT_EQ(host::extractFromZip(written<host::KmzWriter>(some), ".kml", 1 << 30, document),
                  "");
        EXPECT_EQ(document, written<host::KmlWriter>(some));
    }
}

TEST(KmzWriter, RemarkIsThatOfTheDocument)
{
    std::string remark;
    (void)written<host::KmzWriter>({wayPoint({91, 0, 0, 0, 0})}, &remark);
    EXPECT_EQ(remark, "1 point without valid coordinates was left out");
}

// A document that is compressed in several pieces.
std::vector<Event> longTrack()
{
    std::vector<Event> events{newTrack({{"name", "T"}})};
    for (int i = 0; i < 20'000; ++i)
        events.push_back(trackPoint({i / 1000.0, 7, 5, 1717236000 + i, 0}));
    return events;
}

// Writes an archive, and stops at this report of its end. Returns how many bytes were done at each.
std::vector<std::uint64_t> writeUntil(std::size_t stop, support::Written& output)
{
    host::KmzWriter writer{output.output(), output.folder()};
    for (const auto& event : longTrack())
        writer.event(event);
    std::vector<std::uint64_t> reports;
    writer.watchClose([&](std::uint64_t bytes, std::uint64_t totalBytes) {
        EXPECT_LE(bytes, totalBytes);
        reports.push_back(bytes);
        return reports.size() < stop;
    });
    EXPECT_FALSE(writer.close());
    return reports;
}

TEST(KmzWriter, ReportsHowMuchIsCompressedUpToTheWholeDocument)
{
    support::Written output;
    const auto reports = writeUntil(SIZE_MAX, output);
    ASSERT_GE(reports.size(), 3U);
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
    EXPECT_EQ(reports.back(), written<host::KmlWriter>(longTrack()).size());
}

TEST(KmzWriter, ThatIsStoppedCompressesNoMore)
{
    support::Written output;
    EXPECT_EQ(writeUntil(2, output).size(), 2U);
    std::string document;
    EXPECT_NE(host::extractFromZip(output.text(), ".kml", 1 << 30, document), "");
}

TEST(KmzWriter, FailedWriteIsReportedAtTheEnd)
{
    support::Written folder;
    host::Output full{::open("/dev/full", O_WRONLY | O_CLOEXEC), "/dev/full"};
    host::KmzWriter writer{full, folder.folder()};
    writer.event(trackPoint({}));
    const auto failure = writer.close();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), "/dev/full");
}

} // namespace
