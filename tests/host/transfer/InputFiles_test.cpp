// SPDX-License-Identifier: MIT
// The usual mistakes in the files of `import` and `send`.

#include "host/transfer/InputFiles.h"

#include "host/base/Sentences.h"
#include "support/AsNobody.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>

namespace {

using host::sentencesOf;

class InputFiles : public testing::Test {
protected:
    std::string importing(const std::vector<std::string>& files) const
    {
        const auto error = host::checkImport(files, {"log", "upt"});
        return error ? sentencesOf(*error) : "";
    }

    std::string sending(const std::vector<std::string>& files) const
    {
        const auto error = host::checkSend(files, {"log", "upt"});
        return error ? sentencesOf(*error) : "";
    }

    const support::TemporaryFolder folder_;
    const std::string track_ = folder_.put("day.log", "$");
    const std::string gpx_ = folder_.put("day.gpx", "<gpx/>");
};

TEST_F(InputFiles, ReceiversFilesCanBeImportedAndGpxFilesSent)
{
    EXPECT_EQ(importing({track_, folder_.put("a.UPT", "$"), gpx_}), "");
    EXPECT_EQ(sending({gpx_, folder_.put("a.xml", "<gpx/>")}), "");
}

TEST_F(InputFiles, MissingFileGetsASimilarNameOfItsKind)
{
    folder_.put("days.txt", "");
    EXPECT_EQ(importing({track_, folder_.path("dya.log")}),
              "There is no such file, so nothing was imported. Did you mean \"" + track_ +
                  "\"? Path: " + folder_.path("dya.log"));
    EXPECT_EQ(importing({folder_.path("other.log")}),
              "There is no such file. Check the name and the folder. Path: " +
                  folder_.path("other.log"));
    EXPECT_EQ(sending({"/nowhere/day.gpx"}),
              "There is no such file. Check the name and the folder. Path: /nowhere/day.gpx");
}

TEST_F(InputFiles, LinkToItselfIsExplained)
{
    const auto link = folder_.path("a.gpx");
    std::filesystem::create_symlink("b.gpx", link);
    std::filesystem::create_symlink("a.gpx", folder_.path("b.gpx"));
    for (const auto& text : {importing({link}), sending({link})})
        EXPECT_EQ(text,
                  "The file cannot be opened: Too many levels of symbolic links. It is a link "
                  "that leads back to itself: name the file that it was for. Path: " +
                      link);
}

TEST_F(InputFiles, ExtensionInCapitalsIsAMistakeOfASingleReceiversFile)
{
    const auto file = folder_.put("DAY.LOG", "$");
    EXPECT_EQ(importing({file}),
              "The extension of this file is in capitals, and drivers read only those in small "
              "letters. Rename it to DAY.log. Path: " +
                  file);
    EXPECT_EQ(importing({file, track_}), "") << "the driver reports it";
    EXPECT_EQ(importing({folder_.put("DAY.GPX", "<gpx/>")}), "");
}

TEST_F(InputFiles, PatternThatMatchesNothingIsCalledAPattern)
{
    for (const auto* const pattern : {"*.log", "day?.log", "[a-c].log"})
        EXPECT_EQ(importing({pattern}),
                  std::string{"No file matches this pattern. Check the pattern and the folder. "
                              "Path: "} +
                      pattern);
    EXPECT_EQ(importing({folder_.put("what?.log", "$")}), "");
}

TEST_F(InputFiles, FolderIsNotAFile)
{
    EXPECT_EQ(importing({folder_.path()}),
              "This is a folder. Name the files in it. Path: " + folder_.path());
    EXPECT_EQ(sending({folder_.path()}), "This is a folder. Name the GPX files in it; a device is "
                                         "named with --device. Path: " +
                                             folder_.path());
}

TEST_F(InputFiles, PipeIsNotAFile)
{
    const auto pipe = folder_.path("pipe.log");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto text = "This is a pipe or a device, not a file. Save what comes from it as a file, "
                      "and name that. Path: " +
                      pipe;
    EXPECT_EQ(importing({pipe}), text);
    EXPECT_EQ(sending({pipe}), text);
    EXPECT_EQ(sentencesOf(*host::checkInput(pipe)), text);
}

TEST_F(InputFiles, FolderIsReplacedByItsFilesInOrder)
{
    const support::TemporaryFolder card;
    card.put("b/deep/2.log", "$");
    card.put("a/1.UPT", "$");
    card.put("0.log", "$");
    card.put("empty.log", "");
    card.put("notes.txt", "x");
    card.makeFolder("folder.log");
    std::filesystem::create_directory_symlink(folder_.path(), card.path("link"));
    std::vector<std::string> files{gpx_, card.path(), track_};
    EXPECT_FALSE(host::expandFolders(files, {"log", "upt"}));
    EXPECT_EQ(files, (std::vector<std::string>{gpx_, card.path("0.log"), card.path("a/1.UPT"),
                                               card.path("b/deep/2.log"), track_}));
}

TEST_F(InputFiles, FolderThatIsNamedLikeAFileIsAMistake)
{
    std::vector<std::string> files{folder_.makeFolder("a.log")};
    EXPECT_FALSE(host::expandFolders(files, {"log", "upt"}));
    EXPECT_EQ(importing(files),
              "This is a folder. Name the files in it. Path: " + folder_.path("a.log"));
}

TEST_F(InputFiles, FolderWithoutAReceiversFileIsAMistake)
{
    const support::TemporaryFolder card;
    card.put("notes.txt", "x");
    std::vector<std::string> files{track_, card.path()};
    EXPECT_EQ(sentencesOf(*host::expandFolders(files, {"log", "upt"})),
              "No receiver's file is in this folder or below it. The extensions of such files are: "
              "log, upt. Path: " +
                  card.path());
    EXPECT_EQ(files.size(), 2U);
}

TEST_F(InputFiles, FolderThatCannotBeListedIsAnError)
{
    const support::TemporaryFolder card;
    card.put("0.log", "$");
    std::filesystem::permissions(card.makeFolder("locked"), std::filesystem::perms::none);
    std::vector<std::string> files{card.path()};
    const support::AsNobody nobody;
    EXPECT_EQ(sentencesOf(*host::expandFolders(files, {"log"})),
              "A folder cannot be listed to its end: Permission denied. Check its permissions and "
              "the medium. Path: " +
                  card.path());
}

TEST_F(InputFiles, FileOfAnotherKindIsNotImported)
{
    const auto notes = folder_.put("notes.txt", "x");
    EXPECT_EQ(importing({track_, notes}), "This file cannot be imported. The extensions of files "
                                          "that can are: log, upt, gpx, kml, kmz. "
                                          "Path: " +
                                              notes);
}

TEST_F(InputFiles, EmptyFileIsAMistakeUnlessItIsOneOfSeveral)
{
    const auto empty = folder_.put("empty.log", "");
    EXPECT_EQ(importing({empty}), "The file is empty. Copy it again. Path: " + empty);
    EXPECT_EQ(importing({empty, track_}), "");
    const auto emptyGpx = folder_.put("empty.gpx", "");
    EXPECT_EQ(sending({gpx_, emptyGpx}),
              "The file is empty. Export it once more. Path: " + emptyGpx);
}

TEST_F(InputFiles, ReceiversFileHasToBeConvertedBeforeItIsSent)
{
    const auto kmz = folder_.put("day.KMZ", "x");
    EXPECT_EQ(
        sending({gpx_, kmz}),
        "This is a KML file, and send reads GPX files. Convert it with \"magellangps import " +
            kmz + " -o " + folder_.path("day.gpx") + "\", and send the result. Path: " + kmz);
    EXPECT_EQ(sending({track_}), "This is a receiver's own file, and send reads GPX files. Convert "
                                 "it with \"magellangps import " +
                                     track_ + " -o " + gpx_ +
                                     "\", and send the result. Path: " + track_);
}

TEST_F(InputFiles, DataFileMayHaveAnyName)
{
    EXPECT_FALSE(host::checkInput(track_));
    EXPECT_EQ(sentencesOf(*host::checkInput(folder_.path())),
              "This is a folder. Name a file in it. Path: " + folder_.path());
}

} // namespace
