// From float to integers of 8, 16 and 32 bits: all rounding modes and scales, limits, NaN and
// infinities, and the caller's control word.
#include "support/variant.h"
#include "vector/conversion_subject.h"

namespace zep::test {
namespace {

constexpr Zep32f kNan = std::numeric_limits<Zep32f>::quiet_NaN();
constexpr Zep32f kInf = std::numeric_limits<Zep32f>::infinity();
constexpr ZepRoundMode kModes[] = {zepRoundTruncate, zepRoundNearest, zepRoundHalfAway};

// x * 2^-scale as the single-precision product, but for its rounding: that happens to denormal
// results and to those beyond the floats alone, which no integer shows.
double scaled(Zep32f x, int scale, bool denormalsAreZero) {
    if (scale == 0 || std::isnan(x)) return x;
    const double factor = scale > 149 ? 0.0 : scale < -127 ? HUGE_VAL : std::ldexp(1.0, -scale);
    const bool zero = denormalsAreZero && std::fpclassify(x) == FP_SUBNORMAL;
    const bool noFactor =
        factor == 0.0 || (denormalsAreZero && std::fabs(factor) < std::ldexp(1.0, -126));
    const double a = zero ? 0.0 : double{x}, f = noFactor ? 0.0 : factor;
    if ((a == 0.0 && std::isinf(f)) || (std::isinf(a) && f == 0.0)) return -std::fabs(double{kNan});
    return a * f;
}

// |v| below 2^52, where floor(|v|) is exact in double and so is its distance.
double rounded(double v, ZepRoundMode mode) {
    const double a = std::fabs(v), whole = std::floor(a), rest = a - whole;
    bool up = false;
    if (mode == zepRoundNearest)
        up = rest > 0.5 || (rest == 0.5 && std::fmod(whole, 2.0) != 0.0);
    else if (mode != zepRoundTruncate)
        up = rest >= 0.5;
    return std::copysign(whole + (up ? 1.0 : 0.0), v);
}

template <class D>
D integerOf(Zep32f x, ZepRoundMode mode, int scale, bool denormalsAreZero = false) {
    using L = std::numeric_limits<D>;
    const double v = scaled(x, scale, denormalsAreZero);
    if (std::isnan(v)) return sizeof(D) == 4 && std::signbit(v) ? L::min() : L::max();
    if (std::fabs(v) > 1.0e10) return v > 0 ? L::max() : L::min();
    const double r = rounded(v, mode);
    return r > L::max() ? L::max() : r < L::min() ? L::min() : static_cast<D>(r);
}

template <class D>
using Convert = ZepStatus (*)(const Zep32f*, D*, int, ZepRoundMode, int);

class FloatToInteger : public VariantTest {
protected:
    template <class F>
    void forEachType(F f) {
        f("32f8s", Convert<Zep8s>{zepsConvert_32f8s_Sfs});
        f("32f16s", Convert<Zep16s>{zepsConvert_32f16s_Sfs});
        f("32f32s", Convert<Zep32s>{zepsConvert_32f32s_Sfs});
    }
};

template <class D>
auto subject(const char* name, Convert<D> f, ZepRoundMode mode, int scale) {
    return conversion<Zep32f, D>(
        name, [=](const Zep32f* x, D* y, int len) { return f(x, y, len, mode, scale); },
        [=](Zep32f x) { return integerOf<D>(x, mode, scale); });
}

TEST_P(FloatToInteger, RoundsInEveryModeAtEveryLengthAndAddress) {
    forEachType([]<class D>(const char* name, Convert<D> f) {
        for (const ZepRoundMode mode : kModes) {
            checkLengths(subject<D>(name, f, mode, 0));
            checkLengths(subject<D>(name, f, mode, -3));
        }
        checkAddresses(subject<D>(name, f, zepRoundNearest, 0));
        checkAddresses(subject<D>(name, f, zepRoundHalfAway, 2));
        checkErrors(subject<D>(name, f, zepRoundTruncate, 0));
        checkErrors(subject<D>(name, f, 99, 1));
    });
}

TEST_P(FloatToInteger, TakesEveryScale) {
    forEachType([]<class D>(const char* name, Convert<D> f) {
        for (const ZepRoundMode mode : kModes)
            for (int scale = -160; scale <= 160; ++scale) {
                const auto c = subject<D>(name, f, mode, scale);
                Samples<Zep32f, D> samples(c.expected);
                checkCall(c, samples, 97, Edge::Back, 0, 0);
            }
        for (const int scale : {1000, 1 << 30, std::numeric_limits<int>::max(), -1000,
                                std::numeric_limits<int>::min()}) {
            const auto c = subject<D>(name, f, zepRoundNearest, scale);
            checkCall(c, Samples<Zep32f, D>(c.expected), 97, Edge::Back, 0, 0);
        }
    });
}

// Scaled so that floats lie around the limits and around every tie near zero.
TEST_P(FloatToInteger, IsExactBesideEveryTieAndLimit) {
    forEachType([]<class D>(const char* name, Convert<D> f) {
        std::vector<Zep32f> x;
        const auto addAround = [&](double v) {
            const auto c = static_cast<Zep32f>(v);
            for (const Zep32f y : {std::nextafter(c, -kInf), c, std::nextafter(c, kInf)})
                x.push_back(y), x.push_back(-y);
        };
        for (int n = 0; n <= 300; ++n) addAround(n), addAround(n + 0.5);
        for (int n = 32700; n <= 32800; ++n) addAround(n), addAround(n + 0.5);
        for (int e = 20; e <= 40; ++e) addAround(std::ldexp(1.0, e));
        std::vector<D> y(x.size());
        for (const ZepRoundMode mode : kModes) {
            ASSERT_EQ(f(x.data(), y.data(), static_cast<int>(x.size()), mode, 0), zepStsNoErr);
            for (std::size_t n = 0; n < x.size(); ++n)
                ASSERT_EQ(y[n], integerOf<D>(x[n], mode, 0)) << name << ' ' << mode << ' ' << x[n];
        }
    });
}

TEST_P(FloatToInteger, DoesNotDependOnTheCallersRoundingModeAndLeavesTheWord) {
    forEachType([]<class D>(const char* name, Convert<D> f) {
        for (const ZepRoundMode mode : kModes)
            for (const int scale : {0, 4, -100, -101, -127, 126, 127, 149}) {
                const auto call = [=](const Zep32f* x, D* y, int len) {
                    return f(x, y, len, mode, scale);
                };
                checkControlWords<Zep32f, D>(name, call, [=](Zep32f x, unsigned word) {
                    // To nearest under another mode clears denormals-are-zero with it.
                    const bool kept = mode != zepRoundNearest || (word & kRoundTowardZero) == 0;
                    return integerOf<D>(x, mode, scale, kept && (word & kDenormalsAreZero) != 0);
                });
            }
    });
}

template <class D>
D one(Convert<D> f, Zep32f x, ZepRoundMode mode) {
    D y = 99;
    EXPECT_EQ(f(&x, &y, 1, mode, 0), zepStsNoErr);
    return y;
}

TEST_P(FloatToInteger, KnowsTheseValues) {
    const Convert<Zep8s> to8 = zepsConvert_32f8s_Sfs;
    const Convert<Zep16s> to16 = zepsConvert_32f16s_Sfs;
    const Convert<Zep32s> to32 = zepsConvert_32f32s_Sfs;
    EXPECT_EQ(one(to16, 1.5f, 1), 2);
    EXPECT_EQ(one(to16, 2.5f, 1), 2);
    EXPECT_EQ(one(to16, 1.5f, 2), 2);
    EXPECT_EQ(one(to16, 2.5f, 2), 3);
    EXPECT_EQ(one(to16, 1.5f, 0), 1);
    EXPECT_EQ(one(to16, 2.5f, 0), 2);
    EXPECT_EQ(one(to16, -1.5f, 2), -2);
    EXPECT_EQ(one(to16, 0.49999997f, 2), 0);
    EXPECT_EQ(one(to32, 0.49999997f, 2), 0);
    EXPECT_EQ(one(to8, -0.49999997f, 2), 0);
    EXPECT_EQ(one(to16, 2.5f, 7), 3);
    EXPECT_EQ(one(to16, 2.5f, -1), 3);
    for (const Zep32f nan : {kNan, -kNan})
        for (const ZepRoundMode mode : kModes) {
            EXPECT_EQ(one(to16, nan, mode), 32767);
            EXPECT_EQ(one(to8, nan, mode), 127);
        }
    for (const ZepRoundMode mode : kModes) {
        EXPECT_EQ(one(to32, kNan, mode), 0x7FFFFFFF);
        EXPECT_EQ(one(to32, -kNan, mode), std::numeric_limits<Zep32s>::min());
        EXPECT_EQ(one(to32, 3.0e9f, mode), 0x7FFFFFFF);
        EXPECT_EQ(one(to32, -3.0e9f, mode), std::numeric_limits<Zep32s>::min());
        EXPECT_EQ(one(to32, kInf, mode), 0x7FFFFFFF);
        EXPECT_EQ(one(to32, -kInf, mode), std::numeric_limits<Zep32s>::min());
        EXPECT_EQ(one(to32, 2147483520.0f, mode), 2147483520);
        EXPECT_EQ(one(to16, -kInf, mode), -32768);
        EXPECT_EQ(one(to16, -3.0e38f, mode), -32768);
        EXPECT_EQ(one(to8, 3.0e38f, mode), 127);
        EXPECT_EQ(one(to8, -200.0f, mode), -128);
    }
}

ZEP_FOR_EACH_VARIANT(FloatToInteger);

}  // namespace
}  // namespace zep::test
