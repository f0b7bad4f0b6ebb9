// SPDX-License-Identifier: MIT

#include "host/formats/DataFile.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

class DataFile : public testing::Test {
protected:
    std::optional<gps::Error> read(std::string_view json)
    {
        return host::readDataFile(folder_.put("d.json", json), data_, remarks_);
    }

    support::TemporaryFolder folder_;
    std::optional<gps::Dictionary> data_;
    std::vector<std::string> remarks_;
};

TEST_F(DataFile, ObjectUnderPointIsAPointWhoseMissingFieldsAre0)
{
    EXPECT_FALSE(
        read(R"({"waypoint":[{"name":"A","point":{"latitude":46.5,"time":7,"altitude":null}}]})"));
    const gps::GPSPoint point{.latitude = 46.5, .time = 7};
    EXPECT_EQ(data_,
              (gps::Dictionary{
                  {"waypoint", gps::Array{gps::Dictionary{{"name", "A"}, {"point", point}}}}}));
}

TEST_F(DataFile, PointsAreBoxedAtEveryDepth)
{
    EXPECT_FALSE(
        read(R"({"route":[{"points":[{"point":{"longitude":7,"altitude":1e3,"reserved":-1}}]}]})"));
    const gps::GPSPoint point{.longitude = 7, .altitude = 1000, .reserved = -1};
    const gps::Array points{gps::Dictionary{{"point", point}}};
    EXPECT_EQ(data_, (gps::Dictionary{{"route", gps::Array{gps::Dictionary{{"points", points}}}}}));
}

TEST_F(DataFile, EverythingElseIsUnchangedAndInOrder)
{
    EXPECT_FALSE(
        read(R"({"waypoint":[{"z":"Ä","a":true,"m":{"point":[1]},"cacheID":7,"n":null}]})"));
    const gps::Dictionary record{
        {"z", "Ä"}, {"a", true}, {"m", gps::Dictionary{{"point", gps::Array{1}}}}, {"cacheID", 7}};
    EXPECT_EQ(data_, (gps::Dictionary{{"waypoint", gps::Array{record}}}));
    std::string keys;
    for (const auto& entry : *data_->findArray("waypoint")->front().as<gps::Dictionary>())
        keys += entry.key + ' ';
    EXPECT_EQ(keys, "z a m cacheID ");
}

TEST_F(DataFile, NullMeansNoDictionary)
{
    data_ = gps::Dictionary{{"old", 1}};
    EXPECT_FALSE(read(" null\n"));
    EXPECT_FALSE(data_);
}

TEST_F(DataFile, EmptyObjectIsAnEmptyDictionary)
{
    EXPECT_FALSE(read("{}"));
    EXPECT_EQ(data_, gps::Dictionary{});
}

TEST_F(DataFile, GpxFileIsSaidToBeOne)
{
    const auto failure = read("\n<?xml version='1.0'?><gpx/>");
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->description(), "The data file is not JSON, but looks like XML");
    EXPECT_EQ(failure->suggestion(), "A GPX file is sent without --data");
}

TEST_F(DataFile, AnythingButAnObjectIsRejectedWithItsPath)
{
    for (const auto& json :
         {std::string{}, std::string{"[]"}, std::string{"1"}, std::string{"nul"},
          std::string{"null null"}, std::string{R"({"a":)"},
          R"({"a":)" + std::string(100'000, '[') + std::string(100'000, ']') + '}'}) {
        const auto failure = read(json);
        ASSERT_TRUE(failure) << json.substr(0, 20);
        EXPECT_EQ(failure->path(), folder_.path("d.json"));
        EXPECT_FALSE(data_);
    }
}

TEST_F(DataFile, InvalidJsonIsRejectedWithItsLine)
{
    struct Row {
        std::string json;
        const char* line;
    };
    for (const auto& [json, line] : std::vector<Row>{{"", "line 1 "},
                                                     {"{\"a\":\n", "line 2 "},
                                                     {"{\n\n\"a\":1,}\n", "line 3 "},
                                                     {"{\n\"a\":1e999}", "line 2 "},
                                                     {"{}\nx", "line 2 "}}) {
        const auto failure = read(json);
        ASSERT_TRUE(failure) << json;
        EXPECT_NE(failure->description()->find(line), std::string::npos) << *failure->description();
    }
    EXPECT_EQ(read("[]")->description()->find("line"), std::string::npos);
    EXPECT_TRUE(read(R"({"a":1e999})"));
}

TEST_F(DataFile, MistakeInTheDataIsRejectedWithItsPathAndWhatToDo)
{
    data_ = gps::Dictionary{{"old", 1}};
    const auto failure = read(R"({"waypoints":[]})");
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->description(), "The data file has the unknown key \"waypoints\"");
    EXPECT_EQ(failure->suggestion(), "Did you mean \"waypoint\"? The keys are \"waypoint\", "
                                     "\"route\", \"track\"");
    EXPECT_EQ(failure->path(), folder_.path("d.json"));
    EXPECT_EQ(data_, (gps::Dictionary{{"old", 1}}));
}

TEST_F(DataFile, KeyThatIsTwiceInOneObjectIsRejectedWithItsLine)
{
    const auto failure =
        read("{\"waypoint\":[{\"name\":\"A\"},\n{\"name\":\"B\",\n\"name\":\n5}]}");
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->description(),
              "The data file has the key \"name\" twice in one object: again in line 3");
    EXPECT_EQ(failure->suggestion(), "Remove one of them");
    EXPECT_TRUE(read(R"({"waypoint":[],"waypoint":[]})")) << "at the top, too";
    EXPECT_FALSE(read(R"({"waypoint":[{"name":"A"},{"name":"B"}]})")) << "of two objects";
}

TEST_F(DataFile, UnknownKeyOfARecordIsRemarkedWithTheFile)
{
    EXPECT_FALSE(read(R"({"waypoint":[{"coment":"x"}]})"));
    EXPECT_EQ(remarks_,
              std::vector<std::string>{
                  "d.json: waypoint 1 has the key \"coment\", which no driver is known to "
                  "read. Did you mean \"comment\"?"});
}

TEST_F(DataFile, MissingFileIsAnError)
{
    EXPECT_TRUE(host::readDataFile(folder_.path("none"), data_, remarks_));
    EXPECT_TRUE(host::readDataFile(folder_.path(), data_, remarks_));
}

} // namespace
