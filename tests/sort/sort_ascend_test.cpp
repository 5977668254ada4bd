// The plain sorts against std::sort.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

// Whole numbers that a float holds too.
enum class Pattern {
    Random,
    Rising,
    Falling,
    Equal,
    FewValues,
    OrganPipe,
    Sawtooth,
    NearlyRising,
    Extremes
};
constexpr Pattern kPatterns[] = {Pattern::Random,   Pattern::Rising,       Pattern::Falling,
                                 Pattern::Equal,    Pattern::FewValues,    Pattern::OrganPipe,
                                 Pattern::Sawtooth, Pattern::NearlyRising, Pattern::Extremes};

int valueAt(Pattern pattern, int n, int len) {
    const auto random = static_cast<int>(rng()() >> 41);
    switch (pattern) {
        case Pattern::Rising:
            return n;
        case Pattern::Falling:
            return len - n;
        case Pattern::Equal:
            return 3;
        case Pattern::FewValues:
            return random % 4 - 2;
        case Pattern::OrganPipe:
            return std::min(n, len - n);
        case Pattern::Sawtooth:
            return n % 17;
        case Pattern::NearlyRising:
            return random % 50 == 0 ? random : n;
        case Pattern::Extremes:
            return random % 2 == 0 ? std::numeric_limits<int>::min() : 1 << 30;
        default:
            return random - (1 << 22);
    }
}

template <class T>
std::vector<T> patterned(Pattern pattern, int len) {
    std::vector<T> x;
    for (int n = 0; n < len; ++n) x.push_back(static_cast<T>(valueAt(pattern, n, len)));
    return x;
}

template <class T>
void checkSort(std::vector<T> x, Edge edge, int skew) {
    const int len = static_cast<int>(x.size());
    const std::size_t bytes = x.size() * sizeof(T);
    GuardedBuffer<unsigned char> buffer(static_cast<int>(bytes), edge, skew);
    std::memcpy(buffer.data(), x.data(), bytes);
    ZepStatus status;
    if constexpr (std::is_same_v<T, Zep32f>)
        status = zepsSortAscend_32f_I(reinterpret_cast<T*>(buffer.data()), len);
    else
        status = zepsSortAscend_32s_I(reinterpret_cast<T*>(buffer.data()), len);
    ASSERT_EQ(status, zepStsNoErr);
    std::sort(x.begin(), x.end());
    std::vector<T> got(x.size());
    std::memcpy(got.data(), buffer.data(), bytes);
    for (std::size_t n = 0; n < x.size(); ++n)
        ASSERT_EQ(got[n], x[n]) << "len " << len << " n " << n;
}

class SortAscend : public VariantTest {};

// Every number of left-over elements of the networks.
TEST_P(SortAscend, AllShortLengths) {
    for (int len = 1; len <= 280; len += thinStep(11))
        for (const Pattern pattern : {Pattern::Random, Pattern::FewValues, Pattern::Falling}) {
            const Edge edge = len % 2 == 0 ? Edge::Front : Edge::Back;
            checkSort(patterned<Zep32s>(pattern, len), edge, 0);
            checkSort(patterned<Zep32f>(pattern, len), edge, len % 3);
            if (HasFatalFailure()) return;
        }
}

TEST_P(SortAscend, LongOnesOfAllPatterns) {
    for (const Pattern pattern : kPatterns)
        for (const int len :
             {300, 511, 512, 513, 777, 1000, 1023, 1024, 1025, 2049, 4100, 5003, 20011}) {
            checkSort(patterned<Zep32s>(pattern, len), Edge::Back, 0);
            checkSort(patterned<Zep32f>(pattern, len), Edge::Front, 1);
            if (HasFatalFailure()) return;
        }
}

// From one value to more than a sample is likely to hold few of; with one that no sample finds among
// them, at any place, and of the ends of the range.
TEST_P(SortAscend, FewValuesAndOneMore) {
    for (const int values : {1, 2, 3, 7, 8, 9, 12})
        for (const int len : {1030, 2049, 4111}) {
            std::vector<Zep32s> x;
            for (int n = 0; n < len; ++n)
                x.push_back(static_cast<int>(rng()() % static_cast<unsigned>(values)) * 1000 -
                            3000);
            checkSort(x, Edge::Back, 0);
            checkSort(std::vector<Zep32f>(x.begin(), x.end()), Edge::Front, 2);
            for (const auto at : {0, 1, len / 2 + 5, len - 17, len - 1})
                for (const int value : {INT32_MIN, -2999, 1 << 20, INT32_MAX}) {
                    std::vector<Zep32s> y = x;
                    y[static_cast<std::size_t>(at)] = value;
                    checkSort(y, Edge::Back, 0);
                    if (HasFatalFailure()) return;
                }
        }
}

TEST_P(SortAscend, EndsOfTheRange) {
    for (const int len : {20, 300, 3000}) {
        std::vector<Zep32s> x = patterned<Zep32s>(Pattern::Random, len);
        for (std::size_t n = 0; n < x.size(); n += 3) x[n] = n % 2 == 0 ? INT32_MAX : INT32_MIN;
        checkSort(x, Edge::Back, 0);
        checkSort(std::vector<Zep32s>(x.size(), INT32_MAX), Edge::Back, 0);
        checkSort(std::vector<Zep32s>(x.size(), INT32_MIN), Edge::Back, 0);
        std::vector<Zep32f> y = patterned<Zep32f>(Pattern::Random, len);
        for (std::size_t n = 0; n < y.size(); n += 3)
            y[n] = (n % 2 == 0 ? 1.0f : -1.0f) * std::numeric_limits<Zep32f>::infinity();
        y[1] = -0.0f, y[2] = 0.0f, y[4] = 1e-41f, y[5] = -1e-41f;
        checkSort(y, Edge::Back, 0);
    }
}

// Data whose samples lie: at the places where pivots are looked for they are much larger than
// elsewhere. Ends soon all the same.
TEST_P(SortAscend, DataAgainstThePivots) {
    for (const int len : {3000, 40000}) {
        std::vector<Zep32s> x = patterned<Zep32s>(Pattern::Random, len);
        for (int parts = 3; parts <= 15; parts += 2)
            for (int k = 0; k <= parts; ++k) {
                const auto at = static_cast<std::size_t>((len - 16) / parts * k);
                for (std::size_t n = 0; n < 16; ++n)
                    x[at + n] = (1 << 29) + static_cast<int>(rng()() % 1000000);
            }
        checkSort(x, Edge::Back, 0);
    }
}

// Where they end is not defined, but all elements are still there.
TEST_P(SortAscend, NotANumbersAreKept) {
    for (const int len : {2, 10, 70, 256, 1000, 5000})
        for (const int every : {1, 2, 7}) {
            std::vector<Zep32f> x = patterned<Zep32f>(Pattern::Random, len);
            for (std::size_t n = 0; n < x.size(); n += static_cast<std::size_t>(every))
                x[n] = (n % 2 == 0 ? 1.0f : -1.0f) * std::numeric_limits<Zep32f>::quiet_NaN();
            GuardedBuffer<Zep32f> y(len, Edge::Back);
            std::copy(x.begin(), x.end(), y.begin());
            ASSERT_EQ(zepsSortAscend_32f_I(y.data(), len), zepStsNoErr);
            std::vector<std::uint32_t> before(x.size()), after(x.size());
            std::memcpy(before.data(), x.data(), x.size() * 4);
            std::memcpy(after.data(), y.data(), x.size() * 4);
            std::sort(before.begin(), before.end());
            std::sort(after.begin(), after.end());
            ASSERT_EQ(before, after);
        }
}

TEST_P(SortAscend, Errors) {
    Zep32s x[2] = {2, 1};
    Zep32f y[2] = {2, 1};
    for (const int len : {2, 0, -1}) {
        EXPECT_EQ(zepsSortAscend_32s_I(nullptr, len), zepStsNullPtrErr);
        EXPECT_EQ(zepsSortAscend_32f_I(nullptr, len), zepStsNullPtrErr);
    }
    for (const int len : {0, -1}) {
        EXPECT_EQ(zepsSortAscend_32s_I(x, len), zepStsSizeErr);
        EXPECT_EQ(zepsSortAscend_32f_I(y, len), zepStsSizeErr);
    }
    EXPECT_EQ(x[0], 2);
    EXPECT_EQ(y[0], 2.0f);
    EXPECT_EQ(zepsSortAscend_32s_I(x, 1), zepStsNoErr);
    EXPECT_EQ(x[0], 2);
}

ZEP_FOR_EACH_VARIANT(SortAscend);

}  // namespace
}  // namespace zep::test
