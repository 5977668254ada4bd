#include "filter/filter_support.h"

namespace zep::test {
namespace {

// The exports of each element type.
template <class T>
struct Exports;
template <>
struct Exports<Zep32f> {
    static constexpr auto autoCorr = zepsAutoCorr_32f, normA = zepsAutoCorr_NormA_32f,
                          normB = zepsAutoCorr_NormB_32f;
    static constexpr auto cross = zepsCrossCorr_32f;
    static constexpr int directLags = 856;
    static constexpr float directWork = 384;
};
template <>
struct Exports<Zep32fc> {
    static constexpr auto autoCorr = zepsAutoCorr_32fc, normA = zepsAutoCorr_NormA_32fc,
                          normB = zepsAutoCorr_NormB_32fc;
    static constexpr auto cross = zepsCrossCorr_32fc;
    static constexpr int directLags = 152;
    static constexpr float directWork = 256;
};

template <class T>
Sum correlated(const std::vector<T>& a, const std::vector<T>& b, std::int64_t lag) {
    Sum s;
    const auto A = static_cast<std::int64_t>(a.size()), B = static_cast<std::int64_t>(b.size());
    for (std::int64_t k = std::max<std::int64_t>(0, -lag); k < std::min(A, B - lag); ++k)
        s.add(std::conj(wide(a[static_cast<std::size_t>(k)])),
              wide(b[static_cast<std::size_t>(k + lag)]));
    return s;
}

template <class T>
class Correlation {
    using Of = Exports<T>;

public:
    static void expectAuto(int srcLen, int dstLen, Edge edge, int skew = 0, int stride = 1) {
        const auto x = randomVector<T>(srcLen);
        Guarded<T> src(x, edge, skew);
        GuardedBuffer<T> dst(dstLen, edge, skew), biased(dstLen, edge, skew),
            unbiased(dstLen, edge, skew);
        ASSERT_EQ(Of::autoCorr(src.data(), srcLen, dst.data(), dstLen), zepStsNoErr);
        ASSERT_EQ(Of::normA(src.data(), srcLen, biased.data(), dstLen), zepStsNoErr);
        ASSERT_EQ(Of::normB(src.data(), srcLen, unbiased.data(), dstLen), zepStsNoErr);
        const int lags = std::min(srcLen, dstLen);
        const double length = norm(x.data(), srcLen);
        for (int k = 0; k<dstLen; k += k> 200 && k < lags - 200 ? stride : 1) {
            const Wide plain = wide(at(dst.data(), k)), a = wide(at(biased.data(), k)),
                       b = wide(at(unbiased.data(), k));
            if (k >= srcLen) {
                ASSERT_TRUE(plain == 0.0 && a == 0.0 && b == 0.0) << srcLen << ", lag " << k;
                continue;
            }
            const Sum s = correlated(x, x, k);
            ASSERT_LE(std::abs(plain - s.value),
                      lags < Of::directLags ? directBound(s) : transformBound(21, length, length))
                << srcLen << " to " << dstLen << ", lag " << k;
            // The plain values again, and one or two roundings; a quotient may be off by two units.
            ASSERT_LE(std::abs(a - plain / double(srcLen)), 3 * kEpsilon * std::abs(a) + 1e-40);
            ASSERT_LE(std::abs(b - plain / double(srcLen - k)), 8 * kEpsilon * std::abs(b) + 1e-40);
        }
    }

    static void expectCross(int len1, int len2, int lowLag, int dstLen, Edge edge, int skew = 0,
                            int stride = 1) {
        const auto a = randomVector<T>(len1), b = randomVector<T>(len2);
        Guarded<T> src1(a, edge, skew), src2(b, edge, skew);
        GuardedBuffer<T> dst(dstLen, edge, skew);
        ASSERT_EQ(Of::cross(src1.data(), len1, src2.data(), len2, dst.data(), dstLen, lowLag),
                  zepStsNoErr);
        const std::int64_t low = std::max<std::int64_t>(lowLag, 1 - std::int64_t{len1});
        const std::int64_t high = std::min<std::int64_t>(std::int64_t{lowLag} + dstLen, len2);
        const auto [shorter, longer] = std::minmax(len1, len2);
        const bool direct = float(shorter) * float(high - low) / float(longer) < Of::directWork;
        const double spread = transformBound(21, norm(a.data(), len1), norm(b.data(), len2));
        for (int n = 0; n<dstLen; n += n> 200 && n < dstLen - 200 ? stride : 1) {
            const std::int64_t lag = std::int64_t{lowLag} + n;
            const Sum s = correlated(a, b, lag);
            const Wide got = wide(at(dst.data(), n));
            if (s.terms == 0)
                ASSERT_EQ(got, 0.0) << len1 << " by " << len2 << ", lag " << lag;
            else
                ASSERT_LE(std::abs(got - s.value), direct ? directBound(s) : spread)
                    << len1 << " by " << len2 << ", lag " << lag;
        }
    }

    static void shortOnes() {
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (int len = 1; len <= 70; len += thinStep(9)) {
                for (const int lags : {1, 2, 15, 16, 33, 70, 90})
                    expectAuto(len, lags, edge, len % 3);
                for (const int other : {1, 3, 16, 31, 70})
                    expectCross(len, other, -len - 2, len + other + 5, edge, len % 3);
            }
    }

    static void autoThresholds() {
        const int t = Of::directLags;
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (const int lags : {t - 1, t}) {
                expectAuto(t + 200, lags, edge, 0, 7);
                expectAuto(lags, lags + 30, edge, 1, 7);
                expectAuto(5000, lags, edge, 0, 31);
            }
    }

    static void crossRoutes() {
        // Lengths by lag and count: whole and blocked transforms with either one the shorter, whole ones for a
        // far first lag, the two sides of the direct limit, lags beyond both ends.
        const int cases[][4] = {
            {500, 500, -499, 999},
            {700, 400, -699, 1099},
            {400, 700, -399, 1099},
            {100, 2000, -99, 2099},
            {2000, 100, -1999, 2099},
            {400, 3000, -399, 3399},
            {3000, 400, -2999, 3399},
            {400, 9000, -300, 8700},
            {9000, 400, -8700, 8900},
            {400, 9000, 0, 8990},
            {9000, 400, -8999, 8999},
            {500, 9000, 500, 8000},
            {9000, 500, -8000, 8400},
            {600, 1800, -599, 2000},
            {1800, 600, -1799, 2000},
            {512, 512, 0, 383},
            {512, 512, 0, 384},
            {512, 512, 0, 255},
            {512, 512, 0, 256},
            {1000, 3000, -1200, 5000},
            {3000, 1000, -3300, 5000},
            // Few enough lags for a transform that is shorter than both together, at either sign.
            {5000, 5000, -100, 700},
            {5000, 5000, -900, 500},
            {5000, 5000, 200, 700}};
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (const auto& c : cases)
                expectCross(c[0], c[1], c[2], c[3], edge, edge == Edge::Front ? 3 : 0, 41);
    }

    static void fewLagsOfLongOnes() {
        for (const int lags : {1, 2, 9, 40}) {
            expectCross(20000, 20000, 17, lags, Edge::Back);
            expectCross(30000, 10, -15000, lags, Edge::Back);
            expectCross(10, 30000, 15000, lags, Edge::Back);
        }
    }

    static void outsideOnly() {
        const auto a = randomVector<T>(30), b = randomVector<T>(40);
        for (const int lag : {-29 - 20, 40, 5000, -5000, INT32_MAX, INT32_MIN, INT32_MAX - 3}) {
            std::vector<T> dst(20, a[0]);
            ASSERT_EQ(Of::cross(a.data(), 30, b.data(), 40, dst.data(), 20, lag), zepStsNoErr);
            for (const T& y : dst) ASSERT_EQ(wide(y), 0.0) << lag;
        }
    }

    static void statuses() {
        T a[3] = {}, dst[4];
        std::memset(dst, 0x55, sizeof dst);
        const auto before = std::vector<T>(dst, dst + 4);
        for (const auto f : {Of::autoCorr, Of::normA, Of::normB}) {
            EXPECT_EQ(f(nullptr, 0, dst, 0), zepStsNullPtrErr);
            EXPECT_EQ(f(a, 0, nullptr, 0), zepStsNullPtrErr);
            EXPECT_EQ(f(a, 0, dst, 4), zepStsSizeErr);
            EXPECT_EQ(f(a, 3, dst, 0), zepStsSizeErr);
        }
        EXPECT_EQ(Of::cross(nullptr, 0, a, 0, dst, 0, 0), zepStsNullPtrErr);
        EXPECT_EQ(Of::cross(a, 0, nullptr, 0, dst, 0, 0), zepStsNullPtrErr);
        EXPECT_EQ(Of::cross(a, 0, a, 0, nullptr, 0, 0), zepStsNullPtrErr);
        EXPECT_EQ(Of::cross(a, 0, a, 3, dst, 4, 0), zepStsSizeErr);
        EXPECT_EQ(Of::cross(a, 3, a, 0, dst, 4, 0), zepStsSizeErr);
        EXPECT_EQ(Of::cross(a, 3, a, 3, dst, 0, 0), zepStsSizeErr);
        EXPECT_EQ(std::memcmp(dst, before.data(), sizeof dst), 0);
    }
};

class RealCorrelation : public VariantTest {};
class ComplexCorrelation : public VariantTest {};

TEST_P(RealCorrelation, ShortSequencesFollowTheDefinition) { Correlation<Zep32f>::shortOnes(); }
TEST_P(ComplexCorrelation, ShortSequencesFollowTheDefinition) { Correlation<Zep32fc>::shortOnes(); }
TEST_P(RealCorrelation, AutocorrelationMeetsAtItsThreshold) {
    Correlation<Zep32f>::autoThresholds();
}
TEST_P(ComplexCorrelation, AutocorrelationMeetsAtItsThreshold) {
    Correlation<Zep32fc>::autoThresholds();
}
TEST_P(RealCorrelation, EveryRouteFollowsTheDefinition) { Correlation<Zep32f>::crossRoutes(); }
TEST_P(ComplexCorrelation, EveryRouteFollowsTheDefinition) { Correlation<Zep32fc>::crossRoutes(); }
TEST_P(RealCorrelation, FewLagsOfLongSequences) { Correlation<Zep32f>::fewLagsOfLongOnes(); }
TEST_P(ComplexCorrelation, FewLagsOfLongSequences) { Correlation<Zep32fc>::fewLagsOfLongOnes(); }
TEST_P(RealCorrelation, LagsWithoutOverlapGiveZeros) { Correlation<Zep32f>::outsideOnly(); }
TEST_P(ComplexCorrelation, LagsWithoutOverlapGiveZeros) { Correlation<Zep32fc>::outsideOnly(); }
TEST_P(RealCorrelation, StatusesComeInOrderAndNothingIsWritten) { Correlation<Zep32f>::statuses(); }
TEST_P(ComplexCorrelation, StatusesComeInOrderAndNothingIsWritten) {
    Correlation<Zep32fc>::statuses();
}

// Products with infinite parts are NaN by themselves; those without stay as they are.
TEST_P(ComplexCorrelation, AnInfiniteFactorReachesItsOwnSumsOnly) {
    std::vector<Zep32fc> a(20, Zep32fc{1, 0}), b(30, Zep32fc{0, 1});
    a[3] = {INFINITY, 0};
    std::vector<Zep32fc> dst(49);
    ASSERT_EQ(zepsCrossCorr_32fc(a.data(), 20, b.data(), 30, dst.data(), 49, -19), zepStsNoErr);
    for (int n = 0; n < 49; ++n) {
        const int lag = n - 19, terms = std::min(20, 30 - lag) - std::max(0, -lag);
        const bool meets = 3 + lag >= 0 && 3 + lag < 30;
        const Zep32fc y = dst[static_cast<std::size_t>(n)];
        if (meets)
            ASSERT_EQ(y.im, INFINITY) << lag;
        else
            ASSERT_TRUE(y.re == 0 && y.im == static_cast<float>(terms)) << lag;
    }
}

ZEP_FOR_EACH_VARIANT(RealCorrelation);
ZEP_FOR_EACH_VARIANT(ComplexCorrelation);

}  // namespace
}  // namespace zep::test
