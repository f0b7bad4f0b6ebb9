// SPDX-License-Identifier: MIT
// Actions may change the very control that runs them.

#include <gps/View.h>

#include <utility>

namespace gps {

View::View(std::string identifier, std::string title)
    : identifier_(std::move(identifier)), title_(std::move(title))
{}
View::~View() = default;

void View::addSubview(std::shared_ptr<View> view)
{
    subviews_.push_back(std::move(view));
}

void PopUpButton::setItems(std::vector<std::string> items)
{
    items_ = std::move(items);
    selected_.reset();
}

void PopUpButton::select(std::optional<std::size_t> item) noexcept
{
    selected_ = item && *item < items_.size() ? item : std::nullopt;
}

void PopUpButton::pick(std::size_t item)
{
    if (item >= items_.size())
        return;
    selected_ = item;
    // A copy: the action may replace itself.
    if (const auto action = action_)
        action(item);
}

void Button::press()
{
    if (const auto action = action_) // a copy, as above
        action();
}

} // namespace gps
