// SPDX-License-Identifier: MIT

#include "host/cli/SendJson.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

using Action = gps::PlannedFile::Action;
using host::ExitStatus;
using host::PreparedSend;
using host::SendReport;
using Json = nlohmann::json;
using Result = host::SentFile::Result;

class SendJson : public testing::Test {
protected:
    [[nodiscard]] Json document(ExitStatus status = ExitStatus::kSuccess) const
    {
        return Json::parse(host::sendJson(send_, report_, messages_, status));
    }

    PreparedSend send_{
        .device = {std::make_shared<support::FakeFileDriver>(), "/dev"},
        .request = {.data = gps::Dictionary{{"waypoint", gps::Array{support::waypointAt(46)}}}}};
    SendReport report_;
    std::vector<host::Message> messages_;
};

TEST_F(SendJson, SendThatWasNotPreparedHasEveryKey)
{
    const std::string none = R"({"waypoints":0,"geocaches":0,"routes":0,"routePoints":0,)"
                             R"("tracks":0,"trackPoints":0})";
    EXPECT_EQ(
        host::sendJson({}, {}, {{true, "why"}}, ExitStatus::kFailed),
        R"({"status":1,"complete":false,"interrupted":false,"dryRun":false,"device":null,)"
        R"("requested":)" +
            none + R"(,"present":)" + none + R"(,"repeated":)" + none + R"(,"leftOut":)" + none +
            R"(,"sent":null,)" +
            R"("files":[],"replaced":[],"lostFields":[],"segments":[],"textChanges":[],"remarks":[],)"
            R"("backup":null,"obstacle":null,"errors":[],"missingKinds":[],)"
            R"("missingRecords":[],"account":null,"omitted":0,)"
            R"("messages":[{"error":true,"text":"why"}]})"
            "\n");
}

TEST_F(SendJson, CompleteSendHasTheCountsOfWhatWasSent)
{
    send_.present = {.tracks = 1, .trackPoints = 5};
    send_.repeated = {.waypoints = 2};
    const auto complete = document();
    EXPECT_EQ(complete["complete"], true);
    EXPECT_EQ(complete["requested"]["waypoints"], 3);
    EXPECT_EQ(complete["repeated"]["waypoints"], 2);
    EXPECT_EQ(complete["requested"]["trackPoints"], 5);
    EXPECT_EQ(complete["present"]["tracks"], 1);
    EXPECT_EQ(complete["sent"]["waypoints"], 1);
    EXPECT_EQ(complete["sent"]["tracks"], 0);
}

TEST_F(SendJson, SendThatLeftSomethingOutIsNotComplete)
{
    send_.request.skippedWaypoints = 2;
    send_.emptyRecords = {{"route", "R"}, {"track", "T"}, {"track", "U"}};
    const auto rest = document(ExitStatus::kFailed);
    EXPECT_EQ(rest["complete"], false) << "as the status";
    EXPECT_EQ(rest["requested"]["waypoints"], 3);
    EXPECT_EQ(rest["requested"]["tracks"], 2);
    EXPECT_EQ(rest["leftOut"]["waypoints"], 2);
    EXPECT_EQ(rest["leftOut"]["routes"], 1);
    EXPECT_EQ(rest["leftOut"]["tracks"], 2);
    EXPECT_EQ(rest["sent"]["waypoints"], 1);
}

TEST_F(SendJson, DryRunIsNotComplete)
{
    send_.request.isDryRun = true;
    const auto dry = document();
    EXPECT_EQ(dry["dryRun"], true);
    EXPECT_EQ(dry["complete"], false);
    EXPECT_EQ(dry["sent"], nullptr);
}

TEST_F(SendJson, FilesHaveTheirPlanAndTheirResult)
{
    send_.plan.files = {{"/dev/a", Action::kCreate, "x", {}, "tracks"},
                        {"/dev/b", Action::kMerge, "x", {}, "waypoints", 12},
                        {"/dev/c", Action::kSkip, "", support::errorAbout("/dev/c"), "routes"}};
    auto files = document()["files"];
    EXPECT_EQ(files[0], Json::parse(R"({"kind":"tracks","path":"/dev/a","action":"create",
        "result":null,"writtenAs":null,"asBefore":null,"droppedLines":0,"lostRecords":0,
        "error":null})"));
    report_.files = {{"/dev/a", Result::kWritten},
                     {"/dev/b", Result::kLost, 3, support::errorAbout("/dev/b")},
                     {.path = "/dev/c", .result = Result::kBlocked, .isAsBefore = true}};
    files = document(ExitStatus::kFailed)["files"];
    EXPECT_EQ(files[0]["result"], "written");
    EXPECT_EQ(files[0]["asBefore"], false);
    EXPECT_EQ(files[1]["action"], "merge");
    EXPECT_EQ(files[1]["result"], "lost");
    EXPECT_EQ(files[1]["droppedLines"], 12);
    EXPECT_EQ(files[1]["lostRecords"], 3);
    EXPECT_EQ(files[1]["error"]["path"], "/dev/b");
    EXPECT_EQ(files[2]["action"], "skip");
    EXPECT_EQ(files[2]["result"], "blocked");
    EXPECT_EQ(files[2]["asBefore"], true);
    EXPECT_EQ(files[2]["error"]["path"], "/dev/c");
}

TEST_F(SendJson, EveryResultHasItsWord)
{
    send_.plan.files = {{"/dev/a", Action::kMerge, "x", {}, "tracks"}};
    const std::vector<std::pair<Result, const char*>> words{
        {Result::kWritten, "written"},          {Result::kRenamed, "renamed"},
        {Result::kAlsoChanged, "also changed"}, {Result::kMissing, "missing"},
        {Result::kUnreadable, "unreadable"},    {Result::kDifferent, "different"},
        {Result::kPutBack, "put back"},         {Result::kLost, "lost"},
        {Result::kBlocked, "blocked"},          {Result::kNothingToWrite, "nothing to write"}};
    for (const auto& [result, word] : words) {
        report_.files = {{"/dev/a", result}};
        EXPECT_EQ(document()["files"][0]["result"], word);
    }
}

TEST_F(SendJson, RenamedTrackHasItsFile)
{
    send_.plan.files = {{"/dev/a", Action::kCreate, "x", {}, "tracks"}};
    report_.files = {{"/dev/a", Result::kRenamed}};
    report_.files[0].writtenPath = "/dev/b";
    const auto renamed = document();
    EXPECT_EQ(renamed["complete"], true);
    EXPECT_EQ(renamed["files"][0]["path"], "/dev/a");
    EXPECT_EQ(renamed["files"][0]["writtenAs"], "/dev/b");
    EXPECT_EQ(renamed["files"][0]["asBefore"], false);
}

TEST_F(SendJson, LossesAndChangesAreListed)
{
    send_.plan.lostFields = {{"tracks", "name", 2}};
    send_.plan.remarks = {"A remark."};
    send_.segmentedTracks = {{"Walk", 3}, {"", 2}};
    send_.textChanges = {{"route", "comment", "é☃", "e", "☃"}};
    const auto losses = document();
    EXPECT_EQ(losses["lostFields"],
              Json::parse(R"([{"kind":"tracks","field":"name","records":2}])"));
    EXPECT_EQ(losses["segments"], Json::parse(R"([{"track":"Walk","segments":3,"joined":false},
                              {"track":null,"segments":2,"joined":false}])"));
    EXPECT_EQ(losses["textChanges"],
              Json::parse(R"([{"kind":"route","key":"comment","before":"é☃","after":"e",
                               "dropped":"☃"}])"));
    EXPECT_EQ(losses["remarks"], Json::parse(R"(["A remark."])"));
    send_.request.segmentRule = host::SegmentRule::kJoin;
    EXPECT_EQ(document()["segments"][0]["joined"], true);
}

TEST_F(SendJson, RecordsThatAreReplacedAreListed)
{
    send_.replaced = {{"waypoint", "Camp"}, {"route", "Loop"}};
    EXPECT_EQ(document()["replaced"], Json::parse(R"([{"kind":"waypoint","name":"Camp"},
                              {"kind":"route","name":"Loop"}])"));
    send_.replaced.assign(1001, {"waypoint", "Camp"});
    EXPECT_EQ(document()["replaced"].size(), 1000U);
    EXPECT_EQ(document()["omitted"], 1);
}

TEST_F(SendJson, FailuresHaveTheirErrors)
{
    report_.errors = {support::errorAbout("/dev/a")};
    report_.moreErrors = 4;
    report_.missingKinds = {gps::TransferKind::kRoutes};
    report_.missingRecords = {{"waypoint", "A"}, {"track point", std::nullopt}};
    report_.wasStopped = true;
    const auto failed = document(ExitStatus::kFailed);
    EXPECT_EQ(failed["complete"], false);
    EXPECT_EQ(failed["interrupted"], true);
    EXPECT_EQ(failed["errors"][0]["path"], "/dev/a");
    EXPECT_EQ(failed["omitted"], 4);
    EXPECT_EQ(failed["missingKinds"], Json::parse(R"(["routes"])"));
    EXPECT_EQ(
        failed["missingRecords"],
        Json::parse(R"([{"kind":"waypoint","name":"A"},{"kind":"track point","name":null}])"));
    report_.backupError = support::errorAbout("/kept");
    EXPECT_EQ(document()["obstacle"]["path"], "/kept");
    report_.obstacle = support::errorAbout("/dev/b");
    EXPECT_EQ(document()["obstacle"]["path"], "/dev/b");
}

TEST_F(SendJson, BackupAndAccountAreThereIfTheyWereMade)
{
    report_.backup = host::Backup{.path = "/kept/1", .name = "1"};
    report_.deletedBackups = {"0"};
    report_.notBackedUp = {"/dev/fifo"};
    report_.account =
        gps::TransferAccount{.files = {{"waypoints", "/dev/b", {.seen = 2, .accepted = 1}, {}}}};
    const auto made = document();
    EXPECT_EQ(made["backup"], Json::parse(R"({"path":"/kept/1","name":"1",
        "notCopied":["/dev/fifo"],"deleted":["0"]})"));
    EXPECT_EQ(made["account"]["files"][0]["seen"], 2);
    EXPECT_EQ(made["account"]["unseen"], Json::array());
}

TEST_F(SendJson, ListsEndAfterAThousandEntriesAndTheRestIsCounted)
{
    send_.plan.remarks.assign(1000, "A remark.");
    EXPECT_EQ(document()["omitted"], 0);
    send_.plan.remarks.assign(1002, "A remark.");
    EXPECT_EQ(document()["remarks"].size(), 1000U);
    EXPECT_EQ(document()["omitted"], 2);
}

} // namespace
