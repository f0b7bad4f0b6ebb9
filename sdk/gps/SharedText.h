// SPDX-License-Identifier: MIT
// SharedText: a text that never changes and whose copies share its bytes. For the contents of
// files, which may be large. Each thread may hold its own copy [any].

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace gps {

class SharedText {
public:
    SharedText() noexcept = default; ///< an empty text
    SharedText(std::string text) : text_(std::make_shared<const std::string>(std::move(text))) {}
    SharedText(const char* text) : SharedText(std::string{text}) {}

    /// The text, as long as this object or a copy of it exists. [any]
    operator std::string_view() const noexcept
    {
        return text_ != nullptr ? std::string_view{*text_} : std::string_view{};
    }

    friend bool operator==(const SharedText& a, std::string_view b) noexcept
    {
        return std::string_view{a} == b;
    }

private:
    std::shared_ptr<const std::string> text_;
};

} // namespace gps
