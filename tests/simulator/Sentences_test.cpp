// SPDX-License-Identifier: MIT
// Which sentences of files and folders a receiver holds, and in which order.

#include "support/Sentence.h"
#include "support/TemporaryFolder.h"

#include <platform/System/FileManager.h>
#include <tools/simulator/Sentences.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using simulator::loadSentences;
using simulator::Sentences;
using support::sentence;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Sentences, AreSortedByKind)
{
    const support::TemporaryFolder folder;
    const auto file =
        folder.put("all", support::fileOf({sentence("PMGNTRK,t1"), sentence("PMGNWPL,w1"),
                                           sentence("PMGNRTE,r1"), sentence("PMGNTRK,t2"),
                                           sentence("PMGNCMD,END"), sentence("PMGNGEO,g")}));
    Sentences sentences;
    EXPECT_FALSE(loadSentences(file, sentences));
    EXPECT_THAT(sentences.tracks, ElementsAre("PMGNTRK,t1", "PMGNTRK,t2"));
    EXPECT_THAT(sentences.waypoints, ElementsAre("PMGNWPL,w1"));
    EXPECT_THAT(sentences.routes, ElementsAre("PMGNRTE,r1"));
}

TEST(Sentences, AreLeftOutWithoutAGoodChecksum)
{
    const support::TemporaryFolder folder;
    const auto file =
        folder.put("bad", "$PMGNTRK,a\r\n" + support::breakChecksum(sentence("PMGNTRK,b")) +
                              "\r\nPMGNTRK,c\n\n\x80\n" + sentence("PMGNTRK,d"));
    Sentences sentences;
    EXPECT_FALSE(loadSentences(file, sentences));
    EXPECT_THAT(sentences.tracks, ElementsAre("PMGNTRK,d"));
}

TEST(Sentences, OfAFolderAreInTheOrderOfItsFileNames)
{
    const support::TemporaryFolder folder;
    folder.put("b/2", support::fileOf({sentence("PMGNTRK,third")}));
    folder.put("b/1", support::fileOf({sentence("PMGNTRK,second")}));
    folder.put("a", support::fileOf({sentence("PMGNTRK,first")}));
    Sentences sentences;
    EXPECT_FALSE(loadSentences(folder.path(), sentences));
    EXPECT_THAT(sentences.tracks, ElementsAre("PMGNTRK,first", "PMGNTRK,second", "PMGNTRK,third"));
}

TEST(Sentences, IncludeEachWaypointOnceButRepeatedTrackPoints)
{
    const support::TemporaryFolder folder;
    const auto file = folder.put(
        "one",
        support::fileOf({sentence("PMGNWPL,w"), sentence("PMGNTRK,t"), sentence("PMGNTRK,t")}));
    Sentences sentences;
    EXPECT_FALSE(loadSentences(file, sentences));
    EXPECT_FALSE(loadSentences(file, sentences));
    EXPECT_THAT(sentences.waypoints, ElementsAre("PMGNWPL,w"));
    EXPECT_EQ(sentences.tracks.size(), 4U);
}

TEST(Sentences, OfTheSampleReceiverIncludeAllKinds)
{
    Sentences sentences;
    EXPECT_FALSE(loadSentences(MAGELLAN_SOURCE_DIR "/samples/receiver", sentences));
    EXPECT_THAT(sentences.waypoints, testing::Not(IsEmpty()));
    EXPECT_THAT(sentences.tracks, testing::Not(IsEmpty()));
    EXPECT_THAT(sentences.routes, testing::Not(IsEmpty()));
}

TEST(Sentences, AMissingFileIsAnError)
{
    const support::TemporaryFolder folder;
    Sentences sentences;
    const auto failure = loadSentences(folder.path("none"), sentences);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), static_cast<int>(gps::FileErrorCode::kReadNoSuchFile));
}

} // namespace
