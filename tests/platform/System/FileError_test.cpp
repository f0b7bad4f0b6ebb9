// SPDX-License-Identifier: MIT

#include <platform/System/FileError.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace gps {
namespace {

TEST(FileError, AReadErrorHasTheCodeOfItsErrno)
{
    const std::pair<int, std::int32_t> rows[] = {{EACCES, 257}, {EPERM, 257},   {ENOENT, 260},
                                                 {EIO, 256},    {ENOTDIR, 256}, {EROFS, 256}};
    for (const auto& [systemError, code] : rows) {
        const auto error = makeReadError("/a/b", systemError);
        EXPECT_EQ(error.domain(), "NSCocoaErrorDomain");
        EXPECT_EQ(error.code(), code) << std::strerror(systemError);
        EXPECT_EQ(error.path(), "/a/b");
        EXPECT_EQ(*error.userInfo().findString(kErrorReasonKey), std::strerror(systemError));
    }
}

TEST(FileError, AWriteErrorHasTheCodeOfItsErrno)
{
    const std::pair<int, std::int32_t> rows[] = {
        {ENOENT, 4},  {EACCES, 513}, {EPERM, 513},   {ENOSPC, 640}, {EDQUOT, 640},
        {EROFS, 642}, {EIO, 512},    {ENOTDIR, 512}, {EISDIR, 512}, {EWOULDBLOCK, 512}};
    for (const auto& [systemError, code] : rows) {
        const auto error = makeWriteError("/a/b", systemError);
        EXPECT_EQ(error.code(), code) << std::strerror(systemError);
        EXPECT_EQ(*error.userInfo().findString(kErrorReasonKey), std::strerror(systemError));
    }
}

TEST(FileError, TheDescriptionNamesTheFileAndNotItsFolders)
{
    EXPECT_EQ(makeFileError(FileErrorCode::kWriteFileExists, "/a/b/TKLG001.log").description(),
              "The file \"TKLG001.log\" could not be written because a file of that name exists.");
    EXPECT_THAT(*makeFileError(FileErrorCode::kReadUnknown, "/a/b/").description(),
                testing::HasSubstr("\"b\""));
    EXPECT_THAT(*makeFileError(FileErrorCode::kReadUnknown, "/").description(),
                testing::HasSubstr("\"/\""));
    EXPECT_EQ(makeFileError(FileErrorCode::kReadUnknown, "a").userInfo().find(kErrorReasonKey),
              nullptr);
}

} // namespace
} // namespace gps
