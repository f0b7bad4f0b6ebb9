// SPDX-License-Identifier: MIT

#include "host/files/SectionedOutput.h"

#include "host/formats/Written.h"
#include "support/Variable.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace {

using OutputKind = host::Output::Kind;

struct SectionText {
    std::size_t section;
    std::string text;
};

std::string sectionsIn(OutputKind kind, const std::vector<SectionText>& texts)
{
    support::Written written{kind};
    written.output().write("head,");
    host::SectionedOutput sections{written.output(), 3, written.folder()};
    for (const auto& [section, text] : texts)
        sections.write(section, text);
    sections.finish();
    written.output().write("foot");
    return written.text();
}

// What the texts give if they are sorted by their sections.
std::string sectionsInOrder(const std::vector<SectionText>& texts)
{
    std::string all = "head,";
    for (const std::size_t section : {0U, 1U, 2U}) {
        for (const auto& text : texts)
            all += text.section == section ? text.text : "";
    }
    return all + "foot";
}

TEST(SectionedOutput, WithoutTextsIsEmpty)
{
    EXPECT_EQ(sectionsIn(OutputKind::kFile, {}), "head,foot");
    EXPECT_EQ(sectionsIn(OutputKind::kStream, {}), "head,foot");
}

// All orders of four texts in three sections, some longer than a buffer.
TEST(SectionedOutput, HasItsSectionsInOrderWhateverComesFirst)
{
    for (std::size_t order = 0; order < 3 * 3 * 3 * 3; ++order) {
        std::vector<SectionText> texts;
        auto rest = order;
        for (const std::size_t size : {3U, 70000U, 65536U, 9U}) {
            const auto letter = static_cast<char>('a' + texts.size());
            texts.push_back({rest % 3, std::string(size, letter) + ','});
            rest /= 3;
        }
        EXPECT_EQ(sectionsIn(OutputKind::kFile, texts), sectionsInOrder(texts)) << order;
        EXPECT_EQ(sectionsIn(OutputKind::kStream, texts), sectionsInOrder(texts)) << order;
    }
}

TEST(SectionedOutput, TextInOrderIsInAFileAtOnce)
{
    support::Written written{OutputKind::kFile};
    host::SectionedOutput sections{written.output(), 3, written.folder()};
    sections.write(0, "first,");
    sections.write(2, "last");
    EXPECT_EQ(written.text(), "first,last");
    sections.write(1, "between,");
    EXPECT_EQ(written.text(), "first,last");
    sections.finish();
    EXPECT_EQ(written.text(), "first,between,last");
}

TEST(SectionedOutput, OnlyItsFirstSectionIsInAStreamAtOnce)
{
    support::Written written{OutputKind::kStream};
    host::SectionedOutput sections{written.output(), 2, written.folder()};
    sections.write(1, "last");
    sections.write(0, "first,");
    EXPECT_EQ(written.text(), "first,");
    sections.finish();
    EXPECT_EQ(written.text(), "first,last");
}

TEST(SectionedOutput, ThatCannotKeepTextFails)
{
    support::Written written{OutputKind::kFile}; // in the folder for temporary files
    const support::Variable none{"TMPDIR", "/nowhere else"};
    host::SectionedOutput sections{written.output(), 2, "/nowhere"};
    sections.write(1, "last");
    sections.write(0, "first,");
    sections.finish();
    const auto failure = written.output().flush();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->path(), "/nowhere");
}

} // namespace
