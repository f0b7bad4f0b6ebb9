// SPDX-License-Identifier: MIT

#include "host/words/WatchText.h"

#include <gmock/gmock.h>

namespace {

using host::Message;
using host::OutputReport;
using host::WatchEvent;
using Kind = host::WatchEvent::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

const host::WatchedDevice kDevice{"magellan", "/media/A", "Device 1"};

std::vector<std::string> linesOf(const WatchEvent& event, bool isNewOnly = false)
{
    return host::watchText(event, isNewOnly, true).lines;
}

WatchEvent saved()
{
    WatchEvent event{.kind = Kind::kDownloaded, .device = kDevice};
    event.report.output = {.state = OutputReport::State::kComplete, .path = "gps/42.gpx"};
    event.report.written = {.waypoints = 2};
    return event;
}

TEST(WatchText, DevicesThatAppearAndDisappearAreNamedWithTheirLocation)
{
    EXPECT_THAT(linesOf({.kind = Kind::kAppeared, .device = kDevice}),
                ElementsAre("appeared: Device 1, /media/A"));
    EXPECT_THAT(linesOf({.kind = Kind::kGone, .device = kDevice}),
                ElementsAre("gone: Device 1, /media/A"));
}

TEST(WatchText, DeviceThatMayNotBeReadIsNamedAsSuch)
{
    auto device = kDevice;
    device.isReadable = false;
    EXPECT_THAT(
        linesOf({.kind = Kind::kAppeared, .device = device}),
        ElementsAre("appeared: Device 1, /media/A. You have no permission to read its files"));
}

TEST(WatchText, SavedFileIsNamedWithItsRecordCounts)
{
    EXPECT_THAT(linesOf(saved()), ElementsAre("saved: gps/42.gpx: 2 waypoints"));
}

TEST(WatchText, DownloadWithoutARecordIsOneLine)
{
    const WatchEvent event{.kind = Kind::kDownloaded, .device = kDevice};
    EXPECT_THAT(linesOf(event), ElementsAre("nothing to save: Device 1, /media/A"));
    EXPECT_THAT(linesOf(event, true), ElementsAre("nothing new: Device 1, /media/A"));
}

TEST(WatchText, ErrorsOfADownloadAreOneLineAfterTheSavedFile)
{
    auto event = saved();
    event.report.operations = {{.errors = {{"some", 1}}}, {.voice = gps::LineVoice::kNothing}};
    event.error = gps::Error{"some", 2};
    EXPECT_THAT(linesOf(event),
                ElementsAre("saved: gps/42.gpx: 2 waypoints",
                            "failed: Device 1, /media/A: Error 1 of the domain some. No receiver "
                            "answered at . Check that it is on and connected there, and try "
                            "again. Error 2 of the domain some."));
}

TEST(WatchText, FailureWithoutAFileSaysWhetherAnotherTryFollows)
{
    WatchEvent event{.kind = Kind::kDownloaded, .device = kDevice, .error = gps::Error{"some", 1}};
    EXPECT_THAT(linesOf(event),
                ElementsAre("failed: Device 1, /media/A: Error 1 of the domain some."));
    event.isRetried = true;
    EXPECT_THAT(
        linesOf(event),
        ElementsAre("failed: Device 1, /media/A: Error 1 of the domain some. Trying again."));
}

TEST(WatchText, NotesAreKeptApartFromTheLines)
{
    auto event = saved();
    event.report.output.remark = "1 point was left out";
    event.report.operations = {{.logLines = {"a log line"}}};
    event.report.dates.suspectNewest = 1168764800;
    const auto text = host::watchText(event, false, true);
    EXPECT_THAT(text.lines, ElementsAre("saved: gps/42.gpx: 2 waypoints"));
    ASSERT_EQ(text.notes.size(), 3U);
    EXPECT_EQ(text.notes[0].text, "a log line");
    EXPECT_THAT(text.notes[1].text, testing::StartsWith("The dates look"));
    EXPECT_EQ(text.notes[2].text, "1 point was left out");
    EXPECT_EQ(host::watchText(event, false, false).notes.size(), 2U);
}

TEST(WatchText, ListThatCannotBeUsedIsANote)
{
    EXPECT_THAT(
        linesOf({.kind = Kind::kListUnusable, .device = kDevice, .error = gps::Error{"some", 1}}),
        ElementsAre("note: Error 1 of the domain some."));
}

TEST(WatchText, DiskThatIsUnmountedCanBeUnplugged)
{
    WatchEvent event{.kind = Kind::kUnmounted, .device = kDevice};
    EXPECT_THAT(linesOf(event), ElementsAre("unmounted: Device 1, /media/A: it can be unplugged"));
    EXPECT_FALSE(host::watchNotification(event, false));
    event.error = gps::Error{"D", 1, {{gps::kErrorDescriptionKey, "It is busy"}}};
    EXPECT_THAT(linesOf(event), ElementsAre("failed: Device 1, /media/A: It is busy."));
    EXPECT_TRUE(host::watchNotification(event, false));
}

TEST(WatchText, DiskThatCannotBeMountedIsANote)
{
    const WatchEvent event{.kind = Kind::kNotMounted,
                           .error = gps::Error{"D", 1, {{gps::kErrorDescriptionKey, "No"}}}};
    EXPECT_THAT(linesOf(event), ElementsAre("note: No."));
    const auto shown = host::watchNotification(event, false);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->title, "GPS receiver");
}

TEST(WatchText, NotificationIsOfTheEndOfADownload)
{
    const auto shown = host::watchNotification(saved(), false);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->title, "Device 1");
    EXPECT_EQ(shown->text, "saved: gps/42.gpx: 2 waypoints");
    for (const auto kind :
         {Kind::kStarted, Kind::kDriverMissing, Kind::kAppeared, Kind::kGone, Kind::kListUnusable})
        EXPECT_FALSE(host::watchNotification({.kind = kind, .device = kDevice}, false));
}

TEST(WatchText, FailureIsNotifiedOnlyIfNoOtherTryFollows)
{
    WatchEvent event{.kind = Kind::kDownloaded,
                     .device = kDevice,
                     .error = gps::Error{"D", 1, {{gps::kErrorDescriptionKey, "No"}}},
                     .isRetried = true};
    EXPECT_FALSE(host::watchNotification(event, false));
    event.isRetried = false;
    const auto shown = host::watchNotification(event, false);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->text, "failed: Device 1, /media/A: No.");
}

} // namespace
