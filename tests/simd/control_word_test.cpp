// Arithmetic on values in registers, under a control word that is not the caller's. The kernels are
// of the kind that a compiler likes to move: visible, without side effects.
#include "simd/control_word.h"

#include <gtest/gtest.h>

#include <limits>

namespace zep::ZEP_VARIANT::simd {
namespace {

constexpr unsigned kDefault = 0x1F80;
constexpr unsigned kOverflowMask = 0x0400;
constexpr unsigned kFlagOverflow = 0x0008;
constexpr unsigned kFlagInexact = 0x0020;
constexpr unsigned kFlushToZero = 0x8000;
constexpr unsigned kDenormalsAreZero = 0x0040;
constexpr unsigned kRoundUp = 0x4000;

float product(float a, float b) { return a * b; }

// A value that the compiler does not know, in a register.
float opaque(float x) {
    asm volatile("" : "+x"(x));
    return x;
}

class ControlWord : public ::testing::Test {
protected:
    void TearDown() override { mxcsr::write(kDefault); }
};

TEST_F(ControlWord, NothingTrapsWhereExceptionsAreMasked) {
    const float a = opaque(std::numeric_limits<float>::max()), b = opaque(2.0f);
    mxcsr::write(kDefault & ~kOverflowMask);
    const float c = withMaskedExceptions(product, a, b);
    const unsigned after = mxcsr::read();
    mxcsr::write(kDefault);
    EXPECT_EQ(c, std::numeric_limits<float>::infinity());
    EXPECT_EQ(after, (kDefault & ~kOverflowMask) | kFlagOverflow | kFlagInexact);
}

TEST_F(ControlWord, FlagsOfEstimatesStayInside) {
    const float a = opaque(std::numeric_limits<float>::infinity()), b = opaque(0.0f);
    mxcsr::write(kDefault & ~kOverflowMask);
    const float c = withMaskedExceptions(product, a, b);
    const unsigned after = mxcsr::read();
    mxcsr::write(kDefault);
    EXPECT_NE(c, c);
    EXPECT_EQ(after, kDefault & ~kOverflowMask);
}

TEST_F(ControlWord, PlainArithmeticRoundsToNearest) {
    // 1 + 2^-23 squared: upwards would give one unit more.
    const float a = opaque(1.0f + 0x1p-23f);
    mxcsr::write(kDefault | kRoundUp);
    const float c = withPlainArithmetic(product, a, a);
    const float up = product(a, a);
    const unsigned after = mxcsr::read();
    mxcsr::write(kDefault);
    EXPECT_EQ(c, 1.0f + 0x1p-22f);
    EXPECT_EQ(up, 1.0f + 0x1p-22f + 0x1p-23f);
    EXPECT_EQ(after, kDefault | kRoundUp | kFlagInexact);
}

TEST_F(ControlWord, PlainArithmeticKeepsDenormals) {
    const float a = opaque(0x1p-140f), b = opaque(0x1p20f), d = opaque(0x1p-20f);
    mxcsr::write(kDefault | kFlushToZero | kDenormalsAreZero);
    const float fromDenormal = withPlainArithmetic(product, a, b);
    const float toDenormal = withPlainArithmetic(product, opaque(0x1p-110f), d);
    const unsigned after = mxcsr::read() & ~mxcsr::kFlags;
    mxcsr::write(kDefault);
    EXPECT_EQ(fromDenormal, 0x1p-120f);
    EXPECT_EQ(toDenormal, 0x1p-130f);
    EXPECT_EQ(after, kDefault | kFlushToZero | kDenormalsAreZero);
}

TEST_F(ControlWord, PlainArithmeticDoesNotTrap) {
    const float a = opaque(std::numeric_limits<float>::max());
    mxcsr::write(0);  // everything unmasked
    const float c = withPlainArithmetic(product, a, a);
    const unsigned after = mxcsr::read();
    mxcsr::write(kDefault);
    EXPECT_EQ(c, std::numeric_limits<float>::infinity());
    EXPECT_EQ(after, kFlagOverflow | kFlagInexact);
}

}  // namespace
}  // namespace zep::ZEP_VARIANT::simd
