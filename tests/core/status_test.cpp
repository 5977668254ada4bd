#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/status_rows.h"
#include "zepcore.h"

namespace zep::test {
namespace {

constexpr std::string_view kUnknown = "zepStsUnknownStatusCodeErr: Unknown Status Code";

std::string_view text(int code) { return zepGetStatusString(static_cast<ZepStatus>(code)); }

TEST(StatusString, GivesNameAndMessageOfEveryStatus) {
    ASSERT_EQ(std::size(kStatusRows), 269u);
    for (const auto& [code, expected] : kStatusRows) {
        const std::string_view whole(expected), actual = text(code);
        if (whole.ends_with(": ")) {
            ASSERT_EQ(actual.substr(0, whole.size()), whole) << code;
            const std::string_view message = actual.substr(whole.size());
            EXPECT_GE(message.size(), 10u) << actual;
            EXPECT_NE(message.back(), ' ') << actual;
            EXPECT_NE(message.back(), '.') << actual;
        } else {
            EXPECT_EQ(actual, whole) << code;
        }
    }
}

TEST(StatusString, DescribesEveryStatusInItsOwnWords) {
    std::map<std::string_view, int> codes;
    for (const auto& row : kStatusRows) {
        const std::string_view whole = text(row.code);
        const auto [other, isNew] = codes.emplace(whole.substr(whole.find(": ") + 1), row.code);
        EXPECT_TRUE(isNew) << whole << " repeats the text of " << other->second;
    }
}

TEST(StatusString, KeepsTheMisspellingsThatProgramsCompareAgainst) {
    int suspansion = 0, syntethis = 0;
    for (const auto& row : kStatusRows) {
        suspansion += text(row.code).find("suspansion") != std::string_view::npos;
        syntethis += text(row.code).find("syntethis") != std::string_view::npos;
    }
    EXPECT_EQ(suspansion, 1);
    EXPECT_EQ(syntethis, 1);
    EXPECT_EQ(text(-175).substr(0, 21), "zepStsIvalidPublicKey");
}

TEST(StatusString, GivesTheUnknownTextForEveryOtherCode) {
    std::map<int, std::string_view> rows;
    for (const auto& row : kStatusRows) rows[row.code] = row.text;
    for (int code = -10100; code <= 300; ++code)
        if (rows.count(code) == 0) {
            ASSERT_EQ(text(code), kUnknown) << code;
        }
    for (const int code : {-165, -89, -84, -68, 48, -10000, std::numeric_limits<int>::min(),
                           std::numeric_limits<int>::max()})
        EXPECT_EQ(text(code), kUnknown) << code;
}

TEST(StatusString, SubstitutesNothing) {
    EXPECT_EQ(text(-9700), "Error at loading of %s library");
    EXPECT_EQ(text(0), "zepStsNoErr: No error, it's OK");
}

}  // namespace
}  // namespace zep::test
