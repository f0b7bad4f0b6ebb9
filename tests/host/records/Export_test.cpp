// SPDX-License-Identifier: MIT

#include "host/records/Export.h"

#include "host/Records.h"
#include "host/records/RecordKeeper.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

namespace {

using host::RecordSet;
using host::TickedRecords;
using support::cache;
using support::endOfTransfer;
using support::fix;
using support::route;
using support::segment;
using support::track;
using support::waypoint;

RecordSet kept(const std::vector<host::Event>& events)
{
    host::RecordKeeper keeper;
    for (const auto& event : events)
        keeper.event(event);
    EXPECT_FALSE(keeper.close());
    return keeper.take();
}

// Everything that is replayed, in short.
class Listing final : public host::Writer {
public:
    void event(const host::Event& event) override
    {
        const auto text = support::shortText(event);
        text_ += text == "-" ? "" : text + " ";
    }
    std::optional<gps::Error> close() override { return std::nullopt; }

    std::string text_;
};

std::string replayed(const RecordSet& set, const TickedRecords& choice)
{
    Listing listing;
    host::replay(set, choice, listing);
    return listing.text_;
}

std::string replayed(const std::vector<host::Event>& events)
{
    const auto set = kept(events);
    return replayed(set, TickedRecords::all(set));
}

TEST(Export, ReplaysEachKindInTheOrderOfItsRecords)
{
    EXPECT_EQ(replayed({waypoint("A"), cache("C"), endOfTransfer(), route("R"), waypoint("1"),
                        waypoint("2"), route("S"), endOfTransfer(), track("T"), fix(1), fix(2)}),
              "w:A w:C R:R w:1 w:2 R:S T:T f:1 f:2 ");
}

TEST(Export, ReplaysTheSegmentsOfATrackAndNoEmptyOnes)
{
    EXPECT_EQ(replayed({track("T"), segment(), fix(1), segment(), fix(2), fix(3)}),
              "T:T f:1 | f:2 f:3 ");
}

TEST(Export, GivesPointsWithoutATrackOne)
{
    EXPECT_EQ(replayed({fix(1), fix(2)}), "T: f:1 f:2 ");
}

TEST(Export, LeavesOutWhatIsNotChosen)
{
    const auto set = kept({waypoint("A"), waypoint("B"), route("R"), waypoint("1"), route("S"),
                           waypoint("2"), endOfTransfer(), track("T"), fix(1), track("U"), fix(2)});
    EXPECT_EQ(replayed(set, {{false, true}, {true, false}, {false, true}}), "w:B R:R w:1 T:U f:2 ");
}

TEST(Export, OfNothingIsNothing)
{
    EXPECT_EQ(replayed({}), "");
    EXPECT_TRUE(kept({}).isEmpty());
    EXPECT_FALSE(kept({track("T")}).isEmpty());
}

// An export to a file of this folder.
host::ExportRequest requestFor(const std::string& path)
{
    return {.path = path, .format = host::findFormat("gpx"), .origin = {.title = "Day"}};
}

TEST(Export, WritesAFileOfItsFormat)
{
    const support::TemporaryFolder folder;
    const auto set = kept({track("Day"), fix(1717236000)});
    const auto report =
        host::exportRecords(set, TickedRecords::all(set), requestFor(folder.path("day.gpx")));
    EXPECT_TRUE(report.isComplete());
    EXPECT_THAT(folder.read("day.gpx"), testing::HasSubstr("<trkpt"));
}

TEST(Export, ReportsWhyThereIsNoFile)
{
    const auto set = kept({waypoint("A")});
    const auto report =
        host::exportRecords(set, TickedRecords::all(set), requestFor("/nowhere/day.gpx"));
    EXPECT_FALSE(report.isComplete());
    ASSERT_TRUE(report.error);
    EXPECT_EQ(report.error->path(), "/nowhere/day.gpx");
}

TEST(Export, ReportsItsProgressFromNothingToAllTickedPoints)
{
    const support::TemporaryFolder folder;
    const auto set = kept({waypoint("A"), cache("B"), endOfTransfer(), route("R"), waypoint("1"),
                           endOfTransfer(), track("T"), fix(1), fix(2)});
    auto ticked = TickedRecords::all(set);
    ticked.points[1] = false;
    auto request = requestFor(folder.path("day.gpx"));
    std::vector<std::size_t> counts;
    request.progress = [&](const host::TransferProgress& progress) {
        EXPECT_EQ(progress.phase, host::TransferPhase::kWritingFile);
        EXPECT_EQ(progress.location, "day.gpx");
        EXPECT_EQ(progress.totalRecords, 4U);
        counts.push_back(progress.records);
    };
    EXPECT_TRUE(host::exportRecords(set, ticked, request).isComplete());
    ASSERT_FALSE(counts.empty());
    EXPECT_EQ(counts.front(), 0U);
    EXPECT_EQ(counts.back(), 4U);
}

TEST(Export, ReportsWhatIsCompressedAfterTheRecords)
{
    const support::TemporaryFolder folder;
    const auto set = kept({waypoint("A")});
    auto request = requestFor(folder.path("day.kmz"));
    request.format = host::findFormat("kmz");
    std::vector<host::TransferProgress> reports;
    request.progress = [&](const host::TransferProgress& progress) { reports.push_back(progress); };
    EXPECT_TRUE(host::exportRecords(set, TickedRecords::all(set), request).isComplete());
    ASSERT_FALSE(reports.empty());
    EXPECT_EQ(reports.front().phase, host::TransferPhase::kWritingFile);
    const auto& last = reports.back();
    EXPECT_EQ(last.phase, host::TransferPhase::kCompressingFile);
    EXPECT_EQ(last.location, "day.kmz");
    EXPECT_GT(last.bytes, 0U);
    EXPECT_EQ(last.bytes, last.totalBytes);
    EXPECT_EQ(last.totalRecords, 0U) << "of this phase";
}

// Stops an export whenever it can be stopped: at the first question, at the second one and so on,
// until it has not been stopped in time. Returns how many questions there were.
int stopAtEachQuestion(const char* format)
{
    const support::TemporaryFolder folder;
    folder.put("day.gpx", "old");
    const auto set = kept({waypoint("A"), waypoint("B")});
    int stops = 0;
    for (bool isStopped = true; isStopped; ++stops) {
        int questions = 0;
        auto request = requestFor(folder.path("day.gpx"));
        request.format = host::findFormat(format);
        request.stopRequested = [&] { return questions++ == stops; };
        const auto report = host::exportRecords(set, TickedRecords::all(set), request);
        EXPECT_FALSE(report.error);
        isStopped = report.isStopped;
        EXPECT_EQ(report.isComplete(), !isStopped);
        EXPECT_EQ(folder.read("day.gpx") == "old", isStopped);
        const auto entries = std::filesystem::directory_iterator{folder.path()};
        EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
    }
    return stops - 1;
}

TEST(Export, ThatIsStoppedLeavesNothingBesideTheOlderFile)
{
    EXPECT_EQ(stopAtEachQuestion("gpx"), 3)
        << "before the records, after them, and after the end of the format";
    EXPECT_EQ(stopAtEachQuestion("kmz"), 4) << "and while it is compressed";
}

} // namespace
