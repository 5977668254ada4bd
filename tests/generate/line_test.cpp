// Straight lines against the same operations one element at a time.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

Zep32s roundedAndSaturated(double t) {
    t = t > 0 ? t + 0.5 : t - 0.5;
    if (t >= 2147483647.0) return 0x7FFFFFFF;
    if (t <= -2147483648.0 || std::isnan(t)) return std::numeric_limits<Zep32s>::min();
    return static_cast<Zep32s>(t);
}

struct Line {
    double offset, slope;
};
const Line kLines[] = {{0, 1},       {0.5, 1},     {-0.5, -1},   {3.25, 0.1},     {1e9, 1e8},
                       {-1e9, -1e8}, {2e9, 12345}, {-70, 2.5},   {1e-3, 1e-3},    {0, 0},
                       {-3, 0.25},   {1e30, 1},    {-1e30, 1e5}, {2147483392, 64}};

class StraightLine : public VariantTest {
protected:
    // Every line, length and address, and the guard pages of both ends.
    template <class T, class P>
    void sweep(ZepStatus (*make)(T*, int, P, P), auto expected) {
        for (const auto [offset, slope] : kLines)
            for (const Edge edge : {Edge::Front, Edge::Back})
                for (const int len : sweepLengths())
                    check(make, expected, offset, slope, len, edge);
        for (const int len : {1000, 1024, 4097}) check(make, expected, 0.25, 0.37, len, Edge::Back);
        std::vector<unsigned char> bytes(200 * sizeof(T) + 64);
        for (int skew = 0; skew < 64; ++skew) {
            auto* x = reinterpret_cast<T*>(bytes.data() + skew);
            ASSERT_EQ(make(x, 199, P(-3), P(0.71)), zepStsNoErr);
            for (int n = 0; n < 199; ++n) {
                T got;
                std::memcpy(&got, bytes.data() + skew + n * static_cast<int>(sizeof(T)), sizeof(T));
                ASSERT_EQ(got, expected(n, P(-3), P(0.71))) << n;
            }
        }
    }

private:
    template <class T, class P>
    void check(ZepStatus (*make)(T*, int, P, P), auto expected, double offset, double slope,
               int len, Edge edge) {
        GuardedBuffer<T> x(len, edge);
        ASSERT_EQ(make(x.data(), len, static_cast<P>(offset), static_cast<P>(slope)), zepStsNoErr);
        for (int n = 0; n < len; ++n)
            ASSERT_EQ(x[n], expected(n, static_cast<P>(offset), static_cast<P>(slope)))
                << n << " of " << len << ": " << offset << " + " << slope << " n";
    }
};

TEST_P(StraightLine, OfFloatsRoundsTwice) {
    constexpr auto expected = [](int n, float offset, float slope) {
        return static_cast<float>(n) * slope + offset;
    };
    sweep(zepsVectorRamp_32f, expected);
    sweep(zepsVectorSlope_32f, expected);
}

TEST_P(StraightLine, OfIntegersRoundsAndSaturates) {
    sweep(zepsVectorRamp_32s, [](int n, float offset, float slope) {
        const float t = offset + slope * static_cast<float>(n);
        return roundedAndSaturated(t);
    });
    sweep(zepsVectorSlope_32s, [](int n, double offset, double slope) {
        return roundedAndSaturated(offset + slope * n);
    });
}

TEST_P(StraightLine, ThatIsNotANumberGivesTheLowestInteger) {
    Zep32s x[20];
    const float nan = std::numeric_limits<float>::quiet_NaN();
    ASSERT_EQ(zepsVectorRamp_32s(x, 20, nan, 1), zepStsNoErr);
    for (const Zep32s v : x) EXPECT_EQ(v, std::numeric_limits<Zep32s>::min());
    ASSERT_EQ(zepsVectorSlope_32s(x, 20, 1, nan), zepStsNoErr);
    for (const Zep32s v : x) EXPECT_EQ(v, std::numeric_limits<Zep32s>::min());
}

TEST_P(StraightLine, TestsPointerThenLength) {
    Zep32f f = 7;
    Zep32s i = 7;
    EXPECT_EQ(zepsVectorRamp_32f(nullptr, 0, 0, 1), zepStsNullPtrErr);
    EXPECT_EQ(zepsVectorSlope_32f(nullptr, 0, 0, 1), zepStsNullPtrErr);
    EXPECT_EQ(zepsVectorRamp_32s(nullptr, 0, 0, 1), zepStsNullPtrErr);
    EXPECT_EQ(zepsVectorSlope_32s(nullptr, 0, 0, 1), zepStsNullPtrErr);
    for (const int len : {0, -1}) {
        EXPECT_EQ(zepsVectorRamp_32f(&f, len, 0, 1), zepStsSizeErr);
        EXPECT_EQ(zepsVectorSlope_32f(&f, len, 0, 1), zepStsSizeErr);
        EXPECT_EQ(zepsVectorRamp_32s(&i, len, 0, 1), zepStsSizeErr);
        EXPECT_EQ(zepsVectorSlope_32s(&i, len, 0, 1), zepStsSizeErr);
    }
    EXPECT_EQ(f, 7);
    EXPECT_EQ(i, 7);
}

ZEP_FOR_EACH_VARIANT(StraightLine);

}  // namespace
}  // namespace zep::test
