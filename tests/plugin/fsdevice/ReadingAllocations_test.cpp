// SPDX-License-Identifier: MIT
// Reading allocates nothing per sentence once it is warm: ten times the sentences need as many
// allocations, plus the few that a table of names needs to grow. Counts by replacing the program's
// operator new.

#include "../../support/Sentence.h"
#include "../../support/TemporaryFolder.h"

#include <gps/GPSOutputReceiver.h>
#include <plugin/fsdevice/DeviceFileReaders.h>

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <string>

namespace {

std::atomic<std::size_t> theAllocations{0};

} // namespace

// If g++ inlined this, it would report malloc and delete as mismatched.
[[gnu::noinline]] void* operator new(std::size_t size)
{
    ++theAllocations;
    if (void* const memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc{};
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

using Reader = std::optional<gps::Error> (*)(gps::GPSOutputReceiver& status,
                                             const std::string& path, gps::FileAccount* account);

class Silent : public gps::GPSOutputReceiver {
public:
    void gpsStateChange(std::int32_t) override {}
    void startTransfer(gps::TransferKind) override {}
    void endTransfer(gps::TransferKind) override {}
    void newTrack(const gps::Dictionary&) override {}
    void trackPoint(const gps::GPSPoint&, const gps::Dictionary&) override {}
    void wayPoint(const gps::GPSPoint&, const gps::Dictionary&) override {}
    void newRoute(const gps::Dictionary&) override {}
    void startSending(std::string_view, gps::TransferKind) override {}
    void endSending(gps::TransferKind) override {}
    void error(const gps::Error&) override {}
};

/// How many allocations reading a file of so many sentences takes; "#" in the body is replaced by
/// the sentence's number.
std::size_t allocations(Reader read, const std::string& body, int sentences)
{
    std::string text;
    for (int i = 0; i < sentences; ++i) {
        std::string numbered = body;
        numbered.replace(numbered.find('#'), 1, std::to_string(i));
        text += support::sentence(numbered) + "\r\n";
    }
    const support::TemporaryFolder folder;
    const auto path = folder.put("file", text);
    Silent status;
    const std::size_t before = theAllocations;
    gps::FileAccount account;
    (void)read(status, path, &account);
    return theAllocations - before;
}

constexpr std::size_t kDoublings =
    16; ///< of a table of names from 1,000 to 10,000, and of its index

TEST(ReadingAllocations, TrackPointsAllocateNothing)
{
    const std::string body = "PMGNTRK,4605.979,N,00713.315,E,#,M,071548.24,A,A name that no string "
                             "holds inside itself,110808";
    const auto few = allocations(magellan::acquireTracks, body, 1'000);
    EXPECT_LE(allocations(magellan::acquireTracks, body, 10'000), few);
}

TEST(ReadingAllocations, WaypointsAllocateOnlyForTheTableOfTheirNames)
{
    const std::string body = "PMGNWPL,4605.979,N,00713.315,E,0001529,M,P#,a comment that no string "
                             "holds inside itself,ah";
    const auto few = allocations(magellan::acquireWayPoints, body, 1'000);
    EXPECT_LE(allocations(magellan::acquireWayPoints, body, 10'000), few + kDoublings);
}

TEST(ReadingAllocations, GeocachesAllocateOnlyForTheTableOfTheirNames)
{
    const std::string body = "PMGNGEO,4605.979,N,00713.315,E,0001529,M,P#,a comment that no string "
                             "holds inside itself,o,h,t,1,2,3,4";
    const auto few = allocations(magellan::acquireGeoCaches, body, 1'000);
    EXPECT_LE(allocations(magellan::acquireGeoCaches, body, 10'000), few + kDoublings);
}

} // namespace
