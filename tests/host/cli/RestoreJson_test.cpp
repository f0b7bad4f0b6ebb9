// SPDX-License-Identifier: MIT

#include "host/cli/RestoreJson.h"

#include "host/DriverReports.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using host::ExitStatus;
using Json = nlohmann::json;

const host::Backup kBackup{.path = "/kept/42/1", .name = "1", .files = 2, .bytes = 30};
const Json kBackupJson{{"name", "1"}, {"path", "/kept/42/1"}, {"files", 2}, {"bytes", 30}};

TEST(RestoreJson, ListHasEveryKey)
{
    EXPECT_EQ(
        host::backupListJson("/dev", {}, {}),
        R"({"status":0,"complete":true,"interrupted":false,"device":"/dev","backups":[],)"
        R"("damagedBackups":[],"backup":null,"upToDate":false,"previous":null,"deleted":[],"restored":[],)"
        R"("asBefore":[],"extraFiles":[],"error":null,"messages":[]})"
        "\n");
    const auto list = Json::parse(host::backupListJson("/dev", {kBackup}, {{"/kept/42/2", "2"}}));
    EXPECT_EQ(list["backups"], Json::array({kBackupJson}));
    EXPECT_EQ(list["damagedBackups"], Json::array({{{"name", "2"}, {"path", "/kept/42/2"}}}));
}

TEST(RestoreJson, RestoreHasWhatItWroteAndLeft)
{
    host::RestoreReport report;
    report.previous = kBackup;
    report.deletedBackups = {"0"};
    report.restored = {"Points/a"};
    report.extraFiles = {"Points/b"};
    const auto document =
        Json::parse(host::restoreJson("/dev", "/kept/42/0", report, {}, ExitStatus::kSuccess));
    EXPECT_EQ(document["complete"], true);
    EXPECT_EQ(document["backups"], nullptr);
    EXPECT_EQ(document["backup"], "/kept/42/0");
    EXPECT_EQ(document["previous"], kBackupJson);
    EXPECT_EQ(document["deleted"], Json::array({"0"}));
    EXPECT_EQ(document["restored"], Json::array({"Points/a"}));
    EXPECT_EQ(document["extraFiles"], Json::array({"Points/b"}));
    EXPECT_EQ(document["error"], nullptr);
}

TEST(RestoreJson, FailedRestoreHasItsError)
{
    host::RestoreReport report;
    report.error = support::errorAbout("/dev/a");
    report.restored = {"Points/a"};
    const auto document =
        Json::parse(host::restoreJson("/dev", "/b", report, {{true, "why"}}, ExitStatus::kFailed));
    EXPECT_EQ(document["status"], 1);
    EXPECT_EQ(document["complete"], false);
    EXPECT_EQ(document["restored"], Json::array({"Points/a"})) << "written before the error";
    EXPECT_EQ(document["error"]["path"], "/dev/a");
    EXPECT_EQ(document["messages"][0]["text"], "why");
}

TEST(RestoreJson, StoppedRestoreHasTheFilesThatItDidNotReach)
{
    host::RestoreReport report;
    report.wasStopped = true;
    report.restored = {"Points/a"};
    report.asBefore = {"Points/b"};
    const auto document =
        Json::parse(host::restoreJson("", "/b", report, {}, host::statusAfterSignal(2)));
    EXPECT_EQ(document["status"], 130);
    EXPECT_EQ(document["complete"], false);
    EXPECT_EQ(document["interrupted"], true);
    EXPECT_EQ(document["device"], nullptr) << "not known yet";
    EXPECT_EQ(document["restored"], Json::array({"Points/a"}));
    EXPECT_EQ(document["asBefore"], Json::array({"Points/b"}));
}

TEST(RestoreJson, DeviceThatHoldsTheFilesIsUpToDate)
{
    host::RestoreReport report;
    report.wasUpToDate = true;
    const auto document =
        Json::parse(host::restoreJson("/dev", "/b", report, {}, ExitStatus::kSuccess));
    EXPECT_EQ(document["upToDate"], true);
    EXPECT_EQ(document["complete"], true);
}

} // namespace
