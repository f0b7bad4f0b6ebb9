// SPDX-License-Identifier: MIT

#include "host/window/records/RecordModel.h"

#include "host/window/records/RecordItem.h"

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
        const auto item =
            std::dynamic_pointer_cast<host::RecordItem>(model()->get_object(position));
        return item ? item->row().name : "";
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

TEST_F(RecordModelTest, ReportsWhatIsRemovedAndThenWhatIsAdded)
{
    model()->set(rowsNamed({"a", "b"}), {0, 1});
    std::vector<std::vector<guint>> changes;
    model()->signal_items_changed().connect([&](guint position, guint removed, guint added) {
        changes.push_back({position, removed, added});
    });
    model()->set(rowsNamed({"x"}), {0});
    EXPECT_EQ(changes, (std::vector<std::vector<guint>>{{0, 2, 0}, {0, 0, 1}}));
}

TEST_F(RecordModelTest, ShowsManyRowsBitByBitAndThenAll)
{
    constexpr guint kMany = 1000;
    std::vector<std::uint32_t> order(kMany);
    std::iota(order.begin(), order.end(), 0U);
    model()->set(rowsNamed(std::vector<std::string>(kMany, "a")), order);
    EXPECT_EQ(model()->get_n_items(), host::RecordModel::kStep);
    EXPECT_EQ(nameAt(host::RecordModel::kStep), "") << "not yet";
    EXPECT_TRUE(model()->find(host::RecordKind::kRoute, kMany - 1));
    guint last = model()->get_n_items();
    while (model()->grow()) {
        EXPECT_EQ(model()->get_n_items(), last + host::RecordModel::kStep);
        last = model()->get_n_items();
    }
    EXPECT_EQ(last, 220) << "more than the list has widgets for";
    EXPECT_EQ(model()->get_n_items(), kMany);
    EXPECT_FALSE(model()->grow());
}

TEST_F(RecordModelTest, ShowsAFewRowsAtOnce)
{
    constexpr std::size_t kFew = host::RecordModel::kStep;
    std::vector<std::uint32_t> order(kFew);
    model()->set(rowsNamed(std::vector<std::string>(kFew, "a")), order);
    EXPECT_EQ(model()->get_n_items(), kFew);
    EXPECT_FALSE(model()->grow());
}

TEST_F(RecordModelTest, ItemOutlivesItsRowInTheModel)
{
    model()->set(rowsNamed({"a"}), {0});
    const auto item = std::dynamic_pointer_cast<host::RecordItem>(model()->get_object(0));
    model()->set({}, {});
    EXPECT_EQ(item->row().name, "a");
}

} // namespace
