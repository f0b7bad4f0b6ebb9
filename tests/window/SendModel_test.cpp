// SPDX-License-Identifier: MIT

#include "host/window/send/SendModel.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <giomm/init.h>

namespace {

class SendModelTest : public testing::Test {
protected:
    static void SetUpTestSuite() { Gio::init(); }

    /// Lists this many waypoints, "0", "1" and so on, after a track "T" and a route "R".
    void set(std::size_t waypoints, bool isFirstTicked = true)
    {
        host::RecordSet set{.routes = {{{{"name", "R"}}}}, .tracks = {{{{"name", "T"}}}}};
        for (std::size_t i = 0; i < waypoints; ++i)
            set.points.push_back({{}, {{"name", std::to_string(i)}}});
        auto ticked = host::TickedRecords::all(set);
        if (waypoints > 0)
            ticked.points[0] = isFirstTicked;
        model_->set(std::make_shared<const host::RecordSet>(std::move(set)), ticked);
    }

    [[nodiscard]] std::string nameAt(guint position) const
    {
        const auto row = model_->row(position);
        return row ? row->name : "";
    }

    Glib::RefPtr<host::SendModel> model_ = host::SendModel::create();
};

TEST_F(SendModelTest, IsEmptyAtFirst)
{
    EXPECT_TRUE(model_->isEmpty());
    EXPECT_EQ(nameAt(0), "");
}

TEST_F(SendModelTest, ListsTickedRecordsKindByKind)
{
    set(2, false);
    EXPECT_FALSE(model_->isEmpty());
    EXPECT_EQ(model_->get_n_items(), 3);
    EXPECT_EQ(nameAt(0), "T");
    EXPECT_EQ(nameAt(1), "R");
    EXPECT_EQ(nameAt(2), "1");
    EXPECT_EQ(nameAt(3), "") << "past the end";
}

TEST_F(SendModelTest, AddsManyRowsBitByBitAndThenAll)
{
    set(998);
    EXPECT_EQ(model_->get_n_items(), host::SendModel::kStep);
    guint last = 0;
    do
        last = model_->get_n_items();
    while (model_->step());
    EXPECT_EQ(last, 210) << "more than the list has widgets for";
    EXPECT_EQ(model_->get_n_items(), 1000);
    EXPECT_EQ(nameAt(999), "997");
}

TEST_F(SendModelTest, KeepsRowsWhenTheyHaveOtherRecords)
{
    set(8);
    int changes = 0;
    model_->signal_items_changed().connect([&](guint, guint, guint) { ++changes; });
    set(9, false);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(nameAt(2), "1");
}

} // namespace
