#include "filter/filter_support.h"

namespace zep::test {
namespace {

class Convolution : public VariantTest {};

Sum convolved(const std::vector<Zep32f>& a, const std::vector<Zep32f>& b, std::int64_t n) {
    Sum s;
    const auto A = static_cast<std::int64_t>(a.size()), B = static_cast<std::int64_t>(b.size());
    for (std::int64_t k = std::max<std::int64_t>(0, n - B + 1); k <= std::min(n, A - 1); ++k)
        s.add(wide(a[static_cast<std::size_t>(k)]), wide(b[static_cast<std::size_t>(n - k)]));
    return s;
}

// Every output, or every `stride`-th of a long result and those of the ends.
void expectConvolution(int len1, int len2, Edge edge, int skew = 0, std::int64_t stride = 1) {
    const auto a = randomVector<Zep32f>(len1), b = randomVector<Zep32f>(len2);
    const int F = len1 + len2 - 1, S = std::min(len1, len2);
    Guarded<Zep32f> src1(a, edge, skew), src2(b, edge, skew);
    GuardedBuffer<Zep32f> dst(F, edge, skew);
    ASSERT_EQ(zepsConv_32f(src1.data(), len1, src2.data(), len2, dst.data()), zepStsNoErr);
    const bool direct = F < 512 || S < 64;
    const double spread = transformBound(21, norm(a.data(), len1), norm(b.data(), len2));
    for (std::int64_t n = 0; n < F; n += n < 300 || n > F - 300 ? 1 : stride) {
        const Sum s = convolved(a, b, n);
        ASSERT_LE(std::abs(wide(at(dst.data(), n)) - s.value), direct ? directBound(s) : spread)
            << len1 << " by " << len2 << ", output " << n;
    }
}

TEST_P(Convolution, ShortSequencesFollowTheDefinition) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (int len1 = 1; len1 <= 70; len1 += thinStep(9))
            for (const int len2 : {1, 2, 3, 5, 8, 15, 16, 17, 31, 33, 47, 64, 70})
                expectConvolution(len1, len2, edge);
}

TEST_P(Convolution, RoutesMeetAtTheirThresholds) {
    const int pairs[][2] = {{256, 256}, {255, 256}, {257, 256}, {511, 1},    {512, 1},   {450, 63},
                            {449, 64},  {448, 64},  {191, 322}, {192, 64},   {191, 64},  {384, 128},
                            {383, 128}, {384, 129}, {600, 200}, {599, 200},  {600, 201}, {64, 2000},
                            {63, 2000}, {65, 2000}, {128, 513}, {1000, 1000}};
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const auto& p : pairs) {
            expectConvolution(p[0], p[1], edge, 0, 7);
            expectConvolution(p[1], p[0], edge, 0, 7);
        }
}

TEST_P(Convolution, LongSequencesAgainstShortOnes) {
    const int pairs[][2] = {{4095, 20}, {4096, 20},  {4097, 63},
                            {8192, 62}, {20000, 64}, {9000, 2999}};
    for (const auto& p : pairs) expectConvolution(p[0], p[1], Edge::Back, 0, 37);
    // One, two and nearly three blocks of the overlap-save route: N = 256, step 193.
    for (const int len1 : {449, 193 * 3 - 63, 193 * 3 - 62, 193 * 4 - 64})
        expectConvolution(len1, 64, Edge::Back);
}

// Blocks of 256 to 4096 points, two at a time: any number of them left over, the longer sequence ending in
// a block or at its end.
TEST_P(Convolution, BlocksOfEveryCount) {
    int turn = 0;
    for (const int S : {64, 65, 128, 200, 256, 257, 512, 513}) {
        int N = 1;
        while (N < 2 * S) N *= 2;
        N *= 2;
        const int step = N - S + 1;
        for (int blocks = 1; blocks <= 7; blocks += thinStep(2))
            for (const int T : {blocks * step - 1, blocks * step, blocks * step + 1,
                                blocks * step + step - S, blocks * step + step - S + 2})
                if (T >= 3 * S) {
                    ++turn;
                    expectConvolution(T, S, turn % 2 == 0 ? Edge::Back : Edge::Front, turn % 3 * 4,
                                      61);
                }
    }
}

TEST_P(Convolution, ArraysStandAtOddAddresses) {
    for (const int skew : {1, 2, 3, 5, 17})
        for (const Edge edge : {Edge::Front, Edge::Back}) {
            expectConvolution(40, 33, edge, skew);
            expectConvolution(600, 70, edge, skew, 11);
            expectConvolution(300, 290, edge, skew, 11);
        }
}

TEST_P(Convolution, SourcesMayChangePlaces) {
    const auto a = randomVector<Zep32f>(700), b = randomVector<Zep32f>(90);
    std::vector<Zep32f> one(789), two(789);
    ASSERT_EQ(zepsConv_32f(a.data(), 700, b.data(), 90, one.data()), zepStsNoErr);
    ASSERT_EQ(zepsConv_32f(b.data(), 90, a.data(), 700, two.data()), zepStsNoErr);
    EXPECT_EQ(one, two);
}

// No zero that is not a sample meets an infinite factor.
TEST_P(Convolution, AnInfiniteFactorReachesItsOwnSumsOnly) {
    const float inf = INFINITY;
    for (const int len : {3, 20, 100, 300})
        for (const int place : {0, 1, 2}) {
            std::vector<Zep32f> a(static_cast<std::size_t>(len), 1.0f), b(60, 2.0f);
            b[static_cast<std::size_t>(place)] = inf;
            std::vector<Zep32f> dst(static_cast<std::size_t>(len) + 59);
            ASSERT_EQ(zepsConv_32f(a.data(), len, b.data(), 60, dst.data()), zepStsNoErr);
            for (int n = 0; n < len + 59; ++n) {
                const bool meets = n >= place && n < place + len;
                const Sum s = convolved(a, std::vector<Zep32f>(60, 2.0f), n);
                ASSERT_EQ(dst[static_cast<std::size_t>(n)],
                          meets ? inf : static_cast<float>(s.value.real()))
                    << len << " at " << place << ", output " << n;
            }
        }
}

TEST_P(Convolution, StatusesComeInOrderAndNothingIsWritten) {
    Zep32f a[4] = {1, 2, 3, 4}, dst[8] = {7, 7, 7, 7, 7, 7, 7, 7};
    EXPECT_EQ(zepsConv_32f(nullptr, 0, a, 0, dst), zepStsNullPtrErr);
    EXPECT_EQ(zepsConv_32f(a, 0, nullptr, 0, dst), zepStsNullPtrErr);
    EXPECT_EQ(zepsConv_32f(a, 0, a, 0, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(zepsConv_32f(a, 0, a, 4, dst), zepStsSizeErr);
    EXPECT_EQ(zepsConv_32f(a, 4, a, -1, dst), zepStsSizeErr);
    Zep16s c[4] = {1, 2, 3, 4}, out[8] = {7, 7, 7, 7, 7, 7, 7, 7};
    EXPECT_EQ(zepsConv_16s_Sfs(nullptr, 0, c, 0, out, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsConv_16s_Sfs(c, 0, nullptr, 0, out, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsConv_16s_Sfs(c, 0, c, 0, nullptr, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsConv_16s_Sfs(c, 0, c, 4, out, 0), zepStsSizeErr);
    EXPECT_EQ(zepsConv_16s_Sfs(c, 4, c, 0, out, 0), zepStsSizeErr);
    for (int n = 0; n < 8; ++n) EXPECT_TRUE(dst[n] == 7 && out[n] == 7);
}

// Sums below 2^24 are exact in floats on the direct route: the result is rounded once, ties to even.
TEST_P(Convolution, ScaledIntegersAreExactWhereSumsAre) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const int len1 : {1, 2, 17, 64, 500, 4095, 4096, 4200, 9000})
            for (const int len2 : {1, 2, 16, 63})
                for (const int scale : {0, 3, -2}) {
                    const int F = len1 + len2 - 1;
                    GuardedBuffer<Zep16s> a(len1, edge, 1), b(len2, edge), dst(F, edge, 1);
                    std::vector<int> x(static_cast<std::size_t>(len1)),
                        h(static_cast<std::size_t>(len2));
                    const auto draw = [](GuardedBuffer<Zep16s>& to, std::vector<int>& keep) {
                        for (std::size_t i = 0; i < keep.size(); ++i) {
                            const auto v = static_cast<Zep16s>(randomValue<Zep16s>() / 64);
                            keep[i] = v;
                            std::memcpy(reinterpret_cast<char*>(to.data()) + 2 * i, &v, 2);
                        }
                    };
                    draw(a, x);
                    draw(b, h);
                    ASSERT_EQ(zepsConv_16s_Sfs(a.data(), len1, b.data(), len2, dst.data(), scale),
                              zepStsNoErr);
                    for (int n = 0; n<F; n += n> 150 && n < F - 150 ? 13 : 1) {
                        double sum = 0;
                        for (int k = std::max(0, n - len2 + 1); k <= std::min(n, len1 - 1); ++k)
                            sum += double(x[static_cast<std::size_t>(k)]) *
                                   h[static_cast<std::size_t>(n - k)];
                        const double scaled =
                            std::clamp(std::nearbyint(std::ldexp(sum, -scale)), -32768.0, 32767.0);
                        ASSERT_EQ(at(dst.data(), n), scaled)
                            << len1 << " by " << len2 << ", output " << n;
                    }
                }
}

TEST_P(Convolution, ScaledIntegersByTransforms) {
    const int pairs[][2] = {{300, 290}, {64, 449}, {2000, 70}, {191, 322}};
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const auto& p : pairs) {
            const int F = p[0] + p[1] - 1;
            std::vector<Zep16s> a(static_cast<std::size_t>(p[0])),
                b(static_cast<std::size_t>(p[1]));
            fillRandom(a, b);
            Guarded<Zep16s> src1(a, edge), src2(b, edge);
            GuardedBuffer<Zep16s> dst(F, edge);
            const int scale = 17;
            ASSERT_EQ(zepsConv_16s_Sfs(src1.data(), p[0], src2.data(), p[1], dst.data(), scale),
                      zepStsNoErr);
            const double bound =
                std::ldexp(transformBound(12, norm(a.data(), p[0]), norm(b.data(), p[1])), -scale) +
                0.5;
            for (int n = 0; n < F; ++n) {
                double sum = 0;
                for (int k = std::max(0, n - p[1] + 1); k <= std::min(n, p[0] - 1); ++k)
                    sum +=
                        double(a[static_cast<std::size_t>(k)]) * b[static_cast<std::size_t>(n - k)];
                const double scaled = std::clamp(std::ldexp(sum, -scale), -32768.0, 32767.0);
                ASSERT_LE(std::abs(dst[n] - scaled), bound)
                    << p[0] << " by " << p[1] << ", output " << n;
            }
        }
}

ZEP_FOR_EACH_VARIANT(Convolution);

}  // namespace
}  // namespace zep::test
