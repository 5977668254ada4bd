#include "filter/filter_loops.h"

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

void plain(const Zep32f* h, int taps, const Zep32f* x, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) {
        Zep32f sum = 0;
        for (int j = 0; j < taps; ++j) sum += h[j] * x[i + j];
        y[i] = sum;
    }
}

// The vector type of this level only names what fits a register; sums stay where they are.
#ifdef __AVX512F__
constexpr int kLanes = 16;
#else
constexpr int kLanes = 8;
#endif
using V [[gnu::vector_size(4 * kLanes), gnu::aligned(4), gnu::may_alias]] = float;

template <int B>
void block(const Zep32f* h, int taps, const Zep32f* x, Zep32f* __restrict y, int n) {
    constexpr int R = B / kLanes;
    int i = 0;
    for (; i + B <= n; i += B) {
        V sum[R] = {};
        for (int j = 0; j < taps; ++j)
            for (int r = 0; r < R; ++r)
                sum[r] += h[j] * *reinterpret_cast<const V*>(x + i + j + r * kLanes);
        for (int r = 0; r < R; ++r) *reinterpret_cast<V*>(y + i + r * kLanes) = sum[r];
    }
    plain(h, taps, x + i, y + i, n - i);
}

void plainComplex(const Zep32fc* h, int taps, const Zep32fc* x, Zep32fc* __restrict y, int n) {
    for (int i = 0; i < n; ++i) {
        Zep32f re = 0, im = 0;
        for (int j = 0; j < taps; ++j) {
            re += h[j].re * x[i + j].re - h[j].im * x[i + j].im;
            im += h[j].re * x[i + j].im + h[j].im * x[i + j].re;
        }
        y[i] = {re, im};
    }
}

// Products with either part of the tap apart; joined once an output.
void blockComplex(const Zep32fc* h, int taps, const Zep32fc* x, Zep32fc* __restrict y, int n) {
    constexpr int R = 4, B = R * kLanes / 2;
    const auto* floats = reinterpret_cast<const float*>(x);
    int i = 0;
    for (; i + B <= n; i += B) {
        V byRe[R] = {}, byIm[R] = {};
        for (int j = 0; j < taps; ++j)
            for (int r = 0; r < R; ++r) {
                const V v = *reinterpret_cast<const V*>(floats + 2 * (i + j) + r * kLanes);
                byRe[r] += h[j].re * v;
                byIm[r] += h[j].im * v;
            }
        for (int r = 0; r < R; ++r)
            for (int k = 0; k < kLanes; k += 2)
                y[i + (r * kLanes + k) / 2] = {byRe[r][k] - byIm[r][k + 1],
                                               byRe[r][k + 1] + byIm[r][k]};
    }
    plainComplex(h, taps, x + i, y + i, n - i);
}

template <class T>
void multiply(const T* h, T* __restrict x, int n) {
    for (int i = 0; i < n; ++i)
        x[i] = {h[i].re * x[i].re - h[i].im * x[i].im, h[i].re * x[i].im + h[i].im * x[i].re};
}
void multiplyConjugate(const Zep32fc* h, Zep32fc* x, int n) {
    for (int i = 0; i < n; ++i)
        x[i] = {h[i].re * x[i].re + h[i].im * x[i].im, h[i].re * x[i].im - h[i].im * x[i].re};
}

void widen16(const Zep16s* x, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = x[i];
}
// Adding 1.5 * 2^23 rounds to the nearest integer.
void narrow16(const Zep32f* x, Zep16s* __restrict y, int n, float scale) {
    for (int i = 0; i < n; ++i) {
        float v = x[i] * scale;
        v = v < -32768.0f ? -32768.0f : v;
        v = v > 32767.0f ? 32767.0f : v;
        y[i] = static_cast<Zep16s>(static_cast<int>((v + 12582912.0f) - 12582912.0f));
    }
}

}  // namespace

extern constexpr FilterLoops filterLoops{
    plain,        block<32>,         block<64>,         plainComplex,
    blockComplex, multiply<Zep32fc>, multiplyConjugate, multiply<Zep64fc>,
    widen16,      narrow16};

}  // namespace zep::bench::ZEP_PEER_LEVEL
