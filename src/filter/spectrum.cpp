#include "filter/spectrum.h"

#include "simd/complex.h"

namespace zep::ZEP_VARIANT::filter {
namespace {

// x = x * conj(h), interleaved pairs; count in scalars.
void multiplyConjugatePairs(const float* h, float* x, std::ptrdiff_t count) {
    using V = simd::Native<float>;
    const auto product = [](V a, V b) __attribute__((always_inline)) {
        return subAdd(a * dupEven(b), V::zero() - swapPairs(a) * dupOdd(b));
    };
    std::ptrdiff_t n = 0;
    for (; n + V::lanes <= count; n += V::lanes)
        product(V::load(x + n), V::load(h + n)).store(x + n);
    if (const int left = static_cast<int>(count - n); left > 0)
        product(V::loadPartial(x + n, left), V::loadPartial(h + n, left)).storePartial(x + n, left);
}

void multiplyEnds(const Zep32f* h, Zep32f* x) {
    x[0] *= h[0];
    x[1] *= h[1];
}

}  // namespace

void multiplyPacked(const Zep32f* h, Zep32f* x, int N) {
    multiplyEnds(h, x);
    ZEP_VARIANT::zepsMul_32fc_I(reinterpret_cast<const Zep32fc*>(h + 2),
                                reinterpret_cast<Zep32fc*>(x + 2), N / 2 - 1);
}

void multiplyConjugatePacked(const Zep32f* h, Zep32f* x, int N) {
    multiplyEnds(h, x);
    multiplyConjugatePairs(h + 2, x + 2, N - 2);
}

void TransformOf<Zep32fc>::multiplyConjugate(const Zep32fc* h, Zep32fc* x, int N) {
    multiplyConjugatePairs(reinterpret_cast<const float*>(h), reinterpret_cast<float*>(x),
                           std::ptrdiff_t{2} * N);
}

}  // namespace zep::ZEP_VARIANT::filter
