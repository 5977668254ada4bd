// Filters by the window method: ideal taps of the lower half, outwards from the centre; window;
// gain; mirror image. Nothing is allocated.
#include <cmath>
#include <cstddef>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "design/window_shapes.h"

namespace zep::ZEP_VARIANT {
namespace design {
namespace {

struct Taps {
    Zep64f* h;
    std::ptrdiff_t len, half;
    bool odd;

    Taps(Zep64f* taps, int tapsLen)
        : h(taps), len(tapsLen), half(tapsLen / 2), odd(tapsLen % 2 != 0) {}
    double nearest() const { return odd ? 1.0 : 0.5; }  // distance of h[half - 1] from the centre
    double at(std::ptrdiff_t n) const { return simd::readAny(h + n); }
    void put(std::ptrdiff_t n, double x) const { simd::writeAny(h + n, x); }
};

// 2 * pi * f * m for the distances m from the centre.
Rotation tone(const Taps& taps, double f) { return {2 * kPi * f * taps.nearest(), 2 * kPi * f}; }

[[gnu::always_inline]] inline D alternating() { return D::broadcastPair(1.0, -1.0); }

// h at distance m becomes numerator(r) / (pi * m), advance() being called between blocks.
template <class Numerator, class Advance>
[[gnu::always_inline]] inline void writeIdeal(const Taps& taps, Numerator numerator,
                                              Advance advance) {
    Count distance(taps.nearest());
    for (std::ptrdiff_t n = 0; n < taps.half; n += kBlock) {
        Block reversed;
        simd::unroll<kRegisters>([&](auto r) {
            const D x = numerator(r) / (distance.n[r] * D::broadcast(kPi));
            reversed[kRegisters - 1 - r] = reverse(x);
        });
        const std::ptrdiff_t count = taps.half - n;
        if (count >= kBlock) {
            storeFront(reversed, taps.h + count - kBlock, kBlock);
        } else {
            double block[kBlock];
            storeFront(reversed, block, kBlock);
            for (std::ptrdiff_t k = 0; k < count; ++k) taps.put(k, block[kBlock - count + k]);
        }
        distance.advance();
        advance();
    }
}
template <class Numerator>
void writeIdeal(const Taps& taps, double f, Numerator numerator) {
    Rotation a = tone(taps, f);
    writeIdeal(
        taps,
        [&](auto r) __attribute__((always_inline)) { return numerator(a.sine[r], a.cosine[r]); },
        [&]() __attribute__((always_inline)) { a.advance(); });
}
template <class Numerator>
void writeIdeal(const Taps& taps, double f1, double f2, Numerator numerator) {
    Rotation a = tone(taps, f1), b = tone(taps, f2);
    writeIdeal(
        taps,
        [&](auto r) __attribute__((always_inline)) { return numerator(a.sine[r], b.sine[r]); },
        [&]() __attribute__((always_inline)) {
            a.advance();
            b.advance();
        });
}

// The factor at the centre is 1.
template <class Window>
void applyToLowerHalf(const Taps& taps, Window window) {
    Block w;
    for (std::ptrdiff_t n = 0; n < taps.half; n += kBlock) {
        window.next(w);
        double factors[kBlock];
        storeFront(w, factors, kBlock);
        const std::ptrdiff_t left = taps.half - n, count = left < kBlock ? left : kBlock;
        for (std::ptrdiff_t k = 0; k < count; ++k) taps.put(n + k, taps.at(n + k) * factors[k]);
    }
}

void applyWindow(const Taps& taps, int type) {
    const auto len = static_cast<int>(taps.len);
    if (type == zepWinBartlett) {
        applyToLowerHalf(taps, Bartlett(2.0 / (len - 1)));
    } else if (type == zepWinBlackman) {
        const double a = 0.5 / std::cos(kPi / (len - 1));
        applyToLowerHalf(taps, CosineWindow(len, Blackman{-(a * a)}));
    } else if (type == zepWinHamming) {
        applyToLowerHalf(taps, CosineWindow(len, Hamming{}));
    } else if (type == zepWinHann) {
        applyToLowerHalf(taps, CosineWindow(len, Hann{}));
    }
}

// Gains of the symmetric filter, at three kinds of frequency.
double gainAtZero(const Taps& taps) {
    double sum = 0;
    for (std::ptrdiff_t n = 0; n < taps.half; ++n) sum += taps.at(n);
    return 2 * sum + (taps.odd ? taps.at(taps.half) : 0.0);
}
double gainAtHalf(const Taps& taps) {
    double sum = 0, sign = -1;
    for (std::ptrdiff_t n = 0; n < taps.half; ++n, sign = -sign) sum += sign * taps.at(n);
    return 2 * sum + (taps.odd ? sign * taps.at(taps.half) : 0.0);
}
double gainAt(const Taps& taps, double f) {
    Rotation a = tone(taps, f);
    double sum = 0;
    for (std::ptrdiff_t n = 0; n < taps.half; n += kBlock) {
        double cosines[kBlock];
        storeFront(a.cosine, cosines, kBlock);
        a.advance();
        const std::ptrdiff_t left = taps.half - n, count = left < kBlock ? left : kBlock;
        for (std::ptrdiff_t k = 0; k < count; ++k)
            sum += cosines[k] * taps.at(taps.half - 1 - n - k);
    }
    return 2 * sum + (taps.odd ? taps.at(taps.half) : 0.0);
}

// Multiplies the lower half and the centre by `factor`; then the upper half is its mirror image.
void finish(const Taps& taps, double factor, double upperSign) {
    for (std::ptrdiff_t n = 0; n < taps.half; ++n) {
        const double x = taps.at(n) * factor;
        taps.put(n, x);
        taps.put(taps.len - 1 - n, upperSign * x);
    }
    if (taps.odd) taps.put(taps.half, taps.at(taps.half) * factor);
}

template <class Gain>
void windowAndFinish(const Taps& taps, double centre, int window, Zep32s normalise, Gain gain,
                     double upperSign = 1) {
    if (taps.odd) taps.put(taps.half, centre);
    applyWindow(taps, window);
    finish(taps, normalise != 0 ? 1 / std::fabs(gain(taps)) : 1.0, upperSign);
}

ZepStatus checkDesign(const Zep64f* taps, int len, double low, double high) {
    if (anyNull(taps)) return zepStsNullPtrErr;
    if (len < 5) return zepStsSizeErr;
    const auto outside = [](double f) { return f <= 0 || f >= 0.5; };
    return outside(low) || outside(high) ? zepStsSizeErr : zepStsNoErr;
}
ZepStatus checkBand(const Zep64f* taps, int len, double low, double high) {
    const ZepStatus s = checkDesign(taps, len, low, high);
    return s == zepStsNoErr && high <= low ? zepStsSizeErr : s;
}

}  // namespace
}  // namespace design

ZepStatus zepsFIRGenLowpass_64f(Zep64f rFreq, Zep64f* pTaps, int tapsLen, int winType,
                                Zep32s doNormal) {
    using namespace design;
    if (const ZepStatus s = checkDesign(pTaps, tapsLen, rFreq, rFreq); s != zepStsNoErr) return s;
    const Taps taps(pTaps, tapsLen);
    writeIdeal(taps, rFreq, [](D sine, D) { return sine; });
    windowAndFinish(taps, 2 * rFreq, winType, doNormal, gainAtZero);
    return zepStsNoErr;
}

ZepStatus zepsFIRGenHighpass_64f(Zep64f rFreq, Zep64f* pTaps, int tapsLen, int winType,
                                 Zep32s doNormal) {
    using namespace design;
    if (const ZepStatus s = checkDesign(pTaps, tapsLen, rFreq, rFreq); s != zepStsNoErr) return s;
    const Taps taps(pTaps, tapsLen);
    if (taps.odd)
        writeIdeal(taps, rFreq, [](D sine, D) { return -sine; });
    else
        writeIdeal(taps, rFreq, [](D, D cosine) { return cosine; });
    windowAndFinish(taps, 1 - 2 * rFreq, winType, doNormal, gainAtHalf, taps.odd ? 1 : -1);
    return zepStsNoErr;
}

ZepStatus zepsFIRGenBandpass_64f(Zep64f rLowFreq, Zep64f rHighFreq, Zep64f* pTaps, int tapsLen,
                                 int winType, Zep32s doNormal) {
    using namespace design;
    if (const ZepStatus s = checkBand(pTaps, tapsLen, rLowFreq, rHighFreq); s != zepStsNoErr)
        return s;
    const Taps taps(pTaps, tapsLen);
    writeIdeal(taps, rLowFreq, rHighFreq, [](D low, D high) { return high - low; });
    windowAndFinish(taps, 2 * (rHighFreq - rLowFreq), winType, doNormal,
                    [=](const Taps& t) { return gainAt(t, (rLowFreq + rHighFreq) / 2); });
    return zepStsNoErr;
}

ZepStatus zepsFIRGenBandstop_64f(Zep64f rLowFreq, Zep64f rHighFreq, Zep64f* pTaps, int tapsLen,
                                 int winType, Zep32s doNormal) {
    using namespace design;
    if (const ZepStatus s = checkBand(pTaps, tapsLen, rLowFreq, rHighFreq); s != zepStsNoErr)
        return s;
    const Taps taps(pTaps, tapsLen);
    if (taps.odd)
        writeIdeal(taps, rLowFreq, rHighFreq, [](D low, D high) { return low - high; });
    else
        writeIdeal(taps, rLowFreq, rHighFreq,
                   [](D low, D high) { return alternating() + low - high; });
    windowAndFinish(taps, 1 - 2 * (rHighFreq - rLowFreq), winType, doNormal, gainAtZero);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
