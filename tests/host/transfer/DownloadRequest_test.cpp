// SPDX-License-Identifier: MIT

#include "host/transfer/DownloadRequest.h"

#include <gtest/gtest.h>

namespace {

using host::operationOptions;

TEST(DownloadRequest, AllKindsAreRequestedByDefault)
{
    EXPECT_EQ(operationOptions({}),
              (gps::Dictionary{{"waypoints", true}, {"routes", true}, {"tracks", true}}));
}

TEST(DownloadRequest, KindsCanBeLeftOutOneByOne)
{
    host::DownloadRequest request;
    request.kinds = {.waypoints = false, .routes = true, .tracks = false};
    request.debugLevel = 1;
    EXPECT_EQ(
        operationOptions(request),
        (gps::Dictionary{{"waypoints", false}, {"routes", true}, {"tracks", false}, {"debug", 1}}));
}

TEST(DownloadRequest, DriverOptionsReplaceTheKindsButNotTheDebugLevel)
{
    host::DownloadRequest request;
    request.driverOptions = gps::Dictionary{{"tracks", false}};
    EXPECT_EQ(operationOptions(request), (gps::Dictionary{{"tracks", false}}));
    request.debugLevel = 3;
    EXPECT_EQ(operationOptions(request), (gps::Dictionary{{"tracks", false}, {"debug", 3}}));
}

TEST(DownloadRequest, ImportNamesItsFile)
{
    EXPECT_EQ(
        operationOptions({}, "a.log"),
        (gps::Dictionary{
            {"waypoints", true}, {"routes", true}, {"tracks", true}, {"sourcePath", "a.log"}}));
}

} // namespace
