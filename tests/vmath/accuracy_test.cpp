// The accuracy of every function, by a strided sweep over all single precision numbers, and of
// powers over pairs that spread over all exponents. benchmarks/vmath/vmath_error walks all of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "vmath/functions.h"

namespace zep::test {
namespace {

class VectorMathAccuracy : public VariantTest {};

// Within its promise, for one result. What double precision makes of the reference is below 2^-50.
::testing::AssertionResult good(const MathFunction& f, float y, double exact) {
    if (f.ulp > 0) {
        const double error = ulpError(y, exact);
        if (error <= f.ulp) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << error << " ULP";
    }
    if (std::isnan(exact) || std::isinf(exact)) {
        const bool same = std::isnan(exact) ? std::isnan(y) : y == static_cast<float>(exact);
        return same ? ::testing::AssertionSuccess()
                    : ::testing::AssertionFailure() << y << " for " << exact;
    }
    const double scale = f.outputs == 2 ? std::max(std::fabs(exact), 0x1p-12) : std::fabs(exact);
    const double error = std::fabs(static_cast<double>(y) - exact) / scale;
    if (error <= std::exp2(-f.bits)) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << -std::log2(error) << " bits";
}

// The plain functions' own rule for arguments near the ends.
bool leftOut(const MathFunction& f, float x) {
    const std::string name = f.name;
    if (name == "Exp_32f_I") return !(x > -87.3365f && x <= 87.0999984741211f);
    if (name == "Ln_32f_I") return !(x >= 0x1p-126f && x < kInf);
    return false;
}

TEST_P(VectorMathAccuracy, OneArgument) {
    constexpr int kChunk = 4096;
    std::vector<float> x(kChunk), y(kChunk), z(kChunk);
    for (const MathFunction& f : mathFunctions()) {
        if (f.inputs != 1 || f.constant) continue;
        SCOPED_TRACE(f.name);
        std::uint64_t bits = 0;
        const std::uint64_t stride = 79'999u * static_cast<unsigned>(thinStep(40));
        while (bits < (std::uint64_t{1} << 32)) {
            int n = 0;
            for (; n < kChunk && bits < (std::uint64_t{1} << 32); bits += stride)
                x[n++] = fromBits(static_cast<std::uint32_t>(bits));
            f.run(x.data(), nullptr, y.data(), z.data(), n);
            for (int i = 0; i < n; ++i) {
                if (leftOut(f, x[i])) continue;
                const double at = static_cast<double>(x[i]);
                ASSERT_TRUE(good(f, y[i], f.first(at, 0))) << " at " << x[i];
                if (f.outputs == 2) {
                    ASSERT_TRUE(good(f, z[i], f.second(at, 0))) << " at " << x[i];
                }
            }
        }
    }
}

// Single precision numbers close to multiples of pi/2, where the reduction cancels most.
TEST_P(VectorMathAccuracy, NearMultiplesOfAQuarterTurn) {
    std::vector<float> x;
    for (int k = 1; k < 6366; k += 1 + k / 64) {
        const auto near = static_cast<float>(k * 1.5707963267948966);
        for (float v : {std::nextafter(near, 0.0f), near, std::nextafter(near, kInf)})
            x.insert(x.end(), {v, -v});
    }
    for (float far : {1e5f, 1e6f, 16367173.0f, 1e10f, 1e20f, 0x1.921fb6p25f, 3e38f})
        x.push_back(far);
    const int len = static_cast<int>(x.size());
    std::vector<float> sin(x.size()), cos(x.size());
    for (const MathFunction& f : mathFunctions()) {
        if (f.outputs != 2) continue;
        f.run(x.data(), nullptr, sin.data(), cos.data(), len);
        for (std::size_t i = 0; i < x.size(); ++i) {
            const double at = static_cast<double>(x[i]);
            ASSERT_TRUE(good(f, sin[i], std::sin(at))) << f.name << " at " << x[i];
            ASSERT_TRUE(good(f, cos[i], std::cos(at))) << f.name << " at " << x[i];
        }
    }
}

// Bases of all exponents, or within 2^-k of one; exponents so that the result may just be a number.
TEST_P(VectorMathAccuracy, Powers) {
    const int count = thin() ? 4096 : 65536;
    std::vector<float> x(static_cast<std::size_t>(count)), b(x.size()), y(x.size());
    std::mt19937_64& random = rng();
    for (std::size_t i = 0; i < x.size(); ++i) {
        const auto word = static_cast<std::uint32_t>(random());
        if (i % 2 == 0) {
            x[i] = fromBits(0x00800000 + word % 0x7F000000);
        } else {
            const int spread = static_cast<std::int32_t>(word) >> (8 + i / 2 % 22);
            x[i] = fromBits(static_cast<std::uint32_t>(0x3F800000 + spread));
        }
        if (x[i] == 1.0f) x[i] = 1.5f;
        const double reach = 105.0 / std::fabs(std::log(static_cast<double>(x[i])));
        b[i] = static_cast<float>(reach * static_cast<double>(randomValue<float>()));
    }
    ASSERT_EQ(zepsPow_32f_A24(x.data(), b.data(), y.data(), count), zepStsNoErr);
    for (std::size_t i = 0; i < x.size(); ++i) {
        const auto exact = static_cast<double>(
            powl(static_cast<long double>(x[i]), static_cast<long double>(b[i])));
        ASSERT_LE(ulpError(y[i], exact), 0.55) << x[i] << " to " << b[i];
    }
    for (std::size_t i = 0; i < x.size(); i += 64) {
        float one = 0;
        zepsPowx_32f_A24(&x[i], b[i], &one, 1);
        ASSERT_EQ(bitsOf(one), bitsOf(y[i])) << x[i] << " to " << b[i];
    }
}

ZEP_FOR_EACH_VARIANT(VectorMathAccuracy);

}  // namespace
}  // namespace zep::test
