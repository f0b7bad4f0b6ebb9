// SPDX-License-Identifier: MIT
// Single elements as records. Whole documents are in GpxReader_test.

#include "host/formats/GpxRecords.h"

#include "host/formats/XmlNodes.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <limits>

namespace {

class GpxRecords : public testing::Test {
protected:
    pugi::xml_node parse(const char* xml)
    {
        EXPECT_TRUE(document_.load_string(xml, pugi::parse_default | pugi::parse_ws_pcdata_single));
        return document_.document_element();
    }

private:
    pugi::xml_document document_;
};

TEST_F(GpxRecords, LocalNameIsTheNameWithoutItsPrefix)
{
    EXPECT_EQ(host::localName(parse("<a:wpt/>")), "wpt");
    EXPECT_EQ(host::localName(parse("<wpt/>")), "wpt");
    EXPECT_EQ(host::localName(parse("<a:b:wpt/>")), "b:wpt");
}

TEST_F(GpxRecords, ElementBelongsToTheFormatByItsNamespaceNotItsPrefix)
{
    const auto own = parse("<gpx xmlns='u' xmlns:p='u' xmlns:q='v'><p:wpt/><q:wpt/><r:wpt/></gpx>");
    auto node = own.first_child();
    EXPECT_TRUE(host::isOwn(node, "wpt")); // another prefix of the same namespace
    EXPECT_FALSE(host::isOwn(node, "rte"));
    node = node.next_sibling();
    EXPECT_FALSE(host::isOwn(node, "wpt")); // another namespace
    node = node.next_sibling();
    EXPECT_TRUE(host::isOwn(node, "wpt")); // an undeclared prefix
}

TEST_F(GpxRecords, PointNeedsBothCoordinates)
{
    gps::GPSPoint point;
    host::UnreadTexts unread;
    EXPECT_FALSE(host::readPoint(parse("<wpt lat='1'/>"), point, unread));
    EXPECT_FALSE(host::readPoint(parse("<wpt lon='1'/>"), point, unread));
    EXPECT_FALSE(host::readPoint(parse("<wpt lat='1x' lon='2'/>"), point, unread));
    EXPECT_FALSE(host::readPoint(parse("<wpt lat='90.1' lon='2'/>"), point, unread));
    EXPECT_TRUE(unread.isEmpty());
    ASSERT_TRUE(
        host::readPoint(parse("<wpt lat='90' lon=' +2 '><ele>x</ele></wpt>"), point, unread));
    EXPECT_EQ(unread.elevation, "x");
    EXPECT_EQ(point, (gps::GPSPoint{90, 2, std::numeric_limits<double>::quiet_NaN(), 0, 0}));
}

TEST_F(GpxRecords, WhiteSpaceAroundTextOfSeveralLinesIsLayout)
{
    const auto comment = [this](const char* xml) {
        return *host::waypointRecord(parse(xml), {}).findString("comment");
    };
    EXPECT_EQ(comment("<wpt><cmt> a </cmt></wpt>"), " a ");
    EXPECT_EQ(comment("<wpt><cmt>\n  a\n</cmt></wpt>"), "a");
}

TEST_F(GpxRecords, RouteNumberMustBeginWithANumber)
{
    EXPECT_EQ(host::routeRecord(parse("<rte><number>7</number></rte>")),
              (gps::Dictionary{{"number", 7}}));
    EXPECT_EQ(host::routeRecord(parse("<rte><number>x</number></rte>")), gps::Dictionary{});
}

TEST_F(GpxRecords, TrackHasItsNameItsCommentAndItsSource)
{
    EXPECT_EQ(host::trackRecord(
                  parse("<trk><name>T</name><cmt>c</cmt><src>Old watch</src><trkseg/></trk>")),
              (gps::Dictionary{{"name", "T"}, {"comment", "c"}, {"source", "Old watch"}}));
    EXPECT_EQ(host::trackRecord(parse("<trk/>")), gps::Dictionary{});
}

} // namespace
