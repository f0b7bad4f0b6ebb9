// SPDX-License-Identifier: MIT

#include "host/words/ProgressText.h"

#include <gtest/gtest.h>

namespace {

using host::TransferPhase;
using host::TransferProgress;
using std::chrono::milliseconds;

gps::SerialTraffic traffic(std::uint64_t read, std::uint64_t written, std::uint64_t lines,
                           int speed)
{
    return {.bytesRead = read, .bytesWritten = written, .linesRead = lines, .bitsPerSecond = speed};
}

TransferProgress transferring(gps::TransferKind kind, std::size_t records, milliseconds elapsed,
                              const gps::SerialTraffic& traffic = {})
{
    return {.phase = TransferPhase::kTransferring,
            .kind = kind,
            .records = records,
            .traffic = traffic,
            .elapsed = elapsed};
}

TransferProgress looking(milliseconds elapsed, const gps::SerialTraffic& traffic)
{
    return {.phase = TransferPhase::kLookingForReceiver,
            .location = "/dev/x",
            .traffic = traffic,
            .elapsed = elapsed};
}

TEST(ProgressText, NamesThePhase)
{
    struct Row {
        TransferPhase phase;
        const char* text;
    };
    for (const auto& [phase, text] :
         {Row{TransferPhase::kReading, "reading"},
          {TransferPhase::kReadingFile, "reading /dev/x"},
          {TransferPhase::kWritingFile, "writing /dev/x"},
          {TransferPhase::kCompressingFile, "compressing /dev/x"},
          {TransferPhase::kWaitingForPort, "another program uses /dev/x: trying again for 15 s"},
          {TransferPhase::kLookingForReceiver, "looking for a receiver at /dev/x"},
          {TransferPhase::kTransferring, "routes"},
          {TransferPhase::kWaitingForReceiver, "waiting for the receiver"},
          {TransferPhase::kReadingDevice, "reading the device"},
          {TransferPhase::kBackingUp, "making a backup"},
          {TransferPhase::kSending, "sending"},
          {TransferPhase::kReadingBack, "reading back"},
          {TransferPhase::kRestoring, "restoring"},
          {TransferPhase::kFinished, ""}})
        EXPECT_EQ(host::progressText(
                      {.phase = phase, .location = "/dev/x", .kind = gps::TransferKind::kRoutes}),
                  text);
}

TEST(ProgressText, HasCountsAndRatesAsFarAsTheyAreKnown)
{
    using enum gps::TransferKind;
    const std::pair<TransferProgress, const char*> rows[] = {
        {transferring(kTracks, 1, milliseconds{0}), "tracks: 1 record, 1000 records/s"},
        {transferring(kTracks, 500, milliseconds{2000}), "tracks: 500 records, 250 records/s"},
        {looking(milliseconds{12999}, traffic(0, 999, 0, 4800)),
         "looking for a receiver at /dev/x: 12 s, 999 bytes at 4800 bit/s"},
        {looking(milliseconds{13000}, traffic(1, 999, 0, 4800)),
         "looking for a receiver at /dev/x: 13 s, 1.0 kB at 4800 bit/s"},
        {looking({}, traffic(999999, 0, 0, 4800)),
         "looking for a receiver at /dev/x: 0 s, 999.9 kB at 4800 bit/s"},
        {looking({}, traffic(1950000, 0, 0, 4800)),
         "looking for a receiver at /dev/x: 0 s, 1.9 MB at 4800 bit/s"},
        {transferring(kTracks, 100, milliseconds{2000}, traffic(10000, 2590, 101, 115200)),
         "tracks: 100 records, 12.5 kB; 50 sentences/s, 6295 bytes/s at 115200 bit/s"},
    };
    for (const auto& [progress, text] : rows)
        EXPECT_EQ(host::progressText(progress), text);
}

TEST(ProgressText, HasTheBytesAndTheShareOfAFileAndOfWrites)
{
    TransferProgress progress{
        .phase = TransferPhase::kReadingFile, .location = "trip.gpx", .totalBytes = 64000000};
    EXPECT_EQ(host::progressText(progress), "reading trip.gpx: 0 bytes of 64.0 MB, 0 %");
    progress.bytes = 63999999;
    EXPECT_EQ(host::progressText(progress), "reading trip.gpx: 63.9 MB of 64.0 MB, 99 %");
    progress = transferring(gps::TransferKind::kTracks, 0, milliseconds{5});
    progress.bytes = progress.totalBytes = 1;
    EXPECT_EQ(host::progressText(progress), "tracks: 1 bytes of 1 bytes, 100 %");
}

TEST(ProgressText, FitsIntoEightyColumns)
{
    EXPECT_LE(host::progressText({.phase = TransferPhase::kReadingFile,
                                  .location = std::string(300, 'x'),
                                  .bytes = 1073741823,
                                  .totalBytes = 1073741824})
                  .size(),
              80U);
    EXPECT_LE(
        host::progressText(transferring(gps::TransferKind::kWaypoints, 99999, milliseconds{800000},
                                        traffic(8000000, 999999, 99999, 115200)))
            .size(),
        80U);
}

TEST(ProgressText, CountsTheRecordsOfAFileThatIsWritten)
{
    EXPECT_EQ(host::progressText({.phase = TransferPhase::kWritingFile,
                                  .location = "trip.kmz",
                                  .records = 1234,
                                  .totalRecords = 2000000}),
              "writing trip.kmz: 1,234 of 2,000,000 records");
}

} // namespace
