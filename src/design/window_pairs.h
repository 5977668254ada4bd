// Multiplies samples n and len - 1 - n by factor n of a window, for n below len / 2. Factors are
// computed in double precision and rounded once. The middle sample of an odd length stays.
#pragma once

#include "design/rotation.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT::design {

using F = simd::Native<Zep32f>;

[[gnu::always_inline]] inline void scale(Zep32f* x, F w) { (F::load(x) * w).store(x); }
[[gnu::always_inline]] inline void scale(Zep32fc* x, F w) {
    Zep32f* const p = shape::parts(x);
    scale(p, interleaveFront(w, w));
    scale(p + F::lanes, interleaveBack(w, w));
}
inline void scaleOne(Zep32f* x, Zep32f w) { simd::writeAny(x, simd::readAny(x) * w); }
inline void scaleOne(Zep32fc* x, Zep32f w) {
    Zep32f* const p = shape::parts(x);
    scaleOne(p, w);
    scaleOne(p + 1, w);
}

template <class T, class Window>
[[gnu::always_inline]] inline void applyWindow(T* x, std::ptrdiff_t len, Window window) {
    const std::ptrdiff_t half = len / 2;
    std::ptrdiff_t n = 0;
    Block w;
    for (; n + kBlock <= half; n += kBlock) {
        window.next(w);
        simd::unroll<kBlock / F::lanes>([&](auto k) {
            const F f = narrow(w[2 * k], w[2 * k + 1]);
            scale(x + n + k * F::lanes, f);
            scale(x + len - n - (k + 1) * F::lanes, reverse(f));
        });
    }
    if (n == half) return;
    window.next(w);
    Zep32f last[kBlock];
    simd::unroll<kBlock / F::lanes>(
        [&](auto k) { narrow(w[2 * k], w[2 * k + 1]).store(last + k * F::lanes); });
    for (int k = 0; n < half; ++n, ++k) {
        scaleOne(x + n, last[k]);
        scaleOne(x + len - 1 - n, last[k]);
    }
}

}  // namespace zep::ZEP_VARIANT::design
