// SPDX-License-Identifier: MIT

#include "host/formats/XmlElements.h"

#include "Written.h"
#include "host/base/EscapedXml.h"

#include <gps/Value.h>

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

TEST(XmlElements, AreInTheirOwnOrderAndOnlyForTexts)
{
    constexpr std::array kElements{
        host::TextElement{"b", "<B>", "</B>"}, host::TextElement{"missing", "<M>", "</M>"},
        host::TextElement{"empty", "<E>", "</E>"}, host::TextElement{"number", "<N>", "</N>"},
        host::TextElement{"a", "<A>", "</A>"}};
    support::Written written;
    host::writeElements(written.output(),
                        {{"a", "1 < 2"}, {"b", "plain"}, {"empty", ""}, {"number", 7}}, kElements);
    EXPECT_EQ(written.text(), "<B>plain</B><A>1 &lt; 2</A>");
}

TEST(XmlElements, EachByteIsWrittenAsItIsAppended)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text = std::string{"ab"} + static_cast<char>(byte) + "c";
        support::Written written;
        host::writeXml(written.output(), text);
        EXPECT_EQ(written.text(), support::xml(text)) << byte;
    }
}

} // namespace
