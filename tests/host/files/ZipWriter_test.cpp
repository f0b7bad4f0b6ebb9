// SPDX-License-Identifier: MIT
// Archives as they are written, read by our own reader and by an independent one.

#include "host/files/ZipWriter.h"

#include "host/files/ZipArchive.h"
#include "host/formats/Written.h"
#include "system/Program.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

std::string zipOf(const std::vector<std::string>& pieces,
                  host::Output::Kind kind = host::Output::Kind::kStream)
{
    support::Written written{kind};
    host::ZipWriter archive{written.output(), "doc.kml"};
    for (const auto& piece : pieces)
        archive.write(piece);
    archive.finish();
    EXPECT_FALSE(written.output().flush());
    return written.text();
}

std::string fileIn(const std::string& archive)
{
    std::string text;
    EXPECT_EQ(host::extractFromZip(archive, ".kml", 1 << 30, text), "");
    return text;
}

TEST(ZipWriter, TextIsReadBackWhateverItsLength)
{
    std::string large;
    for (int i = 0; i < 200000; ++i)
        large += std::to_string(i);
    for (const auto& text : {std::string{}, std::string{"x"}, large})
        EXPECT_EQ(fileIn(zipOf({text})), text) << text.size();
    EXPECT_LT(zipOf({large}).size(), large.size() / 2);
}

TEST(ZipWriter, PiecesAreOneText)
{
    EXPECT_EQ(fileIn(zipOf({"one,", "", std::string(100000, 'x'), ",two"})),
              "one," + std::string(100000, 'x') + ",two");
}

TEST(ZipWriter, StreamGetsTheSameArchiveAsAFile)
{
    EXPECT_EQ(zipOf({"text"}), zipOf({"text"}, host::Output::Kind::kFile));
}

TEST(ZipWriter, ArchiveBehindOtherTextIsFoundFromItsEnd)
{
    support::Written written;
    written.output().write("before");
    host::ZipWriter archive{written.output(), "doc.kml"};
    archive.write("text");
    archive.finish();
    EXPECT_EQ(fileIn(written.text().substr(6)), "text");
}

TEST(ZipWriter, IndependentReaderFindsTheFileWhole)
{
    const support::TemporaryFolder folder;
    const auto path = folder.put("a.zip", zipOf({"some text\n"}));
    const auto ran = support::run(
        {"python3", "-c",
         "import sys, zipfile; z = zipfile.ZipFile(sys.argv[1]); "
         "print(z.testzip(), z.namelist(), z.infolist()[0].date_time, z.read('doc.kml'))",
         path});
    EXPECT_EQ(ran.out, "None ['doc.kml'] (1980, 1, 1, 0, 0, 0) b'some text\\n'\n") << ran.err;
}

} // namespace
