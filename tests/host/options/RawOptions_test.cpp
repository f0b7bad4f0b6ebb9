// SPDX-License-Identifier: MIT
// The checks of options that depend on each other.

#include "host/options/RawOptions.h"

#include <gmock/gmock.h>

#include <string>
#include <string_view>

namespace {

using host::Command;
using testing::HasSubstr;
using testing::IsEmpty;

class RawOptions : public testing::Test {
protected:
    std::string finish() { return host::finish(raw_, finished_); }

    host::RawOptions raw_;
    std::optional<host::CommandOptions> finished_;
};

TEST_F(RawOptions, GlobalOptionsReachTheOptionsOfEachCommand)
{
    raw_.global.debug = 7;
    raw_.import.files = raw_.send.files = {"a"};
    for (const auto command :
         {Command::kInfo, Command::kDevices, Command::kAcquire, Command::kImport, Command::kSend,
          Command::kRestore, Command::kWatch}) {
        raw_.command = command;
        EXPECT_THAT(finish(), IsEmpty());
        ASSERT_TRUE(finished_);
        EXPECT_EQ(finished_->index(), static_cast<std::size_t>(command));
        std::visit([](const host::GlobalOptions& options) { EXPECT_EQ(options.debug, 7); },
                   *finished_);
    }
}

TEST_F(RawOptions, MistakeLeavesNoOptions)
{
    raw_.command = Command::kSend;
    EXPECT_THAT(finish(), HasSubstr("no FILE to send"));
    EXPECT_FALSE(finished_);
}

TEST_F(RawOptions, SendNeedsFilesOrData)
{
    raw_.command = Command::kSend;
    raw_.send.data = "d.json";
    EXPECT_THAT(finish(), IsEmpty());
    raw_.send.data.reset();
    raw_.send.files = {"a.gpx"};
    EXPECT_THAT(finish(), IsEmpty());
}

TEST_F(RawOptions, SinceMustNotBeLaterThanUntil)
{
    raw_.command = Command::kAcquire;
    raw_.acquire.choice.times = host::TimeRange{5, 5};
    EXPECT_THAT(finish(), IsEmpty());
    raw_.acquire.choice.times = host::TimeRange{6, 5};
    EXPECT_EQ(finish(), "--since is later than --until");
}

TEST_F(RawOptions, ChoiceNeedsAnOutputFileBesideEventLines)
{
    raw_.command = Command::kImport;
    raw_.import.files = {"a.log"};
    raw_.global.events = true;
    EXPECT_THAT(finish(), IsEmpty());
    raw_.import.choice.geocaches = false;
    EXPECT_THAT(finish(), HasSubstr("--events shows every record"));
    raw_.import.output = "a.gpx";
    EXPECT_THAT(finish(), IsEmpty());
    raw_.import.output.reset();
    raw_.import.choice = {};
    raw_.import.splitGap.isOff = true;
    EXPECT_THAT(finish(), HasSubstr("--events shows every record"));
}

TEST_F(RawOptions, NewOnlyNeedsAnOutputFileBesideEventLines)
{
    raw_.command = Command::kAcquire;
    raw_.global.events = true;
    raw_.acquire.newOnly = true;
    EXPECT_THAT(finish(), HasSubstr("--events shows every record"));
    raw_.acquire.output = "a.gpx";
    EXPECT_THAT(finish(), IsEmpty());
}

TEST_F(RawOptions, ExtensionGivesTheFormatInEitherCase)
{
    raw_.command = Command::kAcquire;
    for (const char* const path : {"a.kml", "a.KML", "b.d/a.kml"}) {
        raw_.acquire.output = path;
        EXPECT_THAT(finish(), IsEmpty()) << path;
        EXPECT_EQ(std::get<host::AcquireOptions>(*finished_).format->name, "kml") << path;
    }
    for (const char* const path : {"a", ".kml", "a.", "kml.d/a"}) {
        raw_.acquire.output = path;
        EXPECT_THAT(finish(), HasSubstr("has no extension")) << path;
    }
}

TEST_F(RawOptions, TitleAndTilesAreForAPage)
{
    raw_.command = Command::kAcquire;
    for (const char* const path : {"a.gpx", "a.html"}) {
        const bool isPage = std::string_view{path} == "a.html";
        raw_.acquire = {};
        raw_.acquire.output = path;
        raw_.acquire.title = "T";
        EXPECT_THAT(finish(), isPage ? "" : "--title is for the page: write one with -o FILE.html");
        raw_.acquire.title.reset();
        raw_.acquire.tiles = "https://a.org/{z}/{x}/{y}";
        EXPECT_THAT(finish(), isPage ? "" : "--tiles is for the page: write one with -o FILE.html");
        raw_.acquire.tilesAttribution = "Me";
        raw_.acquire.tiles.reset();
        EXPECT_THAT(finish(),
                    isPage ? "--tiles-attribution says whose map --tiles is: give both" : "");
    }
    raw_.acquire = {};
    raw_.acquire.tiles = "https://a.org/{z}/{x}/{y}";
    EXPECT_THAT(finish(), HasSubstr("--tiles is for the page"));
    raw_.command = Command::kOpen;
    raw_.open.tilesAttribution = "Me";
    EXPECT_THAT(finish(), HasSubstr("give both"));
    raw_.open.tiles = "https://a.org/{z}/{x}/{y}";
    EXPECT_THAT(finish(), IsEmpty());
}

TEST_F(RawOptions, EventsCannotShareStdoutWithASummaryOrWatch)
{
    raw_.command = Command::kAcquire;
    raw_.global.events = true;
    EXPECT_THAT(finish(), IsEmpty());
    raw_.acquire.summary = true;
    EXPECT_THAT(finish(), HasSubstr("stdout"));
    raw_.command = Command::kWatch;
    EXPECT_THAT(finish(), HasSubstr("not for watch"));
}

TEST_F(RawOptions, JsonOfADownloadIsAloneOnStandardOutput)
{
    raw_.import.files = {"a.log"};
    for (const auto command : {Command::kAcquire, Command::kImport}) {
        raw_.command = command;
        raw_.global.json = true;
        raw_.global.events = false;
        raw_.acquire = {};
        EXPECT_THAT(finish(), IsEmpty());
        raw_.global.events = true;
        EXPECT_THAT(finish(), HasSubstr("--json and --events both need stdout"));
    }
    raw_.command = Command::kAcquire;
    raw_.global.events = false;
    raw_.acquire.summary = true;
    EXPECT_THAT(finish(), HasSubstr("--json and --summary both need stdout"));
    raw_.acquire.summary = false;
    raw_.acquire.output = "-";
    raw_.format = "gpx";
    EXPECT_THAT(finish(), HasSubstr("--json and -o - both need stdout"));
    raw_.acquire.output = "a.gpx";
    EXPECT_THAT(finish(), IsEmpty());
}

} // namespace
