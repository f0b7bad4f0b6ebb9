// SPDX-License-Identifier: MIT

#include "host/words/DownloadMessages.h"

#include "host/DriverReports.h"
#include "host/bundle/SerialPort.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace {

using gps::TransferKind;
using host::dateAdvice;
using host::Message;
using host::operationMessages;
using host::OperationReport;
using host::outputMessages;
using host::OutputReport;
using support::errorAbout;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Message error(std::string text)
{
    return {true, std::move(text)};
}

Message note(std::string text)
{
    return {false, std::move(text)};
}

TEST(DownloadMessages, UnreadValueIsANoteUnlessDamageIsAnError)
{
    const OperationReport report{.unreadValues = {"a value."}, .ignored = {"a polygon."}};
    EXPECT_THAT(operationMessages(report, {}), ElementsAre(note("a value."), note("a polygon.")));
    EXPECT_THAT(operationMessages(report, {.isDamageAnError = true}),
                ElementsAre(error("a value."), note("a polygon.")));
}

TEST(DownloadMessages, NothingLeftOutIsNotMentioned)
{
    EXPECT_THAT(host::choiceMessages({}), IsEmpty());
}

TEST(DownloadMessages, EachReasonForLeavingOutHasItsNote)
{
    host::DownloadReport report;
    report.leftOut.choice.byTime = {.trackPoints = 1};
    report.leftOut.choice.untimed = {.waypoints = 2};
    report.leftOut.choice.byName = {.tracks = 1, .trackPoints = 5};
    report.leftOut.choice.unmatchedNames = {"Day *"};
    report.leftOut.choice.geocaches = {.geocaches = 3};
    report.leftOut.savedBefore = {.routes = 1, .routePoints = 4};
    EXPECT_THAT(
        host::choiceMessages(report),
        ElementsAre(
            note("Left out because of --since or --until: 1 track point."),
            note("Kept although --since and --until cannot judge what has no time: 2 waypoints."),
            note("Left out because of --track: 1 track (5 points)."),
            note("No track that arrived has the name \"Day *\". --list shows the names."),
            note("Left out because of --no-geocaches: 3 geocaches."),
            note("Left out because of --new-only, as it was saved before: 1 route.")));
}

TEST(DownloadMessages, DividedTracksAreMentioned)
{
    host::DownloadReport report;
    report.splits = {.tracks = 1, .gaps = 1};
    EXPECT_THAT(host::choiceMessages(report),
                ElementsAre(note("1 track was divided into segments at 1 jump that no receiver can "
                                 "make; --split-gap off keeps it whole.")));
    report.splits = {.tracks = 2, .gaps = 3};
    EXPECT_THAT(host::choiceMessages(report),
                ElementsAre(note("2 tracks were divided into segments at 3 jumps that no receiver "
                                 "can make; --split-gap off keeps them whole.")));
    report.splits.areJumps = false;
    EXPECT_THAT(host::choiceMessages(report),
                ElementsAre(note("2 tracks were divided into segments at 3 gaps.")));
}

TEST(DownloadMessages, SuccessIsSilent)
{
    EXPECT_THAT(operationMessages({}), IsEmpty());
    EXPECT_THAT(outputMessages({}), IsEmpty());
    EXPECT_EQ(dateAdvice({}), "");
}

TEST(DownloadMessages, ErrorsComeFirstAndThePortLast)
{
    const OperationReport report{.isSerial = true,
                                 .received = {TransferKind::kWaypoints},
                                 .errors = {{"some", -4}},
                                 .portFailure = errorAbout("/some/file"),
                                 .unreadable = {errorAbout("/some/file")}};
    EXPECT_THAT(operationMessages(report), ElementsAre(error("Error -4 of the domain some."),
                                                       error("Unreadable. Path: /some/file"),
                                                       error("Unreadable. Path: /some/file")));
}

TEST(DownloadMessages, ReasonWhyAPortCannotBeOpenedIsTheOnlyMessage)
{
    OperationReport report{.isSerial = true,
                           .errors = {{"some", -4}},
                           .portFailure = host::explainPortFailure("/dev/x", EACCES)};
    EXPECT_THAT(operationMessages(report), SizeIs(1));
    EXPECT_THAT(operationMessages(report)[0].text, testing::HasSubstr("permission"));
    report.portFailure = host::explainPortFailure("/dev/x", 0);
    EXPECT_THAT(operationMessages(report),
                ElementsAre(error("Error -4 of the domain some."),
                            error("The port can be opened now. Try again. Path: /dev/x")));
}

TEST(DownloadMessages, LogLineAboutAnUnreadableFileIsNotASecondMessage)
{
    const OperationReport report{.unreadable = {errorAbout("/some/file")},
                                 .logLines = {"The folder \"/some/file\" cannot be listed",
                                              "The folder \"/some/file2\" cannot be listed"}};
    EXPECT_THAT(operationMessages(report),
                ElementsAre(error("Unreadable. Path: /some/file"),
                            note("The folder \"/some/file2\" cannot be listed")));
}

TEST(DownloadMessages, MissingKindsAreNamed)
{
    const OperationReport report{.missing = {TransferKind::kRoutes, TransferKind::kTracks}};
    EXPECT_THAT(operationMessages(report),
                ElementsAre(error("The download broke off. Missing: routes, tracks.")));
}

TEST(DownloadMessages, KindsThatAnotherOperationReadAreNotMissing)
{
    OperationReport report{.missing = {TransferKind::kRoutes, TransferKind::kTracks},
                           .recovered = {TransferKind::kRoutes}};
    EXPECT_THAT(operationMessages(report),
                ElementsAre(error("The download broke off. Missing: tracks."),
                            error("The download broke off, and was continued with: routes. Records "
                                  "of the kind where it broke off are missing.")));
}

TEST(DownloadMessages, WhatIsLeftOutBetweenOperationsIsNamed)
{
    OperationReport report{.missing = {TransferKind::kTracks},
                           .recovered = {TransferKind::kTracks}};
    report.account = gps::TransferAccount{
        .files = {{.kind = "waypoints", .path = "/a.upt"},
                  {.kind = "waypoints", .path = "/P/b.upt", .error = errorAbout("/P/b.upt")}}};
    EXPECT_THAT(
        operationMessages(report),
        ElementsAre(error("The download broke off, and was continued with: tracks. Missing: "
                          "the waypoints of b.upt and of the files after it, and all "
                          "geocaches.")));
    report.account->files[1].kind = "geocaches";
    EXPECT_THAT(
        operationMessages(report),
        ElementsAre(error("The download broke off, and was continued with: tracks. Missing: "
                          "the geocaches of b.upt and of the files after it.")));
}

TEST(DownloadMessages, SilentReceiverIsNamedByItsPort)
{
    const OperationReport report{.location = "/dev/some", .voice = gps::LineVoice::kNothing};
    EXPECT_THAT(operationMessages(report),
                ElementsAre(error("No receiver answered at /dev/some. Check that it is on and "
                                  "connected there, and try again.")));
}

TEST(DownloadMessages, InterruptedDownloadIsAnErrorWithoutItsConsequences)
{
    OperationReport report{
        .gaps = {{.cause = host::SessionGap::Cause::kStopped, .subject = "tracks"}},
        .isInterrupted = true};
    EXPECT_THAT(operationMessages(report),
                ElementsAre(error("The download was stopped before its end.")));
    report.missing = {TransferKind::kRoutes};
    EXPECT_THAT(operationMessages(report),
                ElementsAre(error("The download was stopped before its end. Missing: routes.")));
    report.gaps[0].isClosingDown = true;
    EXPECT_THAT(operationMessages(report), SizeIs(2)) << "the receiver's state matters";
    EXPECT_THAT(operationMessages({.sourceFile = "a.gpx", .isInterrupted = true}),
                ElementsAre(error("The import was stopped before its end.")));
}

TEST(DownloadMessages, PhasesThatWereNotReachedAreOneMessage)
{
    using GapCause = host::SessionGap::Cause;
    const OperationReport report{.gaps = {{.cause = GapCause::kFailed, .subject = "waypoints"},
                                          {.cause = GapCause::kNotReached, .subject = "tracks"},
                                          {.cause = GapCause::kNotReached, .subject = "routes"}}};
    const auto messages = operationMessages(report);
    ASSERT_THAT(messages, SizeIs(2));
    EXPECT_EQ(messages[1], error("The session ended before these were read: tracks, routes."));
}

TEST(DownloadMessages, VoiceIsNotReportedBesideAnErrorThatExplainsIt)
{
    const OperationReport report{.errors = {{"some", -4}}, .voice = gps::LineVoice::kNothing};
    EXPECT_THAT(operationMessages(report), ElementsAre(error("Error -4 of the domain some.")));
}

TEST(DownloadMessages, DamagedLinesAreANoteUnlessRequestedAsAnError)
{
    gps::FileAccount total{.kind = "tracks"};
    total.lines = {.seen = 2, .accepted = 1};
    total.lines.skipped[static_cast<std::size_t>(gps::SkipReason::kWrongChecksum)] = 1;
    const OperationReport report{.account = gps::TransferAccount{.totals = {total}}};
    EXPECT_THAT(operationMessages(report), ElementsAre(note("1 of 2 track points; 1 damaged")));
    EXPECT_THAT(operationMessages(report, {.isDamageAnError = true}),
                ElementsAre(error("1 of 2 track points; 1 damaged")));
}

TEST(DownloadMessages, TenUnreadableFilesAreNamedAndMoreAreCounted)
{
    OperationReport report{.unreadable = std::vector<gps::Error>(10, errorAbout("/some/file"))};
    EXPECT_THAT(operationMessages(report), SizeIs(10));
    report.unreadable.push_back(errorAbout("/some/file"));
    auto messages = operationMessages(report);
    ASSERT_THAT(messages, SizeIs(11));
    EXPECT_EQ(messages.back(), error("And 1 more that could not be read."));
    report.moreUnreadable = 500;
    messages = operationMessages(report);
    ASSERT_THAT(messages, SizeIs(11));
    EXPECT_EQ(messages.back(), error("And 501 more that could not be read."));
}

TEST(DownloadMessages, LogLinesAreNotesUnlessSomethingIsMissing)
{
    OperationReport report{.logLines = {"line"}, .moreLogLines = 2};
    EXPECT_THAT(operationMessages(report), ElementsAre(note("line"), note("and 2 more")));
    EXPECT_THAT(operationMessages(report, {.isLogShown = false}), IsEmpty());
    report.missing = {TransferKind::kTracks};
    EXPECT_THAT(operationMessages(report),
                ElementsAre(error("The download broke off. Missing: tracks."), error("log: line"),
                            error("log: and 2 more")));
    EXPECT_THAT(operationMessages(report, {.isLogShown = false}), SizeIs(1));
}

TEST(DownloadMessages, LogOfASerialSessionIsShownOnlyIfSomethingIsMissing)
{
    OperationReport report{.isSerial = true, .logLines = {"a sentence"}};
    EXPECT_THAT(operationMessages(report), IsEmpty());
    report.missing = {TransferKind::kTracks};
    EXPECT_THAT(operationMessages(report), SizeIs(2));
    report.account = gps::TransferAccount{};
    EXPECT_THAT(operationMessages(report), SizeIs(1)) << "the account has it";
}

TEST(DownloadMessages, RemarkOnTheOutputIsANoteAndItsFailureAnError)
{
    const OutputReport report{.remark = "1 point was left out", .error = errorAbout("/some/file")};
    EXPECT_THAT(outputMessages(report),
                ElementsAre(note("1 point was left out"), error("Unreadable. Path: /some/file")));
}

TEST(DownloadMessages, PartialFileIsAnErrorThatNamesIt)
{
    OutputReport report{.state = OutputReport::State::kPartial, .path = "a.partial.gpx"};
    EXPECT_THAT(outputMessages(report),
                ElementsAre(error("The output file was not written, because the download is not "
                                  "complete. What arrived is kept in another file. Path: "
                                  "a.partial.gpx")));
    report.path.clear(); // went straight to a pipe
    EXPECT_THAT(outputMessages(report), IsEmpty());
    report = {.state = OutputReport::State::kComplete, .path = "a.gpx"};
    EXPECT_THAT(outputMessages(report), IsEmpty());
}

TEST(DownloadMessages, DatesThatLookTooOldGetAdvice)
{
    EXPECT_EQ(dateAdvice({.suspectNewest = 1168764800}),
              "The dates look 1024 weeks too old; the newest is 2007-01-14. The receiver's week "
              "counter has probably rolled over. --fix-dates auto adds 1024 weeks.");
}

} // namespace
