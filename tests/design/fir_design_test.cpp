// Filter designs against their formulas, tap by tap.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/sweep.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {
namespace {

using Real = long double;
const Real kPi = std::acos(Real{-1});

enum class Kind { Lowpass, Highpass, Bandpass, Bandstop };

ZepStatus design(Kind kind, double f1, double f2, Zep64f* taps, int len, int window, int normal) {
    switch (kind) {
        case Kind::Lowpass:
            return zepsFIRGenLowpass_64f(f1, taps, len, static_cast<ZepWinType>(window), normal);
        case Kind::Highpass:
            return zepsFIRGenHighpass_64f(f1, taps, len, static_cast<ZepWinType>(window), normal);
        case Kind::Bandpass:
            return zepsFIRGenBandpass_64f(f1, f2, taps, len, static_cast<ZepWinType>(window),
                                          normal);
        default:
            return zepsFIRGenBandstop_64f(f1, f2, taps, len, static_cast<ZepWinType>(window),
                                          normal);
    }
}

// At signed distance m from the centre, in half samples.
Real ideal(Kind kind, Real f1, Real f2, int twice, bool odd) {
    const Real m = std::abs(twice) * Real{0.5};
    const auto sine = [m](Real f) { return std::sin(2 * kPi * f * m); };
    if (twice == 0) {
        const Real band = 2 * (f2 - f1);
        return kind == Kind::Lowpass    ? 2 * f1
               : kind == Kind::Highpass ? 1 - 2 * f1
               : kind == Kind::Bandpass ? band
                                        : 1 - band;
    }
    const Real sign = std::abs(twice) / 2 % 2 == 0 ? 1 : -1;
    Real x = 0;
    switch (kind) {
        case Kind::Lowpass:
            x = sine(f1);
            break;
        case Kind::Highpass:
            // Of even length antisymmetric, with the lower half as it is.
            x = odd ? -sine(f1) : (twice > 0 ? -1 : 1) * std::cos(2 * kPi * f1 * m);
            break;
        case Kind::Bandpass:
            x = sine(f2) - sine(f1);
            break;
        case Kind::Bandstop:
            x = (odd ? 0 : sign) + sine(f1) - sine(f2);
            break;
    }
    return x / (kPi * m);
}

Real window(int type, int n, int len) {
    const Real a = 2 * kPi * n / (len - 1);
    const Real edge = std::cos(kPi / (len - 1));
    const Real alpha = -0.25L / (edge * edge);
    switch (type) {
        case 0:
            return n * 2 < len - 1 ? 2 * Real(n) / (len - 1) : 2 - 2 * Real(n) / (len - 1);
        case 1:
            return (alpha + 1) / 2 - std::cos(a) / 2 - alpha / 2 * std::cos(2 * a);
        case 2:
            return 0.54L - 0.46L * std::cos(a);
        case 3:
            return 0.5L - 0.5L * std::cos(a);
        default:
            return 1;
    }
}

// The response at frequency f, about the centre.
Real gain(const std::vector<Real>& h, Real f) {
    Real re = 0, im = 0;
    const Real centre = Real(h.size() - 1) / 2;
    for (std::size_t n = 0; n < h.size(); ++n) {
        re += h[n] * std::cos(2 * kPi * f * (Real(n) - centre));
        im += h[n] * std::sin(2 * kPi * f * (Real(n) - centre));
    }
    return std::hypot(re, im);
}

std::vector<Real> model(Kind kind, double f1, double f2, int len, int type, bool normal) {
    std::vector<Real> h;
    for (int n = 0; n < len; ++n)
        h.push_back(ideal(kind, f1, f2, 2 * n - (len - 1), len % 2 != 0) * window(type, n, len));
    if (!normal) return h;
    const Real at = kind == Kind::Highpass   ? Real{0.5}
                    : kind == Kind::Bandpass ? (Real(f1) + Real(f2)) / 2
                                             : Real{0};
    const Real g = gain(h, at);
    for (Real& x : h) x /= g;
    return h;
}

constexpr Kind kKinds[] = {Kind::Lowpass, Kind::Highpass, Kind::Bandpass, Kind::Bandstop};

void checkDesign(Kind kind, double f1, double f2, int len, int type, int normal, Edge edge,
                 int skew) {
    GuardedBuffer<Zep64f> taps(len, edge, skew);
    ASSERT_EQ(design(kind, f1, f2, taps.data(), len, type, normal), zepStsNoErr);
    std::vector<Zep64f> got(static_cast<std::size_t>(len));
    std::memcpy(got.data(), taps.data(), got.size() * sizeof(Zep64f));
    const std::vector<Real> expected = model(kind, f1, f2, len, type, normal != 0);
    const bool mirrored = kind == Kind::Highpass && len % 2 == 0;
    for (std::size_t n = 0; n < got.size(); ++n) {
        ASSERT_NEAR(got[n], static_cast<double>(expected[n]), 1e-13)
            << "kind " << static_cast<int>(kind) << " tap " << n << " of " << len << " window "
            << type << " normal " << normal;
        const Zep64f other = got[got.size() - 1 - n];
        ASSERT_EQ(got[n], mirrored ? -other : other);
    }
}

class FirDesign : public VariantTest {};

TEST_P(FirDesign, FollowsTheFormulas) {
    std::vector<int> lengths;
    for (const int len : sweepLengths(70))
        if (len >= 5) lengths.push_back(len);
    for (const int len : lengths)
        for (const Kind kind : kKinds)
            for (const int type : {0, 1, 2, 3, 4})
                for (const int normal : {0, 1})
                    checkDesign(kind, 0.11, 0.31, len, type, normal,
                                len % 2 == 0 ? Edge::Front : Edge::Back, len % 3);
}

TEST_P(FirDesign, FollowsTheFormulasAtManyFrequencies) {
    for (const Kind kind : kKinds)
        for (const double f1 : {1e-3, 0.2, 0.25, 0.3, 0.45})
            for (const int len : {40, 41})
                checkDesign(kind, f1, (f1 + 0.5) / 2, len, 2, -1, Edge::Back, 0);
}

TEST_P(FirDesign, StaysExactInLongFilters) {
    for (const Kind kind : kKinds)
        for (const int len : {2000, 2001})
            checkDesign(kind, 0.0123, 0.321, len, 1, 1, Edge::Back, 0);
}

TEST_P(FirDesign, TestsItsArgumentsInOrderAndWritesNothing) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    constexpr int kLeast = std::numeric_limits<int>::min();
    Zep64f taps[8];
    for (Zep64f& t : taps) t = 7;
    for (const Kind kind : kKinds) {
        EXPECT_EQ(design(kind, 0, 0, nullptr, 0, 2, 0), zepStsNullPtrErr);
        for (const int bad : {4, 0, -1, kLeast})
            EXPECT_EQ(design(kind, 0.1, 0.2, taps, bad, 2, 0), zepStsSizeErr);
        for (const double bad : {0.0, -0.1, 0.5, 0.7, inf, -inf})
            EXPECT_EQ(design(kind, bad, 0.4, taps, 8, 2, 0), zepStsSizeErr) << bad;
    }
    for (const Kind kind : {Kind::Bandpass, Kind::Bandstop}) {
        for (const double bad : {0.0, -0.1, 0.5, 0.7, inf, 0.2, 0.1})
            EXPECT_EQ(design(kind, 0.2, bad, taps, 8, 2, 0), zepStsSizeErr) << bad;
    }
    for (const Zep64f t : taps) EXPECT_EQ(t, 7);
    EXPECT_EQ(design(Kind::Lowpass, 0.2, 0, taps, 5, 2, 0), zepStsNoErr);
    EXPECT_EQ(taps[5], 7);
}

ZEP_FOR_EACH_VARIANT(FirDesign);

}  // namespace
}  // namespace zep::test
