// SPDX-License-Identifier: MIT
// All details live in the user information, so that a host may read and extend them by key.

#include <gps/Error.h>

#include <utility>

namespace gps {
namespace {

std::optional<std::string> textUnder(const Dictionary& userInfo, std::string_view key)
{
    const auto* text = userInfo.findString(key);
    return text != nullptr ? std::optional{*text} : std::nullopt;
}

std::string rangeText(std::string_view sentence, std::size_t field, std::size_t count)
{
    return "A " + std::string{sentence} + " sentence has no field " + std::to_string(field) +
           ": it has " + std::to_string(count) + (count == 1 ? " field" : " fields");
}

} // namespace

Error::Error(std::string domain, std::int32_t code, Dictionary userInfo)
    : domain_(std::move(domain)), code_(code), userInfo_(std::move(userInfo))
{}

std::optional<std::string> Error::description() const
{
    return textUnder(userInfo_, kErrorDescriptionKey);
}

std::optional<std::string> Error::suggestion() const
{
    return textUnder(userInfo_, kErrorSuggestionKey);
}

std::optional<std::string> Error::path() const
{
    return textUnder(userInfo_, kErrorPathKey);
}

Error Error::causedBy(const Error& underlying) const
{
    Error error = *this;
    error.userInfo_.set(kErrorUnderlyingKey, Dictionary{{"domain", underlying.domain_},
                                                        {"code", underlying.code_},
                                                        {"userInfo", underlying.userInfo_}});
    return error;
}

std::string Error::text() const
{
    return "Error Domain=" + domain_ + " Code=" + std::to_string(code_) +
           " UserInfo=" + describe(userInfo_);
}

RangeError::RangeError(std::string_view sentence, std::size_t field, std::size_t count)
    : std::out_of_range(rangeText(sentence, field, count))
{}

} // namespace gps
