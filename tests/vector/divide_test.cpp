// Quotients of two vectors. The reference repeats the stated formula with the processor's scalar
// estimate, which fixes every bit; its accuracy is checked against division in double precision.
#include <xmmintrin.h>

#include <algorithm>

#include "support/variant.h"
#include "vector/arithmetic_subject.h"

namespace zep::test {
namespace {

constexpr Zep32f kInf = std::numeric_limits<Zep32f>::infinity();
constexpr Zep32f kNan = std::numeric_limits<Zep32f>::quiet_NaN();
constexpr int kBlock = 8;

Zep32f reciprocalEstimate(Zep32f x) { return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(x))); }

Zep32f estimatedQuotient(Zep32f x, Zep32f d) {
    const Zep32f r = reciprocalEstimate(d), q = x * r, e = 1.0f - d * r;
    return q + e * (q + e * q);
}

Zep32f exactQuotient(Zep32f x, Zep32f d) {
    if (std::isnan(d)) return kNan;
    if (d != 0.0f) return x / d;
    return x > 0.0f ? kInf : x < 0.0f ? -kInf : kNan;
}

struct Reference {
    std::vector<Zep32f> y;
    ZepStatus status = zepStsNoErr;
};

Reference divide(const std::vector<Zep32f>& d, const std::vector<Zep32f>& x) {
    Reference r;
    for (std::size_t block = 0; block < d.size(); block += kBlock) {
        const std::size_t end = std::min(block + kBlock, d.size());
        bool zero = false;
        for (std::size_t n = block; n < end; ++n) zero |= d[n] == 0.0f;
        if (zero) r.status = zepStsDivByZero;
        for (std::size_t n = block; n < end; ++n)
            r.y.push_back(zero ? exactQuotient(x[n], d[n]) : estimatedQuotient(x[n], d[n]));
    }
    return r;
}

// Zeros in one block of three, other special values anywhere.
std::vector<Zep32f> divisors(int len) {
    std::vector<Zep32f> d = mixedValues<Zep32f>(len);
    for (std::size_t n = 0; n < d.size(); ++n)
        if (n / kBlock % 3 != 0 && d[n] == 0.0f) d[n] = 3.0f;
    return d;
}

enum class Form { Apart, OverDivisor, OverDividend, InPlace };

class Divide : public VariantTest {
protected:
    static void check(int len, Edge edge, int skewD, int skewX, int skewY, Form form) {
        const std::vector<Zep32f> d0 = divisors(len), x0 = mixedValues<Zep32f>(len);
        Operand<Zep32f> d(len, edge, skewD), x(len, edge, skewX), y(len, edge, skewY);
        d = d0, x = x0;
        const Reference expected = divide(d0, x0);
        Operand<Zep32f>& out = form == Form::Apart ? y : form == Form::OverDivisor ? d : x;
        const ZepStatus status = form == Form::InPlace
                                     ? zepsDiv_32f_I(d.data(), x.data(), len)
                                     : zepsDiv_32f(d.data(), x.data(), out.data(), len);
        ASSERT_EQ(status, expected.status) << "len " << len;
        for (int n = 0; n < len; ++n) {
            const auto i = static_cast<std::size_t>(n);
            ASSERT_TRUE(sameValue(out.get(n), expected.y[i]))
                << x0[i] << " / " << d0[i] << " gave " << out.get(n) << ", not " << expected.y[i]
                << "; len " << len << " n " << n;
        }
    }
};

TEST_P(Divide, FollowsTheFormulaBitByBit) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (int len = 1; len <= 140; ++len)
            for (const Form form :
                 {Form::Apart, Form::OverDivisor, Form::OverDividend, Form::InPlace})
                check(len, edge, 0, 0, 0, form);
    check(100003, Edge::Back, 0, 0, 0, Form::Apart);
}

TEST_P(Divide, AlignmentNeverChangesAResult) {
    for (int len = 1; len <= 70; ++len)
        for (int skew = 1; skew < 32; skew += skew == 1 ? 3 : 4) {
            check(len, Edge::Front, 0, 0, skew, Form::Apart);
            check(len, Edge::Back, skew, 0, 0, Form::Apart);
            check(len, Edge::Front, 4, skew, 8, Form::InPlace);
        }
}

// The estimate is within 1.5 * 2^-12 of 1 / d, so e^3 adds less than 2^-34; q, d * r and the last
// sum round once each: 3 * 2^-24 and a little.
TEST_P(Divide, IsWithinFourHalfUnits) {
    constexpr int kLen = 100000;
    std::vector<Zep32f> d, x, y(kLen);
    for (int n = 0; n < kLen; ++n) {
        d.push_back(std::ldexp(randomValue<Zep32f>() + 1.5f, static_cast<int>(rng()() % 80) - 40));
        x.push_back(std::ldexp(randomValue<Zep32f>() + 1.5f, static_cast<int>(rng()() % 80) - 40));
    }
    ASSERT_EQ(zepsDiv_32f(d.data(), x.data(), y.data(), kLen), zepStsNoErr);
    for (std::size_t n = 0; n < kLen; ++n)
        ASSERT_NEAR(y[n] / (double{x[n]} / d[n]), 1.0, 4 * 0x1p-24) << x[n] << " / " << d[n];
}

TEST_P(Divide, AZeroDivisorGivesInfinityWithTheSignOfTheDividend) {
    for (const Zep32f zero : {0.0f, -0.0f})
        for (int len = 1; len <= 40; ++len)
            for (int at = 0; at < len; ++at)
                for (const auto& [dividend, expected] :
                     {std::pair{1.0f, kInf}, std::pair{-1.0f, -kInf}, std::pair{0.0f, kNan},
                      std::pair{-0.0f, kNan}, std::pair{kNan, kNan}, std::pair{kInf, kInf}}) {
                    const auto i = static_cast<std::size_t>(at);
                    std::vector<Zep32f> d(static_cast<std::size_t>(len), 3.0f), x(d), y(d);
                    d[i] = zero;
                    x[i] = dividend;
                    ASSERT_EQ(zepsDiv_32f(d.data(), x.data(), y.data(), len), zepStsDivByZero);
                    ASSERT_TRUE(sameValue(y[i], expected)) << dividend << " gave " << y[i];
                    for (std::size_t n = 0; n < y.size(); ++n)
                        ASSERT_TRUE(n == i || std::fabs(y[n] - 1.0f) < 0x1p-22f) << n;
                    if (std::isnan(expected)) {
                        ASSERT_EQ(std::bit_cast<std::uint32_t>(y[i]), 0x7FC00000u);
                    }
                }
}

TEST_P(Divide, UnusualDivisorsAreExactOnlyBesideAZero) {
    for (const Zep32f unusual : {kInf, -kInf, std::numeric_limits<Zep32f>::denorm_min()}) {
        std::vector<Zep32f> d(16, 2.0f), x(16, 1.0f), y(16);
        d[3] = unusual;
        d[8] = unusual;
        d[9] = 0.0f;
        ASSERT_EQ(zepsDiv_32f(d.data(), x.data(), y.data(), 16), zepStsDivByZero);
        EXPECT_TRUE(std::isnan(y[3])) << unusual;
        EXPECT_EQ(y[8], 1.0f / unusual);
        EXPECT_EQ(y[9], kInf);
    }
    // NaN alone is no division by zero.
    std::vector<Zep32f> d(16, 2.0f), x(16, 1.0f), y(16);
    d[5] = kNan;
    ASSERT_EQ(zepsDiv_32f(d.data(), x.data(), y.data(), 16), zepStsNoErr);
    EXPECT_TRUE(std::isnan(y[5]));
}

TEST_P(Divide, ErrorsComeInOrderAndWriteNothing) {
    checkErrors<Zep32f>({"Div_32f", true, true, false, zepsDiv_32f, nullptr});
    checkErrors<Zep32f>({"Div_32f_I", true, false, true,
                         [](auto d, auto, auto y, int n) { return zepsDiv_32f_I(d, y, n); },
                         nullptr});
    checkErrors<Zep32fc>({"Div_32fc", true, true, false, zepsDiv_32fc, nullptr});
    checkErrors<Zep32fc>({"Div_32fc_I", true, false, true,
                          [](auto d, auto, auto y, int n) { return zepsDiv_32fc_I(d, y, n); },
                          nullptr});
}

Zep32fc estimatedQuotient(Zep32fc d, Zep32fc x) {
    const Zep32f m = d.re * d.re + d.im * d.im, r = reciprocalEstimate(m), w = r * (2.0f - m * r);
    return {(d.re * x.re + d.im * x.im) * w, (d.re * x.im - d.im * x.re) * w};
}

bool anyZero(const std::vector<Zep32fc>& divisors) {
    return std::any_of(divisors.begin(), divisors.end(),
                       [](Zep32fc d) { return d.re * d.re + d.im * d.im == 0.0f; });
}

class DivideComplex : public VariantTest {
protected:
    static void check(int len, Edge edge, int skewD, int skewX, int skewY, bool zeros, Form form) {
        std::vector<Zep32fc> d0 = mixedValues<Zep32fc>(len);
        const std::vector<Zep32fc> x0 = mixedValues<Zep32fc>(len);
        for (Zep32fc& d : d0)
            if (!zeros && d.re * d.re + d.im * d.im == 0.0f) d.re = 1.0f;
        Operand<Zep32fc> d(len, edge, skewD), x(len, edge, skewX), y(len, edge, skewY);
        d = d0, x = x0;
        Operand<Zep32fc>& out = form == Form::Apart ? y : form == Form::OverDivisor ? d : x;
        const ZepStatus status = form == Form::InPlace
                                     ? zepsDiv_32fc_I(d.data(), x.data(), len)
                                     : zepsDiv_32fc(d.data(), x.data(), out.data(), len);
        ASSERT_EQ(status, anyZero(d0) ? zepStsDivByZero : zepStsNoErr) << "len " << len;
        for (int n = 0; n < len; ++n) {
            const auto i = static_cast<std::size_t>(n);
            const Zep32fc expected = estimatedQuotient(d0[i], x0[i]);
            ASSERT_TRUE(sameValue(out.get(n), expected))
                << "len " << len << " n " << n << ": " << out.get(n).re << ", " << out.get(n).im;
        }
    }
};

TEST_P(DivideComplex, FollowsTheFormulaBitByBit) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const bool zeros : {false, true})
            for (int len = 1; len <= 70; ++len)
                for (const Form form :
                     {Form::Apart, Form::OverDivisor, Form::OverDividend, Form::InPlace})
                    check(len, edge, 0, 0, 0, zeros, form);
}

TEST_P(DivideComplex, AlignmentNeverChangesAResult) {
    for (int len = 1; len <= 40; ++len)
        for (int skew = 1; skew < 32; skew += skew == 1 ? 3 : 4) {
            check(len, Edge::Front, 0, 0, skew, true, Form::Apart);
            check(len, Edge::Back, skew, 4, 0, true, Form::Apart);
            check(len, Edge::Front, 4, skew, 8, true, Form::InPlace);
        }
}

TEST_P(DivideComplex, AZeroDivisorGivesNanInBothParts) {
    for (int len = 1; len <= 40; ++len)
        for (int at = 0; at < len; ++at) {
            const auto i = static_cast<std::size_t>(at);
            std::vector<Zep32fc> d(static_cast<std::size_t>(len), {2.0f, 1.0f}), x(d), y(d);
            d[i] = {-0.0f, 0.0f};
            ASSERT_EQ(zepsDiv_32fc(d.data(), x.data(), y.data(), len), zepStsDivByZero);
            for (std::size_t n = 0; n < y.size(); ++n) {
                ASSERT_EQ(std::isnan(y[n].re), n == i);
                ASSERT_EQ(std::isnan(y[n].im), n == i);
            }
        }
}

// The refined reciprocal squares the estimate's error, 2.25 * 2^-24, and rounds three times; m and
// the numerators round three times, measured by the size of the operands; the product once: below
// 10 * 2^-24 of the magnitude.
TEST_P(DivideComplex, IsAccurateInMagnitude) {
    constexpr int kLen = 50000;
    std::vector<Zep32fc> d(kLen), x(kLen), y(kLen);
    fillRandom(d, x);
    for (Zep32fc& z : d)
        if (std::hypot(z.re, z.im) < 1e-6f) z.re = 1.0f;
    ASSERT_EQ(zepsDiv_32fc(d.data(), x.data(), y.data(), kLen), zepStsNoErr);
    for (std::size_t n = 0; n < kLen; ++n) {
        const double a = x[n].re, b = x[n].im, c = d[n].re, e = d[n].im, m = c * c + e * e;
        const double size = std::sqrt((a * a + b * b) / m);
        ASSERT_NEAR(y[n].re, (c * a + e * b) / m, size * 10 * 0x1p-24);
        ASSERT_NEAR(y[n].im, (c * b - e * a) / m, size * 10 * 0x1p-24);
    }
}

ZEP_FOR_EACH_VARIANT(Divide);
ZEP_FOR_EACH_VARIANT(DivideComplex);

}  // namespace
}  // namespace zep::test
