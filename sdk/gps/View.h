// SPDX-License-Identifier: MIT
// The view model: the few controls that a driver shows to the user, independent of any toolkit. A
// host draws them and reports what the user does. [host thread]

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

/// A control or a group of controls. Its identifier is the name of the outlet that it is connected
/// to.
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

    /// The first view with that identifier that is a T, among this view and, depth first, those
    /// inside it; null if there is none.
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

/// A list of items of which at most one is selected.
class PopUpButton : public View {
public:
    using View::View;

    [[nodiscard]] const std::vector<std::string>& items() const noexcept { return items_; }
    [[nodiscard]] std::optional<std::size_t> selected() const noexcept { return selected_; }

    /// For the driver: replaces the items and clears the selection.
    void setItems(std::vector<std::string> items);

    /// For the driver: selects an item without running the action. An index out of range, like
    /// nullopt, clears the selection.
    void select(std::optional<std::size_t> item) noexcept;

    /// For the driver: sets what happens when the user picks an item.
    void setAction(std::function<void(std::size_t)> action) { action_ = std::move(action); }

    /// For the host: the user picked an item. Selects it and runs the action; ignores an index out
    /// of range.
    void pick(std::size_t item);

private:
    std::vector<std::string> items_;
    std::optional<std::size_t> selected_;
    std::function<void(std::size_t)> action_;
};

/// A push button.
class Button : public View {
public:
    using View::View;

    /// For the driver: sets what happens when the user presses the button.
    void setAction(std::function<void()> action) { action_ = std::move(action); }

    /// For the host: the user pressed the button.
    void press();

private:
    std::function<void()> action_;
};

/// The parts of a loaded view resource that its owner uses; null if the resource lacks them.
struct ViewOutlets {
    std::shared_ptr<View> gpsView;
    std::shared_ptr<PopUpButton> deviceListMenu;
    std::shared_ptr<Button> deviceButton;
};

} // namespace gps
