// SPDX-License-Identifier: MIT

#include "host/window/records/RecordModel.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include <giomm/init.h>

namespace {

host::RecordModel::Rows rowsNamed(const std::vector<std::string>& names)
{
    std::vector<host::RecordRow> rows;
    for (const auto& name : names)
        rows.push_back({.kind = host::RecordKind::kRoute, .index = rows.size(), .name = name});
    return std::make_shared<const std::vector<host::RecordRow>>(rows);
}

class RecordModelTest : public testing::Test {
protected:
    static void SetUpTestSuite() { Gio::init(); }

    [[nodiscard]] std::string nameAt(guint position) const
    {
        const auto* const row = model()->row(position);
        return row != nullptr ? row->name : "";
    }

    [[nodiscard]] bool hasItem(guint position) const
    {
        const std::unique_ptr<void, void (*)(void*)> item{
            g_list_model_get_item(model()->Gio::ListModel::gobj(), position),
            [](void* owned) { g_clear_object(&owned); }};
        return item != nullptr;
    }

    /// Shows as many rows.
    void setMany(guint count)
    {
        std::vector<std::uint32_t> order(count);
        std::iota(order.begin(), order.end(), 0U);
        model()->set(rowsNamed(std::vector<std::string>(count, "a")), order);
    }

    /// The number of rows after each step that is due.
    std::vector<guint> steps()
    {
        std::vector<guint> counts;
        while (true) {
            counts.push_back(model()->get_n_items());
            if (!model()->step())
                return counts;
        }
    }

    [[nodiscard]] const Glib::RefPtr<host::RecordModel>& model() const { return model_; }

private:
    Glib::RefPtr<host::RecordModel> model_ = host::RecordModel::create();
};

TEST_F(RecordModelTest, IsEmptyAtFirst)
{
    EXPECT_EQ(model()->get_n_items(), 0);
    EXPECT_EQ(nameAt(0), "");
    EXPECT_FALSE(model()->find(host::RecordKind::kRoute, 0));
}

TEST_F(RecordModelTest, ShowsTheRowsOfItsOrder)
{
    model()->set(rowsNamed({"a", "b", "c"}), {2, 0});
    EXPECT_EQ(model()->get_n_items(), 2);
    EXPECT_EQ(nameAt(0), "c");
    EXPECT_EQ(nameAt(1), "a");
    EXPECT_EQ(nameAt(2), "") << "past the end";
    EXPECT_EQ(model()->find(host::RecordKind::kRoute, 0), 1);
    EXPECT_FALSE(model()->find(host::RecordKind::kRoute, 1)) << "not shown";
    EXPECT_FALSE(model()->find(host::RecordKind::kTrack, 0)) << "of another kind";
}

TEST_F(RecordModelTest, HasAnItemForEachRowThatIsShownAndNoOther)
{
    model()->set(rowsNamed({"a", "b", "c"}), {2, 0});
    EXPECT_TRUE(hasItem(0));
    EXPECT_TRUE(hasItem(1));
    EXPECT_FALSE(hasItem(2));
}

TEST_F(RecordModelTest, ReportsOnlyTheDifferenceInNumber)
{
    model()->set(rowsNamed({"a", "b"}), {0, 1});
    std::vector<std::vector<guint>> changes;
    model()->signal_items_changed().connect([&](guint position, guint removed, guint added) {
        changes.push_back({position, removed, added});
    });
    model()->set(rowsNamed({"x"}), {0});
    EXPECT_EQ(nameAt(0), "x");
    model()->set(rowsNamed({"y", "z", "x"}), {0, 1, 2});
    EXPECT_EQ(changes, (std::vector<std::vector<guint>>{{1, 1, 0}, {1, 0, 2}}));
    model()->set(rowsNamed({"y", "z", "x"}), {2, 1, 0});
    EXPECT_EQ(changes.size(), 2U);
    EXPECT_EQ(nameAt(0), "x");
}

TEST_F(RecordModelTest, ShowsManyRowsBitByBitAndThenAll)
{
    constexpr guint kMany = 1000;
    setMany(kMany);
    EXPECT_TRUE(model()->find(host::RecordKind::kRoute, kMany - 1)) << "although not shown yet";
    const auto counts = steps();
    for (std::size_t i = 0; i < counts.size(); ++i)
        EXPECT_EQ(counts[i], (i + 1) * host::RecordModel::kStep);
    EXPECT_EQ(counts.back(), 210) << "more than the list has widgets for";
    EXPECT_EQ(model()->get_n_items(), kMany);
    EXPECT_FALSE(model()->step());
}

TEST_F(RecordModelTest, RemovesManyRowsAtOnceAndThoseWithWidgetsBitByBit)
{
    setMany(1000);
    (void)steps();
    setMany(185);
    EXPECT_EQ(nameAt(185), "") << "about to be removed";
    EXPECT_EQ(steps(), (std::vector<guint>{210, 200, 190}));
    EXPECT_EQ(model()->get_n_items(), 185);
}

TEST_F(RecordModelTest, ShowsAFewRowsAtOnce)
{
    setMany(host::RecordModel::kStep);
    EXPECT_EQ(model()->get_n_items(), host::RecordModel::kStep);
    EXPECT_FALSE(model()->step());
}

} // namespace
