// SPDX-License-Identifier: MIT

#include "host/formats/KmlRecords.h"

#include <gmock/gmock.h>

#include <cmath>
#include <string>

namespace {

gps::Dictionary waypointOf(const std::string& children)
{
    pugi::xml_document document;
    const auto xml = "<Placemark>" + children + "</Placemark>";
    EXPECT_TRUE(document.load_buffer(xml.data(), xml.size(),
                                     pugi::parse_default | pugi::parse_embed_pcdata));
    host::UnreadTexts unread;
    return host::kmlWaypoint(document.document_element(), {1, 2, 3, 0, 0}, unread);
}

std::string textIn(const gps::Dictionary& record, const char* key)
{
    const auto* const text = record.findString(key);
    return text != nullptr ? *text : "(none)";
}

TEST(KmlPosition, HasLongitudeLatitudeAndMaybeAnAltitude)
{
    gps::GPSPoint point;
    host::UnreadTexts unread;
    EXPECT_TRUE(host::readKmlPosition("7.25,46.5,1200.5", ',', point, unread));
    EXPECT_EQ(point, (gps::GPSPoint{46.5, 7.25, 1200.5, 0, 0}));
    for (const auto* const text : {"7.25,46.5", "7.25,46.5,", "7.25,46.5, "}) {
        EXPECT_TRUE(host::readKmlPosition(text, ',', point, unread)) << text;
        EXPECT_TRUE(std::isnan(point.altitude)) << text;
    }
    EXPECT_TRUE(host::readKmlPosition("-180 -90  5", ' ', point, unread));
    EXPECT_EQ(point, (gps::GPSPoint{-90, -180, 5, 0, 0}));
    EXPECT_TRUE(host::readKmlPosition("180, 90, 5", ',', point, unread));
    EXPECT_TRUE(unread.isEmpty());
}

TEST(KmlPosition, MalformedAltitudeIsUnknownAndHandedBack)
{
    for (const std::string altitude : {"high", "12m", "1,2", "1 2"}) {
        gps::GPSPoint point;
        host::UnreadTexts unread;
        EXPECT_TRUE(host::readKmlPosition("7.25,46.5," + altitude, ',', point, unread));
        EXPECT_TRUE(std::isnan(point.altitude)) << altitude;
        EXPECT_EQ(unread.elevation, altitude);
    }
}

TEST(KmlPosition, IsInvalidWithoutTwoCoordinatesOnTheGlobe)
{
    gps::GPSPoint point;
    host::UnreadTexts unread;
    for (const auto* const text :
         {"", ",", "1", "1,", ",1", "1;2", "1,2x,3", "x1,2", "0x1,2", "nan,1", "1,inf", "1e400,2",
          "180.1,0", "-180.1,0", "0,90.1", "0,-90.1"})
        EXPECT_FALSE(host::readKmlPosition(text, ',', point, unread)) << text;
}

TEST(KmlWaypoint, HasNameDescriptionAndTime)
{
    const auto record = waypointOf("<name>A</name><description>by the lake</description>"
                                   "<TimeStamp><when>2024-06-01T10:00:00Z</when></TimeStamp>");
    EXPECT_EQ(record, (gps::Dictionary{{"name", "A"},
                                       {"comment", "by the lake"},
                                       {"point", gps::GPSPoint{1, 2, 3, 1717236000, 0}}}));
    EXPECT_EQ(waypointOf(""),
              (gps::Dictionary{{"comment", ""}, {"point", gps::GPSPoint{1, 2, 3, 0, 0}}}));
}

TEST(KmlWaypoint, FieldsOfOurOwnFilesComeBeforeTheDescription)
{
    const auto record =
        waypointOf("<name>A</name><description>x</description><ExtendedData>"
                   "<Data name=\"comment\"><value>y</value></Data>"
                   "<Data name=\"symbol\"><value>Geocache</value></Data>"
                   "<Data name=\"geocacheOwner\"><value>Ann</value></Data>"
                   "<Data name=\"point\"><value>hostile</value></Data>"
                   "<Data name=\"name\"><value>hostile</value></Data><Data><value>z</value></Data>"
                   "</ExtendedData>");
    EXPECT_EQ(textIn(record, "name"), "A");
    EXPECT_EQ(textIn(record, "comment"), "y");
    EXPECT_EQ(textIn(record, "symbol"), "Geocache");
    EXPECT_EQ(textIn(record, "geocacheOwner"), "Ann");
    EXPECT_NE(gps::findPoint(record), nullptr);
    EXPECT_EQ(record.size(), 5U);
}

TEST(KmlDescription, LosesTagsAndReferencesOfHtml)
{
    for (const auto& [html, text] : std::vector<std::pair<std::string, std::string>>{
             {"", ""},
             {"plain", "plain"},
             {"<p>one<br/>two</p>", "one two"},
             {"a &lt;b&gt; &amp;amp; &quot;c&quot; &#39;d&apos;&nbsp;e", "a <b> &amp; \"c\" 'd' e"},
             {"1 < 2", "1 < 2"},
             {"a <b", "a <b"},
             {"&unknown; &", "&unknown; &"}})
        EXPECT_EQ(host::plainDescription(html), text);
}

} // namespace
