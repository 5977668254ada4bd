// Scaled sums and differences of 32-bit integers, in 32-bit lanes throughout.
//
// The exact result r has 33 bits. It is held as f = floor(r / 2) and the bit that the halving lost:
// a + b = 2 * (a & b) + (a ^ b) and b - a = (a ^ b) - 2 * (a & ~b), where the halved exclusive or is
// an arithmetic shift (Warren, Hacker's Delight, 2-5). With m = k - 1, r / 2^k is f / 2^m and a
// sticky bit, so that rounding to nearest even needs no wider lanes either.
#include "vector/scaled.h"

namespace zep::ZEP_VARIANT {
namespace {

// r = 2 * floor + (lost & 1).
template <class V>
struct Halved {
    V floor, lost;
};

struct Sum {
    template <class V>
    [[gnu::always_inline]] static V saturated(V a, V b) {
        const V s = a + b;
        // Overflow: the operands have one sign, the sum the other.
        return select(((a ^ s) & (b ^ s)) < V::zero(), scaled::limitBySign(a), s);
    }
    template <class V>
    [[gnu::always_inline]] static Halved<V> halved(V a, V b) {
        const V lost = a ^ b;
        return {(a & b) + (lost >> 1), lost};
    }
};
// b - a.
struct Difference {
    template <class V>
    [[gnu::always_inline]] static V saturated(V a, V b) {
        const V s = b - a;
        return select(((a ^ b) & (b ^ s)) < V::zero(), scaled::limitBySign(b), s);
    }
    template <class V>
    [[gnu::always_inline]] static Halved<V> halved(V a, V b) {
        const V lost = a ^ b;
        return {(lost >> 1) - clearBits(a, b), lost};
    }
};

// r / 2, ties to even: a lost bit counts where floor is odd. The greatest difference, 2^32 - 1, is the
// one number that leaves the range by it; the greatest sum is 2^32 - 2.
template <class Op, class V>
[[gnu::always_inline]] inline V halfEven(Halved<V> r) {
    const V up = r.floor & r.lost & V::broadcast(1);
    if constexpr (std::is_same_v<Op, Sum>)
        return r.floor + up;
    else
        return r.floor + keepIf(r.floor != V::broadcast(0x7FFFFFFF), up);
}

// r / 2^k for k of 2 to 32, ties to even; m = k - 1.
template <class V>
[[gnu::always_inline]] inline V roundedShift(Halved<V> r, int m) {
    const auto below = static_cast<std::int32_t>((std::uint32_t{1} << m) - 1);
    const V quotient = r.floor >> m, rest = r.floor & V::broadcast(below);
    const V up = (quotient | r.lost) & V::broadcast(1);
    // At most 2^31 - 1 + 2^30: unsigned.
    const V sum = rest + V::broadcast(below >> 1) + up;
    return quotient + simd::lanesAs<std::int32_t>(simd::lanesAs<std::uint32_t>(sum) >> m);
}

// run(op) runs an operation of two vectors over the data.
template <class Op>
[[gnu::always_inline]] inline ZepStatus scaledBy(int k, Zep32s* dst, int len, auto run) {
    if (k > 32) return zepsZero_32s(dst, len);
    if (k == 0)
        run([](auto a, auto b) __attribute__((always_inline)) { return Op::saturated(a, b); });
    else if (k == 1)
        run([](auto a, auto b)
                __attribute__((always_inline)) { return halfEven<Op>(Op::halved(a, b)); });
    else if (k > 0)
        run([m = k - 1](auto a, auto b)
                __attribute__((always_inline)) { return roundedShift(Op::halved(a, b), m); });
    else
        run([n = scaled::leftCount(k)](auto a, auto b) __attribute__((always_inline)) {
            return scaled::shiftLeftSaturated(Op::saturated(a, b), n);
        });
    return zepStsNoErr;
}

template <class Op>
[[gnu::noinline]] ZepStatus vectors(const Zep32s* a, const Zep32s* b, Zep32s* dst, int len, int k) {
    return scaledBy<Op>(
        k, dst, len, [&](auto op) __attribute__((always_inline)) { convert(op, dst, len, a, b); });
}

// val is the first operand: the subtrahend.
template <class Op>
[[gnu::noinline]] ZepStatus constant(Zep32s val, const Zep32s* src, Zep32s* dst, int len, int k) {
    return scaledBy<Op>(
        k, dst, len, [&](auto op) __attribute__((always_inline)) {
            const auto withConstant = [ op, val ](auto x) __attribute__((always_inline)) {
                return op(decltype(x)::broadcast(val), x);
            };
            convert(withConstant, dst, len, src);
        });
}

template <class Op>
inline ZepStatus checkedConstant(const Zep32s* pSrc, Zep32s val, Zep32s* pDst, int len, int k) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    if (val == 0 && k == 0) return zepsCopy_32s(pSrc, pDst, len);
    return constant<Op>(val, pSrc, pDst, len, k);
}
template <class Op>
inline ZepStatus checkedConstantInPlace(Zep32s val, Zep32s* pSrcDst, int len, int k) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    if (val == 0 && k == 0) return zepStsNoErr;
    return constant<Op>(val, pSrcDst, pSrcDst, len, k);
}

}  // namespace

ZepStatus zepsAdd_32s_Sfs(const Zep32s* pSrc1, const Zep32s* pSrc2, Zep32s* pDst, int len,
                          int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrc1, pSrc2, pDst); s != zepStsNoErr) return s;
    return vectors<Sum>(pSrc1, pSrc2, pDst, len, scaleFactor);
}
ZepStatus zepsAdd_32s_ISfs(const Zep32s* pSrc, Zep32s* pSrcDst, int len, int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrc, pSrcDst); s != zepStsNoErr) return s;
    return vectors<Sum>(pSrc, pSrcDst, pSrcDst, len, scaleFactor);
}
ZepStatus zepsSub_32s_Sfs(const Zep32s* pSrc1, const Zep32s* pSrc2, Zep32s* pDst, int len,
                          int scaleFactor) {
    if (const ZepStatus s = checkVectors(len, pSrc1, pSrc2, pDst); s != zepStsNoErr) return s;
    return vectors<Difference>(pSrc1, pSrc2, pDst, len, scaleFactor);
}

ZepStatus zepsAddC_32s_Sfs(const Zep32s* pSrc, Zep32s val, Zep32s* pDst, int len, int scaleFactor) {
    return checkedConstant<Sum>(pSrc, val, pDst, len, scaleFactor);
}
ZepStatus zepsAddC_32s_ISfs(Zep32s val, Zep32s* pSrcDst, int len, int scaleFactor) {
    return checkedConstantInPlace<Sum>(val, pSrcDst, len, scaleFactor);
}
ZepStatus zepsSubC_32s_Sfs(const Zep32s* pSrc, Zep32s val, Zep32s* pDst, int len, int scaleFactor) {
    return checkedConstant<Difference>(pSrc, val, pDst, len, scaleFactor);
}
ZepStatus zepsSubC_32s_ISfs(Zep32s val, Zep32s* pSrcDst, int len, int scaleFactor) {
    return checkedConstantInPlace<Difference>(val, pSrcDst, len, scaleFactor);
}

}  // namespace zep::ZEP_VARIANT
