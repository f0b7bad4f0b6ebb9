// SPDX-License-Identifier: MIT

#include "host/base/TranslatedFormat.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

using host::tr;
using host::trCounted;
using host::trFormat;

const char* germanOf(const char* text)
{
    const std::string_view english{text};
    if (english == "{} of {}")
        return "von {1} sind es {0}";
    if (english == "{} up")
        return "{} hinauf {}"; // one value too many
    return english.empty() ? "the catalogue's own description" : text;
}

const char* germanOf(const char* one, const char* many, unsigned long count)
{
    if (std::string_view{one} != "{} track")
        return count == 1 ? one : many;
    return count < 2 ? "{} Spur" : "{} Spuren"; // 0 is not what it is in English
}

class TranslatedFormat : public testing::Test {
protected:
    TranslatedFormat() { host::setTranslations({.text = germanOf, .counted = germanOf}); }
    ~TranslatedFormat() override { host::setTranslations({}); }
};

TEST(WithoutTranslations, TextsAreEnglish)
{
    EXPECT_STREQ(tr("reading"), "reading");
    EXPECT_EQ(trFormat("{} of {}", 1, 2), "1 of 2");
    EXPECT_EQ(trCounted(1, "{} track", "{} tracks", 1), "1 track");
    EXPECT_EQ(trCounted(0, "{} track", "{} tracks", 0), "0 tracks");
}

TEST_F(TranslatedFormat, PutsTheValuesWhereTheTranslationHasThem)
{
    EXPECT_EQ(trFormat("{} of {}", 1, 2), "von 2 sind es 1");
}

TEST_F(TranslatedFormat, HasThePluralOfTheLanguage)
{
    EXPECT_EQ(trCounted(0, "{} track", "{} tracks", 0), "0 Spur");
    EXPECT_EQ(trCounted(2, "{} track", "{} tracks", 2), "2 Spuren");
}

TEST_F(TranslatedFormat, WithoutATranslationIsEnglish)
{
    EXPECT_EQ(trFormat("{} down", 1), "1 down");
    EXPECT_EQ(trCounted(2, "{} route", "{} routes", 2), "2 routes");
}

TEST_F(TranslatedFormat, ThatDoesNotFitTheValuesIsNotUsed)
{
    EXPECT_EQ(trFormat("{} up", 1), "1 up");
}

TEST_F(TranslatedFormat, EmptyTextStaysEmpty)
{
    EXPECT_STREQ(tr(""), "");
}

} // namespace
