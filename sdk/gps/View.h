// SPDX-License-Identifier: MIT
// The view model: what a driver shows of itself, without a toolkit. A host draws it as it likes,
// and hands back what the user does. [host thread] only.

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gps {

/// An element of a view, with the elements inside it. Found by its identifier, the name of the
/// outlet that it fills.
class View {
public:
    explicit View(std::string identifier, std::string title = {});
    virtual ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    [[nodiscard]] const std::string& identifier() const noexcept { return identifier_; }
    [[nodiscard]] const std::string& title() const noexcept { return title_; }

    [[nodiscard]] bool isHidden() const noexcept { return hidden_; }
    void setHidden(bool hidden) noexcept { hidden_ = hidden; }

    [[nodiscard]] const std::vector<std::shared_ptr<View>>& subviews() const noexcept
    {
        return subviews_;
    }
    void addSubview(std::shared_ptr<View> view);

    /// This element or the first one inside it, depth first, that bears the identifier and is a T;
    /// null without one.
    template <typename T> [[nodiscard]] T* find(std::string_view identifier)
    {
        if (auto* self = identifier == identifier_ ? dynamic_cast<T*>(this) : nullptr)
            return self;
        for (const auto& view : subviews_) {
            if (auto* found = view->find<T>(identifier))
                return found;
        }
        return nullptr;
    }

private:
    std::string identifier_;
    std::string title_;
    bool hidden_ = false;
    std::vector<std::shared_ptr<View>> subviews_;
};

/// A list of items with one of them selected, or none.
class PopUpButton : public View {
public:
    using View::View;

    [[nodiscard]] const std::vector<std::string>& items() const noexcept { return items_; }
    [[nodiscard]] std::optional<std::size_t> selected() const noexcept { return selected_; }

    /// Driver's side: replaces the items and leaves none selected.
    void setItems(std::vector<std::string> items);

    /// Driver's side: shows an item as selected, without the action. One that is not there selects
    /// none.
    void select(std::optional<std::size_t> item) noexcept;

    /// Driver's side: what to do when the user picks an item.
    void setAction(std::function<void(std::size_t)> action) { action_ = std::move(action); }

    /// Host's side: the user picked an item. Selects it and runs the action; an item that is not
    /// there does nothing.
    void pick(std::size_t item);

private:
    std::vector<std::string> items_;
    std::optional<std::size_t> selected_;
    std::function<void(std::size_t)> action_;
};

/// A button.
class Button : public View {
public:
    using View::View;

    /// Driver's side: what to do when the user presses.
    void setAction(std::function<void()> action) { action_ = std::move(action); }

    /// Host's side: the user pressed.
    void press();

private:
    std::function<void()> action_;
};

/// What a loaded view resource connects to its owner.
struct ViewOutlets {
    std::shared_ptr<View> gpsView;
    std::shared_ptr<PopUpButton> deviceListMenu;
    std::shared_ptr<Button> deviceButton;
};

} // namespace gps
