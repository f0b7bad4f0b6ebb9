// SPDX-License-Identifier: MIT

#include "host/base/Table.h"

#include <gtest/gtest.h>

namespace {

TEST(Table, ColumnsAreAsWideAsTheirWidestTextInCharacters)
{
    host::Table table{{{"Name"}, {"N", host::Table::Align::kRight}, {""}}};
    table.add({"Zürich", "7", "x"});
    table.add({"A", "120", ""});
    EXPECT_EQ(table.text(), "Name      N\n"
                            "Zürich    7  x\n"
                            "A       120\n");
}

TEST(Table, TextIsCutToItsColumn)
{
    const std::string forty(40, 'x');
    host::Table table{{{"A"}, {"B", host::Table::Align::kLeft, std::string::npos}}};
    table.add({forty, forty + "yz"});
    table.add({forty + "y", ""});
    EXPECT_EQ(table.text(), "A" + std::string(41, ' ') + "B\n" + forty + "  " + forty + "yz\n" +
                                forty.substr(1) + "…\n");
}

} // namespace
