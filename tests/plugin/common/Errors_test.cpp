// SPDX-License-Identifier: MIT
// The plug-in's own errors: codes, texts, paths.

#include <plugin/common/Errors.h>

#include <gtest/gtest.h>

#include <optional>

namespace magellan {
namespace {

TEST(Errors, HoldDescriptionSuggestionAndPathUnderThePlugInsDomain)
{
    const auto error =
        makeError(ErrorCode::kDeviceDataMissing, "what", "what to do", "/media/MAGELLAN");
    EXPECT_EQ(error.domain(), "com.Orvane.GPSPlugin.ErrorDomain");
    EXPECT_EQ(error.code(), -2);
    EXPECT_EQ(error.userInfo(), (gps::Dictionary{{gps::kErrorDescriptionKey, "what"},
                                                 {gps::kErrorSuggestionKey, "what to do"},
                                                 {gps::kErrorPathKey, "/media/MAGELLAN"}}));
}

TEST(Errors, HaveNoPathIfNoFileIsInvolved)
{
    const auto error = makeError(ErrorCode::kNoDevice, "what", "what to do");
    EXPECT_EQ(error.code(), -1);
    EXPECT_EQ(error.path(), std::nullopt);
    EXPECT_EQ(error.userInfo().size(), 2U);
}

TEST(Errors, TheEnglishTextIsUsedWithOrWithoutATranslation)
{
    EXPECT_EQ(
        makeError(ErrorCode::kReadFailed, "Couldn't read track data from device", kSuggestMounting)
            .description(),
        "Couldn't read track data from device");
    EXPECT_EQ(makeError(ErrorCode::kReadFailed, "in no table", kSuggestMounting).description(),
              "in no table");
    EXPECT_EQ(makeError(ErrorCode::kReadFailed, "in no table", kSuggestMounting).suggestion(),
              "Please make sure your Magellan device is connected and mounted on the desktop, and "
              "try again");
}

TEST(Errors, AValueReplacesThePlaceholderOfTheDescriptionAsItIs)
{
    const auto error =
        makeErrorAbout(ErrorCode::kSerialPort, "/dev/%@", "port %@ of %@", "what to do with %@");
    EXPECT_EQ(error.code(), -1);
    EXPECT_EQ(error.userInfo(),
              (gps::Dictionary{{gps::kErrorDescriptionKey, "port /dev/%@ of %@"},
                               {gps::kErrorSuggestionKey, "what to do with %@"}}));
    EXPECT_EQ(makeErrorAbout(ErrorCode::kSerialPort, "/dev/x", "no port", "").description(),
              "no port");
}

TEST(Errors, HaveTheCodesThatHostsKnow)
{
    EXPECT_EQ(makeError(ErrorCode::kReadFailed, "", "").code(), -3);
    EXPECT_EQ(makeError(ErrorCode::kImportRefused, "", "").code(), -5);
}

} // namespace
} // namespace magellan
