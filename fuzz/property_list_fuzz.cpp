// SPDX-License-Identifier: MIT
// Reads any bytes as a property list. A failure leaves the value unchanged and has a description; a
// value that was read can be written and reads back unchanged.

#include "FuzzTarget.h"

#include <gps/Value.h>
#include <platform/System/PropertyList.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

std::string element(std::string_view tag, std::string_view text)
{
    std::string out;
    out.append("<").append(tag).append(">");
    for (const char c : text) {
        switch (c) {
        case '<':
            out += "&lt;";
            break;
        case '&':
            out += "&amp;";
            break;
        case '\r':
            out += "&#13;";
            break;
        default:
            out += c;
        }
    }
    return out.append("</").append(tag).append(">");
}

std::string written(const gps::Value& value)
{
    if (const auto* text = value.as<std::string>())
        return element("string", *text);
    if (const auto* number = value.as<gps::Number>()) {
        if (number->type() == gps::NumberType::kBool)
            return number->boolValue() ? "<true/>" : "<false/>";
        return element(number->isFloating() ? "real" : "integer", number->text());
    }
    std::string out;
    if (const auto* array = value.as<gps::Array>()) {
        for (const auto& item : *array)
            out += written(item);
        return "<array>" + out + "</array>";
    }
    const auto* dictionary = value.as<gps::Dictionary>();
    fuzz::require(dictionary != nullptr, "a list holds texts, numbers, arrays and dictionaries");
    for (const auto& [key, item] : *dictionary)
        out += element("key", key) + written(item);
    return "<dict>" + out + "</dict>";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    gps::Value value{"untouched"};
    if (const auto error = gps::parsePropertyList(fuzz::textOf(data, size), value)) {
        fuzz::require(value == gps::Value{"untouched"}, "a failure leaves the value unchanged");
        fuzz::require(error->code() == 3840 && error->description().has_value(),
                      "a failure has a description");
        return 0;
    }
    gps::Value again;
    const auto error =
        gps::parsePropertyList("<plist version=\"1.0\">" + written(value) + "</plist>", again);
    fuzz::require(!error && again == value, "a written list reads back");
    return 0;
}
