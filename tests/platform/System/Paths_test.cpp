// SPDX-License-Identifier: MIT

#include <platform/System/Paths.h>

#include <gtest/gtest.h>

#include <string_view>
#include <utility>
#include <vector>

namespace gps {
namespace {

using namespace std::string_view_literals;

TEST(Paths, AreJoinedWithOneSlash)
{
    struct Row {
        const char* folder;
        const char* name;
        const char* path;
    };
    for (const auto& [folder, name, path] : std::vector<Row>{{"/a", "b", "/a/b"},
                                                             {"/a/", "b", "/a/b"},
                                                             {"/a//", "//b", "/a/b"},
                                                             {"/a", "/b/c", "/a/b/c"},
                                                             {"/", "b", "/b"},
                                                             {"//", "/b", "/b"},
                                                             {"", "b", "b"},
                                                             {"/a", "", "/a"},
                                                             {"a", "b/", "a/b/"}})
        EXPECT_EQ(joinPath(folder, name), path);
}

TEST(Paths, AnExtensionIsTheTextAfterTheLastPointOfTheLastComponent)
{
    const std::pair<const char*, const char*> rows[] = {
        {"a.log", "log"},   {"/a/b.c/TKLG001.log", "log"},
        {"a.tar.gz", "gz"}, {"A.LOG", "LOG"},
        {"a.log//", "log"}, {".log", "log"},
        {"a", ""},          {"a.", ""},
        {"/a.b/c", ""},     {"", ""},
        {"/", ""},          {"//", ""}};
    for (const auto& [path, extension] : rows)
        EXPECT_EQ(pathExtension(path), extension) << path;
}

TEST(Paths, TheLastComponentIgnoresTrailingSlashes)
{
    const std::pair<const char*, const char*> rows[] = {
        {"/a/b", "b"}, {"a/b//", "b"}, {"a", "a"}, {"/a", "a"}, {"/", "/"}, {"//", "//"}, {"", ""}};
    for (const auto& [path, name] : rows)
        EXPECT_EQ(lastComponent(path), name) << path;
}

TEST(Paths, APathWithoutAParentComponentStaysInside)
{
    for (const char* path : {"a", "a/b", "a/b/", "a//b", ".", "./a", "a/.", "/a", "/", "..a", "a..",
                             "...", ".. ", "a/..b", "a../b", "..pois"})
        EXPECT_TRUE(staysInside(path)) << path;
}

TEST(Paths, AParentComponentAnywhereLeadsOut)
{
    for (const char* path :
         {"..", "../", "/..", "../a", "a/..", "a/../b", "/a/../../b", "a//..", "./..", "..//a"})
        EXPECT_FALSE(staysInside(path)) << path;
}

TEST(Paths, AnEmptyPathOrOneWithANulByteDoesNotStayInside)
{
    for (const auto path : {""sv, "\0"sv, "a\0"sv, "..\0a"sv, "a/..\0/b"sv})
        EXPECT_FALSE(staysInside(path));
}

} // namespace
} // namespace gps
