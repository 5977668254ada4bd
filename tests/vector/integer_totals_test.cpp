// Scaled sums, means and dot products of integers against 128-bit arithmetic.
#include "support/variant.h"
#include "vector/reduction_cases.h"

namespace zep::test {
namespace {

using Wide = __int128;

constexpr Zep32s kMost = std::numeric_limits<Zep32s>::max();
constexpr Zep32s kLeast = std::numeric_limits<Zep32s>::min();

Zep32s saturated(Wide x) {
    return x > kMost ? kMost : x < kLeast ? kLeast : static_cast<Zep32s>(x);
}

// To nearest, ties to even; d > 0.
Wide rounded(Wide x, Wide d) {
    Wide q = x / d, r = x % d;
    if (r < 0) r += d, --q;
    return q + (2 * r > d || (2 * r == d && q % 2 != 0));
}

Zep32s scaled(Wide x, int scaleFactor) {
    return scaleFactor >= 0 ? saturated(rounded(x, Wide{1} << scaleFactor))
                            : saturated(Wide{saturated(x)} * (Wide{1} << -scaleFactor));
}

int clamped(int scaleFactor, int least, int most) {
    return scaleFactor < least ? least : scaleFactor > most ? most : scaleFactor;
}

constexpr int kFactors[] = {-100, -41, -32, -31, -30, -17, -2, -1, 0,  1,  2,  3,  7,  8,
                            15,   16,  30,  31,  32,  33,  45, 62, 63, 64, 92, 93, 94, 200};

// All of one extreme, a few small ones, and mixtures: ends of the range, ties.
std::vector<std::vector<Zep32s>> interestingVectors() {
    std::vector<std::vector<Zep32s>> all = {{1, 2}, {1, 0}, {-1, -2}, {3}, {-3}, {kLeast}, {kMost}};
    for (const int len : {1, 2, 5, 16, 64, 70, 500}) {
        const auto n = static_cast<std::size_t>(len);
        all.emplace_back(n, kMost);
        all.emplace_back(n, kLeast);
        all.push_back(randomValues<Zep32s>(len));
        std::vector<Zep32s> small(n);
        for (Zep32s& x : small) x = static_cast<Zep32s>(rng()() % 9) - 4;
        all.push_back(small);
    }
    return all;
}

Wide total(const std::vector<Zep32s>& x) {
    Wide s = 0;
    for (const Zep32s v : x) s += v;
    return s;
}

// The stated cases; -31 .. -1 shifts first only where the sum has 32 bits.
Zep32s expectedMean(const std::vector<Zep32s>& x, int scaleFactor) {
    const Wide s = total(x), n = static_cast<Wide>(x.size());
    if (scaleFactor > 70) return 0;
    if (scaleFactor >= 0) return saturated(rounded(s, n << scaleFactor));
    const Wide mean = rounded(s, n);
    if (scaleFactor < -31) return mean > 0 ? kMost : mean < 0 ? kLeast : 0;
    const Wide factor = Wide{1} << -scaleFactor;
    return s == saturated(s) ? saturated(rounded(s * factor, n)) : saturated(mean * factor);
}

class IntegerTotals : public VariantTest {};

TEST_P(IntegerTotals, SumAndMeanAreExactForAllScales) {
    for (const auto& x : interestingVectors())
        for (const int factor : kFactors) {
            const int len = static_cast<int>(x.size());
            Zep32s sum = 0, mean = 0;
            ASSERT_EQ(zepsSum_32s_Sfs(x.data(), len, &sum, factor), zepStsNoErr);
            ASSERT_EQ(sum, scaled(total(x), clamped(factor, -31, 63))) << len << ' ' << factor;
            ASSERT_EQ(zepsMean_32s_Sfs(x.data(), len, &mean, factor), zepStsNoErr);
            ASSERT_EQ(mean, expectedMean(x, factor)) << len << ' ' << factor;
        }
}

TEST_P(IntegerTotals, SumsOfAllLengthsAtAllAddresses) {
    forVectors<Zep32s>(randomValues<Zep32s>, [](const auto& values, auto& x) {
        Zep32s sum = 0, mean = 0;
        const int len = x.size();
        ASSERT_EQ(zepsSum_32s_Sfs(x.data(), len, &sum, 3), zepStsNoErr);
        ASSERT_EQ(sum, scaled(total(values), 3)) << len;
        ASSERT_EQ(zepsMean_32s_Sfs(x.data(), len, &mean, 0), zepStsNoErr);
        ASSERT_EQ(mean, expectedMean(values, 0)) << len;
    });
}

// A lane's 32-bit sums would overflow if they ran through.
TEST_P(IntegerTotals, LongSumsOfExtremesStayExact) {
    constexpr int kLen = 4 * 65536 + 40000;  // more than a block of the narrowest lanes
    for (const Zep32s value : {kMost, kLeast, -1, 0xFFFF}) {
        std::vector<Zep32s> x(kLen, value);
        x[kLen / 2] = 5;
        Zep32s sum = 0;
        ASSERT_EQ(zepsSum_32s_Sfs(x.data(), kLen, &sum, 20), zepStsNoErr);
        ASSERT_EQ(sum, scaled(total(x), 20)) << value;
    }
}

TEST_P(IntegerTotals, DotOf16By32BitsIsExactForAllScales) {
    constexpr Zep16s kShort[] = {32767, -32768, 1, -1, 0, 255};
    constexpr Zep32s kLong[] = {kMost, kLeast, 1, -1, 65536, -32769};
    forVectors<Zep32s>(
        [&](int len) {
            std::vector<Zep32s> b = randomValues<Zep32s>(len);
            for (std::size_t n = 0; n < b.size(); n += 3) b[n] = kLong[rng()() % 6];
            return b;
        },
        [&](const auto& values, auto& b) {
            const int len = b.size();
            Operand<Zep16s> a(len, Edge::Back, 1);
            Wide s = 0;
            for (int n = 0; n < len; ++n) {
                const Zep16s x = n % 4 == 0 ? kShort[rng()() % 6] : randomValue<Zep16s>();
                a.set(n, x);
                s += Wide{x} * values[static_cast<std::size_t>(n)];
            }
            for (const int factor : kFactors) {
                Zep32s got = 0;
                ASSERT_EQ(zepsDotProd_16s32s_Sfs(a.data(), b.data(), len, &got, factor),
                          zepStsNoErr);
                ASSERT_EQ(got, scaled(s, clamped(factor, -31, 31))) << len << ' ' << factor;
            }
        });
}

// Products below 2^53 in sum: exact. The scale brings ties and both ends of the range.
TEST_P(IntegerTotals, DotOf32BitsIsExactBelow53Bits) {
    forVectors<Zep32s>(
        [](int len) {
            std::vector<Zep32s> a = randomValues<Zep32s>(len);
            for (Zep32s& x : a) x >>= 11;  // 2^20 * 2^20 * 2^11 < 2^53
            return a;
        },
        [](const auto& values, auto& a) {
            const int len = a.size();
            Operand<Zep32s> b(len, Edge::Front, 2);
            Wide s = 0;
            for (int n = 0; n < len; ++n) {
                const Zep32s x = n % 2 == 0 ? randomValue<Zep32s>() >> 11 : n % 7 - 3;
                b.set(n, x);
                s += Wide{x} * values[static_cast<std::size_t>(n)];
            }
            for (const int factor : kFactors) {
                Zep32s got = 0;
                ASSERT_EQ(zepsDotProd_32s_Sfs(a.data(), b.data(), len, &got, factor), zepStsNoErr);
                ASSERT_EQ(got, scaled(s, clamped(factor, -31, 93))) << len << ' ' << factor;
            }
        });
}

TEST_P(IntegerTotals, DotOf32BitsRoundsTiesToEvenAndSaturates) {
    const struct {
        Zep32s a, b;
        int factor;
        Zep32s expected;
    } kCases[] = {{1, 1, 1, 0},
                  {3, 1, 1, 2},
                  {5, 1, 1, 2},
                  {-1, 1, 1, 0},
                  {-3, 1, 1, -2},
                  {7, 1, 2, 2},
                  {kMost, 2, 0, kMost},
                  {kLeast, 2, 0, kLeast},
                  {kLeast, kLeast, 62, 1},
                  {kLeast, kLeast, 63, 0},
                  {1, 1, -31, kMost},
                  {-1, 1, -31, kLeast},
                  {0, 5, -31, 0},
                  {kLeast, kLeast, 93, 0}};
    for (const auto& c : kCases) {
        Zep32s got = 77;
        ASSERT_EQ(zepsDotProd_32s_Sfs(&c.a, &c.b, 1, &got, c.factor), zepStsNoErr);
        EXPECT_EQ(got, c.expected) << c.a << " * " << c.b << " scale " << c.factor;
    }
}

TEST_P(IntegerTotals, Errors) {
    const auto scaledBy = [](auto f) {
        return [f](auto x, int n, auto r) { return f(x, n, r, 1); };
    };
    checkReductionErrors<Zep32s, Zep32s>(scaledBy(zepsSum_32s_Sfs));
    checkReductionErrors<Zep32s, Zep32s>(scaledBy(zepsMean_32s_Sfs));
    const Zep32s one[4] = {};
    const Zep16s half[4] = {};
    checkReductionErrors<Zep32s, Zep32s>(
        [&](auto x, int n, auto r) { return zepsDotProd_32s_Sfs(x, one, n, r, 0); });
    checkReductionErrors<Zep32s, Zep32s>(
        [&](auto x, int n, auto r) { return zepsDotProd_32s_Sfs(one, x, n, r, 0); });
    checkReductionErrors<Zep32s, Zep32s>(
        [&](auto x, int n, auto r) { return zepsDotProd_16s32s_Sfs(half, x, n, r, 0); });
    checkReductionErrors<Zep16s, Zep32s>(
        [&](auto x, int n, auto r) { return zepsDotProd_16s32s_Sfs(x, one, n, r, 0); });
}

ZEP_FOR_EACH_VARIANT(IntegerTotals);

}  // namespace
}  // namespace zep::test
