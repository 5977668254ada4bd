// Products and scaled quotients of 16-bit integers.
#include "support/variant.h"
#include "vector/conversion_subject.h"

namespace zep::test {
namespace {

class Arithmetic16s : public VariantTest {};

Zep16s saturated(double x) { return static_cast<Zep16s>(std::clamp(x, -32768.0, 32767.0)); }

TEST_P(Arithmetic16s, ProductsSaturate) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (int len = 1; len <= 200; len += len < 70 ? 1 : 9)
            for (const int skew : {0, 1, 6, 31}) {
                GuardedBuffer<std::byte> a(2 * len, edge, skew), b(2 * len, edge),
                    y(2 * len, edge, 2 * skew);
                std::vector<Zep16s> a0, b0;
                for (std::size_t n = 0; n < static_cast<std::size_t>(len); ++n) {
                    a0.push_back(sampleValue<Zep16s>(n * 3 / 2));
                    b0.push_back(sampleValue<Zep16s>(n + static_cast<std::size_t>(len)));
                }
                std::memcpy(a.data(), a0.data(), a0.size() * 2);
                std::memcpy(b.data(), b0.data(), b0.size() * 2);
                const auto in = [](auto& buffer) {
                    return reinterpret_cast<Zep16s*>(buffer.data());
                };
                const auto check = [&](Zep16s* dst) {
                    ASSERT_EQ(zepsMul_16s(in(a), in(b), dst, len), zepStsNoErr);
                    for (std::size_t n = 0; n < a0.size(); ++n) {
                        Zep16s got;
                        std::memcpy(&got, reinterpret_cast<std::byte*>(dst) + 2 * n, 2);
                        ASSERT_EQ(got, saturated(double{static_cast<double>(a0[n])} * b0[n]))
                            << a0[n] << " * " << b0[n] << " len " << len << " n " << n;
                    }
                };
                check(in(y));
                check(in(b));  // in place, last: b is overwritten
            }
    const Zep16s least = -32768;
    Zep16s y = 0;
    ASSERT_EQ(zepsMul_16s(&least, &least, &y, 1), zepStsNoErr);
    EXPECT_EQ(y, 32767);
}

TEST_P(Arithmetic16s, ProductsTestPointersThenSize) {
    Zep16s x[2] = {1, 2}, y[2] = {9, 9};
    EXPECT_EQ(zepsMul_16s(nullptr, x, y, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsMul_16s(x, nullptr, y, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsMul_16s(x, x, nullptr, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsMul_16s(x, x, y, 0), zepStsSizeErr);
    EXPECT_EQ(zepsMul_16s(x, x, y, -3), zepStsSizeErr);
    EXPECT_EQ(y[0], 9);
}

// v in single precision by a mode, from the nearest float and its neighbours.
double inSingle(double v, unsigned mode) {
    const auto f = static_cast<Zep32f>(v);
    constexpr Zep32f kInf = std::numeric_limits<Zep32f>::infinity();
    const bool above = double{f} > v, exact = double{f} == v;
    if (exact || mode == kRoundNearest) return f;
    if (mode == kRoundDown || (mode == kRoundTowardZero && v > 0))
        return above ? std::nextafter(f, -kInf) : f;
    return above ? f : std::nextafter(f, kInf);
}
double wholeNumber(double v, unsigned mode) {
    const double down = std::floor(v), rest = v - down;
    if (mode == kRoundDown) return down;
    if (mode == kRoundUp) return std::ceil(v);
    if (mode == kRoundTowardZero) return std::trunc(v);
    return down + (rest > 0.5 || (rest == 0.5 && std::fmod(down, 2.0) != 0.0) ? 1.0 : 0.0);
}

// The steps by hand; quotient and products of floats are exact enough in double to be rounded to
// single once: a product has 48 bits, and a quotient of a power of two by 16 bits that is not
// exact in single is not near enough to a tie for 53 bits to hide it.
Zep16s quotient(Zep16s x, Zep16s val, int k, unsigned mode) {
    if (k > 15) return 0;
    if (k < -30) return x == 0 ? 0 : (x > 0) == (val > 0) ? 32767 : -32768;
    const double factor = inSingle(std::ldexp(1.0, -k) / val, mode);
    return saturated(wholeNumber(inSingle(x * factor, mode), mode));
}

void checkQuotients(Zep16s val, int k, int len, Edge edge, int skew, unsigned mode) {
    GuardedBuffer<std::byte> y(2 * len, edge, skew);
    std::vector<Zep16s> x;
    for (std::size_t n = 0; n < static_cast<std::size_t>(len); ++n)
        x.push_back(sampleValue<Zep16s>(n + static_cast<std::size_t>(len)));
    std::memcpy(y.data(), x.data(), x.size() * 2);
    {
        const ControlWord control(mode);
        ASSERT_EQ(zepsDivC_16s_ISfs(val, reinterpret_cast<Zep16s*>(y.data()), len, k), zepStsNoErr);
        EXPECT_TRUE(control.kept());
    }
    for (std::size_t n = 0; n < x.size(); ++n) {
        Zep16s got;
        std::memcpy(&got, y.data() + 2 * n, 2);
        ASSERT_EQ(got, quotient(x[n], val, k, mode))
            << x[n] << " / " << val << " k " << k << " mode " << mode << " len " << len;
    }
}

TEST_P(Arithmetic16s, QuotientsFollowTheirStepsAtEveryScaleAndMode) {
    for (const unsigned mode : kRoundingModes)
        for (int k = -40; k <= 20; ++k)
            for (const Zep16s val : {1, -1, 2, 3, -7, 10, 100, 257, -1000, 32767, -32768})
                checkQuotients(val, k, 71, Edge::Back, 0, mode);
    for (const int k : {std::numeric_limits<int>::min(), -70, 70, std::numeric_limits<int>::max()})
        checkQuotients(-3, k, 71, Edge::Back, 0, kRoundNearest);
}

TEST_P(Arithmetic16s, QuotientsWorkAtEveryLengthAndAddress) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const int k : {0, -20, -31})
            for (int len = 1; len <= 200; len += len < 70 ? 1 : 9)
                for (const int skew : {0, 1, 14, 33})
                    checkQuotients(3, k, len, edge, skew, kRoundNearest);
}

TEST_P(Arithmetic16s, QuotientsByZeroAreAnErrorAfterTheOthers) {
    Zep16s y[3] = {7, 8, 9};
    for (const int k : {0, 20, -40}) {
        EXPECT_EQ(zepsDivC_16s_ISfs(0, nullptr, 0, k), zepStsNullPtrErr);
        EXPECT_EQ(zepsDivC_16s_ISfs(0, y, 0, k), zepStsSizeErr);
        EXPECT_EQ(zepsDivC_16s_ISfs(0, y, -1, k), zepStsSizeErr);
        EXPECT_EQ(zepsDivC_16s_ISfs(0, y, 3, k), zepStsDivByZeroErr);
    }
    EXPECT_EQ(y[0], 7);
    EXPECT_EQ(y[2], 9);
}

ZEP_FOR_EACH_VARIANT(Arithmetic16s);

}  // namespace
}  // namespace zep::test
