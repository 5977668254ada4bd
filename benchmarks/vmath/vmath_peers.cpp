// Compiled for each level: Eigen's array functions, the vectors of SLEEF and of the C library in the
// level's width, and the C library one element at a time.
#include "vmath/vmath_peers.h"

#include <immintrin.h>
#include <sleef.h>

#include <Eigen/Core>
#include <cmath>

namespace zep::bench::ZEP_PEER_LEVEL {
namespace {

using F = const float*;
using Array = Eigen::Map<Eigen::ArrayXf>;
using ConstArray = Eigen::Map<const Eigen::ArrayXf>;

#if defined(__AVX512F__)
using V = __m512;
constexpr int kLanes = 16;
V load(F p) { return _mm512_loadu_ps(p); }
void store(float* p, V v) { _mm512_storeu_ps(p, v); }
#define ZEP_SLEEF(f, accuracy) Sleef_##f##f16_##accuracy##avx512f
#define ZEP_MVEC(signature, f) _ZGVeN16##signature##_##f
#else
using V = __m256;
constexpr int kLanes = 8;
V load(F p) { return _mm256_loadu_ps(p); }
void store(float* p, V v) { _mm256_storeu_ps(p, v); }
#if defined(__AVX2__)
#define ZEP_SLEEF(f, accuracy) Sleef_##f##f8_##accuracy##avx2
#define ZEP_MVEC(signature, f) _ZGVdN8##signature##_##f
#else
#define ZEP_SLEEF(f, accuracy) Sleef_##f##f8_##accuracy##avx
#define ZEP_MVEC(signature, f) _ZGVcN8##signature##_##f
#endif
#endif

// What a compiler makes of a loop over expf() with -ffast-math.
extern "C" {
V ZEP_MVEC(v, expf)(V);
V ZEP_MVEC(v, logf)(V);
V ZEP_MVEC(v, log10f)(V);
V ZEP_MVEC(v, sinf)(V);
V ZEP_MVEC(v, cosf)(V);
V ZEP_MVEC(vv, powf)(V, V);
}

// Whole vectors: the sizes measured are multiples of them.
template <auto f>
void eachVector(F x, F, float* y, float*, int n) {
    for (int i = 0; i < n; i += kLanes) store(y + i, f(load(x + i)));
}
template <auto f>
void eachPair(F x, F b, float* y, float*, int n) {
    for (int i = 0; i < n; i += kLanes) store(y + i, f(load(x + i), load(b + i)));
}
template <auto f>
void eachWithOne(F x, F b, float* y, float*, int n) {
    V exponent;
    for (int k = 0; k < kLanes; ++k) exponent[k] = *b;
    for (int i = 0; i < n; i += kLanes) store(y + i, f(load(x + i), exponent));
}
template <auto sin, auto cos>
void eachOfTwo(F x, F, float* y, float* z, int n) {
    for (int i = 0; i < n; i += kLanes) {
        const V v = load(x + i);
        store(y + i, sin(v));
        store(z + i, cos(v));
    }
}
template <auto f>
void bothParts(F x, F, float* y, float* z, int n) {
    for (int i = 0; i < n; i += kLanes) {
        const auto r = f(load(x + i));
        store(y + i, r.x);
        store(z + i, r.y);
    }
}

void eigenExp(F x, F, float* y, float*, int n) { Array(y, n) = ConstArray(x, n).exp(); }
void eigenLn(F x, F, float* y, float*, int n) { Array(y, n) = ConstArray(x, n).log(); }
void eigenLog10(F x, F, float* y, float*, int n) { Array(y, n) = ConstArray(x, n).log10(); }
void eigenSinCos(F x, F, float* y, float* z, int n) {
    Array(y, n) = ConstArray(x, n).sin();
    Array(z, n) = ConstArray(x, n).cos();
}
void eigenPow(F x, F b, float* y, float*, int n) {
    Array(y, n) = ConstArray(x, n).pow(ConstArray(b, n));
}
void eigenPowx(F x, F b, float* y, float*, int n) { Array(y, n) = ConstArray(x, n).pow(*b); }

template <float (*f)(float)>
void scalar(F x, F, float* y, float*, int n) {
    for (int i = 0; i < n; ++i) y[i] = f(x[i]);
}
void scalarSinCos(F x, F, float* y, float* z, int n) {
    for (int i = 0; i < n; ++i) {
        y[i] = std::sin(x[i]);
        z[i] = std::cos(x[i]);
    }
}
void scalarPow(F x, F b, float* y, float*, int n) {
    for (int i = 0; i < n; ++i) y[i] = std::pow(x[i], b[i]);
}
void scalarPowx(F x, F b, float* y, float*, int n) {
    for (int i = 0; i < n; ++i) y[i] = std::pow(x[i], *b);
}

}  // namespace

extern constexpr MathPeers mathEigen{eigenExp,    eigenLn,  eigenLog10, eigenSinCos,
                                     eigenSinCos, eigenPow, eigenPowx};
extern constexpr MathPeers mathSleef{
    eachVector<ZEP_SLEEF(exp, u10)>,   eachVector<ZEP_SLEEF(log, u35)>,
    eachVector<ZEP_SLEEF(log10, u10)>, bothParts<ZEP_SLEEF(sincos, u35)>,
    bothParts<ZEP_SLEEF(sincos, u10)>, eachPair<ZEP_SLEEF(pow, u10)>,
    eachWithOne<ZEP_SLEEF(pow, u10)>};
extern constexpr MathPeers mathVectors{eachVector<ZEP_MVEC(v, expf)>,
                                       eachVector<ZEP_MVEC(v, logf)>,
                                       eachVector<ZEP_MVEC(v, log10f)>,
                                       eachOfTwo<ZEP_MVEC(v, sinf), ZEP_MVEC(v, cosf)>,
                                       eachOfTwo<ZEP_MVEC(v, sinf), ZEP_MVEC(v, cosf)>,
                                       eachPair<ZEP_MVEC(vv, powf)>,
                                       eachWithOne<ZEP_MVEC(vv, powf)>};
extern constexpr MathPeers mathScalar{scalar<std::exp>, scalar<std::log>, scalar<std::log10>,
                                      scalarSinCos,     scalarSinCos,     scalarPow,
                                      scalarPowx};

}  // namespace zep::bench::ZEP_PEER_LEVEL
