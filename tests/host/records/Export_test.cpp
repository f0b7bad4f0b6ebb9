// SPDX-License-Identifier: MIT

#include "host/records/Export.h"

#include "host/Records.h"
#include "host/records/RecordKeeper.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

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

TEST(Export, WritesAFileOfItsFormat)
{
    const support::TemporaryFolder folder;
    const auto set = kept({track("Day"), fix(1717236000)});
    std::string remark;
    EXPECT_FALSE(host::exportRecords(set, TickedRecords::all(set), folder.path("day.gpx"),
                                     *host::findFormat("gpx"), {.title = "Day"}, remark));
    EXPECT_THAT(folder.read("day.gpx"), testing::HasSubstr("<trkpt"));
}

TEST(Export, ReportsWhyThereIsNoFile)
{
    const auto set = kept({waypoint("A")});
    std::string remark;
    const auto failure = host::exportRecords(set, TickedRecords::all(set), "/nowhere/day.gpx",
                                             *host::findFormat("gpx"), {}, remark);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), "/nowhere/day.gpx");
}

} // namespace
