// SPDX-License-Identifier: MIT

#include <platform/System/MountTable.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace gps {
namespace {

std::string describe(const std::vector<MountTableEntry>& entries)
{
    std::string text;
    for (const auto& entry : entries)
        text += std::to_string(entry.major) + ":" + std::to_string(entry.minor) + "|" + entry.path +
                "|" + entry.source + "\n";
    return text;
}

TEST(MountTable, ReadsLinesInOrder)
{
    EXPECT_EQ(
        describe(parseMountTable(
            "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
            "27 1 254:1 / / rw,relatime shared:1 - ext4 /dev/vda1 rw,discard\n"
            "95 27 8:17 / /media/GPS rw,nosuid shared:1 master:2 - vfat /dev/sdb1 rw,fmask=0022")),
        "0:21|/proc|proc\n254:1|/|/dev/vda1\n8:17|/media/GPS|/dev/sdb1\n");
}

TEST(MountTable, OctalEscapesAreDecoded)
{
    EXPECT_EQ(describe(parseMountTable(
                  R"(95 27 8:17 / /media/MY\040GPS\011\012\134\043 rw - vfat /dev/a\040b rw)")),
              "8:17|/media/MY GPS\t\n\\#|/dev/a b\n");
    EXPECT_EQ(describe(parseMountTable(R"(95 27 8:17 / /caf\303\251 rw - vfat x rw)")),
              "8:17|/caf\xC3\xA9|x\n");
    EXPECT_EQ(describe(parseMountTable(R"(95 27 8:17 / /\04\08\400\x\ rw - vfat \ rw)")),
              "8:17|/\\04\\08\\400\\x\\|\\\n");
}

TEST(MountTable, AnEmptySourceIsAccepted)
{
    EXPECT_EQ(describe(parseMountTable("95 27 0:50 / /a rw - tmpfs  rw")), "0:50|/a|\n");
}

TEST(MountTable, AMalformedLineIsSkipped)
{
    const char* const lines[] = {"",
                                 " ",
                                 "-",
                                 "garbage",
                                 "95 27 8:17 / /a rw",
                                 "95 27 8:17 / /a rw shared:1",
                                 "95 27 8:17 / /a rw - vfat",
                                 "95 27 8:17 / /a rw - vfat /dev/sdb1",
                                 "95 27 8:17 / /a rw - vfat /dev/sdb1 ",
                                 "95 27 8 / /a rw - vfat /dev/sdb1 rw",
                                 "95 27 8: / /a rw - vfat /dev/sdb1 rw",
                                 "95 27 :17 / /a rw - vfat /dev/sdb1 rw",
                                 "95 27 8:17x / /a rw - vfat /dev/sdb1 rw",
                                 "95 27 8:-1 / /a rw - vfat /dev/sdb1 rw",
                                 "95 27 99999999999:1 / /a rw - vfat /dev/sdb1 rw",
                                 "x 27 8:17 / /a rw - vfat /dev/sdb1 rw",
                                 "95  8:17 / /a rw - vfat /dev/sdb1 rw",
                                 "95 27 8:17 / a rw - vfat /dev/sdb1 rw",
                                 "95 27 8:17 /  rw - vfat /dev/sdb1 rw"};
    for (const auto* line : lines)
        EXPECT_EQ(
            describe(parseMountTable(std::string{line} + "\n95 27 8:17 / /good rw - vfat s rw\n")),
            "8:17|/good|s\n")
            << line;
}

TEST(MountTable, ATruncatedLineIsSkippedUnlessOnlyItsLastCharacterIsMissing)
{
    const std::string line = R"(95 27 8:17 / /a\040b rw shared:1 - vfat /dev/sdb1 rw)";
    for (std::size_t length = 0; length <= line.size(); ++length)
        EXPECT_EQ(parseMountTable(line.substr(0, length)).size(),
                  length + 1 < line.size() ? 0U : 1U)
            << length;
}

} // namespace
} // namespace gps
