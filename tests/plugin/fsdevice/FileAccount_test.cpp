// SPDX-License-Identifier: MIT
// What the account of the driver of mounted receivers says after downloads and imports.

#include "SampleSentences.h"

#include <plugin/fsdevice/MagellanGPSPlugin.h>
#include <support/ActingReceiver.h>
#include <support/ReceiverFolder.h>
#include <support/RecordingReceiver.h>
#include <support/Sentence.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace magellan {
namespace {

using support::breakChecksum;
using support::kClosing;
using support::kGeoCache;
using support::kTrackPoint;
using support::kWayPoint;
using support::sentence;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const std::string kRouteLine = sentence("PMGNRTE,1,1,c,1,R,A,a");

std::string waypointSentence(std::string_view name)
{
    return sentence("PMGNWPL,4600.000,N,00730.000,E,0000500,M," + std::string{name} + ",,c");
}

/// "tracks 2/3, 2 checksum": accepted and seen lines of a file, then what was skipped; the error.
std::string textOf(const gps::FileAccount& file)
{
    constexpr const char* kReasons[gps::kSkipReasonCount] = {
        "not a sentence", "checksum", "other kind",    "too few fields", "no name",
        "replaced",       "repeated", "unknown point", "incomplete"};
    std::string text = file.kind + " " + std::to_string(file.lines.accepted) + "/" +
                       std::to_string(file.lines.seen);
    for (const auto& [number, reason] : file.lines.details)
        text += ", " + std::to_string(number) + " " + kReasons[static_cast<std::size_t>(reason)];
    return file.error ? text + ", error " + std::to_string(file.error->code()) : text;
}

std::vector<std::string> textsOf(const std::vector<gps::FileAccount>& files)
{
    std::vector<std::string> texts;
    for (const auto& file : files)
        texts.push_back(textOf(file));
    return texts;
}

class FileAccountTest : public testing::Test {
protected:
    FileAccountTest()
    {
        receiver_.unitFile("12345");
        driver_ = MagellanGPSPlugin::getPluginForClass("GPSPlugIn");
    }

    void acquire(const gps::Dictionary& options = {})
    {
        acquireWith(std::make_shared<support::RecordingReceiver>(), options);
    }

    void acquireWith(const std::shared_ptr<support::RecordingReceiver>& status,
                     const gps::Dictionary& options = {})
    {
        EXPECT_EQ(driver_->gpsRunAcquire(status, options), std::nullopt);
        ASSERT_TRUE(status->waitUntilIdle());
        account_ = driver_->transferAccount();
    }

    void send(const gps::Dictionary& data,
              const std::shared_ptr<support::RecordingReceiver>& status =
                  std::make_shared<support::RecordingReceiver>())
    {
        EXPECT_EQ(driver_->gpsRunSend(&data, status, {}), std::nullopt);
        ASSERT_TRUE(status->waitUntilIdle());
        account_ = driver_->transferAccount();
    }

    [[nodiscard]] std::vector<std::string> files() const { return textsOf(account_.files); }

    /// "tracks /Track Logs: 257": kind, path below the receiver, code of each unseen path.
    [[nodiscard]] std::vector<std::string> unseen() const
    {
        std::vector<std::string> texts;
        for (const auto& [kind, path, error] : account_.unseen)
            texts.push_back(kind + " " + path.substr(receiver_.path().size()) + ": " +
                            std::to_string(error.code()));
        return texts;
    }

    support::ReceiverFolder receiver_;
    support::TestFolders folders_{{receiver_.path()}};
    std::shared_ptr<MagellanGPSPlugin> driver_;
    gps::TransferAccount account_;
};

TEST_F(FileAccountTest, IsEmptyBeforeTheFirstOperation)
{
    account_ = driver_->transferAccount();
    EXPECT_THAT(account_.files, IsEmpty());
    EXPECT_THAT(account_.totals, IsEmpty());
    EXPECT_EQ(driver_->lineVoice(), gps::LineVoice::kNothing);
}

TEST_F(FileAccountTest, OfACleanDownloadHasEachFileInReadingOrder)
{
    receiver_.put("My POIs/a.upt", {kWayPoint, kClosing});
    receiver_.put("Geocaches/g.gs", {kGeoCache, kClosing});
    receiver_.put("Routes/r.rte", {kWayPoint, kRouteLine, kClosing});
    receiver_.put("Track Logs/t.log", {kTrackPoint, "", kTrackPoint, kClosing});
    acquire();
    EXPECT_THAT(files(), ElementsAre("waypoints 1/1", "geocaches 1/1", "routes 2/2", "tracks 2/2"));
    EXPECT_EQ(account_.files[0].path, receiver_.path("My POIs/a.upt"));
    EXPECT_EQ(textsOf(account_.totals), files());
    EXPECT_THAT(unseen(), IsEmpty());
    EXPECT_EQ(account_.omitted, 0U);
    EXPECT_FALSE(account_.stopped);
}

TEST_F(FileAccountTest, HasTheNumberAndTheReasonOfEachSkippedLine)
{
    receiver_.put("Track Logs/t.log",
                  {kTrackPoint, breakChecksum(kTrackPoint), "", "what is this", kWayPoint,
                   "$PMGNTRK*5g", sentence("PMGNCSM,00"), kTrackPoint, kClosing});
    acquire();
    EXPECT_THAT(files(),
                ElementsAre("tracks 2/6, 2 checksum, 4 not a sentence, 5 other kind, 6 not "
                            "a sentence"));
}

TEST_F(FileAccountTest, OfWaypointsHasReplacedAndUnnamedLines)
{
    receiver_.put("My POIs/a.upt",
                  {waypointSentence("A"), waypointSentence("B"), waypointSentence("A"),
                   waypointSentence("A"), sentence("PMGNWPL,4600.000,N,00730.000,E,0000500")});
    receiver_.put("Geocaches/g.gs", {kGeoCache, kGeoCache});
    acquire();
    EXPECT_THAT(files(), ElementsAre("waypoints 2/5, 1 replaced, 3 replaced, 5 no name",
                                     "geocaches 1/2, 1 replaced"));
}

TEST_F(FileAccountTest, OfRoutesHasUnknownPointsAndIncompleteAndReplacedRoutes)
{
    receiver_.put("Routes/r.rte",
                  {waypointSentence("A"), sentence("PMGNRTE,1,1,c,1,R,A,a,B,a"),
                   sentence("PMGNRTE,1,1,c,1,R2,A,a"), sentence("PMGNRTE,2,1,c,2,S,A,a"),
                   sentence("PMGNRTE,1,1,m,2,R,again")});
    acquire();
    EXPECT_THAT(files(), ElementsAre("routes 5/5, 2 unknown point, 4 incomplete, 2 replaced"));
}

TEST_F(FileAccountTest, OfRoutesHasTheOneThatTheFileEndsIn)
{
    receiver_.put("Routes/r.rte", {kWayPoint, sentence("PMGNRTE,2,1,c,1,R,A,a")});
    acquire({{"tracks", false}, {"waypoints", false}});
    EXPECT_THAT(files(), ElementsAre("routes 2/2, 2 incomplete"));
}

TEST_F(FileAccountTest, ATruncatedSentenceEndsTheReadingOfItsFileWithAnError)
{
    receiver_.put("Track Logs/t.log", {kTrackPoint, sentence("PMGNTRK,4600.000,N"), kTrackPoint});
    acquire();
    EXPECT_THAT(files(), ElementsAre("tracks 1/2, 2 too few fields, error 0"));
    EXPECT_EQ(account_.files[0].error->domain(), gps::kRangeErrorDomain);
}

TEST_F(FileAccountTest, HasTheErrorOfEachFileThatWasNotReadWhateverItsKind)
{
    receiver_.put("Track Logs/a.log", {kTrackPoint});
    receiver_.put("Track Logs/b.log", {"\xC3\xA9"});
    receiver_.put("Track Logs/c.log", {kTrackPoint});
    receiver_.put("Routes/r.rte", {"\xC3\xA9"});
    acquire();
    EXPECT_THAT(files(), ElementsAre("routes 0/0, error 261", "tracks 1/1", "tracks 0/0, error 261",
                                     "tracks 1/1"));
    EXPECT_THAT(textsOf(account_.totals),
                ElementsAre("routes 0/0, error 261", "tracks 2/2, error 261"));
}

TEST_F(FileAccountTest, AnErrorThatEndsTheDownloadIsThatOfItsLastFile)
{
    receiver_.put("My POIs/a.upt", {"\xC3\xA9"});
    receiver_.put("My POIs/b.upt", {kWayPoint});
    receiver_.put("Track Logs/t.log", {kTrackPoint});
    acquire();
    EXPECT_THAT(files(), ElementsAre("waypoints 0/0, error 261"));
}

TEST_F(FileAccountTest, AFolderAmongTheFilesIsAnErrorOnlyIfItEndsTheWalk)
{
    receiver_.put("Track Logs/sub/t.log", {kTrackPoint});
    receiver_.put("Routes/sub/r.rte", {kRouteLine});
    acquire();
    EXPECT_THAT(files(), ElementsAre(StartsWith("routes"), "tracks 1/1"));
    receiver_.put("My POIs/sub/a.upt", {kWayPoint});
    acquire();
    EXPECT_THAT(files(), ElementsAre("waypoints 0/0, error 256"));
    EXPECT_EQ(account_.files[0].path, receiver_.path("My POIs/sub"));
}

TEST_F(FileAccountTest, HasTheFoldersThatCouldNotBeListed)
{
    receiver_.put("Track Logs", {"a file in the folder's place"});
    acquire();
    EXPECT_THAT(unseen(), ElementsAre("tracks /Track Logs: 256"));
}

TEST_F(FileAccountTest, HasTheFoldersThatLeadOutOfTheReceiver)
{
    const support::TemporaryFolder outside;
    std::filesystem::remove(receiver_.path("Track Logs"));
    std::filesystem::create_symlink(outside.path(), receiver_.path("Track Logs"));
    acquire();
    EXPECT_THAT(unseen(), ElementsAre("tracks /Track Logs: -3"));
}

TEST_F(FileAccountTest, HasALanguageFileThatCannotBeReadButNotAMissingOne)
{
    acquire();
    EXPECT_THAT(unseen(), IsEmpty());
    receiver_.languageFile({"TrackLogs=\xC3\xA9"});
    acquire();
    EXPECT_THAT(unseen(), ElementsAre("device /USBTRANS/LANGUAGE.DAT: 261"));
    receiver_.languageFile({"TrackLogs=Logs"});
    acquire();
    EXPECT_THAT(unseen(), IsEmpty());
}

TEST_F(FileAccountTest, SaysThatTheReceiverIsGone)
{
    receiver_.put("My POIs/a.upt", {kWayPoint});
    acquireWith(std::make_shared<support::ActingReceiver>(
        "wayPoint", [this] { std::filesystem::remove_all(receiver_.path("USBTRANS")); }));
    EXPECT_THAT(files(), ElementsAre("waypoints 1/1"));
    EXPECT_THAT(unseen(), ElementsAre("device /USBTRANS/UNIT_ID.DAT: 260"));
}

TEST_F(FileAccountTest, OfAStoppedDownloadEndsBeforeTheNextFile)
{
    receiver_.put("Track Logs/a.log", {kTrackPoint, kTrackPoint});
    receiver_.put("Track Logs/b.log", {kTrackPoint});
    const auto status =
        std::make_shared<support::ActingReceiver>("trackPoint", [this] { driver_->requestStop(); });
    acquireWith(status);
    EXPECT_THAT(files(), ElementsAre("tracks 2/2"));
    EXPECT_TRUE(account_.stopped);
    const auto calls = status->calls();
    EXPECT_EQ(calls[calls.size() - 2], "endTransfer 1");
    EXPECT_EQ(calls.back(), "gpsStateChange 0");
}

TEST_F(FileAccountTest, OfAStoppedDownloadHasNoLaterKinds)
{
    receiver_.put("My POIs/a.upt", {kWayPoint});
    receiver_.put("Track Logs/a.log", {kTrackPoint});
    const auto status = std::make_shared<support::ActingReceiver>(
        "endTransfer", [this] { driver_->requestStop(); });
    acquireWith(status);
    EXPECT_TRUE(account_.stopped);
    EXPECT_THAT(status->calls(), Contains(StartsWith("startTransfer")).Times(1));
}

TEST_F(FileAccountTest, ARequestToStopAfterTheLastFileStopsNothing)
{
    receiver_.put("Track Logs/a.log", {kTrackPoint});
    acquireWith(std::make_shared<support::ActingReceiver>("endTransfer 1",
                                                          [this] { driver_->requestStop(); }));
    EXPECT_FALSE(account_.stopped);
    acquire(); // the request was for the download before
    EXPECT_FALSE(account_.stopped);
    EXPECT_THAT(files(), SizeIs(1));
}

TEST_F(FileAccountTest, CanBeReadInTheLastCallOfTheStatusObject)
{
    receiver_.put("Track Logs/a.log", {kTrackPoint});
    std::promise<std::vector<std::string>> seen; // the call ends after the wait for it
    acquireWith(std::make_shared<support::ActingReceiver>(
        "gpsStateChange 0", [&] { seen.set_value(textsOf(driver_->transferAccount().files)); }));
    EXPECT_THAT(files(), ElementsAre("tracks 1/1"));
    EXPECT_EQ(seen.get_future().get(), files());
}

TEST_F(FileAccountTest, HasAThousandDetailsAndCountsAll)
{
    const auto detailsOf = [this](std::size_t lines) {
        std::string text;
        for (std::size_t i = 0; i < lines; ++i)
            text += "x\r\n";
        receiver_.folder().put("Track Logs/a.log", text);
        acquire();
        EXPECT_EQ(account_.files[0].lines.skippedFor(gps::SkipReason::kNotASentence), lines);
        EXPECT_EQ(account_.omitted, lines - account_.files[0].lines.details.size());
        return account_.files[0].lines.details.size();
    };
    EXPECT_EQ(detailsOf(1000), 1000U);
    EXPECT_EQ(detailsOf(1001), 1000U);
}

TEST_F(FileAccountTest, AllFilesShareTheRoomForDetails)
{
    std::string text;
    for (int i = 0; i < 600; ++i)
        text += "x\r\n";
    for (const auto* name : {"Track Logs/a.log", "Track Logs/b.log", "Track Logs/c.log"})
        receiver_.folder().put(name, text);
    acquire();
    EXPECT_THAT(account_.files[0].lines.details, SizeIs(600));
    EXPECT_THAT(account_.files[1].lines.details, SizeIs(400));
    EXPECT_THAT(account_.files[2].lines.details, IsEmpty());
    EXPECT_EQ(account_.omitted, 800U);
    EXPECT_EQ(account_.totals[0].lines.seen, 1800U);
}

TEST_F(FileAccountTest, HasAThousandFilesAndTheTotalsOfAll)
{
    for (int i = 0; i < 1001; ++i)
        receiver_.put("Track Logs/" + std::to_string(i), {kTrackPoint});
    acquire();
    EXPECT_THAT(account_.files, SizeIs(1000));
    EXPECT_EQ(account_.omitted, 1U);
    EXPECT_EQ(account_.totals[0].lines.accepted, 1001U);
}

TEST_F(FileAccountTest, OfASendHasTheFilesThatItMergedInto)
{
    receiver_.languageFile({"MyPOIs=P", "Geocaches=G", "Routes=R", "TrackLogs=T"});
    for (const auto* name : {"P", "G", "R", "T"})
        receiver_.folder().makeFolder(name);
    receiver_.put("P/Default POI File.upt", {kWayPoint, breakChecksum(kWayPoint), kTrackPoint});
    receiver_.put("R/Default Route File.rte",
                  {kWayPoint, sentence("PMGNRTE,2,1,c,1,R,A,a,B,a"), kClosing});
    const gps::Dictionary record{{"name", "N"}, {"point", gps::GPSPoint{46, 7, 0, 0, 0}}};
    const gps::Dictionary cache{
        {"name", "C"}, {"symbol", "Geocache"}, {"point", gps::GPSPoint{46, 7, 0, 0, 0}}};
    const gps::Dictionary route{{"name", "NEW"}, {"points", gps::Array{record}}};
    send({{"track", gps::Array{gps::Dictionary{{"points", gps::Array{record}}}}},
          {"waypoint", gps::Array{record, cache}},
          {"route", gps::Array{route}}});
    EXPECT_THAT(files(), ElementsAre("waypoints 1/3, 2 checksum, 3 other kind",
                                     "routes 2/2, 2 unknown point, 2 incomplete"));
    EXPECT_EQ(account_.files[0].path, receiver_.path("P/Default POI File.upt"));
}

TEST_F(FileAccountTest, OfASendHasTheErrorWithWhichAFileWasMergedFromNothing)
{
    receiver_.languageFile({"MyPOIs=P"});
    receiver_.put("P/Default POI File.upt", {"\xC3\xA9"});
    const gps::Dictionary record{{"name", "N"}, {"point", gps::GPSPoint{46, 7, 0, 0, 0}}};
    send({{"waypoint", gps::Array{record}}});
    EXPECT_THAT(files(), ElementsAre("waypoints 0/0, error 261"));
}

TEST_F(FileAccountTest, OfAStoppedSendWritesNoMoreKinds)
{
    receiver_.languageFile({"MyPOIs=P", "Routes=R"});
    receiver_.folder().makeFolder("P");
    receiver_.folder().makeFolder("R");
    const gps::Dictionary record{{"name", "N"}, {"point", gps::GPSPoint{46, 7, 0, 0, 0}}};
    const auto status =
        std::make_shared<support::ActingReceiver>("endSending", [this] { driver_->requestStop(); });
    send({{"waypoint", gps::Array{record}},
          {"route", gps::Array{gps::Dictionary{{"name", "R"}, {"points", gps::Array{record}}}}}},
         status);
    EXPECT_TRUE(account_.stopped);
    EXPECT_TRUE(std::filesystem::exists(receiver_.path("P/Default POI File.upt")));
    EXPECT_FALSE(std::filesystem::exists(receiver_.path("R/Default Route File.rte")));
    EXPECT_THAT(status->calls(), Contains(StartsWith("startSending")).Times(1));
}

TEST_F(FileAccountTest, OfAnImportHasItsFile)
{
    const auto path = receiver_.put("t.log", {kTrackPoint, "what is this", kTrackPoint});
    acquire({{"sourcePath", path}});
    EXPECT_THAT(files(), ElementsAre("tracks 2/3, 2 not a sentence"));
    EXPECT_EQ(account_.files[0].path, path);
}

TEST_F(FileAccountTest, OfAnImportThatThrowsHasTheErrorAndTheLine)
{
    const auto path = receiver_.put("t.log", {kTrackPoint, sentence("PMGNTRK,4600.000,N")});
    EXPECT_THROW((void)driver_->gpsRunAcquire(std::make_shared<support::RecordingReceiver>(),
                                              {{"sourcePath", path}}),
                 gps::RangeError);
    EXPECT_THAT(textsOf(driver_->transferAccount().files),
                ElementsAre("tracks 1/2, 2 too few fields, error 0"));
}

TEST_F(FileAccountTest, OfARefusedImportHasTheRefusal)
{
    const auto path = receiver_.put("t.txt", {kTrackPoint});
    EXPECT_NE(driver_->gpsRunAcquire(std::make_shared<support::RecordingReceiver>(),
                                     {{"sourcePath", path}}),
              std::nullopt);
    const auto account = driver_->transferAccount();
    EXPECT_THAT(textsOf(account.files), ElementsAre(" 0/0, error -5"));
    EXPECT_EQ(account.files[0].path, path);
}

} // namespace
} // namespace magellan
