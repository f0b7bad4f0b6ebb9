// SPDX-License-Identifier: MIT

#include "host/formats/DataCheck.h"

#include "host/base/JsonText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// The mistake in a JSON text; empty if there is none.
std::string faultIn(const std::string& json)
{
    const auto data = host::readJsonObject(json);
    if (!data)
        return "not JSON";
    std::vector<std::string> remarks;
    const auto fault = host::findDataFault(*data, remarks);
    return fault ? fault->description + ". " + fault->advice : "";
}

std::vector<std::string> remarksOn(const std::string& json)
{
    std::vector<std::string> remarks;
    EXPECT_FALSE(host::findDataFault(*host::readJsonObject(json), remarks));
    return remarks;
}

TEST(DataCheck, RecordsAndTheirOwnKeysAreFine)
{
    for (
        const char* const json :
        {"{}", R"({"waypoint":[],"route":[],"track":[]})", R"({"waypoint":null})",
         R"({"waypoint":[{"name":"A","cacheID":5,"own":[1],"points":"own","point":{}}]})",
         R"({"waypoint":[{"point":{"latitude":1,"longitude":2.5,"altitude":3,"time":4,"reserved":5}}]})",
         R"({"route":[{"number":"1","points":[{"name":"A","points":3,"point":{"latitude":1}}]}]})",
         R"({"track":[{"points":[]},{}]})"})
        EXPECT_EQ(faultIn(json), "") << json;
}

TEST(DataCheck, EachMistakeIsNamedWithItsRecordAndWhatToDo)
{
    struct Row {
        const char* json;
        const char* fault;
    };
    const std::vector<Row> rows{
        {R"({"Waypoint":[]})", "The data file has the unknown key \"Waypoint\". Did you mean "
                               "\"waypoint\"? The keys are \"waypoint\", \"route\", \"track\""},
        {R"({"x":1})", "The data file has the unknown key \"x\". The keys are \"waypoint\", "
                       "\"route\", \"track\""},
        {R"({"waypoint":{}})",
         "The value of \"waypoint\" is not a list. Write a list of records: [{...},{...}]"},
        {R"({"track":[{"points":[]},{"points":{}}]})",
         "The value of \"points\" of track 2 is not a list. Write a list of records: "
         "[{...},{...}]"},
        {R"({"waypoint":[{},"A"]})",
         "The entry for waypoint 2 is not an object. Write each record as an object: {...}"},
        {R"({"route":[{"points":[{},7]}]})", "The entry for point 2 of route 1 is not an object. "
                                             "Write each record as an object: {...}"},
        {R"({"waypoint":[{"point":[46.5,7.25]}]})",
         "The \"point\" of waypoint 1 is not an object. Write it as "
         "{\"latitude\":46.5,\"longitude\":7.25}"},
        {R"({"waypoint":[{"point":{"lat":46.5}}]})",
         "The \"point\" of waypoint 1 has the unknown key \"lat\". Did you mean \"latitude\"? The "
         "keys are \"latitude\", \"longitude\", \"altitude\", \"time\", \"reserved\""},
        {R"({"track":[{"points":[{"point":{"latitude":"46.5"}}]}]})",
         "The \"latitude\" in the \"point\" of point 1 of track 1 is not a number. Write it as a "
         "number, without quotation marks"},
        {R"({"waypoint":[{"name":5}]})",
         "The \"name\" of waypoint 1 is not a text. Write it in quotation marks"},
        {R"({"waypoint":[{"terrain":2.5}]})",
         "The \"terrain\" of waypoint 1 is not a text. Write it in quotation marks"},
        {R"({"route":[{"comment":["x"]}]})",
         "The \"comment\" of route 1 is not a text. Write it in quotation marks"},
        {R"({"waypoint":[{"symbol":{}}]})",
         "The \"symbol\" of waypoint 1 is not a text. Write it in quotation marks"},
    };
    for (const auto& [json, fault] : rows)
        EXPECT_EQ(faultIn(json), fault);
}

TEST(DataCheck, KeysThatDriversReadCauseNoRemark)
{
    EXPECT_TRUE(
        remarksOn(
            R"({"waypoint":[{"name":"A","comment":"","geocacheOwner":"","geocacheHint":"",)"
            R"("geocacheType":"","datePlaced":"","dateFound":"","difficulty":"","terrain":"",)"
            R"("symbol":"","cacheID":1,"point":{}}],)"
            R"("route":[{"number":1,"source":"","points":[{"name":"A"}]}],)"
            R"("track":[{"segment":1,"points":[{"trackName":"T","point":{}}]}]})")
            .empty());
}

TEST(DataCheck, UnknownKeyOfRecordsIsRemarkedOnceWithTheOneThatWasMeant)
{
    EXPECT_EQ(
        remarksOn(R"({"waypoint":[{"coment":""},{"own":1},{"coment":""},{"coment":""}],)"
                  R"("track":[{"points":[{},{"coment":""}]}]})"),
        (std::vector<std::string>{
            "waypoint 1 and 2 more have the key \"coment\", which no driver is known to read. "
            "Did you mean \"comment\"?",
            "waypoint 2 has the key \"own\", which no driver is known to read.",
            "point 2 of track 1 has the key \"coment\", which no driver is known to read. Did "
            "you mean \"comment\"?"}));
}

TEST(DataCheck, TenUnknownKeysAreNamedAndMoreAreCounted)
{
    const auto withKeys = [](int count) {
        std::string json = R"({"waypoint":[{)";
        for (int i = 0; i < count; ++i)
            json += (i > 0 ? ",\"" : "\"") + std::to_string(100 + i) + "\":1";
        return json + "}]}";
    };
    EXPECT_EQ(remarksOn(withKeys(10)).size(), 10U);
    const auto remarks = remarksOn(withKeys(12));
    ASSERT_EQ(remarks.size(), 11U);
    EXPECT_EQ(remarks.back(), "And 2 more unknown keys.");
}

} // namespace
