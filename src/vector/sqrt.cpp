// Square root of a real vector through the hardware's estimate of 1 / sqrt(x).
//
// Blocks of 16 elements from the first 16-byte boundary of dst: with the estimate r and s = x * r,
// one Newton step gives sqrt(x) = (-s / 2) * (s * r - 3), relative error a few 2^-24. The estimate
// fails for zero, denormals, infinity, NaN and negative values, and then -s / 2 is not finite: such
// a block is computed again with the true root. So are the elements in front of the boundary and
// those behind the last block.
#include <cstdint>
#include <limits>

#include "core/variant_exports.h"
#include "simd/control_word.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace {

using V = simd::Native<Zep32f>;
using M = V::M;

constexpr int kBlock = 16;
constexpr int kVectors = kBlock / V::lanes;

// True when some element is negative. -0 is not, nor is NaN.
[[gnu::noinline]] bool exactRoots(const Zep32f* x, Zep32f* dst, std::ptrdiff_t len) {
    bool negative = false;
    const auto root = [&negative](auto v) {
        negative |= any(v < decltype(v)::zero());
        return sqrt(v);
    };
    shape::map<1, NeverStream>(root, dst, len, x);
    return negative;
}

// As many whole blocks as the estimate serves; returns the elements done.
[[gnu::always_inline]] inline std::ptrdiff_t estimatedRoots(const Zep32f* x, Zep32f* dst,
                                                            std::ptrdiff_t len) {
    const V lowest = V::broadcast(-std::numeric_limits<float>::infinity());
    std::ptrdiff_t n = 0;
    for (; n + kBlock <= len; n += kBlock) {
        V root[kVectors];
        M good = M::first(V::lanes);
        simd::unroll<kVectors>([&](auto k) {
            const V xv = V::load(x + n + k * V::lanes);
            const V r = rsqrtEstimate(xv);
            const V s = xv * r;
            const V h = s * -0.5f;
            good = good & (h > lowest);  // what is not finite is NaN or -infinity
            root[k] = h * (s * r - 3.0f);
        });
        if (!all(good)) [[unlikely]]
            break;
        simd::unroll<kVectors>([&](auto k) { root[k].store(dst + n + k * V::lanes); });
    }
    return n;
}

// From a block that needs the true root, or the end behind the last block.
[[gnu::noinline]] ZepStatus rootsOfRest(const Zep32f* x, Zep32f* dst, std::ptrdiff_t len) {
    bool negative = false;
    for (std::ptrdiff_t n = 0; n < len; n += estimatedRoots(x + n, dst + n, len - n)) {
        const std::ptrdiff_t count = len - n < kBlock ? len - n : kBlock;
        negative |= exactRoots(x + n, dst + n, count);
        n += count;
    }
    return negative ? zepStsSqrtNegArg : zepStsNoErr;
}

// No exception traps here: withMaskedExceptions runs it.
ZepStatus quietRootsFromBoundary(const Zep32f* x, Zep32f* dst, std::ptrdiff_t len) {
    // A dst that is not aligned to its elements has no boundary.
    const auto address = reinterpret_cast<std::uintptr_t>(dst);
    std::ptrdiff_t n = 0;
    if (address % sizeof(Zep32f) == 0)
        n = static_cast<std::ptrdiff_t>(-address % 16 / sizeof(Zep32f));
    if (n > len) n = len;
    const bool negative = n > 0 && exactRoots(x, dst, n);
    n += estimatedRoots(x + n, dst + n, len - n);
    const ZepStatus rest = rootsOfRest(x + n, dst + n, len - n);
    return negative ? zepStsSqrtNegArg : rest;
}

[[gnu::noinline]] ZepStatus squareRootsFromBoundary(const Zep32f* x, Zep32f* dst,
                                                    std::ptrdiff_t len) {
    return simd::withMaskedExceptions(quietRootsFromBoundary, x, dst, len);
}

[[gnu::always_inline]] inline ZepStatus squareRoots(const Zep32f* x, Zep32f* dst, int len) {
    // The usual case in line: aligned, no exception unmasked, only ordinary numbers.
    if (reinterpret_cast<std::uintptr_t>(dst) % 16 != 0 || !simd::exceptionsMasked())
        return squareRootsFromBoundary(x, dst, len);
    const std::ptrdiff_t n = estimatedRoots(x, dst, len);
    if (n == len) return zepStsNoErr;
    return rootsOfRest(x + n, dst + n, len - n);
}

}  // namespace

ZepStatus zepsSqrt_32f(const Zep32f* pSrc, Zep32f* pDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDst); s != zepStsNoErr) return s;
    return squareRoots(pSrc, pDst, len);
}
ZepStatus zepsSqrt_32f_I(Zep32f* pSrcDst, int len) {
    if (const ZepStatus s = checkVectors(len, pSrcDst); s != zepStsNoErr) return s;
    return squareRoots(pSrcDst, pSrcDst, len);
}

}  // namespace zep::ZEP_VARIANT
