// Tones against the exact sinusoid, in long double.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

constexpr long double kTwoPi = 6.283185307179586476925286766559L;

// The forms by one name; kParts is 2 where elements are complex.
template <class D>
struct Form;
template <>
struct Form<Zep32f> {
    using Real = Zep32f;
    static constexpr int kParts = 1;
    static constexpr auto tone = zepsTone_Direct_32f;
};
template <>
struct Form<Zep32fc> {
    using Real = Zep32f;
    static constexpr int kParts = 2;
    static constexpr auto tone = zepsTone_Direct_32fc;
};
template <>
struct Form<Zep64f> {
    using Real = Zep64f;
    static constexpr int kParts = 1;
    static constexpr auto tone = zepsTone_Direct_64f;
};
template <>
struct Form<Zep64fc> {
    using Real = Zep64f;
    static constexpr int kParts = 2;
    static constexpr auto tone = zepsTone_Direct_64fc;
};

const ZepHintAlgorithm kHints[] = {zepAlgHintFast, zepAlgHintNone};

// What the header says. In double precision a turn is off by at most 4.5e-16: the rounding of an
// angle below pi, of 2 pi, and of sine and cosine. A centre is at most 64 turns from the library's
// values in the accurate form (8192 samples, the narrowest vectors) and 256 in the fast one; a
// distance is at most 32 turns.
template <class Real>
long double bound(Real magn, ZepHintAlgorithm hint) {
    if (sizeof(Real) == 4) return magn * std::ldexp(3.0L, -25);
    return magn * (hint == zepAlgHintFast ? 5e-14L : 1.5e-13L);
}

template <class F>
void forEachForm(F f) {
    f(Zep32f{}), f(Zep32fc{}), f(Zep64f{}), f(Zep64fc{});
}

template <class D, class Real = typename Form<D>::Real>
void expectTone(const D* got, int len, Real magn, Real freq, Real phase, ZepHintAlgorithm hint,
                int step = 1) {
    const auto* parts = reinterpret_cast<const unsigned char*>(got);
    for (std::ptrdiff_t n = 0; n < len; n += step)
        for (int part = 0; part < Form<D>::kParts; ++part) {
            Real x;
            std::memcpy(&x, parts + (n * Form<D>::kParts + part) * std::ptrdiff_t{sizeof(Real)},
                        sizeof x);
            // The first product is exact, so that no whole turn takes bits from the fraction.
            const auto coarse = static_cast<long double>(static_cast<float>(freq));
            const auto count = static_cast<long double>(n);
            long double turns = coarse * count;
            turns = turns - std::floor(turns) + (freq - coarse) * count;
            const long double angle = turns * kTwoPi + phase;
            const long double exact = magn * (part == 0 ? std::cos(angle) : std::sin(angle));
            ASSERT_LE(std::fabs(x - exact), bound(magn, hint))
                << "sample " << n << " part " << part << " of " << len << ", frequency " << freq;
        }
}

class Tone : public VariantTest {};

TEST_P(Tone, EqualsTheSinusoidWithinItsBound) {
    forEachForm([](auto element) {
        using D = decltype(element);
        using Real = typename Form<D>::Real;
        std::vector<D> x(3000);
        // Among them those at which the steps of vectors make whole and half turns.
        for (const double freq : {0.0, 1e-7, 0.01, 1.0 / 64, 1.0 / 32 + 1e-9, 0.0625, 0.1, 0.125,
                                  0.25, 0.3333, 0.46875, 0.4999999})
            for (const ZepHintAlgorithm hint : kHints)
                for (const int len : {1, 2, 3, 15, 33, 100, 511, 512, 513, 1024, 1025, 3000}) {
                    Real phase = Real(1.25);
                    ASSERT_EQ(Form<D>::tone(x.data(), len, Real(3.5), Real(freq), &phase, hint),
                              zepStsNoErr);
                    ASSERT_NO_FATAL_FAILURE(
                        expectTone<D>(x.data(), len, Real(3.5), Real(freq), Real(1.25), hint));
                }
    });
}

TEST_P(Tone, WritesItsSamplesAndNothingElse) {
    forEachForm([](auto element) {
        using D = decltype(element);
        using Real = typename Form<D>::Real;
        for (const Edge edge : {Edge::Front, Edge::Back})
            for (const int len : sweepLengths())
                for (const ZepHintAlgorithm hint : kHints) {
                    GuardedBuffer<D> x(len, edge);
                    Real phase = Real(0.5);
                    ASSERT_EQ(Form<D>::tone(x.data(), len, Real(1), Real(0.11), &phase, hint),
                              zepStsNoErr);
                    ASSERT_NO_FATAL_FAILURE(
                        expectTone<D>(x.data(), len, Real(1), Real(0.11), Real(0.5), hint));
                }
    });
}

TEST_P(Tone, StandsAtAnyAddress) {
    std::vector<unsigned char> bytes(70 * sizeof(Zep64fc) + 16);
    forEachForm([&](auto element) {
        using D = decltype(element);
        using Real = typename Form<D>::Real;
        for (int skew = 0; skew < 16; ++skew) {
            auto* x = reinterpret_cast<D*>(bytes.data() + skew);
            Real phase = 0;
            ASSERT_EQ(Form<D>::tone(x, 70, Real(1), Real(0.2), &phase, zepAlgHintFast),
                      zepStsNoErr);
            ASSERT_NO_FATAL_FAILURE(
                expectTone<D>(x, 70, Real(1), Real(0.2), Real(0), zepAlgHintFast));
        }
    });
}

TEST_P(Tone, BlocksJoinWithoutABreak) {
    forEachForm([](auto element) {
        using D = decltype(element);
        using Real = typename Form<D>::Real;
        for (const ZepHintAlgorithm hint : kHints) {
            std::vector<D> whole(1000), cut(1000);
            Real phase = Real(2), cutPhase = Real(2);
            Form<D>::tone(whole.data(), 1000, Real(1), Real(0.0371), &phase, hint);
            Form<D>::tone(cut.data(), 500, Real(1), Real(0.0371), &cutPhase, hint);
            Form<D>::tone(cut.data() + 500, 500, Real(1), Real(0.0371), &cutPhase, hint);
            // The phase is narrowed to the type between the calls, by half an ULP of up to 2*pi; and
            // either call has its own error.
            const double ulp = sizeof(Real) == 4 ? std::ldexp(1.0, -21) : std::ldexp(1.0, -45);
            const auto tolerance = static_cast<double>(ulp + 2 * bound(Real(1), hint));
            const auto* a = reinterpret_cast<const Real*>(whole.data());
            const auto* b = reinterpret_cast<const Real*>(cut.data());
            for (int n = 0; n < 1000 * Form<D>::kParts; ++n)
                ASSERT_NEAR(a[n], b[n], tolerance) << n;
            EXPECT_NEAR(phase, cutPhase, 2 * ulp);
        }
    });
}

TEST_P(Tone, PhaseIsThatOfTheNextSample) {
    std::vector<Zep64f> x(12345);
    for (const double freq : {0.0, 0.1, 0.25, 0.4321}) {
        Zep64f phase = 1.0;
        zepsTone_Direct_64f(x.data(), 12345, 1.0, freq, &phase, zepAlgHintNone);
        const double w = freq * 6.283185307179586;
        double expected = 12345 * w + 1.0;
        expected -= std::floor(0.15915494309189535 * expected) * 6.283185307179586;
        if (expected < 0 || expected >= 6.283185307179586) expected = 0;
        EXPECT_EQ(phase, expected);
        EXPECT_GE(phase, 0);
        EXPECT_LT(phase, 6.283185307179586);
    }
}

TEST_P(Tone, TestsItsArgumentsInOrder) {
    forEachForm([](auto element) {
        using D = decltype(element);
        using Real = typename Form<D>::Real;
        constexpr auto tone = Form<D>::tone;
        D x[4] = {};
        const D zeros[4] = {};
        Real phase = 1;
        const auto hint = zepAlgHintNone;
        const Real tooLarge = Real(6.2831860);
        EXPECT_EQ(tone(nullptr, 0, Real(0), Real(1), nullptr, hint), zepStsNullPtrErr);
        EXPECT_EQ(tone(nullptr, 0, Real(0), Real(1), &phase, hint), zepStsToneMagnErr);
        EXPECT_EQ(tone(x, 4, Real(-1), Real(0.1), &phase, hint), zepStsToneMagnErr);
        EXPECT_EQ(tone(nullptr, 0, Real(1), Real(0.5), &phase, hint), zepStsToneFreqErr);
        EXPECT_EQ(tone(x, 4, Real(1), Real(-0.1), &phase, hint), zepStsToneFreqErr);
        phase = tooLarge;
        EXPECT_EQ(tone(nullptr, 0, Real(1), Real(0.1), &phase, hint), zepStsTonePhaseErr);
        EXPECT_EQ(phase, tooLarge);
        phase = Real(-0.1);
        EXPECT_EQ(tone(x, 4, Real(1), Real(0.1), &phase, hint), zepStsTonePhaseErr);
        phase = 1;
        EXPECT_EQ(tone(nullptr, 0, Real(1), Real(0.1), &phase, hint), zepStsNullPtrErr);
        EXPECT_EQ(tone(x, 0, Real(1), Real(0.1), &phase, hint), zepStsSizeErr);
        EXPECT_EQ(tone(x, -1, Real(1), Real(0.1), &phase, hint), zepStsSizeErr);
        EXPECT_EQ(phase, Real(1));
        EXPECT_EQ(std::memcmp(x, zeros, sizeof x), 0);
        EXPECT_EQ(tone(x, 4, Real(1), Real(0), &phase, hint), zepStsNoErr);
    });
}

// Ten million samples: what the header says of the drift.
template <class D>
void expectNoDrift(typename Form<D>::Real freq) {
    using Real = typename Form<D>::Real;
    constexpr int kLen = 10'000'000;
    std::vector<D> x(kLen);
    for (const ZepHintAlgorithm hint : kHints) {
        Real phase = Real(0.7);
        ASSERT_EQ(Form<D>::tone(x.data(), kLen, Real(1), freq, &phase, hint), zepStsNoErr);
        ASSERT_NO_FATAL_FAILURE(expectTone<D>(x.data(), kLen, Real(1), freq, Real(0.7), hint, 997));
    }
}

TEST_P(Tone, DoesNotDrift) {
    if (thin()) GTEST_SKIP() << "thin sweeps";
    for (const Zep32f freq : {0.0371f, 0.1249999f}) expectNoDrift<Zep32f>(freq);
    for (const Zep64f freq : {1e-9, 0.0371, 0.1249999}) expectNoDrift<Zep64f>(freq);
}

ZEP_FOR_EACH_VARIANT(Tone);

}  // namespace
}  // namespace zep::test
