// SPDX-License-Identifier: MIT

#include "host/transfer/ChangedRoutes.h"

#include "host/DriverReports.h"
#include "host/FakeDriver.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

namespace {

using gps::Array;
using gps::Dictionary;

Dictionary pointNamed(const char* name, double latitude)
{
    auto record = support::waypointAt(latitude);
    record.set("name", name);
    return record;
}

Dictionary routeData(const char* name, Array points)
{
    return {{"route", Array{Dictionary{{"name", name}, {"points", std::move(points)}}}}};
}

// A driver whose files of routes can have points that no route uses.
struct RouteDriver final : support::FakeFileDriver, gps::GPSUnusedRoutePoints {
    void visitUnusedRoutePointsIn(
        std::string_view /*path*/, std::string_view content,
        const std::function<void(const Dictionary& record)>& visit) const override
    {
        for (const auto& point : unused.at(std::string{content}))
            visit(*point.as<Dictionary>());
    }

    std::map<std::string, Array> unused;
};

gps::SendPlan routePlan(const char* content)
{
    gps::SendPlan plan;
    plan.files.push_back({"/r", gps::PlannedFile::Action::kMerge, content, {}, "routes"});
    return plan;
}

class ChangedRoutes : public testing::Test {
protected:
    ChangedRoutes()
    {
        driver_.decode = [this](std::string_view, std::string_view content) {
            return contents_[std::string{content}];
        };
        contents_["before"] = routeData("Loop", {pointNamed("A", 1), pointNamed("B", 2)});
        driver_.unused = {{"before", {pointNamed("P", 3)}}, {"after", {pointNamed("P", 3)}}};
    }

    [[nodiscard]] std::optional<std::string> changedPoint() const
    {
        return host::changedPoint(routePlan("before"), routePlan("after"), driver_);
    }

    RouteDriver driver_;
    std::map<std::string, Dictionary> contents_;
};

TEST_F(ChangedRoutes, RouteIsChangedIfAPointOfItIs)
{
    const auto changed = [this](Dictionary data) {
        return host::changedRoute(data, routePlan("before"), routePlan("after"), driver_);
    };
    contents_["after"] = contents_["before"];
    EXPECT_EQ(changed({}), std::nullopt);
    contents_["after"] = routeData("Loop", {pointNamed("A", 1), pointNamed("B", 9)});
    EXPECT_EQ(changed({}), "Loop");
    EXPECT_EQ(changed(routeData("Loop", {pointNamed("A", 1)})), std::nullopt) << "it is sent";
    contents_["after"] = {};
    EXPECT_EQ(changed({}), "Loop");
}

TEST_F(ChangedRoutes, SentRouteIsDistortedIfAPointIsAnotherOne)
{
    const auto sent = routeData("Tour", {pointNamed("A", 1), pointNamed("B", 2)});
    const auto distorted = [&] { return host::distortedRoute(sent, routePlan("after"), driver_); };
    contents_["after"] = routeData("Tour", {pointNamed("A", 1), pointNamed("B 1", 2)});
    EXPECT_EQ(distorted(), std::nullopt) << "names of points do not count";
    contents_["after"] = routeData("Tour", {pointNamed("A", 1), pointNamed("B", 3)});
    EXPECT_EQ(distorted(), "Tour");
}

TEST_F(ChangedRoutes, PointThatNoRouteUsesMustStay)
{
    EXPECT_EQ(changedPoint(), std::nullopt);
    driver_.unused["after"] = {pointNamed("P", 9)};
    EXPECT_EQ(changedPoint(), "P");
    driver_.unused["after"] = {};
    EXPECT_EQ(changedPoint(), "P");
    contents_["after"] = routeData("Tour", {pointNamed("P", 9)});
    EXPECT_EQ(changedPoint(), "P") << "another point has its name";
    contents_["after"] = routeData("Tour", {pointNamed("P", 3)});
    EXPECT_EQ(changedPoint(), std::nullopt) << "a route uses it now";
}

TEST_F(ChangedRoutes, DriverWithoutSuchPointsHasNone)
{
    const support::FakeFileDriver older;
    EXPECT_EQ(host::changedPoint(routePlan("before"), routePlan("after"), older), std::nullopt);
}

} // namespace
