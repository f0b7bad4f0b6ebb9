// SPDX-License-Identifier: MIT

#include "host/formats/KmzWriter.h"

#include "host/files/ZipArchive.h"
#include "host/formats/KmlWriter.h"
#include "host/formats/Written.h"

#include <gmock/gmock.h>

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
