// SPDX-License-Identifier: MIT

#include "host/cli/EarlyDocument.h"

#include "host/DriverReports.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

using host::ExitStatus;
using Json = nlohmann::json;

template <typename Options> Options withJson()
{
    Options options;
    options.json = true;
    return options;
}

const host::EarlyEnd kNoDevice{
    ExitStatus::kNothingToWorkOn, {true, "why"}, support::errorAbout("/dev")};
const host::EarlyEnd kSignal{host::statusAfterSignal(15), {true, "why"}};

template <typename Options> Json earlyDocumentOf(const Options& options, const host::EarlyEnd& end)
{
    const auto text = host::earlyDocument(options, end);
    EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
    auto document = Json::parse(text);
    EXPECT_EQ(document["status"], static_cast<int>(end.status));
    EXPECT_EQ(document["complete"], false);
    EXPECT_EQ(document["interrupted"], !end.error);
    EXPECT_EQ(document["device"], nullptr);
    EXPECT_EQ(document["messages"], Json::parse(R"([{"error":true,"text":"why"}])"));
    return document;
}

TEST(EarlyDocument, DownloadHasReceivedNothing)
{
    for (const auto& end : {kNoDevice, kSignal}) {
        for (const auto& document : {earlyDocumentOf(withJson<host::AcquireOptions>(), end),
                                     earlyDocumentOf(withJson<host::ImportOptions>(), end)}) {
            EXPECT_EQ(document["received"]["waypoints"], 0);
            EXPECT_EQ(document["output"]["state"], "none");
        }
    }
}

TEST(EarlyDocument, SendHasItsObstacle)
{
    auto options = withJson<host::SendOptions>();
    auto document = earlyDocumentOf(options, kNoDevice);
    EXPECT_EQ(document["obstacle"]["path"], "/dev");
    EXPECT_EQ(document["dryRun"], false);
    EXPECT_EQ(document["sent"], nullptr);
    options.dryRun = true;
    document = earlyDocumentOf(options, kSignal);
    EXPECT_EQ(document["obstacle"], nullptr);
    EXPECT_EQ(document["dryRun"], true);
}

TEST(EarlyDocument, SendThatMayHaveBegunHasAnErrorAndNoObstacle)
{
    auto end = kNoDevice;
    end.mayHaveBegun = true;
    const auto document = earlyDocumentOf(withJson<host::SendOptions>(), end);
    EXPECT_EQ(document["obstacle"], nullptr);
    EXPECT_EQ(document["errors"][0]["path"], "/dev");
}

TEST(EarlyDocument, RestoreHasItsErrorAndTheBackupThatWasNamed)
{
    auto options = withJson<host::RestoreOptions>();
    auto document = earlyDocumentOf(options, kNoDevice);
    EXPECT_EQ(document["error"]["path"], "/dev");
    EXPECT_EQ(document["backups"], nullptr);
    EXPECT_EQ(document["backup"], nullptr);
    options.backup = "20261122T120000Z";
    document = earlyDocumentOf(options, kSignal);
    EXPECT_EQ(document["error"], nullptr);
    EXPECT_EQ(document["backup"], "20261122T120000Z");
}

TEST(EarlyDocument, OnlyJsonHasOne)
{
    EXPECT_EQ(host::earlyDocument(host::AcquireOptions{}, kNoDevice), "");
    EXPECT_EQ(host::earlyDocument(host::SendOptions{}, kNoDevice), "");
    EXPECT_EQ(host::earlyDocument(host::RestoreOptions{}, kNoDevice), "");
    EXPECT_EQ(host::earlyDocument(withJson<host::DevicesOptions>(), kNoDevice), "");
}

TEST(EarlyDocument, MessageIsPrintedBeforeTheDocument)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(host::printEarlyEnd(kNoDevice, "{}\n", host::Console{true}),
              ExitStatus::kNothingToWorkOn);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "{}\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "magellangps: why\n");
}

} // namespace
