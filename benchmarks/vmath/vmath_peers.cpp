// Compiled for each level: Eigen's array functions, SLEEF's vectors of the level's width, and the C
// library one element at a time.
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
#else
using V = __m256;
constexpr int kLanes = 8;
V load(F p) { return _mm256_loadu_ps(p); }
void store(float* p, V v) { _mm256_storeu_ps(p, v); }
#if defined(__AVX2__)
#define ZEP_SLEEF(f, accuracy) Sleef_##f##f8_##accuracy##avx2
#else
#define ZEP_SLEEF(f, accuracy) Sleef_##f##f8_##accuracy##avx
#endif
#endif

// Whole vectors: the sizes measured are multiples of them.
template <auto f>
void sleefOne(F x, F, float* y, float*, int n) {
    for (int i = 0; i < n; i += kLanes) store(y + i, f(load(x + i)));
}
template <auto f>
void sleefTwo(F x, F b, float* y, float*, int n) {
    for (int i = 0; i < n; i += kLanes) store(y + i, f(load(x + i), load(b + i)));
}
template <auto f>
void sleefPair(F x, F, float* y, float* z, int n) {
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

}  // namespace

extern constexpr MathPeers mathEigen{eigenExp,    eigenLn,     eigenLog10,
                                     eigenSinCos, eigenSinCos, eigenPow};
extern constexpr MathPeers mathSleef{
    sleefOne<ZEP_SLEEF(exp, u10)>,     sleefOne<ZEP_SLEEF(log, u35)>,
    sleefOne<ZEP_SLEEF(log10, u10)>,   sleefPair<ZEP_SLEEF(sincos, u35)>,
    sleefPair<ZEP_SLEEF(sincos, u10)>, sleefTwo<ZEP_SLEEF(pow, u10)>};
extern constexpr MathPeers mathScalar{scalar<std::exp>, scalar<std::log>, scalar<std::log10>,
                                      scalarSinCos,     scalarSinCos,     scalarPow};

}  // namespace zep::bench::ZEP_PEER_LEVEL
