// SPDX-License-Identifier: MIT

#include "host/transfer/LineEnds.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using host::hasOtherLineEnds;

TEST(LineEnds, LinesThatEndLikeAReceiversAreFine)
{
    for (const std::string_view text :
         {"", "$A*00", "$A*00\r\n", "$A*00\r\n$B*00\r\n", "$A*00\r\n\r\n\r\n$B*00", "\r\n$A*00"})
        EXPECT_FALSE(hasOtherLineEnds(text)) << text;
}

TEST(LineEnds, SentenceBehindAnotherLineEndIsFound)
{
    for (const std::string_view text :
         {"$A*00\n$B*00\n", "$A*00\r$B*00\r", "$A*00\n\r$B*00", "$A*00\r\r\n$B*00",
          "$A*00\r\n$B*00\n$C*00\r\n", "$A*00\n\n$B*00", "\n$A*00"})
        EXPECT_TRUE(hasOtherLineEnds(text)) << text;
}

TEST(LineEnds, LineEndWithoutASentenceBehindItIsFine)
{
    for (const std::string_view text : {"$A*00\n", "$A*00\r", "$A,b\nc*00\r\n$B*00", "\n"})
        EXPECT_FALSE(hasOtherLineEnds(text)) << text;
}

TEST(LineEnds, FileIsExplainedWithWhatHelps)
{
    const support::TemporaryFolder folder;
    const auto error = host::explainLineEnds(folder.put("lf.log", "$A*00\n$B*00\n"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->path(), folder.path("lf.log"));
    EXPECT_THAT(error->description().value_or(""), testing::HasSubstr("do not end with CR LF"));
    EXPECT_THAT(error->suggestion().value_or(""), testing::HasSubstr("unix2dos"));
    EXPECT_FALSE(host::explainLineEnds(folder.put("a.log", "$A*00\r\n$B*00\r\n")));
    EXPECT_FALSE(host::explainLineEnds(folder.path("missing.log")));
}

} // namespace
