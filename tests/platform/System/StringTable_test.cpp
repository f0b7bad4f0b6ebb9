// SPDX-License-Identifier: MIT

#include <platform/System/StringTable.h>

#include <gtest/gtest.h>

#include <string>

namespace gps {
namespace {

TEST(StringTable, ReadsKeysAndValuesInOrder)
{
    EXPECT_EQ(describe(parseStringTable("\"b\" = \"B\";\n\"a\"=\"A\";")), R"({b = "B", a = "A"})");
}

TEST(StringTable, AcceptsCommentsWhiteSpaceAndEscapes)
{
    const std::pair<const char*, Dictionary> rows[] = {
        {"", {}},
        {" \r\n\t", {}},
        {"/* one */ \"a\" /* two */ = // three\n \"A\" /**/ ; // end", {{"a", "A"}}},
        {"// only a comment", {}},
        {"\xEF\xBB\xBF\"a\" = \"A\";", {{"a", "A"}}},
        {R"("a\"b" = "one\ntwo\t\\ \' \?";)", {{"a\"b", "one\ntwo\t\\ ' ?"}}},
        {"\"a\" = \"\";", {{"a", ""}}},
        {"\"a\" = \"line\nline\";", {{"a", "line\nline"}}},
        {"\"a\" = \"/* no comment */\";", {{"a", "/* no comment */"}}},
        {"\"a\" = \"caf\xC3\xA9\";", {{"a", "caf\xC3\xA9"}}},
        {"\"a\" = \"1\"; \"a\" = \"2\";", {{"a", "2"}}},
    };
    for (const auto& [text, table] : rows)
        EXPECT_EQ(parseStringTable(text), table) << text << "\n"
                                                 << describe(parseStringTable(text));
}

TEST(StringTable, KeepsTheEntriesBeforeAMistake)
{
    const char* const mistakes[] = {
        "\"b\"",          "\"b\" = ",         "\"b\" = \"B\"",    "\"b\" \"B\";",
        "\"b\" = B;",     "b = \"B\";",       "\"b = \"B\";",     "\"b\" = \"B;",
        "\"b\" = \"B\\",  "\"b\" = \"\\q\";", "/* no end",        "/",
        "\"b\" = \"B\",", "\"b\" = \"B\" \"", "; \"b\" = \"B\";", "}"};
    for (const auto* mistake : mistakes)
        EXPECT_EQ(parseStringTable("\"a\" = \"A\";\n" + std::string{mistake} + "\n\"c\" = \"C\"; "),
                  (Dictionary{{"a", "A"}}))
            << mistake;
}

} // namespace
} // namespace gps
