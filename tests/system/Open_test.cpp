// SPDX-License-Identifier: MIT
// `open`, with a browser that only notes what it is asked to show.

#include "support/Variable.h"
#include "system/Program.h"
#include "system/Receiver.h"

#include <gps/NumberText.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace {

using support::kSampleReceiver;
using support::magellangps;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kTrack[] = MAGELLAN_SOURCE_DIR "/samples/files/trip.log";

class Open : public testing::Test {
protected:
    Open() { browser("echo \"$@\" >" + folder_.path("opened")); }

    // Makes the program that opens pages do this.
    void browser(const std::string& commands)
    {
        const auto program = folder_.put("bin/xdg-open", "#!/bin/sh\n" + commands + "\n");
        ::chmod(program.c_str(), 0755);
    }

    support::Ran open(std::vector<std::string> words, const std::string& display = "DISPLAY=:0")
    {
        words.insert(words.begin(), "open");
        return magellangps(words,
                           {.environment = {display, "XDG_CACHE_HOME=" + folder_.path("cache")}});
    }

    [[nodiscard]] bool isOpened() const { return std::filesystem::exists(folder_.path("opened")); }

    const support::TemporaryFolder folder_;
    const std::string page_ = folder_.path("cache/magellangps/page.html");
    const support::Variable path_{"PATH",
                                  (folder_.path("bin") + ':' + std::getenv("PATH")).c_str()};
};

TEST_F(Open, BrowserGetsThePageOfADevice)
{
    const auto ran = open({"--device", kSampleReceiver});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, IsEmpty());
    EXPECT_EQ(ran.err, "note: The browser shows the page " + page_ +
                           ", which is kept until the next one.\n");
    EXPECT_EQ(folder_.read("opened"), page_ + '\n');
    EXPECT_THAT(folder_.read("cache/magellangps/page.html"), HasSubstr("Kea Saddle"));
}

TEST_F(Open, NextPageReplacesIt)
{
    EXPECT_EQ(open({"--device", kSampleReceiver}).status, 0);
    EXPECT_EQ(open({kTrack, "--no-waypoints"}).status, 0);
    const auto page = folder_.read("cache/magellangps/page.html");
    EXPECT_THAT(page, HasSubstr("Autumn walk"));
    EXPECT_THAT(page, testing::Not(HasSubstr("Kea Saddle")));
}

TEST_F(Open, NobodyElseMayReadThePage)
{
    EXPECT_EQ(open({kTrack}).status, 0);
    struct stat folder {};
    ASSERT_EQ(::stat(folder_.path("cache/magellangps").c_str(), &folder), 0);
    EXPECT_EQ(folder.st_mode & 0777U, 0700U);
}

TEST_F(Open, WithoutADesktopItPrintsWhereThePageIs)
{
    const auto ran = open({kTrack}, "DISPLAY=");
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, page_ + '\n');
    EXPECT_EQ(ran.err,
              "note: There is no desktop here. Copy the page to where there is a browser.\n");
    EXPECT_FALSE(isOpened());
}

TEST_F(Open, BrowserThatFailsIsStatus1AndThePageIsKept)
{
    browser("exit 4");
    const auto ran = open({kTrack});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "magellangps: The page cannot be opened: xdg-open ended with status 4. Open "
                       "it with a browser. Path: " +
                           page_ + '\n');
    EXPECT_TRUE(std::filesystem::exists(page_));
    browser("kill -9 $$");
    EXPECT_THAT(open({kTrack}).err, HasSubstr("xdg-open was ended by signal 9"));
}

TEST_F(Open, ProgramThatIsNotInstalledIsNamed)
{
    const support::Variable path{"PATH", "/nowhere"};
    const auto ran = open({kTrack});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("the program xdg-open is not installed"));
}

TEST_F(Open, BrowserThatStaysIsNotWaitedFor)
{
    browser("echo $$ >" + folder_.path("opened") + "; exec sleep 600");
    EXPECT_EQ(open({kTrack}).status, 0);
    const auto process = gps::leadingInt32(folder_.read("opened"));
    EXPECT_EQ(::kill(process, SIGKILL), 0); // it is still running
}

TEST_F(Open, DownloadThatFailsShowsNoOlderPage)
{
    EXPECT_EQ(open({kTrack}).status, 0);
    std::filesystem::remove(folder_.path("opened"));
    const auto ran = open({folder_.path("nosuch.log")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("There is no such file."));
    EXPECT_FALSE(isOpened());
}

TEST_F(Open, PageThatNothingReplacesIsKeptAndNotShown)
{
    EXPECT_EQ(open({kTrack}).status, 0);
    const auto page = folder_.read("cache/magellangps/page.html");
    std::filesystem::remove(folder_.path("opened"));
    const auto empty = folder_.put("empty.gpx", "<gpx/>");
    EXPECT_EQ(open({kTrack, "--since", "2099-01-01"}).status, 0);
    EXPECT_EQ(open({empty}).status, 1);
    EXPECT_EQ(open({folder_.path("nosuch.log")}).status, 1);
    EXPECT_FALSE(isOpened());
    EXPECT_EQ(folder_.read("cache/magellangps/page.html"), page);
}

TEST_F(Open, PageOfAnIncompleteDownloadIsShownOnce)
{
    const auto gpx =
        folder_.put("a.gpx", "<gpx><wpt lat='1' lon='2'/><wpt lat='91' lon='2'/></gpx>");
    EXPECT_EQ(open({gpx}).status, 1);
    std::filesystem::remove(folder_.path("opened"));
    EXPECT_EQ(open({folder_.path("nosuch.log")}).status, 1);
    EXPECT_FALSE(isOpened());
    EXPECT_EQ(open({kTrack}).status, 0);
    EXPECT_EQ(folder_.read("opened"), page_ + '\n');
    EXPECT_FALSE(std::filesystem::exists(folder_.path("cache/magellangps/page.partial.html")));
}

TEST_F(Open, WhatArrivedOfAnIncompleteDownloadIsShown)
{
    const auto gpx = folder_.put("a.gpx", "<gpx><wpt lat='1' lon='2'><name>Here</name></wpt>"
                                          "<wpt lat='91' lon='2'/></gpx>");
    const auto ran = open({gpx});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(folder_.read("opened"), folder_.path("cache/magellangps/page.partial.html") + '\n');
    EXPECT_THAT(folder_.read("cache/magellangps/page.partial.html"), HasSubstr("Here"));
}

} // namespace
