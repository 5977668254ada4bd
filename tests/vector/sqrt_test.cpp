// Square roots. The reference repeats the stated formulas with the processor's scalar estimate,
// which fixes every bit; their accuracy is checked against double precision.
#include <xmmintrin.h>

#include <algorithm>
#include <complex>

#include "support/variant.h"
#include "vector/arithmetic_subject.h"

namespace zep::test {
namespace {

using Limits = std::numeric_limits<Zep32f>;
constexpr Zep32f kInf = Limits::infinity();
constexpr Zep32f kNan = Limits::quiet_NaN();
constexpr int kBlock = 16;

Zep32f rsqrtEstimate(Zep32f x) { return _mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(x))); }

Zep32f estimatedRoot(Zep32f x) {
    const Zep32f r = rsqrtEstimate(x), s = x * r;
    return (s * -0.5f) * (s * r - 3.0f);
}

bool estimateServes(Zep32f x) { return std::isfinite(x * rsqrtEstimate(x) * -0.5f); }

struct Reference {
    std::vector<Zep32f> y;
    ZepStatus status = zepStsNoErr;
};

// Blocks start at the first 16-byte boundary of the destination, if it has one.
Reference squareRoots(const std::vector<Zep32f>& x, const void* dst) {
    const auto address = reinterpret_cast<std::uintptr_t>(dst);
    std::size_t head = address % 4 == 0 ? (16 - address % 16) % 16 / 4 : 0;
    head = std::min(head, x.size());
    const std::size_t tail = head + (x.size() - head) / kBlock * kBlock;
    Reference r;
    r.y = x;
    for (Zep32f& v : r.y) {
        if (v < 0.0f) r.status = zepStsSqrtNegArg;
        v = std::sqrt(v);
    }
    for (std::size_t block = head; block < tail; block += kBlock) {
        const auto first = x.begin() + static_cast<std::ptrdiff_t>(block);
        if (std::all_of(first, first + kBlock, estimateServes))
            std::transform(first, first + kBlock, r.y.begin() + static_cast<std::ptrdiff_t>(block),
                           estimatedRoot);
    }
    return r;
}

// Special values in one block of three.
std::vector<Zep32f> radicands(int len) {
    std::vector<Zep32f> x(static_cast<std::size_t>(len));
    for (std::size_t n = 0; n < x.size(); ++n)
        x[n] =
            n / kBlock % 3 == 1 ? mixedValue<Zep32f>() : std::fabs(randomValue<Zep32f>()) + 1e-3f;
    return x;
}

class SquareRoot : public VariantTest {
protected:
    static void check(int len, Edge edge, int skewX, int skewY, bool inPlace) {
        const std::vector<Zep32f> x0 = radicands(len);
        Operand<Zep32f> x(len, edge, skewX), y(len, edge, skewY);
        x = x0, y = x0;
        const Reference expected = squareRoots(x0, y.data());
        ASSERT_EQ(inPlace ? zepsSqrt_32f_I(y.data(), len) : zepsSqrt_32f(x.data(), y.data(), len),
                  expected.status)
            << "len " << len;
        for (int n = 0; n < len; ++n) {
            const auto i = static_cast<std::size_t>(n);
            ASSERT_TRUE(sameValue(y.get(n), expected.y[i]))
                << "root of " << x0[i] << " gave " << y.get(n) << ", not " << expected.y[i]
                << "; len " << len << " n " << n << " skew " << skewY;
        }
    }
};

TEST_P(SquareRoot, FollowsTheFormulaBitByBit) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const bool inPlace : {false, true})
            for (int len = 1; len <= 150; ++len) check(len, edge, 0, 0, inPlace);
    check(100003, Edge::Back, 0, 0, false);
}

TEST_P(SquareRoot, BlocksStartAtTheBoundaryOfTheDestination) {
    for (int len = 1; len <= 70; ++len)
        for (int skew = 1; skew < 32; skew += skew == 1 ? 3 : 4) {
            check(len, Edge::Front, 0, skew, false);
            check(len, Edge::Front, skew, 4, true);
            check(len, Edge::Back, skew, 0, false);
        }
}

// The step leaves 3/2 of the estimate's squared error, 3.4 * 2^-24; s and the two factors round
// once each, s * r once at a third of its weight: below 7 * 2^-24.
TEST_P(SquareRoot, IsAccurate) {
    constexpr int kLen = 100000;
    std::vector<Zep32f> x, y(kLen);
    for (int n = 0; n < kLen; ++n)
        x.push_back(
            std::ldexp(randomValue<Zep32f>() + 1.5f, static_cast<int>(rng()() % 240) - 120));
    ASSERT_EQ(zepsSqrt_32f(x.data(), y.data(), kLen), zepStsNoErr);
    for (std::size_t n = 0; n < kLen; ++n)
        ASSERT_NEAR(y[n] / std::sqrt(double{x[n]}), 1.0, 7 * 0x1p-24) << x[n];
}

TEST_P(SquareRoot, ANegativeElementWarnsAndHarmsNoOther) {
    const std::vector<Zep32f> three = {4.0f, -1.0f, 0.0f};
    std::vector<Zep32f> y(3);
    ASSERT_EQ(zepsSqrt_32f(three.data(), y.data(), 3), zepStsSqrtNegArg);
    EXPECT_EQ(y[0], 2.0f);
    EXPECT_TRUE(std::isnan(y[1]));
    EXPECT_EQ(y[2], 0.0f);
    for (const Zep32f negative : {-1.0f, -Limits::denorm_min(), -kInf, -Limits::max()})
        for (int len = 1; len <= 70; ++len)
            for (int at = 0; at < len; ++at) {
                std::vector<Zep32f> x(static_cast<std::size_t>(len), 9.0f);
                x[static_cast<std::size_t>(at)] = negative;
                ASSERT_EQ(zepsSqrt_32f_I(x.data(), len), zepStsSqrtNegArg);
                for (int n = 0; n < len; ++n) {
                    const Zep32f root = x[static_cast<std::size_t>(n)];
                    ASSERT_EQ(std::isnan(root), n == at);
                    ASSERT_TRUE(n == at || std::fabs(root - 3.0f) < 3 * 0x1p-21f) << root;
                }
            }
}

TEST_P(SquareRoot, MinusZeroAndNanDoNotWarn) {
    for (const Zep32f special : {-0.0f, kNan, kInf, 0.0f, Limits::denorm_min()})
        for (int len = 1; len <= 40; ++len) {
            std::vector<Zep32f> x(static_cast<std::size_t>(len), special), y(x);
            ASSERT_EQ(zepsSqrt_32f(x.data(), y.data(), len), zepStsNoErr);
            for (const Zep32f root : y) ASSERT_TRUE(sameValue(root, std::sqrt(special)));
        }
}

TEST_P(SquareRoot, ErrorsComeInOrderAndWriteNothing) {
    checkErrors<Zep32f>({"Sqrt_32f", true, false, false,
                         [](auto x, auto, auto y, int n) { return zepsSqrt_32f(x, y, n); },
                         nullptr});
    checkErrors<Zep32f>({"Sqrt_32f_I", false, false, true,
                         [](auto, auto, auto y, int n) { return zepsSqrt_32f_I(y, n); }, nullptr});
    checkErrors<Zep32fc>({"Sqrt_32fc_I", false, false, true,
                          [](auto, auto, auto y, int n) { return zepsSqrt_32fc_I(y, n); },
                          nullptr});
}

// With its exceptions unmasked a negative element would stop the program.
TEST_P(SquareRoot, NoExceptionTrapsAndTheControlWordComesBack) {
    constexpr unsigned kMasks = 0x1F80, kFlags = 0x3F, kInvalid = 0x01, kDivide = 0x04,
                       kInexact = 0x20, kOverflow = 0x08;
    const unsigned before = _mm_getcsr();
    const unsigned unmaskedInvalidAndDivide = (before & ~kFlags & ~kMasks) | (kMasks & ~0x0280u);
    std::vector<Zep32f> x(100, 2.0f), y(100);
    x[20] = -1.0f;
    x[99] = -kInf;
    for (const unsigned flags : {0u, kOverflow}) {
        const unsigned word = unmaskedInvalidAndDivide | flags;
        _mm_setcsr(word);
        const ZepStatus status = zepsSqrt_32f(x.data(), y.data(), 100);
        const unsigned after = _mm_getcsr();
        _mm_setcsr(before);
        EXPECT_EQ(status, zepStsSqrtNegArg);
        EXPECT_EQ(after, word | kInexact) << "of the run's flags only the inexact one was due";
    }
    // A rounding mode of the caller stays in force and comes back.
    const unsigned roundUp = (before & ~kFlags & ~0x6000u) | 0x4000u;
    _mm_setcsr(roundUp);
    static_cast<void>(zepsSqrt_32f(x.data(), y.data(), 3));
    const unsigned after = _mm_getcsr();
    _mm_setcsr(before);
    EXPECT_EQ(after & ~kFlags, roundUp);
    EXPECT_GT(double{y[0]}, std::sqrt(2.0));
    EXPECT_EQ(after & (kInvalid | kDivide), 0u);
}

// The stated formula for one element; scale is the power of two that its squares need.
Zep32fc estimatedRoot(Zep32fc z, Zep32f scale) {
    const Zep32f a2 = z.re * 0.5f * scale, b2 = z.im * 0.5f * scale;
    const Zep32f t = estimatedRoot(a2 * a2 + b2 * b2) + std::fabs(a2);
    const Zep32f r = rsqrtEstimate(t), w = (r * -0.5f) * (t * r * r - 3.0f);
    const Zep32f back = 1.0f / std::sqrt(scale);
    const Zep32f large = t * w * back, small = std::fabs(b2) * w * back;
    const Zep32f im = z.re < 0.0f ? large : small;
    return {z.re < 0.0f ? small : large, z.im < 0.0f || std::isnan(z.im) ? -im : im};
}

class SquareRootComplex : public VariantTest {
protected:
    static void check(int len, Edge edge, int skew) {
        std::vector<Zep32fc> z0(static_cast<std::size_t>(len));
        for (Zep32fc& z : z0) z = {randomValue<Zep32f>() * 8.0f, randomValue<Zep32f>() * 8.0f};
        Operand<Zep32fc> z(len, edge, skew);
        z = z0;
        ASSERT_EQ(zepsSqrt_32fc_I(z.data(), len), zepStsNoErr);
        for (int n = 0; n < len; ++n) {
            const Zep32fc expected = estimatedRoot(z0[static_cast<std::size_t>(n)], 1.0f);
            ASSERT_TRUE(sameValue(z.get(n), expected)) << "len " << len << " n " << n;
        }
    }
};

TEST_P(SquareRootComplex, FollowsTheFormulaBitByBit) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (int len = 1; len <= 70; ++len)
            for (const int skew : {0, 1, 4, 8, 12, 20}) check(len, edge, skew);
}

// Numbers of every size, beside each other, at every place: finite, in the right half plane, and
// accurate. Each part comes through two refined roots, each within 7 * 2^-24 of which half reaches
// the result, and a few roundings.
TEST_P(SquareRootComplex, IsAccurateWhereverTheRootIsFinite) {
    for (int len = 1; len <= 40; ++len)
        for (int round = 0; round < 50; ++round) {
            std::vector<Zep32fc> z0;
            for (int n = 0; n < len; ++n) {
                const int exponent = static_cast<int>(rng()() % 190) - 64;
                const auto part = [&] { return std::ldexp(randomValue<Zep32f>(), exponent); };
                z0.push_back({part(), part()});
                // Where the squares underflow to 0 the root is 0 by definition.
                if (std::fabs(z0.back().re) < 0x1p-70f) z0.back().re = 0x1p-70f;
                if (rng()() % 8 == 0) z0.back().im = rng()() % 2 == 0 ? 0.0f : -0.0f;
                if (rng()() % 8 == 0) std::swap(z0.back().re, z0.back().im);
            }
            std::vector<Zep32fc> z = z0;
            ASSERT_EQ(zepsSqrt_32fc_I(z.data(), len), zepStsNoErr);
            for (std::size_t n = 0; n < z.size(); ++n) {
                const std::complex<double> exact =
                    std::sqrt(std::complex<double>(z0[n].re, z0[n].im));
                // The sign of a zero imaginary part does not count.
                const double im = z0[n].im == 0.0f ? std::fabs(exact.imag()) : exact.imag();
                ASSERT_NEAR(z[n].re, exact.real(), exact.real() * 0x1p-20)
                    << z0[n].re << ' ' << z0[n].im;
                ASSERT_NEAR(z[n].im, im, std::fabs(im) * 0x1p-20) << z0[n].re << ' ' << z0[n].im;
                ASSERT_GE(z[n].re, 0.0f);
            }
        }
}

TEST_P(SquareRootComplex, TheRangesEndsAreFiniteAndZeroIsZero) {
    constexpr Zep32f kMax = Limits::max();
    for (int len = 1; len <= 20; ++len) {
        for (const Zep32fc corner : {Zep32fc{kMax, kMax}, Zep32fc{-kMax, kMax}, Zep32fc{kMax, 0.0f},
                                     Zep32fc{0.0f, -kMax}, Zep32fc{-kMax, -0.0f}}) {
            std::vector<Zep32fc> z(static_cast<std::size_t>(len), corner);
            ASSERT_EQ(zepsSqrt_32fc_I(z.data(), len), zepStsNoErr);
            const std::complex<double> exact =
                std::sqrt(std::complex<double>(corner.re, corner.im));
            for (const Zep32fc root : z) {
                ASSERT_NEAR(root.re, exact.real(), exact.real() * 0x1p-20);
                ASSERT_NEAR(std::fabs(root.im), std::fabs(exact.imag()),
                            std::fabs(exact.imag()) * 0x1p-20);
            }
        }
        for (const Zep32fc nothing :
             {Zep32fc{0.0f, 0.0f}, Zep32fc{-0.0f, -0.0f}, Zep32fc{1e-30f, 0.0f}}) {
            std::vector<Zep32fc> z(static_cast<std::size_t>(len), nothing);
            ASSERT_EQ(zepsSqrt_32fc_I(z.data(), len), zepStsNoErr);
            for (const Zep32fc root : z) ASSERT_TRUE(root.re == 0.0f && root.im == 0.0f);
        }
    }
}

TEST_P(SquareRootComplex, NanStaysInItsElement) {
    for (int len = 1; len <= 20; ++len)
        for (int at = 0; at < len; ++at) {
            std::vector<Zep32fc> z(static_cast<std::size_t>(len), Zep32fc{3.0f, 4.0f});
            z[static_cast<std::size_t>(at)].re = kNan;
            ASSERT_EQ(zepsSqrt_32fc_I(z.data(), len), zepStsNoErr);
            for (int n = 0; n < len; ++n) {
                const Zep32fc root = z[static_cast<std::size_t>(n)];
                ASSERT_EQ(std::isnan(root.re), n == at);
                ASSERT_TRUE(n == at || std::fabs(root.re - 2.0f) < 0x1p-18f) << root.re;
            }
        }
}

ZEP_FOR_EACH_VARIANT(SquareRoot);
ZEP_FOR_EACH_VARIANT(SquareRootComplex);

}  // namespace
}  // namespace zep::test
