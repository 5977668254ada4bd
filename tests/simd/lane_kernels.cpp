// Compiled once for each variant.
#include "simd/lane_kernels.h"

#include "simd/complex.h"
#include "simd/vec.h"

namespace zep::ZEP_VARIANT {
namespace {

using test::LaneCompare;
using test::LaneKernels;
using test::LaneOp;

template <class V, class T = typename V::Scalar>
V vectorOp(LaneOp op, V a, V b, V c, T scalar, T scalar2) {
    switch (op) {
        case LaneOp::Add:
            return a + b;
        case LaneOp::Sub:
            return a - b;
        case LaneOp::Mul:
            return a * b;
        case LaneOp::Div:
            return a / b;
        case LaneOp::AddScalar:
            return a + scalar;
        case LaneOp::SubScalar:
            return a - scalar;
        case LaneOp::MulScalar:
            return a * scalar;
        case LaneOp::And:
            return a & b;
        case LaneOp::Or:
            return a | b;
        case LaneOp::Xor:
            return a ^ b;
        case LaneOp::Negate:
            return -a;
        case LaneOp::ClearBits:
            return clearBits(a, b);
        case LaneOp::Abs:
            return abs(a);
        case LaneOp::Sqrt:
            return sqrt(a);
        case LaneOp::Min:
            return min(a, b);
        case LaneOp::Max:
            return max(a, b);
        case LaneOp::SelectLess:
            return select(a < b, c, a);
        case LaneOp::KeepLess:
            return keepIf(a < b, c);
        case LaneOp::DupEven:
            return dupEven(a);
        case LaneOp::DupOdd:
            return dupOdd(a);
        case LaneOp::SwapPairs:
            return swapPairs(a);
        case LaneOp::SubAdd:
            return subAdd(a, b);
        case LaneOp::ComplexMul:
            return simd::complexMul(a, b);
        case LaneOp::LanesFromFirst:
            return simd::lanesFrom<1>(a, b);
        case LaneOp::LanesFromMiddle:
            return simd::lanesFrom<V::lanes / 2>(a, b);
        case LaneOp::BroadcastPair:
            return V::broadcastPair(scalar, scalar2);
        default:
            return V::zero();
    }
}

template <class V, class T = typename V::Scalar>
void apply(LaneOp op, const T* a, const T* b, const T* c, T* out) {
    switch (op) {
        case LaneOp::AlignedCopy:
            return V::loadAligned(a).storeAligned(out);
        case LaneOp::StreamCopy:
            V::load(a).storeStream(out);
            return simd::streamFence();
        default:
            vectorOp(op, V::load(a), V::load(b), V::load(c), b[0], b[1]).store(out);
    }
}

template <class V, class T = typename V::Scalar>
unsigned compare(LaneCompare op, const T* pa, const T* pb, const T* pc) {
    const V a = V::load(pa), b = V::load(pb), c = V::load(pc);
    switch (op) {
        case LaneCompare::Equal:
            return static_cast<unsigned>(bits(a == b));
        case LaneCompare::NotEqual:
            return static_cast<unsigned>(bits(a != b));
        case LaneCompare::Less:
            return static_cast<unsigned>(bits(a < b));
        case LaneCompare::LessEqual:
            return static_cast<unsigned>(bits(a <= b));
        case LaneCompare::Greater:
            return static_cast<unsigned>(bits(a > b));
        case LaneCompare::GreaterEqual:
            return static_cast<unsigned>(bits(a >= b));
        case LaneCompare::IsNan:
            return static_cast<unsigned>(bits(isNan(a)));
        case LaneCompare::EitherNan:
            return static_cast<unsigned>(bits(eitherNan(a, b)));
        case LaneCompare::Both:
            return static_cast<unsigned>(bits((a < b) & (b <= c)));
        case LaneCompare::Either:
            return static_cast<unsigned>(bits((a < b) | (b <= c)));
        default:
            return static_cast<unsigned>(bits(!(a < b)));
    }
}

template <class V, class T = typename V::Scalar>
void splitPairs(const T* a, const T* b, T* even, T* odd, T* lower, T* upper) {
    const V e = evens(V::load(a), V::load(b)), o = odds(V::load(a), V::load(b));
    e.store(even);
    o.store(odd);
    zipLow(e, o).store(lower);
    zipHigh(e, o).store(upper);
}

template <class V, class T = typename V::Scalar>
void complexPartial(const T* in, int n, T fill, T* re, T* im, T* out) {
    const auto z = simd::Complex<V>::loadPartial(in, n, fill);
    z.re.store(re);
    z.im.store(im);
    z.storePartial(out, n);
}

template <class V, class T = typename V::Scalar>
constexpr LaneKernels<T> kernels() {
    return {V::lanes,
            apply<V>,
            compare<V>,
            [](const T* a, const T* b) { return any(V::load(a) == V::load(b)); },
            [](const T* a, const T* b) { return all(V::load(a) == V::load(b)); },
            [](const T* in, int n, T* out) { V::loadPartial(in, n).store(out); },
            [](const T* in, int n, T fill, T* out) { V::loadPartial(in, n, fill).store(out); },
            [](const T* in, int n, T* out) { V::load(in).storePartial(out, n); },
            [](int n, T* out) { keepIf(V::M::first(n), V::broadcast(T{1})).store(out); },
            splitPairs<V>,
            complexPartial<V>};
}

template <class F>
void eachVector(const float* in, float* out, int len, F f) {
    using V = simd::Native<float>;
    for (int n = 0; n < len; n += V::lanes) f(V::load(in + n)).store(out + n);
}

}  // namespace

extern constexpr test::VariantLanes variantLanes = {
    {kernels<simd::Narrow<float>>(), kernels<simd::Native<float>>()},
    {kernels<simd::Narrow<double>>(), kernels<simd::Native<double>>()},
    [](const float* in, float* out, int len) {
        eachVector(in, out, len, [](auto x) { return reciprocalEstimate(x); });
    },
    [](const float* in, float* out, int len) {
        eachVector(in, out, len, [](auto x) { return rsqrtEstimate(x); });
    }};

}  // namespace zep::ZEP_VARIANT
