// Complex powers against the definition in long double, and the special values that follow from it.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <random>

#include "support/control_word.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "vmath/functions.h"

namespace zep::test {
namespace {

using Long = long double;

struct LongComplex {
    Long re, im;
};
struct Exact {
    LongComplex value;
    Long lost;  // what a double precision product rounds off, as an absolute error of each part
};

Long ln(Long re, Long im) {
    const Long a = std::max(std::fabs(re), std::fabs(im)),
               b = std::min(std::fabs(re), std::fabs(im));
    // a^2 - 1 + b^2 is exact where it cancels.
    const Long nearOne = (a * a - 1) + b * b;
    return std::fabs(nearOne) < 0.1L ? std::log1p(nearOne) / 2 : std::log(a * a + b * b) / 2;
}

// Finite z other than 0, finite w.
Exact power(Zep32fc z, Zep32fc w) {
    const Long lnRe = ln(z.re, z.im),
               lnIm = std::atan2(static_cast<Long>(z.im), static_cast<Long>(z.re));
    const Long a = w.re * lnRe, b = w.im * lnIm, c = w.re * lnIm, d = w.im * lnRe;
    const Long modulus = std::exp(a - b);
    const Long terms = std::fabs(a) + std::fabs(b) + std::fabs(c) + std::fabs(d);
    return {{modulus * std::cos(c + d), modulus * std::sin(c + d)}, modulus * terms * 0x1p-51L};
}

// In units of the last place, less what a double precision product explains.
double error(float y, Long exact, Long lost) {
    if (lost >= std::fabs(exact) && lost > 0x1p127L) return 0;  // of any size and sign
    if (std::fabs(exact) >= 0x1.ffffffp127L)
        return std::isinf(y) && (y > 0) == (exact > 0) ? 0 : 1e9;
    if (!std::isfinite(y)) return 1e9;
    int e = -125;
    std::frexp(exact, &e);
    const Long off = std::max(std::fabs(static_cast<Long>(y) - exact) - lost, Long{0});
    return static_cast<double>(off / std::ldexp(Long{1}, std::max(e, -125) - 24));
}

class ComplexPower : public VariantTest {
protected:
    static void check(const std::vector<Zep32fc>& z, const std::vector<Zep32fc>& w) {
        std::vector<Zep32fc> y(z.size());
        ASSERT_EQ(zepsPow_32fc_A24(z.data(), w.data(), y.data(), static_cast<int>(z.size())),
                  zepStsNoErr);
        for (std::size_t i = 0; i < z.size(); ++i) {
            const Exact exact = power(z[i], w[i]);
            ASSERT_LE(error(y[i].re, exact.value.re, exact.lost), 0.75)
                << "re of (" << z[i].re << ", " << z[i].im << ") to (" << w[i].re << ", " << w[i].im
                << ")";
            ASSERT_LE(error(y[i].im, exact.value.im, exact.lost), 0.75)
                << "im of (" << z[i].re << ", " << z[i].im << ") to (" << w[i].re << ", " << w[i].im
                << ")";
        }
    }
    static int count() { return thin() ? 2000 : 20000; }
};

float spread(float reach) { return randomValue<float>() * reach; }

TEST_P(ComplexPower, Everywhere) {
    std::vector<Zep32fc> z, w;
    for (int n = 0; n < count(); ++n) {
        const float size = std::exp2(spread(n % 2 == 0 ? 2.0f : 100.0f));
        z.push_back({spread(size), spread(size)});
        w.push_back({spread(3), spread(3)});
    }
    check(z, w);
}

TEST_P(ComplexPower, OnAndBesideTheUnitCircle) {
    std::vector<Zep32fc> z, w;
    for (int n = 0; n < count(); ++n) {
        const double angle = static_cast<double>(spread(3.1415f));
        const double r = 1 + static_cast<double>(spread(1)) * std::exp2(-(n % 24));
        z.push_back(
            {static_cast<float>(r * std::cos(angle)), static_cast<float>(r * std::sin(angle))});
        const float size = std::exp2(static_cast<float>(n % 16));
        w.push_back({spread(size), spread(size)});
    }
    check(z, w);
}

TEST_P(ComplexPower, LargeExponentsOfSmallLogarithms) {
    std::vector<Zep32fc> z, w;
    for (int n = 0; n < count() / 4; ++n) {
        z.push_back({1 + spread(0x1p-20f), spread(0x1p-20f)});
        w.push_back({spread(0x1p24f), spread(0x1p20f)});
    }
    check(z, w);
}

TEST_P(ComplexPower, OfAPointOnTheUnitCircle) {
    const Zep32fc z = {0.6f, 0.8f};
    Zep32fc y;
    ASSERT_EQ(zepsPowx_32fc_A24(&z, {2, 0}, &y, 1), zepStsNoErr);
    const Exact exact = power(z, {2, 0});
    EXPECT_LE(error(y.re, exact.value.re, 0), 0.75);
    EXPECT_LE(error(y.im, exact.value.im, 0), 0.75);
    EXPECT_NEAR(std::hypot(y.re, y.im), 1, 1e-7);
}

TEST_P(ComplexPower, RealAxes) {
    std::vector<Zep32fc> z, w;
    for (float x : {0.5f, 1.0f, 2.0f, 1e-40f, 1e38f, -0.5f, -2.0f})
        for (float p : {1.0f, 2.0f, -3.0f, 0.5f, 1.25f}) {
            z.insert(z.end(), {{x, 0.0f}, {x, -0.0f}, {0.0f, x}});
            w.insert(w.end(), {{p, 0.0f}, {p, 0.0f}, {p, 0.0f}});
        }
    check(z, w);
    const Zep32fc two = {2, -0.0f};
    Zep32fc y;
    zepsPowx_32fc_A24(&two, {3, -0.0f}, &y, 1);
    EXPECT_EQ(y.re, 8.0f);
    EXPECT_EQ(bitsOf(y.im), bitsOf(-0.0f));  // the sign of a zero stays
}

TEST_P(ComplexPower, SpecialValues) {
    struct Row {
        Zep32fc z, w, y;
    };
    const float n = kNan, i = kInf;
    const Row rows[] = {
        // ln 0 is minus infinity: times w, in either part, it makes zeros of whatever angle.
        {{0, 0}, {2, 0}, {0, 0}},      {{0, 0}, {1, 1}, {0, 0}},
        {{0, 0}, {0, 0}, {n, n}},      {{n, 1}, {1, 1}, {n, n}},
        {{1, n}, {1, 1}, {n, n}},      {{2, 1}, {n, 1}, {n, n}},
        {{2, 1}, {1, n}, {n, n}},      {{2, 0}, {0, 0}, {1, 0}},
        {{2, 3}, {0, 0}, {1, 0}},      {{1, 0}, {5, 7}, {1, 0}},
        {{2, 1}, {1e38f, 0}, {i, -i}}, {{0.25f, 0.125f}, {1e38f, 0}, {0, 0}},
    };
    for (const Row& row : rows) {
        Zep32fc y = {7, 7};
        ASSERT_EQ(zepsPow_32fc_A24(&row.z, &row.w, &y, 1), zepStsNoErr);
        const auto same = [](float got, float expected) {
            if (std::isnan(expected)) return std::isnan(got);
            if (std::isinf(expected)) return std::isinf(got);  // its sign is that of a huge angle
            return got == expected;
        };
        EXPECT_TRUE(same(y.re, row.y.re))
            << row.z.re << "," << row.z.im << " to " << row.w.re << "," << row.w.im << ": " << y.re;
        EXPECT_TRUE(same(y.im, row.y.im))
            << row.z.re << "," << row.z.im << " to " << row.w.re << "," << row.w.im << ": " << y.im;
    }
}

TEST_P(ComplexPower, DenormalPartsRaiseTheUnderflowFlag) {
    const Zep32fc z = {0.0625f, 0.03125f}, w = {33, 0};
    Zep32fc y;
    const unsigned before = _mm_getcsr();
    _mm_setcsr(before & ~0x3Fu);
    const ZepStatus status = zepsPow_32fc_A24(&z, &w, &y, 1);
    const unsigned flags = _mm_getcsr();
    _mm_setcsr(before);
    EXPECT_EQ(status, zepStsNoErr);
    EXPECT_TRUE(std::fpclassify(y.re) == FP_SUBNORMAL || std::fpclassify(y.im) == FP_SUBNORMAL)
        << y.re << ", " << y.im;
    EXPECT_NE(flags & _MM_EXCEPT_UNDERFLOW, 0u);
}

TEST_P(ComplexPower, PlacementAndSettings) {
    constexpr int kCount = 80;
    std::vector<Zep32fc> z, w, alone(kCount);
    for (int n = 0; n < kCount; ++n) {
        z.push_back(n % 7 == 3 ? Zep32fc{n % 2 == 0 ? 0.0f : kInf, 1}
                               : Zep32fc{spread(3), spread(3)});
        w.push_back(n % 11 == 5 ? Zep32fc{1e6f, 3} : Zep32fc{spread(2), spread(2)});
        zepsPow_32fc_A24(&z.back(), &w.back(), &alone[static_cast<std::size_t>(n)], 1);
    }
    const auto same = [&](const Zep32fc* y, int from, int len) {
        return std::memcmp(y, alone.data() + from, static_cast<std::size_t>(len) * sizeof *y) == 0;
    };
    for (int len : sweepLengths(67)) {
        const int from = len % 13;
        const std::size_t bytes = static_cast<std::size_t>(len) * 8;
        GuardedBuffer<std::byte> x(len * 8, Edge::Back, len % 3), p(len * 8, Edge::Front, len % 5);
        std::memcpy(x.data(), z.data() + from, bytes);
        std::memcpy(p.data(), w.data() + from, bytes);
        auto* y = reinterpret_cast<Zep32fc*>(x.data());
        zepsPow_32fc_A24(y, reinterpret_cast<Zep32fc*>(p.data()), y, len);
        ASSERT_TRUE(same(y, from, len)) << len;
    }
    for (unsigned mode : kRoundingModes) {
        std::vector<Zep32fc> y(kCount);
        unsigned short full, narrowed;
        asm volatile("fnstcw %0" : "=m"(full));
        narrowed = static_cast<unsigned short>((full & ~0xF00) | 0x400);  // single precision, down
        bool kept = false;
        unsigned short after = 0;
        {
            const ControlWord word(mode | kFlushToZero | kDenormalsAreZero);
            asm volatile("fldcw %0" ::"m"(narrowed));
            zepsPow_32fc_A24(z.data(), w.data(), y.data(), kCount);
            asm volatile("fnstcw %0\n\tfldcw %1" : "=m"(after) : "m"(full));
            kept = word.kept();
        }
        EXPECT_TRUE(kept);
        EXPECT_EQ(after, narrowed);
        ASSERT_TRUE(same(y.data(), 0, kCount)) << mode;
    }
    for (int n = 0; n < kCount; ++n) {
        Zep32fc y;
        zepsPowx_32fc_A24(&z[static_cast<std::size_t>(n)], w[static_cast<std::size_t>(n)], &y, 1);
        ASSERT_TRUE(same(&y, n, 1));
    }
    std::vector<Zep32fc> y(kCount);
    zepsPowx_32fc_A24(z.data(), {1.5f, -0.5f}, y.data(), kCount);
    for (int n = 0; n < kCount; ++n) {
        const auto i = static_cast<std::size_t>(n);
        Zep32fc one;
        zepsPowx_32fc_A24(&z[i], {1.5f, -0.5f}, &one, 1);
        ASSERT_EQ(std::memcmp(&one, &y[i], sizeof one), 0);
    }
}

TEST_P(ComplexPower, ErrorsWriteNothing) {
    const Zep32fc z = {1, 2};
    Zep32fc y = {7, 7};
    EXPECT_EQ(zepsPow_32fc_A24(nullptr, nullptr, nullptr, 0), zepStsSizeErr);
    EXPECT_EQ(zepsPow_32fc_A24(&z, &z, &y, -1), zepStsSizeErr);
    EXPECT_EQ(zepsPow_32fc_A24(nullptr, &z, &y, 1), zepStsNullPtrErr);
    EXPECT_EQ(zepsPow_32fc_A24(&z, nullptr, &y, 1), zepStsNullPtrErr);
    EXPECT_EQ(zepsPow_32fc_A24(&z, &z, nullptr, 1), zepStsNullPtrErr);
    EXPECT_EQ(zepsPowx_32fc_A24(nullptr, z, nullptr, 0), zepStsSizeErr);
    EXPECT_EQ(zepsPowx_32fc_A24(nullptr, z, &y, 1), zepStsNullPtrErr);
    EXPECT_EQ(zepsPowx_32fc_A24(&z, z, nullptr, 1), zepStsNullPtrErr);
    EXPECT_EQ(y.re, 7.0f);
    EXPECT_EQ(y.im, 7.0f);
}

ZEP_FOR_EACH_VARIANT(ComplexPower);

}  // namespace
}  // namespace zep::test
