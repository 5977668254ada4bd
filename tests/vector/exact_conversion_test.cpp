// Conversions without a parameter: exact ones, saturation, and those that round to a float.
#include "support/variant.h"
#include "vector/conversion_subject.h"

namespace zep::test {
namespace {

class ExactConversion : public VariantTest {};

// static_cast is the definition, where every value of S is one of D.
template <class S, class D>
void checkExact(const char* name, ZepStatus (*call)(const S*, D*, int)) {
    checkConversion(conversion<S, D>(name, call, [](S x) { return static_cast<D>(x); }));
}

TEST_P(ExactConversion, WidensIntegers) {
    checkExact<Zep8s, Zep16s>("8s16s", zepsConvert_8s16s);
    checkExact<Zep16s, Zep32s>("16s32s", zepsConvert_16s32s);
}

TEST_P(ExactConversion, TakesIntegersToFloats) {
    checkExact<Zep8s, Zep32f>("8s32f", zepsConvert_8s32f);
    checkExact<Zep8u, Zep32f>("8u32f", zepsConvert_8u32f);
    checkExact<Zep16s, Zep32f>("16s32f", zepsConvert_16s32f);
    checkExact<Zep16u, Zep32f>("16u32f", zepsConvert_16u32f);
    checkExact<Zep32s, Zep64f>("32s64f", zepsConvert_32s64f);
}

TEST_P(ExactConversion, WidensFloats) { checkExact<Zep32f, Zep64f>("32f64f", zepsConvert_32f64f); }

TEST_P(ExactConversion, SaturatesTo16Bits) {
    checkConversion(conversion<Zep32s, Zep16s>("32s16s", zepsConvert_32s16s, [](Zep32s x) {
        return static_cast<Zep16s>(x > 32767 ? 32767 : x < -32768 ? -32768 : x);
    }));
}

// x as a float by a rounding mode, from the nearest float and its neighbours. Runs under the
// ordinary mode.
Zep32f toFloat(double x, unsigned word) {
    const auto nearest = static_cast<Zep32f>(x);
    constexpr Zep32f kInf = std::numeric_limits<Zep32f>::infinity();
    if (std::isnan(x) || double{nearest} == x) return nearest;
    const bool above = double{nearest} > x;
    switch (word & kRoundTowardZero) {
        case kRoundDown:
            return above ? std::nextafter(nearest, -kInf) : nearest;
        case kRoundUp:
            return above ? nearest : std::nextafter(nearest, kInf);
        case kRoundTowardZero:
            return std::fabs(double{nearest}) > std::fabs(x) ? std::nextafter(nearest, 0.0f)
                                                             : nearest;
        default:
            return nearest;
    }
}

TEST_P(ExactConversion, RoundsToFloatsByTheCallersMode) {
    const auto nearest = [](auto x) { return toFloat(static_cast<double>(x), kRoundNearest); };
    checkConversion(conversion<Zep32s, Zep32f>("32s32f", zepsConvert_32s32f, nearest));
    checkConversion(conversion<Zep64f, Zep32f>("64f32f", zepsConvert_64f32f, nearest));
    checkControlWords<Zep32s, Zep32f>("32s32f", zepsConvert_32s32f, [](Zep32s x, unsigned word) {
        return toFloat(static_cast<double>(x), word);
    });
    // Floats that are denormal are left to flush-to-zero, which is not the subject here.
    for (const unsigned mode : kRoundingModes) {
        const auto call = [mode](const Zep64f* x, Zep32f* y, int len) {
            const ControlWord control(mode);
            const ZepStatus status = zepsConvert_64f32f(x, y, len);
            EXPECT_TRUE(control.kept());
            return status;
        };
        const auto expected = [mode](Zep64f x) { return toFloat(x, mode); };
        checkLengths(conversion<Zep64f, Zep32f>("64f32f", call, expected));
    }
}

TEST_P(ExactConversion, ScalesFloatsFrom16BitsWithinTheNormalNumbers) {
    for (int scale = -130; scale <= 140; ++scale) {
        const int k = std::clamp(scale, -112, 126);
        const auto call = [scale](const Zep16s* x, Zep32f* y, int len) {
            return zepsConvert_16s32f_Sfs(x, y, len, scale);
        };
        const auto expected = [k](Zep16s x) { return std::ldexp(static_cast<Zep32f>(x), -k); };
        const auto c = conversion<Zep16s, Zep32f>("16s32f_Sfs", call, expected);
        if (scale == 0 || scale == 15) checkConversion(c);
        const Samples<Zep16s, Zep32f> samples(c.expected);
        checkCall(c, samples, 300, Edge::Back, 0, 0);
    }
    for (const int scale : {1000, std::numeric_limits<int>::max()}) {
        const Zep16s x = -3;
        Zep32f y = 0;
        ASSERT_EQ(zepsConvert_16s32f_Sfs(&x, &y, 1, scale), zepStsNoErr);
        EXPECT_EQ(y, std::ldexp(-3.0f, -126));
        ASSERT_EQ(zepsConvert_16s32f_Sfs(&x, &y, 1, scale == 1000 ? -1000 : ~scale), zepStsNoErr);
        EXPECT_EQ(y, std::ldexp(-3.0f, 112));
    }
}

// What is written in the expected column of no reference: by hand.
TEST_P(ExactConversion, KnowsTheseValues) {
    const Zep32s wide[] = {40000, -40000, 32768, -32769, 5};
    Zep16s narrow[5];
    ASSERT_EQ(zepsConvert_32s16s(wide, narrow, 5), zepStsNoErr);
    const Zep16s expected[] = {32767, -32768, 32767, -32768, 5};
    EXPECT_TRUE(std::equal(narrow, narrow + 5, expected));
    const Zep64f big[] = {1.0e39, -1.0e39, 1.0000000001};
    Zep32f y[3];
    ASSERT_EQ(zepsConvert_64f32f(big, y, 3), zepStsNoErr);
    EXPECT_EQ(y[0], std::numeric_limits<Zep32f>::infinity());
    EXPECT_EQ(y[1], -std::numeric_limits<Zep32f>::infinity());
    EXPECT_EQ(y[2], 1.0f);
}

ZEP_FOR_EACH_VARIANT(ExactConversion);

}  // namespace
}  // namespace zep::test
