// SPDX-License-Identifier: MIT

#include <gps/View.h>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace gps {
namespace {

TEST(View, IsShownUntilItIsHidden)
{
    View view{"gpsView", "Title"};
    EXPECT_EQ(view.identifier(), "gpsView");
    EXPECT_EQ(view.title(), "Title");
    EXPECT_FALSE(view.isHidden());
    view.setHidden(true);
    EXPECT_TRUE(view.isHidden());
}

TEST(View, FindsItselfAndItsSubviewsByIdentifierAndType)
{
    View root{"root"};
    const auto box = std::make_shared<View>("box");
    const auto button = std::make_shared<Button>("target");
    const auto menu = std::make_shared<PopUpButton>("menu");
    box->addSubview(button);
    root.addSubview(box);
    root.addSubview(menu);
    EXPECT_EQ(root.find<View>("root"), &root);
    EXPECT_EQ(root.find<Button>("target"), button.get());
    EXPECT_EQ(root.find<View>("target"), button.get());
    EXPECT_EQ(root.find<PopUpButton>("menu"), menu.get());
    EXPECT_EQ(root.find<PopUpButton>("target"), nullptr);
    EXPECT_EQ(root.find<View>("none"), nullptr);
}

TEST(View, TheFirstOfTheRightTypeIsFoundDepthFirst)
{
    View root{"same"};
    const auto box = std::make_shared<View>("same");
    const auto deep = std::make_shared<Button>("same", "deep");
    const auto late = std::make_shared<Button>("same", "late");
    box->addSubview(deep);
    root.addSubview(box);
    root.addSubview(late);
    EXPECT_EQ(root.find<Button>("same"), deep.get());
}

TEST(PopUpButton, NewItemsClearTheSelection)
{
    PopUpButton menu{"menu"};
    EXPECT_EQ(menu.selected(), std::nullopt);
    menu.setItems({"a", "b"});
    menu.select(1);
    EXPECT_EQ(menu.selected(), 1U);
    menu.setItems({"c", "d"});
    EXPECT_EQ(menu.selected(), std::nullopt);
    EXPECT_EQ(menu.items(), (std::vector<std::string>{"c", "d"}));
}

TEST(PopUpButton, SelectingRunsNoAction)
{
    PopUpButton menu{"menu"};
    menu.setItems({"a", "b"});
    menu.setAction([](std::size_t) { FAIL(); });
    menu.select(0);
    EXPECT_EQ(menu.selected(), 0U);
    menu.select(2);
    EXPECT_EQ(menu.selected(), std::nullopt);
    menu.select(1);
    menu.select(std::nullopt);
    EXPECT_EQ(menu.selected(), std::nullopt);
}

TEST(PopUpButton, PickingSelectsAndRunsTheAction)
{
    PopUpButton menu{"menu"};
    menu.setItems({"a", "b"});
    menu.pick(1); // without an action
    EXPECT_EQ(menu.selected(), 1U);
    std::vector<std::size_t> picked;
    menu.setAction([&](std::size_t item) {
        EXPECT_EQ(menu.selected(), item);
        picked.push_back(item);
    });
    menu.pick(0);
    menu.pick(2);
    EXPECT_EQ(picked, std::vector<std::size_t>{0});
    EXPECT_EQ(menu.selected(), 0U);
}

TEST(PopUpButton, AnActionMayRebuildTheMenuAndEvenReplaceItself)
{
    PopUpButton menu{"menu"};
    menu.setItems({"a", "b"});
    int calls = 0;
    menu.setAction([&menu, &calls, kept = std::make_shared<int>(7)](std::size_t) {
        menu.setItems({"c"});
        menu.setAction({});
        calls += *kept;
    });
    menu.pick(1);
    menu.pick(0);
    EXPECT_EQ(calls, 7);
    EXPECT_EQ(menu.selected(), 0U);
}

TEST(Button, PressingRunsTheActionIfThereIsOne)
{
    Button button{"button"};
    button.press();
    int presses = 0;
    button.setAction([&] {
        ++presses;
        button.setAction({});
    });
    button.press();
    button.press();
    EXPECT_EQ(presses, 1);
}

} // namespace
} // namespace gps
