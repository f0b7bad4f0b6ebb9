// SPDX-License-Identifier: MIT

#include "host/cli/Progress.h"

#include <gtest/gtest.h>

namespace {

using host::Advance;
using std::chrono::milliseconds;

gps::SerialTraffic line(std::uint64_t read, std::uint64_t written, std::uint64_t lines, int speed)
{
    gps::SerialTraffic traffic;
    traffic.bytesRead = read;
    traffic.bytesWritten = written;
    traffic.linesRead = lines;
    traffic.bitsPerSecond = speed;
    return traffic;
}

TEST(Progress, TextSaysWhatIsKnown)
{
    struct Row {
        Advance advance;
        const char* text;
    };
    const Row rows[] = {
        {{"reading", 0, {}, milliseconds{500}}, "reading"},
        {{"tracks", 1, {}, milliseconds{0}}, "tracks: 1 record, 1000 records/s"},
        {{"tracks", 500, {}, milliseconds{2000}}, "tracks: 500 records, 250 records/s"},
        {{"looking", 0, line(0, 999, 0, 4800), milliseconds{12999}},
         "looking: 12 s, 999 bytes at 4800 bit/s"},
        {{"looking", 0, line(1, 999, 0, 4800), milliseconds{13000}},
         "looking: 13 s, 1.0 kB at 4800 bit/s"},
        {{"looking", 0, line(999999, 0, 0, 4800), {}}, "looking: 0 s, 999.9 kB at 4800 bit/s"},
        {{"looking", 0, line(1950000, 0, 0, 4800), {}}, "looking: 0 s, 1.9 MB at 4800 bit/s"},
        {{"tracks", 100, line(10000, 2590, 101, 115200), milliseconds{2000}},
         "tracks: 100 records, 12.5 kB; 50 sentences/s, 6295 bytes/s at 115200 bit/s"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(host::progressText(row.advance), row.text);
}

TEST(Progress, TextFitsIntoEightyColumns)
{
    EXPECT_LE(host::progressText(
                  {"waypoints", 99999, line(8000000, 999999, 99999, 115200), milliseconds{800000}})
                  .size(),
              80U);
}

TEST(Progress, NothingIsPrintedWhenItIsNotShown)
{
    testing::internal::CaptureStderr();
    host::Progress progress{false};
    progress.begin("reading");
    progress.show({});
    progress.clear();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
