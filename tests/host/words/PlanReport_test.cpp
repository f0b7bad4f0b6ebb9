// SPDX-License-Identifier: MIT

#include "host/words/PlanReport.h"

#include "host/FakeDriver.h"
#include "host/base/Translation.h"

#include <platform/System/FileError.h>

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Action = gps::PlannedFile::Action;
using Result = host::SentFile::Result;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

gps::Error errorOf(const char* description, const char* path)
{
    return {"some",
            1,
            {{gps::kErrorDescriptionKey, description}, {gps::kErrorPathKey, std::string{path}}}};
}

host::PreparedSend sendTo(const char* location)
{
    return {.device = {std::make_shared<support::FakeFileDriver>(), location}, .request = {}};
}

TEST(PlanReport, EachFileTextAndRemarkIsALine)
{
    auto send = sendTo("/dev");
    send.plan.files.push_back({"/dev/Tracks/a.log", Action::kCreate, "x", {}});
    send.plan.files.push_back({"/dev/Points/b.upt", Action::kMerge, "x", {}});
    send.plan.files.push_back({"/dev/Caches/c.gs", Action::kSkip, "x", {}});
    send.plan.files.push_back({"/else/d", Action::kSkip, "x",
                               gps::Error{"some", 1, {{gps::kErrorDescriptionKey, "No folder"}}}});
    send.plan.remarks = {"A remark\x1b."};
    send.textChanges = {{"waypoint", "name", "Hütte☃", "Hutte", "☃"},
                        {"route", "comment", "é", "e", ""}};
    EXPECT_EQ(host::planReport(send), "create: Tracks/a.log\n"
                                      "merge into: Points/b.upt\n"
                                      "skip: Caches/c.gs (nothing to write)\n"
                                      "skip: /else/d (No folder.)\n"
                                      "waypoint name: \"Hütte☃\" becomes \"Hutte\", without \"☃\"\n"
                                      "route comment: \"é\" becomes \"e\"\n"
                                      "A remark\uFFFD.\n");
}

TEST(PlanReport, LossesAreLines)
{
    auto send = sendTo("/dev");
    const auto named = [](const char* name) { return gps::Dictionary{{"name", name}}; };
    send.request.data =
        gps::Dictionary{{"track", gps::Array{named("Day 1"), named(""), named("x")}}};
    send.segmentedTracks = {{"Day 1", 3}, {"", 2}};
    send.plan.lostFields = {{"tracks", "name", 2},
                            {"tracks", "altitude", 1204},
                            {"waypoints", "time", 12},
                            {"routes", "time", 1},
                            {"geocaches", "altitude", 1}};
    send.present = {.waypoints = 6, .tracks = 1, .trackPoints = 277};
    EXPECT_EQ(host::planReport(send),
              "The track \"Day 1\" has 3 segments, which become 3 tracks.\n"
              "The track without a name has 2 segments, which become 2 tracks.\n"
              "The device does not store the names of 2 tracks: \"Day 1\", \"x\".\n"
              "The elevation of 1,204 track points is unknown and will be stored as 0.\n"
              "The device does not store the times of 12 waypoints.\n"
              "The device does not store the time of 1 route point.\n"
              "The elevation of 1 geocache is unknown and will be stored as 0.\n"
              "On the device already, and not sent again: 6 waypoints, 1 track (277 points).\n");
    send.request.segmentRule = host::SegmentRule::kJoin;
    EXPECT_THAT(host::planReport(send),
                HasSubstr("The 3 segments of the track \"Day 1\" are joined into one track.\n"));
}

TEST(PlanReport, RecordsThatAreReplacedOrRepeatedAreNamed)
{
    auto send = sendTo("/dev");
    send.repeated = {.waypoints = 1, .routes = 2, .routePoints = 6};
    send.replaced = {{"waypoint", "Camp"}, {"geocache", "GC1"}, {"route", "Loop\x1b"}};
    EXPECT_EQ(host::planReport(send),
              "In the files more than once, and sent once: 1 waypoint, 2 routes.\n"
              "Replaced on the device by what has the same name: waypoint \"Camp\", geocache "
              "\"GC1\", route \"Loop\uFFFD\".\n");
    send.replaced.assign(10, {"route", "R"});
    EXPECT_THAT(host::planReport(send), testing::EndsWith(", route \"R\".\n"));
    send.replaced.assign(11, {"route", "R"});
    EXPECT_THAT(host::planReport(send), testing::EndsWith(", route \"R\" and 1 more.\n"));
}

TEST(PlanReport, AtMostTenLostNamesAreListed)
{
    auto send = sendTo("/dev");
    gps::Array tracks(10, gps::Dictionary{{"name", "T"}});
    send.request.data = gps::Dictionary{{"track", tracks}};
    send.plan.lostFields = {{"tracks", "name", 10}};
    EXPECT_THAT(host::planReport(send), testing::EndsWith(", \"T\", \"T\".\n"));
    tracks.emplace_back(gps::Dictionary{{"name", "U"}});
    send.request.data = gps::Dictionary{{"track", tracks}};
    send.plan.lostFields = {{"tracks", "name", 11}};
    EXPECT_THAT(host::planReport(send), testing::EndsWith("\"T\" and 1 more.\n"));
}

TEST(PlanReport, BlockedFilesAndLostContentsAreErrors)
{
    auto send = sendTo("/dev");
    send.plan.files.push_back({"/dev/a", Action::kCreate, "x", {}});
    send.plan.files.push_back({"/dev/b", Action::kSkip, "x", {}});
    EXPECT_THAT(host::planErrors(send), IsEmpty());
    send.plan.files[1].error = errorOf("No folder", "/dev/b");
    EXPECT_THAT(host::planErrors(send), ElementsAre("No folder. Path: /dev/b"));
    send.plan.files[1].action = Action::kMerge;
    EXPECT_THAT(host::planErrors(send),
                ElementsAre("No folder. Path: /dev/b", HasSubstr("No backup keeps a copy.")));
    send.request.backup.emplace();
    EXPECT_THAT(host::planErrors(send).back(),
                HasSubstr("a send replaces it. The backup keeps a copy. Path: /dev/b"));
}

TEST(PlanReport, DeviceThatCannotBeWrittenIsOneError)
{
    auto send = sendTo("/dev");
    const auto forbidden = [](const char* path) {
        return gps::makeFileError(gps::FileErrorCode::kWriteNoPermission, path);
    };
    send.plan.files.push_back({"/dev/a", Action::kSkip, "x", forbidden("/dev/a")});
    send.plan.files.push_back({"/dev/b", Action::kSkip, "x", forbidden("/dev/b")});
    EXPECT_EQ(host::planReport(send), "skip: a\nskip: b\n");
    EXPECT_THAT(host::planErrors(send),
                ElementsAre("The device cannot be written, because permission was refused: nothing "
                            "can be sent. Let your user write to its folders, and send again. "
                            "Path: /dev"));
    send.plan.files[0].error =
        gps::makeFileError(gps::FileErrorCode::kWriteReadOnlyVolume, "/dev/a");
    EXPECT_THAT(host::planErrors(send), ElementsAre(HasSubstr("its volume is read-only")));
    send.plan.files.push_back({"/dev/c", Action::kCreate, "x", {}});
    EXPECT_THAT(host::planErrors(send), SizeIs(2)) << "the device has a file that can be written";
}

TEST(PlanReport, LinesThatWillNotBeKeptAreCounted)
{
    auto send = sendTo("/dev");
    send.plan.files.push_back({"/dev/Points/b.upt", Action::kMerge, "x", {}, "waypoints", 1});
    EXPECT_THAT(
        host::planReport(send),
        HasSubstr("\n1 line of b.upt will not be kept: damaged, incomplete, of another kind "
                  "or with a name that comes again. No backup keeps the file.\n"));
    send.plan.files[0].droppedLines = 12;
    send.request.backup.emplace();
    EXPECT_THAT(host::planReport(send),
                HasSubstr("\n12 lines of b.upt will not be kept: damaged, incomplete, of another "
                          "kind or with a name that comes again. The backup keeps the whole "
                          "file.\n"));
}

TEST(PlanReport, ObstacleIsNamedOnceAndStopsTheSend)
{
    auto send = sendTo("/dev");
    send.obstacle = errorOf("Cannot be read", "/dev/a");
    send.plan.files.push_back({"/dev/a", Action::kMerge, "x", send.obstacle});
    EXPECT_THAT(host::planErrors(send), IsEmpty());
    host::SendReport report;
    report.obstacle = send.obstacle;
    EXPECT_THAT(host::sendErrors(report, send),
                ElementsAre("Cannot be read. Path: /dev/a", "Nothing was sent."));
    send.request.isDryRun = true;
    EXPECT_THAT(host::planErrors(send), ElementsAre("Cannot be read. Path: /dev/a"));
}

TEST(PlanReport, LostRecordsAreReportedWithWhatIsSafe)
{
    host::SendReport report;
    report.files = {{"/dev/a", Result::kPutBack, 3}};
    EXPECT_THAT(
        host::sendErrors(report, sendTo("/dev")),
        ElementsAre(testing::AllOf(
            testing::StartsWith("3 of the receiver's records in this file were lost"),
            HasSubstr("nothing is lost, and nothing was added. Send again. Path: /dev/a"))));
    report.files = {{"/dev/a", Result::kLost, 3, errorOf("No space", "/dev/a")}};
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")),
                ElementsAre(HasSubstr("It could not be put back: No space. Path: /dev/a There is "
                                      "no backup.")));
    report.backup.emplace().name = "20260101T000000Z";
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")),
                ElementsAre(HasSubstr("magellangps restore 20260101T000000Z")));
}

TEST(PlanReport, FileWhoseErrorWasLoggedIsNamedOnce)
{
    host::SendReport report;
    report.files = {{"/dev/a", Result::kMissing}, {"/dev/b", Result::kDifferent}};
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")),
                ElementsAre(HasSubstr("/dev/a"), HasSubstr("/dev/b")));
    report.errors = {errorOf("No space", "/dev/a")};
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")),
                ElementsAre("No space. Path: /dev/a", HasSubstr("does not hold what was sent")));
}

// A send with a plan, so that it is known what each file held.
host::PreparedSend plannedSend()
{
    auto send = sendTo("/dev");
    send.snapshot = std::make_unique<support::FakeFileDriver::Snapshot>(
        *dynamic_cast<support::FakeFileDriver*>(send.device.driver.get()));
    return send;
}

host::SentFile asBefore(const char* path, Result result)
{
    return {.path = path, .result = result, .isAsBefore = true};
}

TEST(PlanReport, StoppedSendNamesTheFilesThatAreNew)
{
    host::SendReport report;
    report.wasStopped = true;
    report.files = {{"/dev/a", Result::kWritten}, asBefore("/dev/b", Result::kMissing)};
    EXPECT_THAT(host::sendErrors(report, plannedSend()),
                ElementsAre("The send was stopped. Send again to write the rest.", "Written: a.",
                            "As before the send: b."));
}

TEST(PlanReport, SendThatWasStoppedBeforeItWroteSaysSoInOneLine)
{
    const char kText[] = "The send was stopped before anything was written: every file of the "
                         "device is as it was.";
    host::SendReport report;
    report.wasStopped = true;
    report.files = {asBefore("/dev/a", Result::kMissing)};
    EXPECT_THAT(host::sendErrors(report, plannedSend()), ElementsAre(kText));
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")),
                ElementsAre("The send was stopped. Send again to write the rest."))
        << "without a plan nobody knows";
    report.files.clear();
    report.wasStoppedEarly = true;
    EXPECT_THAT(host::sendErrors(report, plannedSend()), ElementsAre(kText));
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")), ElementsAre(kText));
}

TEST(PlanReport, FailedSendNamesTheFilesThatAreNewAndThoseThatAreAsBefore)
{
    host::SendReport report;
    report.errors = {errorOf("No space", "/dev/b")};
    report.files = {{"/dev/a", Result::kWritten},
                    asBefore("/dev/b", Result::kDifferent),
                    {"/dev/c", Result::kWritten},
                    {"/dev/d", Result::kUnreadable},
                    {"/dev/e", Result::kDifferent}};
    EXPECT_THAT(host::sendErrors(report, plannedSend()),
                ElementsAre("No space. Path: /dev/b", HasSubstr("cannot be read back"),
                            HasSubstr("does not hold what was sent"), "Written: a, c.",
                            "As before the send: b.", "Neither as before nor as planned: e.",
                            "Not readable now, and either as before or as planned: d."));
    report.files = {asBefore("/dev/b", Result::kDifferent)};
    EXPECT_THAT(host::sendErrors(report, plannedSend()),
                ElementsAre("No space. Path: /dev/b",
                            "Nothing was written: every file of the device is as it was."));
}

host::SentFile renamedTrack(const char* path, const char* writtenPath)
{
    return {.path = path, .result = Result::kRenamed, .writtenPath = writtenPath};
}

TEST(PlanReport, TrackUnderAnotherNameIsNamedAndIsNotAnError)
{
    host::SendReport report;
    report.files = {{"/dev/T/a", Result::kWritten}, renamedTrack("/dev/T/b", "/dev/T/c")};
    EXPECT_THAT(host::sendErrors(report, plannedSend()), IsEmpty());
    EXPECT_THAT(host::writingNotes(report, plannedSend()),
                ElementsAre("A track was written to T/c, not to T/b as planned."));
    report.wasStopped = true;
    EXPECT_THAT(
        host::sendErrors(report, plannedSend()),
        ElementsAre("The send was stopped. Send again to write the rest.", "Written: T/a, T/c."));
}

TEST(PlanReport, FileThatAnotherProgramHasChangedTooIsNamedAndIsNotAnError)
{
    host::SendReport report;
    report.files = {{"/dev/W/a", Result::kAlsoChanged}};
    EXPECT_THAT(host::sendErrors(report, plannedSend()), IsEmpty());
    EXPECT_THAT(host::writingNotes(report, plannedSend()),
                ElementsAre("Another program has changed W/a during the send. It holds what was "
                            "sent, and what was there."));
}

TEST(PlanReport, FirstTenRecordsWithoutPointsAreNamed)
{
    host::PreparedSend send;
    EXPECT_THAT(host::emptyRecordErrors(send), IsEmpty());
    send.emptyRecords.assign(10, {"route", "R"});
    EXPECT_THAT(host::emptyRecordErrors(send), testing::SizeIs(10));
    send.emptyRecords.push_back({"track", ""});
    send.emptyRecords.front() = {"track", ""};
    const auto sentences = host::emptyRecordErrors(send);
    ASSERT_THAT(sentences, testing::SizeIs(11));
    EXPECT_EQ(sentences[0], "The track without a name has no points, so it was left out.");
    EXPECT_EQ(sentences[1], "The route \"R\" has no points, so it was left out.");
    EXPECT_EQ(sentences[10], "Left out, because they have no points: 1 more.");
}

TEST(PlanReport, OnlyTenRenamedTracksAreNamed)
{
    host::SendReport report;
    report.files.assign(10, renamedTrack("/dev/a", "/dev/b"));
    EXPECT_THAT(host::writingNotes(report, plannedSend()), testing::SizeIs(10));
    report.files.push_back(renamedTrack("/dev/a", "/dev/b"));
    const auto notes = host::writingNotes(report, plannedSend());
    EXPECT_THAT(notes, testing::SizeIs(11));
    EXPECT_EQ(notes.back(), "Written under other names than planned: 1 more.");
}

TEST(PlanReport, OnlyTheFirstTenFilesAreNamed)
{
    host::SendReport report;
    report.wasStopped = true;
    report.files.assign(12, {"/dev/a", Result::kWritten});
    EXPECT_EQ(host::sendErrors(report, plannedSend()).back(),
              "Written: a, a, a, a, a, a, a, a, a, a and 2 more.");
}

TEST(PlanReport, NothingIsClaimedAboutFilesWithoutAPlan)
{
    host::SendReport report;
    report.errors = {errorOf("No space", "/dev/b")};
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")), ElementsAre("No space. Path: /dev/b"));
}

TEST(PlanReport, SummaryOfASendWithNothingNewNamesTheOption)
{
    auto send = plannedSend();
    send.request.data = gps::Dictionary{};
    EXPECT_EQ(host::sentSummary(send),
              "Nothing was sent: there are no waypoints, geocaches, routes or tracks to send.");
    send.present.waypoints = 1;
    EXPECT_EQ(host::sentSummary(send),
              "Nothing is new: the device holds everything already. --again sends it.");
}

TEST(PlanReport, FilesThatAreAsPlannedAreNotErrors)
{
    host::SendReport report;
    report.files = {{"/dev/a", Result::kWritten},
                    {"/dev/b", Result::kBlocked},
                    {"/dev/c", Result::kNothingToWrite}};
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")), IsEmpty());
}

TEST(PlanReport, FirstTenMissingRecordsAreNamed)
{
    host::SendReport report;
    report.missingRecords = {{"waypoint", "A"}, {"track point", std::nullopt}};
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")),
                ElementsAre("The waypoint \"A\" is not on the device.",
                            "The track point without a name is not on the device."));
    report.missingRecords.clear();
    for (const char* const name : {"A", "B", "C", "D", "E", "F", "G", "H", "I", "J"})
        report.missingRecords.push_back({"waypoint", name});
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")), SizeIs(10));
    report.missingRecords.push_back({"waypoint", "K"});
    report.missingRecords.push_back({"waypoint", "L"});
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")), SizeIs(11));
    EXPECT_EQ(host::sendErrors(report, sendTo("/dev")).back(),
              "And 2 more records are not on the device.");
}

TEST(PlanReport, MissingRecordsOfOneNameAreOneSentence)
{
    host::SendReport report;
    report.missingRecords = {{"track", "Day"}, {"track", "Day"}, {"track", "Night"}};
    EXPECT_THAT(host::sendErrors(report, sendTo("/dev")),
                ElementsAre("The track \"Day\" is not on the device. There are 2 of these.",
                            "The track \"Night\" is not on the device.",
                            "No number is free for another track. Remove tracks from the device, "
                            "and send again."));
}

TEST(PlanReport, MissingKindsAreExplainedByWhatTheDriverCanDo)
{
    host::SendReport report;
    report.missingKinds = {gps::TransferKind::kWaypoints, gps::TransferKind::kRoutes};
    auto send = sendTo("/dev");
    EXPECT_THAT(host::sendErrors(report, send),
                ElementsAre(testing::StartsWith("The driver fake cannot send. Connect")));
    send.canSend = true;
    EXPECT_THAT(host::sendErrors(report, send),
                ElementsAre("The send broke off. Missing: waypoints, routes."));
}

TEST(PlanReport, SummaryNamesTheKindsThatThereAre)
{
    const gps::Dictionary waypoint{{"name", "A"}};
    const gps::Dictionary geocache{
        {"name", "G"}, {"symbol", "Geocache"}, {"geocacheType", "Traditional"}};
    const gps::Dictionary route{{"name", "R"}, {"points", gps::Array{waypoint}}};
    EXPECT_EQ(host::dataSummary({{"waypoint", gps::Array{waypoint, geocache, waypoint}},
                                 {"route", gps::Array{route}},
                                 {"track", "none"}}),
              "2 waypoints, 1 geocache, 1 route");
    EXPECT_EQ(host::dataSummary({}), "no records");
}

// All kinds of lines, with one of something and with several.
host::PreparedSend sendWithAllLines()
{
    auto send = sendTo("/dev");
    send.plan.files.push_back({"/dev/Points/b.upt", Action::kMerge, "x", {}, "waypoints", 2});
    send.plan.files.push_back({"/dev/Caches/c.gs", Action::kSkip, "x", {}});
    send.textChanges = {{"route point", "name", "Hütte☃", "Hutte", "☃"},
                        {"geocache", "geocacheHint", "é", "e", ""}};
    send.segmentedTracks = {{"Day 1", 3}};
    send.request.data = gps::Dictionary{{"waypoint", gps::Array{}}};
    send.request.unstoredTexts = {
        {"waypoint", "comment", 1}, {"geocache", "found", 2}, {"geocache", "time", 1}};
    send.impossibleAltitudes = 2;
    send.plan.lostFields = {{"tracks", "time", 1204}, {"routes", "altitude", 1}};
    send.repeated = {.waypoints = 1};
    send.replaced = {{"waypoint", "Camp"}};
    send.emptyRecords = {{"route", "Loop"}};
    send.unplanned = {{"track", std::nullopt}};
    return send;
}

std::vector<std::string> textsOf(const host::PreparedSend& send)
{
    auto texts = host::planErrors(send);
    texts.push_back(host::planReport(send));
    for (auto& error : host::emptyRecordErrors(send))
        texts.push_back(std::move(error));
    return texts;
}

const char* germanOf(const char* text)
{
    static const std::map<std::string_view, const char*> german{
        {"waypoint", "Wegpunkt"},
        {"name", "Name"},
        {"route", "Route"},
        {"The {} {} has no points, so it was left out.", "{1} ({0}) hat keine Punkte."},
        {"The device does not store the {} of {}.", "Nicht gespeichert: {1}, {0}."}};
    const auto found = german.find(text);
    return found == german.end() ? text : found->second;
}

const char* germanOf(const char* one, const char* many, unsigned long count)
{
    const std::string_view english{one};
    if (english == "{} waypoint")
        return count == 1 ? "{} Wegpunkt" : "{} Wegpunkte";
    if (english == "comment")
        return count == 1 ? "Kommentar" : "Kommentare";
    return count == 1 ? one : many;
}

// A window's languages; the command line has English only.
class PlanReportInAnotherLanguage : public testing::Test {
protected:
    ~PlanReportInAnotherLanguage() override { host::setTranslations({}); }
};

TEST_F(PlanReportInAnotherLanguage, IsTheSameEnglishIfTheCatalogueHasNoTranslation)
{
    const auto send = sendWithAllLines();
    const auto without = textsOf(send);
    EXPECT_THAT(without, testing::Contains(HasSubstr("The device does not store the comment of 1 "
                                                     "waypoint.\n")));
    host::setTranslations({.text = [](const char* text) { return text; },
                           .counted = [](const char* one, const char* many,
                                         unsigned long count) { return count == 1 ? one : many; }});
    EXPECT_EQ(textsOf(send), without);
}

TEST_F(PlanReportInAnotherLanguage, HasNoWordOfTheProgramInEnglish)
{
    host::setTranslations({.text = [](const char*) { return "~"; },
                           .counted = [](const char*, const char*, unsigned long) { return "~"; }});
    for (const auto& text : textsOf(sendWithAllLines()))
        EXPECT_EQ(text.find_first_not_of("~ ()\n"), std::string::npos) << text;
}

TEST_F(PlanReportInAnotherLanguage, TranslatesKindsFieldsAndCounts)
{
    host::setTranslations({.text = germanOf, .counted = germanOf});
    auto send = sendTo("/dev");
    send.textChanges = {{"waypoint", "name", "é", "e", ""},
                        {"new kind", "new field", "é", "e", ""}};
    send.request.data = gps::Dictionary{{"waypoint", gps::Array{}}};
    send.request.unstoredTexts = {{"waypoint", "comment", 1204}};
    send.emptyRecords = {{"route", "Loop"}};
    EXPECT_EQ(host::planReport(send), "Wegpunkt Name: \"é\" becomes \"e\"\n"
                                      "new kind new field: \"é\" becomes \"e\"\n"
                                      "Nicht gespeichert: 1,204 Wegpunkte, Kommentare.\n");
    EXPECT_THAT(host::emptyRecordErrors(send), ElementsAre("\"Loop\" (Route) hat keine Punkte."));
}

} // namespace
