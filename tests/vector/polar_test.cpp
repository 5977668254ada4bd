// Magnitudes, phases, powers and polar coordinates against double precision.
#include <algorithm>

#include "support/variant.h"
#include "vector/reduction_cases.h"

namespace zep::test {
namespace {

constexpr Zep32f kInfinity = std::numeric_limits<Zep32f>::infinity();
constexpr Zep32f kNan = std::numeric_limits<Zep32f>::quiet_NaN();

// Distance of two neighbouring floats at x.
double unitAt(double x) { return std::ldexp(1.0, std::max(std::ilogb(x), -126) - 23); }

// Over all directions and many orders of magnitude, never with a sum of squares out of range.
std::vector<Zep32fc> directions(int len) {
    std::vector<Zep32fc> z(static_cast<std::size_t>(len));
    for (Zep32fc& v : z) {
        v = randomValue<Zep32fc>();
        const int scale = static_cast<int>(rng()() % 90) - 45;
        v.re = std::ldexp(v.re, scale);
        v.im =
            std::ldexp(v.im, scale + static_cast<int>(rng()() % 3) * static_cast<int>(rng()() % 9));
    }
    return z;
}

class Polar : public VariantTest {};

template <class Call, class Check>
void checkOfComplex(Call call, Check check) {
    forVectors<Zep32fc>(directions, [&](const auto& values, auto& x) {
        for (const Edge edge : {Edge::Front, Edge::Back}) {
            Operand<Zep32f> y(x.size(), edge, x.size() % 3);
            ASSERT_EQ(call(x.data(), y.data(), x.size()), zepStsNoErr);
            for (int n = 0; n < x.size(); ++n) {
                check(values[static_cast<std::size_t>(n)], y.get(n));
                if (::testing::Test::HasFatalFailure()) return;
            }
        }
    });
    checkReductionErrors<Zep32fc, Zep32f>([&](auto x, int n, auto y) { return call(x, y, n); });
}

// 2^-21 as the header says, of the root of the rounded sum, whose own error the root halves.
void checkMagnitude(Zep32fc z, Zep32f got) {
    const double exact = std::hypot(double{z.re}, double{z.im});
    ASSERT_NEAR(got, exact, exact * (0x1p-21 + 0x1p-23)) << z.re << ' ' << z.im;
}

TEST_P(Polar, Magnitude) {
    checkOfComplex(zepsMagnitude_32fc, checkMagnitude);
    checkOfComplex(
        [](const Zep32fc* x, Zep32f* y, int n) {
            if (x == nullptr || y == nullptr || n <= 0)
                return zepsMagnitude_32f(reinterpret_cast<const Zep32f*>(x),
                                         reinterpret_cast<const Zep32f*>(x), y, n);
            Operand<Zep32f> re(n, Edge::Back), im(n, Edge::Front, 1);
            for (int k = 0; k < n; ++k) {
                Zep32fc z;
                std::memcpy(
                    &z, reinterpret_cast<const char*>(x) + static_cast<std::size_t>(k) * sizeof z,
                    sizeof z);
                re.set(k, z.re), im.set(k, z.im);
            }
            return zepsMagnitude_32f(re.data(), im.data(), y, n);
        },
        checkMagnitude);
    const Zep32f x[1] = {1};
    Zep32f y[1] = {7};
    EXPECT_EQ(zepsMagnitude_32f(nullptr, x, y, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsMagnitude_32f(x, nullptr, y, 1), zepStsNullPtrErr);
    EXPECT_EQ(y[0], 7.0f);
}

TEST_P(Polar, MagnitudeOutOfRange) {
    const struct {
        Zep32fc z;
        Zep32f magnitude;
    } kCases[] = {{{0, 0}, 0},
                  {{-0.0f, 0}, 0},
                  {{3e19f, 1}, kInfinity},
                  {{1e-23f, 1e-23f}, 0},
                  {{0x1p-70f, 0}, 0x1p-70f},
                  {{kInfinity, 1}, kInfinity},
                  {{2, -kInfinity}, kInfinity}};
    for (const int len : {1, 5, 40})
        for (const auto& c : kCases)
            for (int at = 0; at < len; at += 3) {
                std::vector<Zep32fc> z(static_cast<std::size_t>(len), Zep32fc{3, 4});
                z[static_cast<std::size_t>(at)] = c.z;
                std::vector<Zep32f> re, im, y(z.size()), y2(z.size());
                for (const Zep32fc v : z) re.push_back(v.re), im.push_back(v.im);
                ASSERT_EQ(zepsMagnitude_32fc(z.data(), y.data(), len), zepStsNoErr);
                ASSERT_EQ(zepsMagnitude_32f(re.data(), im.data(), y2.data(), len), zepStsNoErr);
                for (int n = 0; n < len; ++n) {
                    const auto i = static_cast<std::size_t>(n);
                    if (n == at)
                        ASSERT_EQ(y[i], c.magnitude) << c.z.re << ' ' << c.z.im;
                    else
                        ASSERT_NEAR(y[i], 5.0f, 5 * 0x1p-21);
                    ASSERT_EQ(y[i], y2[i]);
                }
            }
}

TEST_P(Polar, Power) {
    checkOfComplex(zepsPowerSpectr_32fc, [](Zep32fc z, Zep32f got) {
        const Zep32f re = z.re * z.re, im = z.im * z.im;
        ASSERT_EQ(got, re + im);
    });
}

// Below 2 units in the last place, as the header says.
TEST_P(Polar, Phase) {
    checkOfComplex(zepsPhase_32fc, [](Zep32fc z, Zep32f got) {
        const double exact = std::atan2(double{z.im}, double{z.re});
        ASSERT_NEAR(got, exact, 2 * unitAt(exact)) << z.re << ' ' << z.im;
    });
}

TEST_P(Polar, PhaseAllAround) {
    constexpr int kLen = 20000;
    std::vector<Zep32fc> z(kLen);
    std::vector<Zep32f> y(kLen);
    for (int n = 0; n < kLen; ++n) {
        const double angle = 6.283185307179586 * n / kLen;
        z[static_cast<std::size_t>(n)] = {static_cast<Zep32f>(std::cos(angle)),
                                          static_cast<Zep32f>(std::sin(angle))};
    }
    ASSERT_EQ(zepsPhase_32fc(z.data(), y.data(), kLen), zepStsNoErr);
    double worst = 0;
    for (std::size_t n = 0; n < z.size(); ++n) {
        const double exact = std::atan2(double{z[n].im}, double{z[n].re});
        if (exact != 0) worst = std::max(worst, std::fabs(y[n] - exact) / unitAt(exact));
    }
    EXPECT_LT(worst, 2.0);
    RecordProperty("units_in_the_last_place", std::to_string(worst));
}

TEST_P(Polar, PhaseOfSpecialValues) {
    const Zep32f kSpecial[] = {0.0f,       -0.0f,  1.0f,    -1.0f, kInfinity,
                               -kInfinity, 1e-40f, -1e-40f, 3e38f, kNan};
    for (const int len : {1, 4, 33})
        for (const Zep32f re : kSpecial)
            for (const Zep32f im : kSpecial) {
                const std::vector<Zep32fc> z(static_cast<std::size_t>(len), Zep32fc{re, im});
                std::vector<Zep32f> y(z.size());
                ASSERT_EQ(zepsPhase_32fc(z.data(), y.data(), len), zepStsNoErr);
                const double exact = std::atan2(double{im}, double{re});
                for (const Zep32f got : y) {
                    if (std::isnan(exact)) {
                        ASSERT_TRUE(std::isnan(got)) << re << ' ' << im;
                        continue;
                    }
                    ASSERT_EQ(std::signbit(got), std::signbit(exact)) << re << ' ' << im;
                    ASSERT_NEAR(got, exact, exact == 0 ? 0 : 2 * unitAt(exact)) << re << ' ' << im;
                }
            }
}

TEST_P(Polar, CartesianToPolarIsBothAndChecksEach) {
    for (const int len : {1, 15, 16, 70}) {
        const std::vector<Zep32fc> z = directions(len);
        const auto size = z.size();
        std::vector<Zep32f> magnitude(size), phase(size), magnitude2(size), phase2(size);
        ASSERT_EQ(zepsCartToPolar_32fc(z.data(), magnitude.data(), phase.data(), len), zepStsNoErr);
        ASSERT_EQ(zepsMagnitude_32fc(z.data(), magnitude2.data(), len), zepStsNoErr);
        ASSERT_EQ(zepsPhase_32fc(z.data(), phase2.data(), len), zepStsNoErr);
        EXPECT_EQ(magnitude, magnitude2);
        EXPECT_EQ(phase, phase2);
        std::vector<Zep32f> alone(size, 9.0f);
        EXPECT_EQ(zepsCartToPolar_32fc(z.data(), alone.data(), nullptr, len), zepStsNullPtrErr);
        EXPECT_EQ(alone, magnitude);
        EXPECT_EQ(zepsCartToPolar_32fc(z.data(), nullptr, alone.data(), len), zepStsNullPtrErr);
        EXPECT_EQ(alone, phase);
    }
    Zep32f x[1] = {7}, y[1] = {7};
    const Zep32fc z{1, 1};
    EXPECT_EQ(zepsCartToPolar_32fc(nullptr, x, y, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsCartToPolar_32fc(&z, x, y, 0), zepStsSizeErr);
    EXPECT_EQ(zepsCartToPolar_32fc(&z, nullptr, y, 0), zepStsNullPtrErr);
    EXPECT_EQ(zepsCartToPolar_32fc(&z, x, nullptr, 0), zepStsSizeErr);
    EXPECT_EQ(x[0], 7.0f);
    EXPECT_EQ(y[0], 7.0f);
}

// Phases of every size; some beside multiples of pi/2, some beyond the vector's own reduction.
std::vector<Zep32f> phases(int len) {
    std::vector<Zep32f> x(static_cast<std::size_t>(len));
    const bool large = rng()() % 2 == 0;
    for (Zep32f& v : x) {
        v = randomValue<Zep32f>() * 10;
        if (rng()() % 8 == 0)
            v = static_cast<Zep32f>(1.5707963267948966 * static_cast<double>(rng()() % 5000));
        if (large && rng()() % 4 == 0)
            v = std::ldexp(randomValue<Zep32f>(), static_cast<int>(rng()() % 128));
    }
    return x;
}

// 1.5 * 2^-23 of the magnitude, as the header says.
void checkCartesian(Zep32f magnitude, Zep32f phase, Zep32fc got) {
    const double tolerance = std::fabs(double{magnitude}) * 1.5 * 0x1p-23;
    ASSERT_NEAR(got.re, magnitude * std::cos(double{phase}), tolerance) << phase;
    ASSERT_NEAR(got.im, magnitude * std::sin(double{phase}), tolerance) << phase;
}

TEST_P(Polar, PolarToCartesian) {
    forVectors<Zep32f>(phases, [](const auto& values, auto& phase) {
        const int len = phase.size();
        Operand<Zep32f> magnitude(len, Edge::Back, 1);
        magnitude = randomValues<Zep32f>(len);
        Operand<Zep32fc> z(len, len % 2 ? Edge::Front : Edge::Back, len % 5);
        ASSERT_EQ(zepsPolarToCart_32fc(magnitude.data(), phase.data(), z.data(), len), zepStsNoErr);
        for (int n = 0; n < len; ++n) {
            checkCartesian(magnitude.get(n), values[static_cast<std::size_t>(n)], z.get(n));
            if (::testing::Test::HasFatalFailure()) return;
        }
    });
}

TEST_P(Polar, PolarToCartesianOfSpecialPhases) {
    const Zep32f kFinite[] = {0.0f,  8192.0f, -8192.0f, 8192.001f, 12345.678f,
                              -1e6f, 1e10f,   3.4e38f,  0x1p127f,  1e-40f};
    for (const Zep32f phase : kFinite)
        for (const int len : {1, 20}) {
            const std::vector<Zep32f> p(static_cast<std::size_t>(len), phase), m(p.size(), 2.0f);
            std::vector<Zep32fc> z(p.size());
            ASSERT_EQ(zepsPolarToCart_32fc(m.data(), p.data(), z.data(), len), zepStsNoErr);
            for (const Zep32fc v : z) checkCartesian(2.0f, phase, v);
        }
    for (const Zep32f phase : {kInfinity, -kInfinity, kNan}) {
        const Zep32f p[3] = {1, phase, 2}, m[3] = {1, 1, 1};
        Zep32fc z[3] = {};
        ASSERT_EQ(zepsPolarToCart_32fc(m, p, z, 3), zepStsNoErr);
        EXPECT_TRUE(std::isnan(z[1].re) && std::isnan(z[1].im));
        checkCartesian(1, 1, z[0]);
        checkCartesian(1, 2, z[2]);
    }
}

TEST_P(Polar, PolarToCartesianErrors) {
    const Zep32f one[1] = {1};
    checkReductionErrors<Zep32f, Zep32fc>(
        [&](auto x, int n, auto z) { return zepsPolarToCart_32fc(x, one, z, n); });
    checkReductionErrors<Zep32f, Zep32fc>(
        [&](auto x, int n, auto z) { return zepsPolarToCart_32fc(one, x, z, n); });
}

ZEP_FOR_EACH_VARIANT(Polar);

}  // namespace
}  // namespace zep::test
