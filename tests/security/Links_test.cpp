// SPDX-License-Identifier: MIT
// Receivers whose links lead out of the volume, with the built program. Nothing outside may be
// read, written or copied.

#include "system/Program.h"
#include "system/Receiver.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using support::magellangps;
using support::Receiver;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kSummitAndTrack[] = R"(<gpx version="1.1" creator="test">
<wpt lat="46.1" lon="7.9"><name>Summit</name></wpt>
<trk><trkseg><trkpt lat="46.5" lon="7.5"/></trkseg></trk></gpx>)";

// A receiver whose waypoint folder is a link to a folder outside, which holds a waypoint.
class Links : public testing::Test {
protected:
    Links()
    {
        home_.put("home/secret.upt", support::sentences({support::kHut}));
        fs::remove_all(receiver_.path("Points"));
        link(home_.path("home"));
    }

    void link(const std::string& target) const
    {
        fs::remove(receiver_.path("Points"));
        fs::create_symlink(target, receiver_.path("Points"));
    }

    Receiver receiver_;
    support::TemporaryFolder home_;
};

TEST_F(Links, DataFolderOutsideTheVolumeIsNotRead)
{
    const auto ran = support::acquire(receiver_, {"--events", "--no-routes"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("leads out of the receiver"));
    EXPECT_THAT(ran.err, HasSubstr("Path: " + receiver_.path("Points")));
    EXPECT_THAT(ran.out, Not(HasSubstr("Hut")));
    link("../" + fs::path{home_.path()}.filename().string() + "/home");
    EXPECT_EQ(support::acquire(receiver_, {"--events", "--no-routes"}).out, ran.out)
        << "a relative link";
}

TEST_F(Links, DataFolderInsideTheVolumeIsFollowed)
{
    receiver_.put("Elsewhere/a.upt", support::sentences({support::kHut}));
    link("Elsewhere");
    const auto ran = support::acquire(receiver_, {"--events", "--no-routes"});
    EXPECT_THAT(ran.out, HasSubstr(R"("name":"Hut")"));
}

TEST_F(Links, DataFolderOutsideTheVolumeIsNeitherWrittenNorBackedUp)
{
    const auto ran = magellangps({"send", home_.put("trip.gpx", kSummitAndTrack), "--device",
                                  receiver_.path(), "--backup", home_.path("kept")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.out, HasSubstr("The receiver has no folder"));
    EXPECT_THAT(ran.err, HasSubstr("\"Summit\" is not on the device."));
    EXPECT_TRUE(fs::exists(receiver_.path("Tracks/TKLG000.log")));
    EXPECT_EQ(std::distance(fs::directory_iterator{home_.path("home")}, {}), 1);
    for (const auto& entry : fs::recursive_directory_iterator{home_.path("kept")})
        EXPECT_NE(entry.path().filename(), "secret.upt");
}

TEST_F(Links, RestoreDoesNotWriteThroughALinkThatIsNewOnTheDevice)
{
    fs::remove(receiver_.path("Points"));
    receiver_.put("Points/a.upt", support::sentences({support::kCamp}));
    ASSERT_EQ(magellangps({"send", home_.put("trip.gpx", kSummitAndTrack), "--device",
                           receiver_.path(), "--backup", home_.path("kept")})
                  .status,
              0);
    const auto name = fs::directory_iterator
    {
        home_.path("kept/42")
        } -> path().filename().string();
    fs::remove_all(receiver_.path("Points"));
    link(home_.path("home"));
    const auto ran = magellangps(
        {"restore", "--device", receiver_.path(), "--backup", home_.path("kept"), name});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("leads out of it"));
    EXPECT_THAT(ran.out, IsEmpty());
    EXPECT_EQ(std::distance(fs::directory_iterator{home_.path("home")}, {}), 1);
}

TEST_F(Links, LinkToADeviceNodeIsNotOpened)
{
    fs::remove(receiver_.path("Points"));
    receiver_.makeFolder("Points");
    fs::create_symlink("/dev/tty", receiver_.path("Points/Default POI File.upt"));
    const auto ran = magellangps({"send", home_.put("trip.gpx", kSummitAndTrack), "--device",
                                  receiver_.path(), "--no-backup"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("Nothing was sent."));
    EXPECT_TRUE(fs::is_symlink(receiver_.path("Points/Default POI File.upt")));
}

} // namespace
