// SPDX-License-Identifier: MIT
// Imports of single files: extensions, first lines, rejections and status calls.

#include "SampleSentences.h"

#include <plugin/fsdevice/MagellanGPSPlugin.h>
#include <support/AsNobody.h>
#include <support/LogCapture.h>
#include <support/ReceiverFolder.h>
#include <support/RecordingReceiver.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace magellan {
namespace {

using support::fileOf;
using support::kGeoCache;
using support::kTrackPoint;
using support::kWayPoint;
using support::sentence;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr char kNoExtension[] = "No extension exists on selected file";
constexpr char kUnrecognizedExtension[] = "Unrecognized extension on selected file";
constexpr char kCouldNotOpen[] = "Couldn't open file";
constexpr char kUnrecognizedContents[] = "Contents of file unrecognized";
constexpr char kWrongPlugIn[] = "File may be invalid or this may be the wrong plug-in";

class FileImportTest : public testing::Test {
protected:
    std::optional<gps::Error> import(const std::optional<std::string>& path)
    {
        return MagellanGPSPlugin{}.importFile(path, status_);
    }

    /// Imports a path that must be rejected, and checks the whole error.
    void expectRejected(const std::optional<std::string>& path, std::string_view description,
                        std::string_view suggestion)
    {
        SCOPED_TRACE(path.value_or("(none)"));
        support::RecordingReceiver status;
        const support::LogCapture log;
        const auto error = MagellanGPSPlugin{}.importFile(path, status);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->domain(), "com.Orvane.GPSPlugin.ErrorDomain");
        EXPECT_EQ(error->code(), -5);
        EXPECT_EQ(error->description(), description);
        EXPECT_EQ(error->suggestion(), suggestion);
        EXPECT_EQ(error->path(), path);
        EXPECT_FALSE(error->userInfo().contains(gps::kErrorUnderlyingKey));
        EXPECT_THAT(status.calls(), ElementsAre("gpsStateChange 0"));
        EXPECT_THAT(log.lines(), IsEmpty());
    }

    support::TemporaryFolder folder_;
    support::RecordingReceiver status_;
};

TEST_F(FileImportTest, NoPathAtAllHasNoExtension)
{
    expectRejected(std::nullopt, kNoExtension, "Make sure there's an extension");
}

TEST_F(FileImportTest, AnExtensionOfAnotherCaseIsUnrecognized)
{
    for (const auto* name : {"track.LOG", "track.Log", "p.UPT", "r.RTE", "g.GS"})
        expectRejected(folder_.put(name, kTrackPoint), kUnrecognizedExtension, kWrongPlugIn);
}

TEST_F(FileImportTest, ANameWithoutADotIsAnUnrecognizedExtensionNotAMissingOne)
{
    expectRejected(folder_.put("track", kTrackPoint), kUnrecognizedExtension, kWrongPlugIn);
    expectRejected(folder_.put("dir.log/track", kTrackPoint), kUnrecognizedExtension, kWrongPlugIn);
    expectRejected("", kUnrecognizedExtension, kWrongPlugIn);
    expectRejected("/", kUnrecognizedExtension, kWrongPlugIn);
}

TEST_F(FileImportTest, OtherExtensionsAreUnrecognized)
{
    for (const auto* name :
         {"t.gpx", "t.", "t.log.txt", "t.log ", "t.lo", "t.logs", "t..", "t.upt~"})
        expectRejected(folder_.put(name, kTrackPoint), kUnrecognizedExtension, kWrongPlugIn);
}

TEST_F(FileImportTest, TheExtensionFollowsTheLastDotEvenAtTheBeginningOfAName)
{
    for (const auto* name : {"t.log", ".log", "t.upt.log", "t..log", "dir.upt/t.log"}) {
        support::RecordingReceiver status;
        EXPECT_EQ(MagellanGPSPlugin{}.importFile(folder_.put(name, fileOf({kTrackPoint})), status),
                  std::nullopt)
            << name;
        EXPECT_THAT(status.calls(), SizeIs(5)) << name;
    }
}

TEST_F(FileImportTest, AnEmptyFileIsReportedAsNotOpened)
{
    for (const auto* name : {"points.upt", "t.log", "r.rte", "g.gs"})
        expectRejected(folder_.put(name, ""), kCouldNotOpen,
                       "File may be missing or this may be the wrong plug-in");
}

// The process's own memory is a file that opens, but whose first bytes cannot be read.
TEST_F(FileImportTest, AFileWhoseFirstLineCannotBeReadIsReportedAsNotOpened)
{
    for (const auto* name : {"points.upt", "t.log"}) {
        std::filesystem::create_symlink("/proc/self/mem", folder_.path(name));
        expectRejected(folder_.path(name), kCouldNotOpen,
                       "File may be missing or this may be the wrong plug-in");
    }
}

TEST_F(FileImportTest, ARouteFileThatListsItsWaypointsFirstIsUnrecognized)
{
    expectRejected(folder_.put("r.rte", fileOf({kWayPoint, sentence("PMGNRTE,1,1,c,1,R,A,a")})),
                   kUnrecognizedContents, kWrongPlugIn);
}

TEST_F(FileImportTest, AFirstLineThatIsBlankShortOrAnotherSentenceIsUnrecognized)
{
    for (const auto& text :
         {"\r\n" + kTrackPoint, "\n" + kTrackPoint, " " + kTrackPoint, kWayPoint,
          sentence("PMGNCMD,END"), std::string{"$"}, std::string{"$PMGNTR"},
          std::string{"$PMGNTR\r\nK"}, std::string{"$pmgntrk"}, std::string{"\0", 1}})
        expectRejected(folder_.put("t.log", text), kUnrecognizedContents, kWrongPlugIn);
    expectRejected(folder_.put("p.upt", kGeoCache), kUnrecognizedContents, kWrongPlugIn);
    expectRejected(folder_.put("g.gs", kWayPoint), kUnrecognizedContents, kWrongPlugIn);
}

TEST_F(FileImportTest, TheFirstEightBytesDecideWhateverFollows)
{
    EXPECT_EQ(import(folder_.put("t.log", "$PMGNTRK")), std::nullopt);
    EXPECT_EQ(import(folder_.put("t.log", "$PMGNTRKX,1*00" + std::string(1000, '-'))),
              std::nullopt);
    EXPECT_THAT(status_.calls(),
                ElementsAre("startTransfer 1", "endTransfer 1", "gpsStateChange 0",
                            "startTransfer 1", "endTransfer 1", "gpsStateChange 0"));
}

TEST_F(FileImportTest, AFileOfEachKindIsReportedBetweenItsPairOfCalls)
{
    EXPECT_EQ(import(folder_.put("t.log", fileOf({kTrackPoint, "garbage", kWayPoint}))),
              std::nullopt);
    EXPECT_EQ(import(folder_.put("p.upt", fileOf({kWayPoint}))), std::nullopt);
    EXPECT_EQ(import(folder_.put("r.rte", fileOf({sentence("PMGNRTE,1,1,c,1,R")}))), std::nullopt);
    EXPECT_THAT(
        status_.calls(),
        ElementsAre(
            "startTransfer 1", "newTrack {name = \"T\"}",
            "trackPoint (46, 7.5, 500, 1204286400, 0) {trackName = \"T\"}", "endTransfer 1",
            "gpsStateChange 0", "startTransfer 3",
            "wayPoint (46, 7.5, 500, 0, 0) {name = \"A\", comment = \"\", symbol = \"Residence\"}",
            "endTransfer 3", "gpsStateChange 0", "startTransfer 2",
            "newRoute {name = \"R\", lastIndex = 1}", "endTransfer 2", "gpsStateChange 0"));
}

TEST_F(FileImportTest, AGeocacheFileIsReportedAsWaypointsOfKindThree)
{
    EXPECT_EQ(import(folder_.put("g.gs", fileOf({kGeoCache, kGeoCache}))), std::nullopt);
    EXPECT_THAT(status_.calls(),
                ElementsAre("startTransfer 3",
                            StartsWith("wayPoint (46, 7.5, 500, 0, 0) {name = \"G\""),
                            "endTransfer 3", "gpsStateChange 0"));
}

/// Imports a path that cannot be opened. The import itself reports no error, but the reader logs
/// one, whatever the debug level.
void expectReadersError(const std::string& path, std::optional<std::int32_t> code)
{
    SCOPED_TRACE(path);
    support::RecordingReceiver status;
    const support::LogCapture log;
    const auto error = MagellanGPSPlugin{}.importFile(path, status);
    ASSERT_EQ(error.has_value(), code.has_value());
    if (error) {
        EXPECT_EQ(error->domain(), "NSCocoaErrorDomain");
        EXPECT_EQ(error->code(), *code);
    }
    EXPECT_THAT(status.calls(), ElementsAre(StartsWith("startTransfer "),
                                            StartsWith("endTransfer "), "gpsStateChange 0"));
    ASSERT_THAT(log.errors(), SizeIs(1));
    EXPECT_EQ(log.errors().front().code(), -3);
}

TEST_F(FileImportTest, APathThatCannotBeOpenedHasTheReadersError)
{
    expectReadersError(folder_.path("none.upt"), 260);
    expectReadersError(folder_.path("none.gs"), 260);
    expectReadersError(folder_.path("none.log"), std::nullopt);
    expectReadersError(folder_.path("none.rte"), std::nullopt);
    expectReadersError(folder_.path("none.log/"), std::nullopt);
}

TEST_F(FileImportTest, AFolderOrAFifoHasTheReadersErrorAtOnce)
{
    for (const auto& [extension, code] :
         std::vector<std::pair<std::string, std::optional<std::int32_t>>>{
             {".upt", 256}, {".gs", 256}, {".log", std::nullopt}, {".rte", std::nullopt}}) {
        expectReadersError(folder_.makeFolder("folder" + extension), code);
        const auto fifo = folder_.path("fifo" + extension);
        ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
        expectReadersError(fifo, code);
    }
}

TEST_F(FileImportTest, AFileWithoutReadPermissionHasTheReadersError)
{
    const auto points = folder_.put("p.upt", fileOf({kWayPoint}));
    const auto track = folder_.put("t.log", fileOf({kTrackPoint}));
    std::filesystem::permissions(points, std::filesystem::perms::none);
    std::filesystem::permissions(track, std::filesystem::perms::none);
    const support::AsNobody nobody;
    expectReadersError(points, 257);
    expectReadersError(track, std::nullopt);
}

TEST_F(FileImportTest, AFileThatIsNotAsciiAfterItsFirstLineHasTheReadersError)
{
    expectReadersError(folder_.put("p.upt", kWayPoint + "\r\n\xC3\xA9"), 261);
}

TEST_F(FileImportTest, APathOutsideAsciiIsNotCheckedButRead)
{
    EXPECT_EQ(import(folder_.put("caf\xC3\xA9.log", fileOf({kTrackPoint}))), std::nullopt);
    EXPECT_THAT(status_.calls(), SizeIs(5));
    support::RecordingReceiver status;
    EXPECT_EQ(MagellanGPSPlugin{}.importFile(folder_.put("caf\xC3\xA9.upt", ""), status),
              std::nullopt);
    EXPECT_THAT(status.calls(),
                ElementsAre("startTransfer 3", "endTransfer 3", "gpsStateChange 0"));
}

TEST_F(FileImportTest, ASentenceThatIsTooShortThrowsAfterTheEndWasReported)
{
    const auto path = folder_.put("p.upt", fileOf({kWayPoint, sentence("PMGNWPL,4600.000,N")}));
    EXPECT_THROW((void)import(path), gps::RangeError);
    EXPECT_THAT(status_.calls(),
                ElementsAre("startTransfer 3", "endTransfer 3", "gpsStateChange 0"));
}

TEST_F(FileImportTest, ARejectionIsLoggedIfTheDebugLevelIsNotZero)
{
    const auto driver = std::make_shared<MagellanGPSPlugin>();
    const auto status = std::make_shared<support::RecordingReceiver>();
    for (const gps::Value& path :
         {gps::Value{7}, gps::Value{folder_.path("x")}, gps::Value{folder_.put("e.upt", "")},
          gps::Value{folder_.put("w.upt", kTrackPoint)}}) {
        for (const int level : {1, -1}) {
            const support::LogCapture log;
            const auto error =
                driver->gpsRunAcquire(status, {{"debug", level}, {"sourcePath", path}});
            ASSERT_TRUE(error);
            EXPECT_THAT(log.lines(), ElementsAre("MagellanGPSPlugin: " + error->text())) << level;
        }
    }
}

/// Stores how many lines the log had when the end was reported.
class LogLength : public support::RecordingReceiver {
public:
    void gpsStateChange(std::int32_t state) override
    {
        linesAtTheEnd_ = log_.lines().size();
        RecordingReceiver::gpsStateChange(state);
    }
    [[nodiscard]] std::size_t linesAtTheEnd() const { return linesAtTheEnd_; }

private:
    support::LogCapture log_;
    std::size_t linesAtTheEnd_ = 0;
};

TEST_F(FileImportTest, ARejectionIsLoggedBeforeTheEndIsReportedButAMissingPathAfterIt)
{
    const auto linesAtTheEnd = [](const gps::Value& path) {
        const auto status = std::make_shared<LogLength>();
        EXPECT_TRUE(std::make_shared<MagellanGPSPlugin>()->gpsRunAcquire(
            status, {{"debug", 1}, {"sourcePath", path}}));
        return status->linesAtTheEnd();
    };
    EXPECT_EQ(linesAtTheEnd(7), 0U);
    EXPECT_EQ(linesAtTheEnd(folder_.path("x")), 1U);
    EXPECT_EQ(linesAtTheEnd(folder_.put("e.upt", "")), 1U);
    EXPECT_EQ(linesAtTheEnd(folder_.put("w.upt", kTrackPoint)), 1U);
}

TEST_F(FileImportTest, ARejectionHasNoEntriesOtherThanItsTextsAndThePath)
{
    const auto error = import(folder_.put("t.txt", ""));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->userInfo().size(), 3U);
}

} // namespace
} // namespace magellan
