// Straight-line transforms of the shortest lengths, without tables: up to 8 points one butterfly on
// single elements, from 16 points rows of vectors (fft_rows.h).
#include "simd/vec_one.h"
#include "transform/fft_routes.h"
#include "transform/fft_rows.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT {
namespace {

template <Direction D, int N, bool kScaled>
inline void directSingle(const float* src, float* dst, float scale) {
    using V = simd::Vec<float, 1>;
    using C = simd::SplitComplex<V>;
    C x[N];
#pragma GCC unroll 16
    for (int n = 0; n < N; ++n) x[n] = C::load(src + 2 * n);
    if constexpr (N > 1) butterfly<D, N>(x);
#pragma GCC unroll 16
    for (int k = 0; k < N; ++k) scaledIf<kScaled>(x[k], V::broadcast(scale)).store(dst + 2 * k);
}

template <Direction D, bool kScaled>
inline void direct(const float* src, float* dst, int order, [[maybe_unused]] float scale) {
    using V4 = simd::Vec<float, 4>;
    switch (order) {
        case 0:
            return directSingle<D, 1, kScaled>(src, dst, scale);
        case 1:
            return directSingle<D, 2, kScaled>(src, dst, scale);
        case 2:
            return directSingle<D, 4, kScaled>(src, dst, scale);
        case 3:
            return directSingle<D, 8, kScaled>(src, dst, scale);
        case 4:
            return directRows<D, V4, 4, kScaled>(src, dst, scale);
        case 5:
            return directRows<D, V4, 8, kScaled>(src, dst, scale);
        default:
            if constexpr (Tuning::directMaxOrder >= 6)
                directRows<D, Real, 8, kScaled>(src, dst, scale);
    }
}

}  // namespace

template <Direction D>
void FFTDirect(const Zep32fc* src, Zep32fc* dst, int order) {
    direct<D, false>(&src->re, &dst->re, order, 1.0f);
}

template <Direction D>
void FFTDirectScaled(const Zep32fc* src, Zep32fc* dst, int order, float scale) {
    direct<D, true>(&src->re, &dst->re, order, scale);
}

template void FFTDirect<Direction::Forward>(const Zep32fc*, Zep32fc*, int);
template void FFTDirect<Direction::Inverse>(const Zep32fc*, Zep32fc*, int);
template void FFTDirectScaled<Direction::Forward>(const Zep32fc*, Zep32fc*, int, float);
template void FFTDirectScaled<Direction::Inverse>(const Zep32fc*, Zep32fc*, int, float);

}  // namespace zep::ZEP_VARIANT
