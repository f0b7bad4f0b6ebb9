// SPDX-License-Identifier: MIT

#include "host/cli/DownloadJson.h"

#include "host/DriverReports.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

using gps::TransferKind;
using host::DownloadReport;
using host::ExitStatus;
using host::OperationReport;
using Json = nlohmann::json;

Json documentOf(const DownloadReport& report, const std::vector<host::Message>& messages = {},
                ExitStatus status = ExitStatus::kSuccess)
{
    return Json::parse(host::downloadJson(report, messages, status));
}

constexpr char kNoRecords[] = R"({"waypoints":0,"geocaches":0,"routes":0,"routePoints":0,)"
                              R"("tracks":0,"trackPoints":0})";

TEST(DownloadJson, EmptyReportHasEveryKey)
{
    const std::string none = kNoRecords;
    EXPECT_EQ(host::downloadJson({}, {}, ExitStatus::kFailed),
              R"({"status":1,"complete":false,"interrupted":false,"device":null,"voice":null,)"
              R"("requested":[],"missing":[],)"
              R"("output":{"state":"none","path":null,"remark":null,"error":null},)"
              R"("received":)" +
                  none + R"(,"chosen":)" + none + R"(,"leftOut":{"times":)" + none +
                  R"(,"names":)" + none + R"(,"geocaches":)" + none + R"(,"savedBefore":)" + none +
                  R"(},"untimed":)" + none + R"(,"unmatched":[],"written":)" + none +
                  R"(,"segments":{"tracks":0,"gaps":0},"list":null,)"
                  R"("repeats":{"waypoints":0,"routes":0,"trackPoints":0},)"
                  R"("kinds":[],"files":[],"unseen":[],"phases":[],"commands":[],"omitted":0,)"
                  R"("messages":[]})"
                  "\n");
}

TEST(DownloadJson, MountedDeviceHasItsKindsFilesAndUnseenPaths)
{
    gps::LineAccount lines{
        .seen = 2, .accepted = 1, .details = {{2, gps::SkipReason::kWrongChecksum}}};
    lines.skipped[static_cast<std::size_t>(gps::SkipReason::kWrongChecksum)] = 1;
    OperationReport operation{.location = "/media/A"};
    operation.account =
        gps::TransferAccount{.files = {{"tracks", "/a.log", lines, support::errorAbout("/a.log")}},
                             .unseen = {{"device", "/b", support::errorAbout("/b")}},
                             .omitted = 3,
                             .totals = {{"tracks", {}, lines, {}}}};
    const auto document = documentOf({.operations = {operation}});
    EXPECT_EQ(document["device"], "/media/A");
    EXPECT_EQ(document["kinds"], Json::parse(R"([{"kind":"tracks","seen":2,"accepted":1,
        "skipped":{"wrong checksum":1}}])"));
    const Json error{{"domain", "some"},
                     {"code", -3},
                     {"description", "Unreadable"},
                     {"suggestion", nullptr},
                     {"path", "/a.log"}};
    EXPECT_EQ(document["files"][0]["error"], error);
    EXPECT_EQ(document["files"][0]["lines"],
              Json::parse(R"([{"number":2,"reason":"wrong checksum"}])"));
    EXPECT_EQ(document["unseen"][0]["path"], "/b");
    EXPECT_EQ(document["omitted"], 3);
}

TEST(DownloadJson, SerialSessionHasItsVoicePhasesAndCommands)
{
    OperationReport operation{.voice = gps::LineVoice::kReceiver};
    operation.account = gps::TransferAccount{
        .phases = {{.kind = "tracks", .end = gps::PhaseEnd::kSilence}},
        .commands = {{.command = "PMGNCMD,TON", .attempts = 5, .acknowledged = false}}};
    const auto document = documentOf({.operations = {operation}});
    EXPECT_EQ(document["voice"], "receiver");
    EXPECT_EQ(document["phases"][0]["end"], "silence");
    EXPECT_EQ(document["commands"], Json::parse(R"([{"command":"PMGNCMD,TON","attempts":5,
        "acknowledged":false}])"));
}

TEST(DownloadJson, KindThatALaterOperationReadIsNotMissing)
{
    const OperationReport first{.missing = {TransferKind::kRoutes, TransferKind::kTracks},
                                .recovered = {TransferKind::kRoutes}};
    const OperationReport second{.missing = {TransferKind::kTracks}};
    const auto document = documentOf({.operations = {first, second}});
    EXPECT_EQ(document["missing"], Json::parse(R"(["tracks"])"));
    EXPECT_EQ(document["complete"], false);
}

TEST(DownloadJson, AccountsOfSeveralOperationsAreJoined)
{
    OperationReport operation;
    operation.account = gps::TransferAccount{.files = {{.kind = "tracks"}}, .omitted = 1};
    const auto document = documentOf({.operations = {operation, operation}});
    EXPECT_EQ(document["files"].size(), 2U);
    EXPECT_EQ(document["omitted"], 2);
}

TEST(DownloadJson, MessagesAreThoseOfStandardError)
{
    const auto document =
        documentOf({}, {{true, "bad"}, {false, "note"}}, host::statusAfterSignal(2));
    EXPECT_EQ(document["status"], 130);
    EXPECT_EQ(document["messages"],
              Json::parse(R"([{"error":true,"text":"bad"},{"error":false,"text":"note"}])"));
}

TEST(DownloadJson, PathsThatAreNotUtf8AreReplaced)
{
    EXPECT_EQ(documentOf({.operations = {{.location = "a\xFF"}}})["device"], "a\xEF\xBF\xBD");
}

} // namespace
