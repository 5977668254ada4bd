// Special values: what each gives, at every position of vectors of all lengths, and which status the
// call returns.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include "support/sweep.h"
#include "support/variant.h"
#include "vmath/functions.h"

namespace zep::test {
namespace {

constexpr std::uint32_t kInvalid = 0xFFC00000;
constexpr float kMin = 0x1p-126f, kTiny = 0x1p-149f, kMax = 0x1.fffffep127f;

// Anything that is NaN stands for a NaN whose bits are free.
struct Case {
    const char* function;
    float x, b;
    float y, z;
    ZepStatus status;
};

float nanOf(std::uint32_t bits) { return fromBits(bits); }

std::vector<Case> oneArgumentCases() {
    const float q = nanOf(0x7FC12345), invalid = nanOf(kInvalid);
    std::vector<Case> cases = {
        {"Exp_32f_A24", 0, 0, 1, 0, zepStsNoErr},
        {"Exp_32f_A24", -0.0f, 0, 1, 0, zepStsNoErr},
        {"Exp_32f_A24", kInf, 0, kInf, 0, zepStsNoErr},
        {"Exp_32f_A24", -kInf, 0, 0, 0, zepStsNoErr},
        {"Exp_32f_A24", kNan, 0, q, 0, zepStsNoErr},
        {"Exp_32f_A24", kTiny, 0, 1, 0, zepStsNoErr},
        {"Exp_32f_A24", 88.72283172607422f, 0, static_cast<float>(std::exp(88.72283172607422)), 0,
         zepStsNoErr},
        {"Exp_32f_A24", std::nextafter(88.72283172607422f, 100.0f), 0, kInf, 0, zepStsOverflow},
        {"Exp_32f_A24", kMax, 0, kInf, 0, zepStsOverflow},
        {"Exp_32f_A24", -90, 0, static_cast<float>(std::exp(-90.0)), 0, zepStsUnderflow},
        {"Exp_32f_A24", -100, 0, static_cast<float>(std::exp(-100.0)), 0, zepStsUnderflow},
        {"Exp_32f_A24", -104, 0, 0, 0, zepStsUnderflow},
        {"Exp_32f_A24", -kMax, 0, 0, 0, zepStsUnderflow},
        {"Exp_32f_I", 87.2f, 0, kInf, 0, zepStsNoErr},
        {"Exp_32f_I", kInf, 0, kInf, 0, zepStsNoErr},
        {"Exp_32f_I", -kInf, 0, 0, 0, zepStsNoErr},
        {"Exp_32f_I", -87.33650207519531f, 0, 0, 0, zepStsNoErr},
        {"Exp_32f_I", nanOf(0xFFD00000), 0, invalid, 0, zepStsNoErr},
        {"Exp_32f_I", nanOf(0x7FD00000), 0, nanOf(0x7FC00000), 0, zepStsNoErr},
        {"Ln_32f_I", 0, 0, -kInf, 0, zepStsLnZeroArg},
        {"Ln_32f_I", -0.0f, 0, -kInf, 0, zepStsLnZeroArg},
        {"Ln_32f_I", -1, 0, invalid, 0, zepStsLnNegArg},
        {"Ln_32f_I", -kTiny, 0, invalid, 0, zepStsLnNegArg},
        {"Ln_32f_I", -kInf, 0, invalid, 0, zepStsLnNegArg},
        {"Ln_32f_I", q, 0, q, 0, zepStsNoErr},
        {"Ln_32f_I", 1, 0, 0, 0, zepStsNoErr},
    };
    for (const char* f : {"Log10_32f_A11", "Log10_32f_A24"}) {
        for (float zero : {0.0f, -0.0f}) cases.push_back({f, zero, 0, -kInf, 0, zepStsSingularity});
        for (float negative : {-1.0f, -kTiny, -kInf, -nanOf(0x7FC00001)})
            cases.push_back({f, negative, 0, invalid, 0, zepStsDomain});
        cases.push_back({f, kInf, 0, kInf, 0, zepStsNoErr});
        cases.push_back({f, q, 0, q, 0, zepStsNoErr});
        cases.push_back({f, 1, 0, 0, 0, zepStsNoErr});
    }
    cases.push_back(
        {"Log10_32f_A24", kTiny, 0, static_cast<float>(std::log10(0x1p-149)), 0, zepStsNoErr});
    for (const char* f : {"SinCos_32f_A11", "SinCos_32f_A21", "SinCos_32f_A24"}) {
        for (float infinite : {kInf, -kInf})
            cases.push_back({f, infinite, 0, invalid, invalid, zepStsDomain});
        cases.push_back({f, kNan, 0, q, q, zepStsNoErr});
        cases.push_back({f, 0, 0, 0, 1, zepStsNoErr});
        cases.push_back({f, -0.0f, 0, -0.0f, 1, zepStsNoErr});
        cases.push_back({f, kTiny, 0, kTiny, 1, zepStsNoErr});
        for (float far : {10000.001f, 131072.0f, 1e10f, -kMax})
            cases.push_back({f, far, 0, static_cast<float>(std::sin(static_cast<double>(far))),
                             static_cast<float>(std::cos(static_cast<double>(far))), zepStsNoErr});
    }
    cases.push_back({"SinCos_32f_A24", 10000.0f, 0, static_cast<float>(std::sin(10000.0)),
                     static_cast<float>(std::cos(10000.0)), zepStsNoErr});
    return cases;
}

std::vector<Case> powerCases() {
    const float q = nanOf(0x7FC12345), invalid = nanOf(kInvalid);
    std::vector<Case> cases;
    const auto add = [&](float x, float b, float y, ZepStatus s = zepStsNoErr) {
        cases.push_back({"Pow_32f_A24", x, b, y, 0, s});
        cases.push_back({"Powx_32f_A24", x, b, y, 0, s});
    };
    for (float any : {0.0f, -0.0f, 1.0f, -2.5f, kInf, -kInf, kNan, kTiny})
        for (float zero : {0.0f, -0.0f}) add(any, zero, 1);
    for (float any : {2.5f, -3.0f, kInf, -kInf, kNan, kTiny}) add(1, any, 1);
    for (float infinite : {kInf, -kInf}) add(-1, infinite, 1);
    for (float other : {1.0f, 2.5f, kInf, kNan}) add(q, other, q);
    for (float any : {2.0f, -2.0f, 0.0f, -0.0f, kInf, -kInf}) add(any, q, q);
    for (float zero : {0.0f, -0.0f}) {
        add(zero, -kInf, kInf, zepStsDomain);
        add(zero, kInf, 0);
    }
    for (float large : {1.5f, -1.5f, kInf, -kInf, kMax}) {
        add(large, -kInf, 0);
        add(large, kInf, kInf);
    }
    for (float small : {0.5f, -0.5f, kTiny, -kTiny}) {
        add(small, -kInf, kInf);
        add(small, kInf, 0);
    }
    for (float y : {0.5f, -2.5f, 4194303.5f, kTiny}) add(-2, y, invalid, zepStsDomain);
    add(-2, 3, -8);
    add(-2, -3, -0.125f);
    add(-2, 4, 16);
    add(-1, 16777215, -1);
    add(-1, 16777216, 1);
    add(-1, kMax, 1);
    add(-0.0f, -3, -kInf, zepStsDomain);
    add(-0.0f, -2, kInf, zepStsDomain);
    add(-0.0f, -2.5f, kInf, zepStsDomain);
    add(0, -1, kInf, zepStsDomain);
    add(0, -0.5f, kInf, zepStsDomain);
    add(-0.0f, 3, -0.0f);
    add(-0.0f, 2, 0);
    add(-0.0f, 2.5f, 0);
    add(0, 3, 0);
    add(0, kTiny, 0);
    add(-kInf, -3, -0.0f);
    add(-kInf, -2, 0);
    add(-kInf, -2.5f, 0);
    add(-kInf, 3, -kInf);
    add(-kInf, 2, kInf);
    add(-kInf, 2.5f, kInf);
    add(kInf, -kTiny, 0);
    add(kInf, kTiny, kInf);
    add(2, 1000, kInf);
    add(-2, 1001, -kInf);
    add(2, -1000, 0);
    add(-2, -1001, -0.0f);
    add(kMax, kMax, kInf);
    add(kMax, -kMax, 0);
    add(2, -149, kTiny);
    add(2, 127, 0x1p127f);
    add(kTiny, 0.5f, static_cast<float>(std::pow(0x1p-149, 0.5)));
    add(kTiny, -0.5f, static_cast<float>(std::pow(0x1p-149, -0.5)));
    add(kMin, 1, kMin);
    add(3, 1, 3);
    return cases;
}

const MathFunction& named(const char* name) {
    for (const MathFunction& f : mathFunctions())
        if (std::string(f.name) == name) return f;
    throw std::invalid_argument(name);
}

// The bits of an invalid result and of the plain exponential's NaN are stated, other NaN are free.
bool matches(float y, float expected) {
    if (!std::isnan(expected)) return bitsOf(y) == bitsOf(expected);
    const std::uint32_t bits = bitsOf(expected);
    if (bits == kInvalid || bits == 0x7FC00000) return bitsOf(y) == bits;
    return std::isnan(y) && (bitsOf(y) & 0x00400000) != 0;  // quiet
}
// Sine and cosine of class A11 away from the block formula are exact to the last bit or nearly.
bool near(const MathFunction& f, float y, float expected) {
    if (matches(y, expected)) return true;
    return f.outputs == 2 && std::isfinite(expected) &&
           std::fabs(y - expected) <= std::exp2(f.bits > 0 ? -static_cast<float>(f.bits) : -24.0f);
}

class VectorMathSpecialValues : public VariantTest {
protected:
    // The case at every position of vectors of all lengths to 67, ordinary elements around it.
    static void check(const Case& c) {
        for (int len = 1; len <= 67; len += thinStep(16)) {
            check(c, len);
            if (HasFatalFailure()) return;
        }
    }
    static void check(const Case& c, int len) {
        const MathFunction& f = named(c.function);
        const auto size = static_cast<std::size_t>(len);
        std::vector<float> x(size, 1.5f), b(size, 2.0f), y(size), z(size), usual(size),
            second(size);
        if (f.constant) b[0] = c.b;
        f.run(x.data(), b.data(), usual.data(), second.data(), len);
        for (std::size_t at = 0; at < size; at += static_cast<std::size_t>(thinStep(5))) {
            x[at] = c.x;
            if (!f.constant) b[at] = c.b;
            const ZepStatus status = f.run(x.data(), b.data(), y.data(), z.data(), len);
            x[at] = 1.5f;
            if (!f.constant) b[at] = 2.0f;
            ASSERT_TRUE(near(f, y[at], c.y)) << c.x << ", " << c.b << " gives " << y[at] << " not "
                                             << c.y << " at " << at << " of " << len;
            if (f.outputs == 2) {
                ASSERT_TRUE(near(f, z[at], c.z)) << c.x << " at " << at << " of " << len;
            }
            ASSERT_EQ(status, c.status) << c.x << ", " << c.b << " at " << at << " of " << len;
            // The others are what they were without it.
            y[at] = usual[at];
            z[at] = second[at];
            ASSERT_EQ(std::memcmp(y.data(), usual.data(), size * sizeof(float)), 0)
                << c.x << " at " << at << " of " << len;
            if (f.outputs == 2) {
                ASSERT_EQ(std::memcmp(z.data(), second.data(), size * sizeof(float)), 0) << c.x;
            }
        }
    }
};

TEST_P(VectorMathSpecialValues, OneArgument) {
    for (const Case& c : oneArgumentCases()) {
        SCOPED_TRACE(c.function);
        check(c);
        if (HasFatalFailure()) return;
    }
}

TEST_P(VectorMathSpecialValues, Powers) {
    for (const Case& c : powerCases()) {
        SCOPED_TRACE(c.function);
        check(c);
        if (HasFatalFailure()) return;
    }
}

// What is not a number in the plain logarithm: its exponent and mantissa fields decide.
TEST_P(VectorMathSpecialValues, PlainLogarithmByFields) {
    float x[] = {kInf, kTiny, 0x1.8p-127f};
    ASSERT_EQ(zepsLn_32f_I(x, 3), zepStsNoErr);
    EXPECT_NEAR(x[0], 128 * std::log(2.0), 1e-5);
    EXPECT_NEAR(x[1], -127 * std::log(2.0), 1e-5);  // a fraction of 2^-23
    EXPECT_NEAR(x[2], -127 * std::log(2.0) + std::log(1.5), 0.41);
}

TEST_P(VectorMathSpecialValues, LastStatusCounts) {
    for (int gap : {1, 15, 16, 40}) {
        std::vector<float> x(60, 1.5f), y(60);
        const auto status = [&](auto f, float first, float second) {
            x.assign(60, 1.5f);
            x[3] = first;
            x[static_cast<std::size_t>(3 + gap)] = second;
            return f(x.data(), y.data(), 60);
        };
        EXPECT_EQ(status(zepsExp_32f_A24, 100, -100), zepStsUnderflow);
        EXPECT_EQ(status(zepsExp_32f_A24, -100, 100), zepStsOverflow);
        EXPECT_EQ(status(zepsExp_32f_A24, -100, kInf), zepStsUnderflow);
        EXPECT_EQ(status(zepsLog10_32f_A24, 0, -1), zepStsDomain);
        EXPECT_EQ(status(zepsLog10_32f_A24, -1, 0), zepStsSingularity);
        EXPECT_EQ(status(zepsLog10_32f_A11, 0, -1), zepStsDomain);
        EXPECT_EQ(status(zepsLog10_32f_A11, -1, kNan), zepStsDomain);
    }
}

TEST_P(VectorMathSpecialValues, FirstStatusOfThePlainLogarithmCounts) {
    for (int gap : {1, 15, 16, 40}) {
        std::vector<float> x(60, 1.5f);
        x[3] = 0;
        x[static_cast<std::size_t>(3 + gap)] = -1;
        EXPECT_EQ(zepsLn_32f_I(x.data(), 60), zepStsLnZeroArg);
        x.assign(60, 1.5f);
        x[3] = -1;
        x[static_cast<std::size_t>(3 + gap)] = 0;
        EXPECT_EQ(zepsLn_32f_I(x.data(), 60), zepStsLnNegArg);
    }
}

// A warning leaves its mark in the processor's sticky flags.
TEST_P(VectorMathSpecialValues, Flags) {
    const auto flagsOf = [](auto f, float at) {
        float x = at, y[2];
        const unsigned before = _mm_getcsr();
        _mm_setcsr(before & ~0x3Fu);
        f(&x, y);
        const unsigned flags = _mm_getcsr() & 0x3F;
        _mm_setcsr(before);
        return flags;
    };
    const auto exp = [](const float* x, float* y) { zepsExp_32f_A24(x, y, 1); };
    const auto log = [](const float* x, float* y) { zepsLog10_32f_A24(x, y, 1); };
    const auto sinCos = [](const float* x, float* y) { zepsSinCos_32f_A21(x, y, y + 1, 1); };
    EXPECT_NE(flagsOf(exp, 100) & _MM_EXCEPT_OVERFLOW, 0u);
    EXPECT_NE(flagsOf(exp, -100) & _MM_EXCEPT_UNDERFLOW, 0u);
    EXPECT_NE(flagsOf(log, 0) & _MM_EXCEPT_DIV_ZERO, 0u);
    EXPECT_NE(flagsOf(log, -1) & _MM_EXCEPT_INVALID, 0u);
    EXPECT_NE(flagsOf(sinCos, kInf) & _MM_EXCEPT_INVALID, 0u);
}

ZEP_FOR_EACH_VARIANT(VectorMathSpecialValues);

}  // namespace
}  // namespace zep::test
