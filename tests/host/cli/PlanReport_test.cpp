// SPDX-License-Identifier: MIT

#include "host/cli/PlanReport.h"

#include <gtest/gtest.h>

namespace {

using Action = gps::PlannedFile::Action;

TEST(PlanReport, EveryFileTextAndRemarkIsALine)
{
    gps::SendPlan plan;
    plan.files.push_back({"/dev/Tracks/a.log", Action::kCreate, "x", {}});
    plan.files.push_back({"/dev/Points/b.upt", Action::kMerge, "x", {}});
    plan.files.push_back({"/dev/Caches/c.gs", Action::kSkip, "x", {}});
    plan.files.push_back({"/else/d", Action::kSkip, "x",
                          gps::Error{"some", 1, {{gps::kErrorDescriptionKey, "No folder"}}}});
    plan.remarks = {"A remark\x1b."};
    EXPECT_EQ(host::planReport(plan,
                               {{"waypoint", "name", "Hütte☃", "Hutte", "☃"},
                                {"route", "comment", "é", "e", ""}},
                               "/dev"),
              "make: Tracks/a.log\n"
              "merge into: Points/b.upt\n"
              "leave: Caches/c.gs (nothing to write)\n"
              "leave: /else/d (No folder.)\n"
              "waypoint name: \"Hütte☃\" becomes \"Hutte\", without \"☃\"\n"
              "route comment: \"é\" becomes \"e\"\n"
              "A remark\uFFFD.\n");
}

TEST(PlanReport, CountsNameEachKind)
{
    EXPECT_EQ(host::recordCounts(
                  {{"waypoint", gps::Array(2)}, {"route", gps::Array(1)}, {"track", "none"}}),
              "2 waypoints, 1 route, 0 tracks");
}

} // namespace
