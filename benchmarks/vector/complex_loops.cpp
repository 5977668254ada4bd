#include "vector/complex_loops.h"

#include <sleef.h>

#include <cmath>

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

// The widest form of SLEEF that the level has, behind loads and stores of its width.
#if defined(__AVX512F__)
constexpr int kLanes = 16;
__m512 load(const Zep32f* p) { return _mm512_loadu_ps(p); }
void store(Zep32f* p, __m512 x) { _mm512_storeu_ps(p, x); }
__m512 angle(__m512 y, __m512 x) { return Sleef_atan2f16_u35avx512f(y, x); }
auto sineCosine(__m512 x) { return Sleef_sincosf16_u35avx512f(x); }
#elif defined(__AVX2__)
constexpr int kLanes = 8;
__m256 load(const Zep32f* p) { return _mm256_loadu_ps(p); }
void store(Zep32f* p, __m256 x) { _mm256_storeu_ps(p, x); }
__m256 angle(__m256 y, __m256 x) { return Sleef_atan2f8_u35avx2(y, x); }
auto sineCosine(__m256 x) { return Sleef_sincosf8_u35avx2(x); }
#else
constexpr int kLanes = 8;
__m256 load(const Zep32f* p) { return _mm256_loadu_ps(p); }
void store(Zep32f* p, __m256 x) { _mm256_storeu_ps(p, x); }
__m256 angle(__m256 y, __m256 x) { return Sleef_atan2f8_u35avx(y, x); }
auto sineCosine(__m256 x) { return Sleef_sincosf8_u35avx(x); }
#endif

void magnitude(const Zep32fc* x, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = std::sqrt(x[i].re * x[i].re + x[i].im * x[i].im);
}
void power(const Zep32fc* x, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = x[i].re * x[i].re + x[i].im * x[i].im;
}
void magnitudeOfParts(const Zep32f* re, const Zep32f* im, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = std::sqrt(re[i] * re[i] + im[i] * im[i]);
}
template <class C, class T>
void real(const C* x, T* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = x[i].re;
}
template <class C, class T>
void parts(const C* x, T* __restrict re, T* __restrict im, int n) {
    for (int i = 0; i < n; ++i) {
        re[i] = x[i].re;
        im[i] = x[i].im;
    }
}
template <class C, class T>
void join(const T* re, const T* im, C* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = {re[i], im[i]};
}
void conj(const Zep32fc* x, Zep32fc* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = {x[i].re, -x[i].im};
}
void conjFlip(const Zep32fc* x, Zep32fc* __restrict y, int n) {
    for (int i = 0; i < n; ++i) y[i] = {x[n - 1 - i].re, -x[n - 1 - i].im};
}

// Taken apart and put together by the compiler, in blocks that stay in registers or the cache.
constexpr int kBlock = 16;
void phase(const Zep32fc* x, Zep32f* __restrict y, int n) {
    for (int i = 0; i < n; i += kBlock) {
        Zep32f re[kBlock], im[kBlock];
        parts(x + i, re, im, kBlock);
        for (int k = 0; k < kBlock; k += kLanes)
            store(y + i + k, angle(load(im + k), load(re + k)));
    }
}
void toPolar(const Zep32fc* x, Zep32f* magnitudes, Zep32f* phases, int n) {
    magnitude(x, magnitudes, n);
    phase(x, phases, n);
}
void toCartesian(const Zep32f* magnitudes, const Zep32f* phases, Zep32fc* __restrict y, int n) {
    for (int i = 0; i < n; i += kBlock) {
        Zep32f re[kBlock], im[kBlock];
        for (int k = 0; k < kBlock; k += kLanes) {
            const auto s = sineCosine(load(phases + i + k));
            store(im + k, s.x);
            store(re + k, s.y);
        }
        for (int k = 0; k < kBlock; ++k)
            y[i + k] = {magnitudes[i + k] * re[k], magnitudes[i + k] * im[k]};
    }
}

}  // namespace

extern const ComplexPeers complexLoops{magnitude, power, phase, toPolar,  toCartesian,      real,
                                       parts,     join,  conj,  conjFlip, magnitudeOfParts, real,
                                       parts,     parts, join};

}  // namespace zep::bench::ZEP_PEER_LEVEL
