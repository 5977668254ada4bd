// The longest transforms: impulses, and there and back.
#include <cstdlib>
#include <cstring>

#include "transform/fft_impulses.h"

namespace zep::test {
namespace {

// Longer ones take gigabytes.
constexpr int kLongestUnasked = 25;
constexpr int kLongestComplex = 28;

struct Huge {
    const char* column;
    int order;
};

// Forward out of place, inverse in place; and the same forward in place.
void roundTripRestores(int order) {
    const ComplexFft fft(order, ZEP_FFT_SCALE_INV);
    std::vector<Zep32fc> x(std::size_t{1} << order), X(x.size());
    // Random enough, and quicker than a good generator.
    std::uint32_t state = 1;
    const auto next = [&state] {
        state = state * 1664525u + 1013904223u;
        return static_cast<float>(static_cast<std::int32_t>(state)) * 0x1p-31f;
    };
    for (Zep32fc& s : x) s = {next(), next()};
    ASSERT_EQ(fft.forward(x.data(), X.data()), zepStsNoErr);
    std::vector<Zep32fc> restored = X;
    ASSERT_EQ(fft.inverse(restored.data(), restored.data()), zepStsNoErr);
    double energy = 0, difference = 0;
    for (std::size_t n = 0; n < x.size(); ++n) {
        energy += std::norm(toDouble(x[n]));
        difference += std::norm(toDouble(restored[n]) - toDouble(x[n]));
    }
    EXPECT_LE(std::sqrt(difference / energy), std::sqrt(2.0) * rmsBound(order));
    ASSERT_EQ(fft.forward(x.data(), x.data()), zepStsNoErr);
    EXPECT_TRUE(sameBits(x.data(), X.data(), x.size())) << "in place";
}

class FftHuge : public testing::TestWithParam<Huge> {};

const Variant& variantOf(const char* column) {
    for (const Variant& v : kColumns)
        if (std::strcmp(v.name, column) == 0) return v;
    std::abort();
}

TEST_P(FftHuge, TransformsImpulsesAndThereAndBack) {
    const auto [column, order] = GetParam();
    if (thin()) GTEST_SKIP() << "too long for a thin sweep";
    if (order > kLongestUnasked && std::getenv("ZEP_TEST_HUGE") == nullptr)
        GTEST_SKIP() << "takes gigabytes; set ZEP_TEST_HUGE";
    const Variant& v = variantOf(column);
    if (!v.isBuilt() || !runsHere(v)) GTEST_SKIP() << "not compiled, or not for this machine";
    ASSERT_EQ(zepSelectColumn(v.slot), zepStsNoErr);
    if (order <= kLongestComplex) impulsesBecomeExponentials(order, kDirections[order % 2]);
    realImpulsesBecomePackedExponentials(order);
    if (order <= kLongestUnasked) roundTripRestores(order);
    zepSelectVariantAuto();
}

// Once in the variants that reach them by a route of their own: copies before the tiles, a second
// level of blocks.
INSTANTIATE_TEST_SUITE_P(
    Variants, FftHuge,
    testing::Values(Huge{"m7", 25}, Huge{"n8", 24}, Huge{"y8", 23}, Huge{"y8", 25}, Huge{"e9", 23},
                    Huge{"e9", 24}, Huge{"e9", 25}, Huge{"y8", 26}, Huge{"e9", 26}, Huge{"e9", 27},
                    Huge{"y8", 28}, Huge{"e9", 28}, Huge{"y8", 29}, Huge{"e9", 29}),
    [](const auto& huge) {
        return std::string(huge.param.column) + "_" + std::to_string(huge.param.order);
    });

}  // namespace
}  // namespace zep::test
