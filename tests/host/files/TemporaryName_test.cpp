// SPDX-License-Identifier: MIT

#include "host/files/TemporaryName.h"

#include <gtest/gtest.h>

namespace {

TEST(TemporaryName, UnfinishedFilesAreRecognised)
{
    for (const char* name : {".~write.tmp", ".magellangps-1-0", ".magellangps-4194304-12"})
        EXPECT_TRUE(host::isTemporaryName(name)) << name;
}

TEST(TemporaryName, OtherNamesAreData)
{
    for (const char* name :
         {"", "write.tmp", "~write.tmp", ".~write.tm", ".~write.tmp2", ".~write.TMP",
          ".magellangps", ".magellangps-", ".magellangps-12", ".magellangps-1-0.upt",
          ".magellangps-a-0", "x.magellangps-1-0", "Default POI File.upt"})
        EXPECT_FALSE(host::isTemporaryName(name)) << name;
}

} // namespace
