// Medians of few neighbours, as many of them at once as a vector has lanes.
//
// The median of 2h + 1 values is not the least of any h + 2 of them, nor the greatest: both are
// dropped, one more value joins those that are left, and so on until one remains.
#pragma once

#include <cstddef>

#include "core/variant_exports.h"
#include "simd/unroll.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT::median {

using V = simd::Native<Zep32f>;
constexpr int L = V::lanes;

[[gnu::always_inline]] inline void exchange(V& a, V& b) {
    const V lower = min(a, b);
    b = max(a, b);
    a = lower;
}

// Of the first `count` values the least goes to place 0, the greatest to the last place.
template <int count, int M>
[[gnu::always_inline]] inline void partExtremes(V (&x)[M]) {
    constexpr int kLast = count - 1;
    simd::unroll<count / 2>([&](auto i) { exchange(x[i], x[kLast - i]); });
    simd::unroll<count / 2 - 1>([&](auto i) {
        exchange(x[0], x[i + 1]);
        exchange(x[kLast - 1 - i], x[kLast]);
    });
    if constexpr (count % 2 != 0) {
        exchange(x[0], x[count / 2]);
        exchange(x[count / 2], x[kLast]);
    }
}

template <int M, int count = M / 2 + 2>
[[gnu::always_inline]] inline V medianOf(V (&x)[M]) {
    partExtremes<count>(x);
    if constexpr (count == 3) {
        return x[1];
    } else {
        x[0] = x[M + 3 - count];
        return medianOf<M, count - 1>(x);
    }
}

// The middle one of three.
[[gnu::always_inline]] inline V middle(V a, V b, V c) { return max(min(a, b), min(max(a, b), c)); }

// Outputs `from` to `to` of the edges, whose windows reach over the ends of the data or which are
// too few for a whole vector. They have their inputs aside before anything is written.
template <int M>
class Edge {
public:
    Edge(const Zep32f* x, std::ptrdiff_t len, std::ptrdiff_t from, std::ptrdiff_t to)
        : from_(from), count_(static_cast<int>(to - from)) {
        for (int k = 0; count_ > 0 && k < count_ + M - 1; ++k) {
            const std::ptrdiff_t n = from - M / 2 + k;
            inputs_[k] = simd::readAny(x + (n < 0 ? 0 : n < len ? n : len - 1));
        }
    }
    void write(Zep32f* y) const {
        for (int n = 0; n < count_; n += L) {
            V x[M];
            simd::unroll<M>([&](auto k) { x[k] = V::load(inputs_ + n + k); });
            const V result = medianOf(x);
            const int left = count_ - n;
            result.storePartial(y + from_ + n, left < L ? left : L);
        }
    }

private:
    // Fewer than L + M outputs in whole vectors, and M - 1 more inputs.
    static constexpr int kRoom = (L + M + L - 1) / L * L + M;
    std::ptrdiff_t from_;
    int count_;
    Zep32f inputs_[kRoom] = {};
};

// Outputs `first` to `first + count` of the median of nine, count a positive multiple of L. Three
// neighbours in order serve three outputs, as the first, the second or the last third of their
// windows: the median is the middle one of the greatest of the lows, the middle one of the middles
// and the least of the highs.
inline void medianOfThirds(const Zep32f* x, Zep32f* y, std::ptrdiff_t first, std::ptrdiff_t count) {
    constexpr int kMost = 512, kMore = 6, kStart = (kMore + L - 1) / L * L;
    alignas(64) Zep32f low[kMost + kMore + L], mid[kMost + kMore + L], high[kMost + kMore + L];
    // Places t to t + L hold the neighbours of sample first - 3 + t on.
    const auto order = [&](std::ptrdiff_t t) __attribute__((always_inline)) {
        const Zep32f* const p = x + first + t - 4;
        const V a = V::load(p), b = V::load(p + 1), c = V::load(p + 2);
        const V less = min(a, b), more = max(a, b);
        min(less, c).store(low + t);
        max(less, min(more, c)).store(mid + t);
        max(more, c).store(high + t);
    };
    for (std::ptrdiff_t t = 0; t < kStart; t += L) order(t);
    while (count > 0) {
        const std::ptrdiff_t now = count < kMost ? count : kMost;
        for (std::ptrdiff_t t = kMore; t < kMore + now; t += L) order(t);
        for (std::ptrdiff_t t = 0; t < now; t += L) {
            const auto three = [t](const Zep32f* p, auto op) __attribute__((always_inline)) {
                return op(V::load(p + t), V::load(p + t + 3), V::load(p + t + 6));
            };
            const V lows = three(low, [](V a, V b, V c) { return max(max(a, b), c); });
            const V mids = three(mid, [](V a, V b, V c) { return middle(a, b, c); });
            const V highs = three(high, [](V a, V b, V c) { return min(min(a, b), c); });
            middle(lows, mids, highs).store(y + first + t);
        }
        for (int k = 0; k < kMore; ++k)
            low[k] = low[now + k], mid[k] = mid[now + k], high[k] = high[now + k];
        first += now;
        count -= now;
    }
}

// y[n] = median of x[n - h] to x[n + h], for 0 < n < len - 1 and M = 2h + 1. y may be x: inputs
// that the next vector shares with this one's outputs are read before these are written.
template <int M>
[[gnu::noinline]] void smallMedian(const Zep32f* x, Zep32f* y, std::ptrdiff_t len) {
    constexpr int h = M / 2;
    const std::ptrdiff_t inner = len > 2 * h ? (len - 2 * h) / L * L : 0;
    const std::ptrdiff_t headEnd = inner > 0 ? h : 1;
    const std::ptrdiff_t tail = inner > 0 ? h + inner : 1;
    const Edge<M> head(x, len, 1, headEnd), last(x, len, tail, len - 1);
    if constexpr (M == 9) {
        if (inner > 0) medianOfThirds(x, y, h, inner);
    } else if (inner > 0) {
        V left[h];
        simd::unroll<h>([&](auto k) { left[k] = V::load(x + k); });
        for (std::ptrdiff_t n = h; n < tail; n += L) {
            V w[M];
            simd::unroll<h>([&](auto k) { w[k] = left[k]; });
            simd::unroll<h + 1>([&](auto k) { w[h + k] = V::load(x + n + k); });
            if (n + L < tail)
                simd::unroll<h>([&](auto k) { left[k] = V::load(x + n + L - h + k); });
            medianOf(w).store(y + n);
        }
    }
    head.write(y);
    last.write(y);
}

}  // namespace zep::ZEP_VARIANT::median
