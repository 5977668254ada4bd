#include "simd/int_kernels.h"

#include "simd/vec.h"

namespace zep::ZEP_VARIANT {
namespace {

using test::IntOp;
using test::IntReduction;

template <class V, class T = typename V::Scalar>
bool apply(IntOp op, const T* pa, const T* pb, T* out) {
    const V a = V::load(pa), b = V::load(pb);
    const auto put = [out](V x) {
        x.store(out);
        return true;
    };
    switch (op) {
        case IntOp::Add:
            return put(a + b);
        case IntOp::Sub:
            return put(a - b);
        case IntOp::Mul:
            return put(a * b);
        case IntOp::Negate:
            return put(-a);
        case IntOp::And:
            return put(a & b);
        case IntOp::Or:
            return put(a | b);
        case IntOp::Xor:
            return put(a ^ b);
        case IntOp::Not:
            return put(~a);
        case IntOp::ClearBits:
            return put(clearBits(a, b));
        case IntOp::Min:
            return put(min(a, b));
        case IntOp::Max:
            return put(max(a, b));
        case IntOp::SelectLess:
            return put(select(a < b, a, b + T{1}));
        case IntOp::KeepEqual:
            return put(keepIf(a == b, a));
        case IntOp::Reverse:
            return put(reverse(a));
        case IntOp::DupEven:
            return put(dupEven(a));
        case IntOp::DupOdd:
            return put(dupOdd(a));
        case IntOp::SwapPairs:
            return put(swapPairs(a));
        case IntOp::InterleaveFront:
            return put(interleaveFront(a, b));
        case IntOp::InterleaveBack:
            return put(interleaveBack(a, b));
        case IntOp::AllEvens:
            return put(allEvens(a, b));
        case IntOp::AllOdds:
            return put(allOdds(a, b));
        case IntOp::Broadcast:
            return put(V::broadcast(pa[0]));
        case IntOp::BroadcastPair:
            return put(V::broadcastPair(pa[0], pb[0]));
        case IntOp::AddSaturated:
            if constexpr (sizeof(T) <= 2) return put(addSaturated(a, b));
            return false;
        case IntOp::SubSaturated:
            if constexpr (sizeof(T) <= 2) return put(subSaturated(a, b));
            return false;
        case IntOp::Abs:
            if constexpr (std::signed_integral<T>) return put(abs(a));
            return false;
        default:
            return false;
    }
}

template <class V, class T = typename V::Scalar>
void shift(const T* a, [[maybe_unused]] int count, T* left, T* right) {
    if constexpr (sizeof(T) >= 2) {
        (V::load(a) << count).store(left);
        (V::load(a) >> count).store(right);
    } else {
        V::load(a).store(left);
        V::load(a).store(right);
    }
}

template <class V, class T = typename V::Scalar>
void compare(const T* pa, const T* pb, std::uint64_t (&out)[4]) {
    const V a = V::load(pa), b = V::load(pb);
    out[0] = bits(a == b);
    out[1] = bits(a != b);
    out[2] = bits(a < b);
    out[3] = bits(a <= b);
}

template <class V, class T = typename V::Scalar>
T reduce(IntReduction op, const T* a) {
    switch (op) {
        case IntReduction::Add:
            return reduceAdd(V::load(a));
        case IntReduction::Min:
            return reduceMin(V::load(a));
        case IntReduction::Max:
            return reduceMax(V::load(a));
        default:
            return first(V::load(a));
    }
}

template <class V>
bool anyAllNone(std::uint64_t lanes, bool& isAny, bool& isAll) {
    using T = typename V::Scalar;
    T marks[V::lanes];
    for (int n = 0; n < V::lanes; ++n) marks[n] = static_cast<T>(lanes >> n & 1);
    const auto m = V::load(marks) == V::broadcast(T{1});
    isAny = any(m);
    isAll = all(m);
    return none(m);
}

template <class V, class T = typename V::Scalar>
constexpr test::IntKernels<T> kernels() {
    return {V::lanes,
            apply<V>,
            shift<V>,
            compare<V>,
            reduce<V>,
            [](const T* in, int n, T fill, T* zeroed, T* filled) {
                V::loadPartial(in, n).store(zeroed);
                V::loadPartial(in, n, fill).store(filled);
            },
            [](const T* in, int n, T* out) { V::load(in).storePartial(out, n); },
            anyAllNone<V>};
}

template <class T>
constexpr test::IntWidths<T> widths() {
    return {kernels<simd::Narrow<T>>(), kernels<simd::Native<T>>()};
}

}  // namespace

extern constexpr test::VariantInts variantInts = {
    {widths<std::int8_t>(), widths<std::uint8_t>(), widths<std::int16_t>(), widths<std::uint16_t>(),
     widths<std::int32_t>(), widths<std::uint32_t>(), widths<std::int64_t>(),
     widths<std::uint64_t>()}};

}  // namespace zep::ZEP_VARIANT
