// SPDX-License-Identifier: MIT

#include "host/formats/Table.h"

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

} // namespace
