// Packed samples of 24 bits, from float and to float: 3 bytes each and not one more.
#include "support/variant.h"
#include "vector/conversion_subject.h"

namespace zep::test {
namespace {

class Packed24Test : public VariantTest {};

ZepStatus toFloats(const Packed24* x, Zep32f* y, int len) {
    return zepsConvert_24s32f(reinterpret_cast<const Zep8u*>(x), y, len);
}
auto toSamples(int scale) {
    return [scale](const Zep32f* x, Packed24* y, int len) {
        return zepsConvert_32f24s_Sfs(x, reinterpret_cast<Zep8u*>(y), len, scale);
    };
}

Packed24 sampleOf(Zep32f x, int scale) {
    const int k = std::clamp(scale, -127, 127);
    const double factor = k == 127 ? 0.0 : std::ldexp(1.0, -k);
    const double v = x * factor;  // exact, and NaN for infinity times 0
    if (std::isnan(v) || v < -8388608.0) return Packed24::of(-8388608);
    if (v > 8388607.0) return Packed24::of(8388607);
    const double whole = std::floor(v), rest = v - whole;
    const bool up = rest > 0.5 || (rest == 0.5 && std::fmod(whole, 2.0) != 0.0);
    return Packed24::of(static_cast<int>(whole) + (up ? 1 : 0));
}

TEST_P(Packed24Test, BecomeFloatsAtEveryLengthAndAddress) {
    const auto value = [](Packed24 x) { return static_cast<Zep32f>(x.value()); };
    checkConversion(conversion<Packed24, Zep32f>("24s32f", toFloats, value));
}

TEST_P(Packed24Test, ComeFromFloatsAtEveryLengthAndAddress) {
    for (const int scale : {0, 1, -8})
        checkConversion(conversion<Zep32f, Packed24>("32f24s", toSamples(scale),
                                                     [=](Zep32f x) { return sampleOf(x, scale); }));
}

TEST_P(Packed24Test, ComeFromFloatsAtEveryScale) {
    for (int scale = -135; scale <= 135; ++scale) {
        const auto c = conversion<Zep32f, Packed24>("32f24s", toSamples(scale),
                                                    [=](Zep32f x) { return sampleOf(x, scale); });
        const Samples<Zep32f, Packed24> samples(c.expected);
        checkCall(c, samples, 211, Edge::Back, 0, 0);
    }
    for (const int scale : {std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        const Zep32f x[] = {1.0f, -1.0f, 0.0f};
        Packed24 y[3];
        ASSERT_EQ(toSamples(scale)(x, y, 3), zepStsNoErr);
        for (int n = 0; n < 3; ++n) EXPECT_EQ(y[n].value(), sampleOf(x[n], scale).value());
    }
}

TEST_P(Packed24Test, RoundToNearestUnderEveryModeAndLeaveTheWord) {
    checkControlWords<Zep32f, Packed24>("32f24s", toSamples(2),
                                        [](Zep32f x, unsigned) { return sampleOf(x, 2); });
}

TEST_P(Packed24Test, HaveTheseBytes) {
    const Zep32f x[] = {1.0e9f, -1.0e9f, -1.0f, 1.5f, 2.5f};
    Zep8u y[15];
    ASSERT_EQ(zepsConvert_32f24s_Sfs(x, y, 5, 0), zepStsNoErr);
    const Zep8u expected[] = {0xFF, 0xFF, 0x7F, 0, 0, 0x80, 0xFF, 0xFF, 0xFF, 2, 0, 0, 2, 0, 0};
    EXPECT_TRUE(std::equal(y, y + 15, expected));
    Zep32f back[2];
    const Zep8u samples[] = {0x00, 0x00, 0x80, 0x56, 0x34, 0x12};
    ASSERT_EQ(zepsConvert_24s32f(samples, back, 2), zepStsNoErr);
    EXPECT_EQ(back[0], -8388608.0f);
    EXPECT_EQ(back[1], 1193046.0f);
}

ZEP_FOR_EACH_VARIANT(Packed24Test);

}  // namespace
}  // namespace zep::test
