// Windows against their formulas in extended precision.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

using Real = long double;
const Real kPi = std::acos(Real{-1});

using Formula = std::function<Real(int n, int len)>;

Real angle(int n, int len) { return 2 * kPi * n / (len - 1); }
// Sums of cosines without the cancellation at the ends: 1 - cos(a) = 2 sin(a / 2)^2.
Real versine(Real a) { return 2 * std::sin(a / 2) * std::sin(a / 2); }

Real bartlett(int n, int len) { return n * static_cast<Real>(2.0f / static_cast<float>(len - 1)); }
Real hann(int n, int len) { return versine(angle(n, len)) / 2; }
Real hamming(int n, int len) { return 0.08L + 0.46L * versine(angle(n, len)); }
Real blackman(int n, int len, Zep32f alpha) {
    // (alpha + 1) / 2 - cos(a) / 2 - alpha / 2 * cos(2 * a), the constants cancelling.
    return versine(angle(n, len)) / 2 + alpha * versine(2 * angle(n, len)) / 2;
}

double polynomial(double t, const std::vector<double>& c) {
    double p = 0;
    for (auto it = c.rbegin(); it != c.rend(); ++it) p = p * t + *it;
    return p;
}
double besselI0(double x) {
    if (x < 3.75)
        return polynomial((x / 3.75) * (x / 3.75),
                          {1, 3.5156229, 3.0899424, 1.2067492, 0.2659732, 0.0360768, 0.0045813});
    return std::exp(x) / std::sqrt(x) *
           polynomial(3.75 / x, {0.39894228, 0.01328592, 0.00225319, -0.00157565, 0.00916281,
                                 -0.02057706, 0.02635537, -0.01647633, 0.00392377});
}
Real kaiser(int n, int len, Zep32f alpha) {
    const double a = std::fabs(static_cast<double>(alpha)), last = len - 1;
    return besselI0(a * std::sqrt(n * (last - n))) / besselI0(a * last * 0.5);
}

// Units in the last place of the exact value.
Real ulps(Zep32f got, Real exact) {
    const Real e = std::fabs(exact);
    if (e < Real{std::numeric_limits<Zep32f>::min()})
        return std::fabs(got - exact) / Real{std::numeric_limits<Zep32f>::denorm_min()};
    return std::fabs(got - exact) / std::ldexp(Real{1}, std::ilogb(e) - 23);
}

// Two: the factor is rounded once, where its step was rounded before once more, and the product
// with the sample; each by half a unit, of which a product may have twice as many.
constexpr Real kTolerance = 2;

template <class F>
void checkReal(F window, const Formula& formula, int len, Edge edge, int skew) {
    const auto bytes = static_cast<std::size_t>(len) * sizeof(Zep32f);
    std::vector<Zep32f> x(static_cast<std::size_t>(len), 1), y = x;
    // Factors themselves, then products.
    for (const bool random : {false, true}) {
        if (random) fillRandom(x);
        GuardedBuffer<Zep32f> data(len, edge, skew);
        std::memcpy(data.data(), x.data(), bytes);
        ASSERT_EQ(window(data.data(), len), zepStsNoErr);
        std::memcpy(y.data(), data.data(), bytes);
        for (int n = 0; n < len; ++n) {
            const auto i = static_cast<std::size_t>(n);
            const Real w =
                len == 1 || 2 * n + 1 == len ? 1 : formula(std::min(n, len - 1 - n), len);
            ASSERT_LE(ulps(y[i], w * x[i]), kTolerance)
                << n << " of " << len << ": " << y[i] << " for " << static_cast<double>(w * x[i]);
            if (2 * n + 1 == len) {
                ASSERT_EQ(y[i], x[i]);
            }
        }
    }
}

// The complex form has the factors of the real one.
template <class R, class C>
void checkComplex(R real, C window, int len, Edge edge, int skew) {
    std::vector<Zep32fc> x(static_cast<std::size_t>(len)), y = x;
    fillRandom(x);
    std::vector<Zep32f> re, im;
    for (const Zep32fc& v : x) {
        re.push_back(v.re);
        im.push_back(v.im);
    }
    GuardedBuffer<Zep32fc> data(len, edge, skew);
    std::memcpy(data.data(), x.data(), x.size() * sizeof(Zep32fc));
    ASSERT_EQ(window(data.data(), len), zepStsNoErr);
    std::memcpy(y.data(), data.data(), x.size() * sizeof(Zep32fc));
    ASSERT_EQ(real(re.data(), len), zepStsNoErr);
    ASSERT_EQ(real(im.data(), len), zepStsNoErr);
    for (std::size_t n = 0; n < y.size(); ++n) {
        ASSERT_EQ(y[n].re, re[n]) << n << " of " << len;
        ASSERT_EQ(y[n].im, im[n]) << n << " of " << len;
    }
}

std::vector<int> lengths(int from) {
    std::vector<int> all;
    for (const int len : sweepLengths(70))
        if (len >= from) all.push_back(len);
    for (const int more : {127, 128, 129, 1000, 4097}) all.push_back(more);
    return all;
}

class Windows : public VariantTest {};

TEST_P(Windows, FollowTheirFormulas) {
    for (const int len : lengths(3))
        for (const int skew : {0, 1}) {
            const Edge edge = len % 2 == 0 ? Edge::Front : Edge::Back;
            checkReal(zepsWinBartlett_32f_I, bartlett, len, edge, skew);
            checkReal(zepsWinHann_32f_I, hann, len, edge, skew);
            checkReal(zepsWinHamming_32f_I, hamming, len, edge, skew);
            checkReal(
                zepsWinBlackmanStd_32f_I, [](int n, int l) { return blackman(n, l, -0.16f); }, len,
                edge, skew);
            checkComplex(zepsWinBartlett_32f_I, zepsWinBartlett_32fc_I, len, edge, skew);
            checkComplex(zepsWinHann_32f_I, zepsWinHann_32fc_I, len, edge, skew);
            checkComplex(zepsWinHamming_32f_I, zepsWinHamming_32fc_I, len, edge, skew);
            checkComplex(
                zepsWinBlackmanStd_32f_I,
                [](Zep32fc* x, int l) { return zepsWinBlackman_32fc_I(x, l, -0.16f); }, len, edge,
                skew);
        }
}

TEST_P(Windows, BlackmanTakesAnyAlpha) {
    for (const Zep32f alpha : {0.0f, -0.16f, 0.5f, -2.0f})
        for (const int len : {4, 5, 40, 101}) {
            std::vector<Zep32fc> x(static_cast<std::size_t>(len), Zep32fc{1, -1});
            ASSERT_EQ(zepsWinBlackman_32fc_I(x.data(), len, alpha), zepStsNoErr);
            for (int n = 0; n < len / 2; ++n) {
                // Factors of both signs cross zero: an absolute bound, as wide as some roundings
                // of the terms in double precision and the last one in single.
                const Real w = blackman(n, len, alpha);
                const Real bound = 1e-14L + std::fabs(w) * std::ldexp(Real{1}, -23);
                const Zep32fc v = x[static_cast<std::size_t>(n)];
                ASSERT_NEAR(static_cast<double>(v.re), static_cast<double>(w),
                            static_cast<double>(bound));
                ASSERT_EQ(v.im, -v.re);
            }
        }
}

// The error must not grow with the length.
TEST_P(Windows, StayExactInLongArrays) {
    constexpr int kLen = 1000001;
    std::vector<Zep32f> x(kLen, 1);
    for (const auto& [window, formula] :
         {std::pair{&zepsWinHann_32f_I, &hann}, std::pair{&zepsWinHamming_32f_I, &hamming},
          std::pair{&zepsWinBartlett_32f_I, &bartlett}}) {
        std::fill(x.begin(), x.end(), 1.0f);
        ASSERT_EQ(window(x.data(), kLen), zepStsNoErr);
        for (int n = 0; n < kLen / 2; n += n < 50 ? 1 : 997) {
            ASSERT_LE(ulps(x[static_cast<std::size_t>(n)], formula(n, kLen)), kTolerance) << n;
            ASSERT_EQ(x[static_cast<std::size_t>(n)], x[static_cast<std::size_t>(kLen - 1 - n)]);
        }
    }
}

TEST_P(Windows, OfThreeSamplesClearBothEnds) {
    constexpr Zep32f inf = std::numeric_limits<Zep32f>::infinity();
    for (const auto window : {zepsWinBartlett_32f_I, zepsWinHann_32f_I, zepsWinBlackmanStd_32f_I}) {
        Zep32f x[3] = {inf, 3, -1};
        ASSERT_EQ(window(x, 3), zepStsNoErr);
        EXPECT_TRUE(x[0] == 0 && x[1] == 3 && x[2] == 0 && !std::signbit(x[2]));
    }
    for (const auto window : {zepsWinBartlett_32fc_I, zepsWinHann_32fc_I}) {
        Zep32fc x[3] = {{inf, 1}, {3, 4}, {5, -inf}};
        ASSERT_EQ(window(x, 3), zepStsNoErr);
        EXPECT_TRUE(x[0].re == 0 && x[0].im == 0 && x[1].im == 4 && x[2].re == 0 && x[2].im == 0);
    }
    Zep32f x[3] = {1, 7, 2};
    ASSERT_EQ(zepsWinHamming_32f_I(x, 3), zepStsNoErr);
    EXPECT_TRUE(x[0] == 0.08f && x[1] == 7 && x[2] == 2 * 0.08f);
}

TEST_P(Windows, KaiserFollowsItsFormula) {
    for (const int len : lengths(2))
        for (const double width : {0.5, 3.7, 9.0, 37.9})
            for (const Zep32f sign : {1.0f, -1.0f}) {
                const Zep32f alpha = sign * static_cast<Zep32f>(width / (0.5 * (len - 1)));
                checkReal([=](Zep32f* x, int l) { return zepsWinKaiser_32f_I(x, l, alpha); },
                          [=](int n, int l) { return kaiser(n, l, alpha); }, len,
                          len % 2 == 0 ? Edge::Front : Edge::Back, len % 3);
            }
}

TEST_P(Windows, KaiserTakesItsLimits) {
    constexpr Zep32f inf = std::numeric_limits<Zep32f>::infinity();
    std::vector<Zep32f> x(5);
    fillRandom(x);
    const std::vector<Zep32f> before = x;
    EXPECT_EQ(zepsWinKaiser_32f_I(x.data(), 5, 0), zepStsNoErr);
    EXPECT_EQ(x, before);
    EXPECT_EQ(zepsWinKaiser_32f_I(x.data(), 1, inf), zepStsNoErr);
    for (const Zep32f beyond : {std::nextafter(19.0f, 20.0f), -std::nextafter(19.0f, 20.0f), inf})
        EXPECT_EQ(zepsWinKaiser_32f_I(x.data(), 5, beyond), zepStsHugeWinErr);
    EXPECT_EQ(x, before);
    EXPECT_EQ(zepsWinKaiser_32f_I(x.data(), 5, 19.0f), zepStsNoErr);
    EXPECT_NE(x, before);
}

TEST_P(Windows, TestThePointerThenTheLength) {
    constexpr int kLeast = std::numeric_limits<int>::min();
    Zep32f x[3] = {1, 2, 3};
    Zep32fc z[3] = {{1, 2}, {3, 4}, {5, 6}};
    for (const auto window : {zepsWinBartlett_32f_I, zepsWinHann_32f_I, zepsWinHamming_32f_I,
                              zepsWinBlackmanStd_32f_I}) {
        EXPECT_EQ(window(nullptr, 0), zepStsNullPtrErr);
        for (const int bad : {2, 1, 0, -1, kLeast}) EXPECT_EQ(window(x, bad), zepStsSizeErr);
    }
    for (const auto window : {zepsWinBartlett_32fc_I, zepsWinHann_32fc_I, zepsWinHamming_32fc_I}) {
        EXPECT_EQ(window(nullptr, 0), zepStsNullPtrErr);
        for (const int bad : {2, 1, 0, -1, kLeast}) EXPECT_EQ(window(z, bad), zepStsSizeErr);
    }
    EXPECT_EQ(zepsWinBlackman_32fc_I(nullptr, 0, 0), zepStsNullPtrErr);
    for (const int bad : {2, 0, kLeast})
        EXPECT_EQ(zepsWinBlackman_32fc_I(z, bad, 0), zepStsSizeErr);
    EXPECT_EQ(zepsWinKaiser_32f_I(nullptr, 0, 100), zepStsNullPtrErr);
    for (const int bad : {0, -1, kLeast})
        EXPECT_EQ(zepsWinKaiser_32f_I(x, bad, 100), zepStsSizeErr);
    EXPECT_TRUE(x[0] == 1 && x[2] == 3 && z[0].re == 1 && z[2].im == 6);
}

ZEP_FOR_EACH_VARIANT(Windows);

}  // namespace
}  // namespace zep::test
