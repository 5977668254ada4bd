// Stable radix sort of indices by float keys, from the least significant digit on.
//
// The bits of a float are turned into a key that ascends where values descend: those of a negative
// one ascend with its magnitude already, and of a positive one all bits below the sign are
// complemented, which puts it before all negative ones with the largest first. Digits of 11, 11 and
// 10 bits make three passes; one reading of the keys counts all three.
#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "simd/vec_fwd.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr int kDigits = 3;
constexpr int kShift[kDigits] = {0, 11, 22};
constexpr int kValues = 2048;

// Keys at a byte stride, which may be negative.
class Keys {
public:
    Keys(const Zep32f* first, int strideBytes)
        : first_(reinterpret_cast<const char*>(first)), stride_(strideBytes) {}

    const void* address(std::int32_t n) const { return first_ + n * stride_; }
    std::uint32_t operator[](std::int32_t n) const {
        std::uint32_t v;
        __builtin_memcpy(&v, address(n), sizeof v);
        return v ^ (~static_cast<std::uint32_t>(static_cast<std::int32_t>(v) >> 31) & 0x7FFFFFFFu);
    }

private:
    const char* first_;
    std::ptrdiff_t stride_;
};

using Counters = std::uint32_t[kDigits][kValues];

inline std::uint32_t digitOf(std::uint32_t key, int digit) {
    return key >> kShift[digit] & (kValues - 1);
}

// Counts, and then where the first index with each digit goes.
inline void startingPositions(const Keys& keys, std::int32_t len, Counters& start) {
    for (auto& digit : start)
        for (auto& counter : digit) counter = 0;
    for (std::int32_t n = 0; n < len; ++n) {
        const std::uint32_t key = keys[n];
        ++start[0][digitOf(key, 0)];
        ++start[1][digitOf(key, 1)];
        ++start[2][digitOf(key, 2)];
    }
    std::uint32_t sum[kDigits] = {};
    for (int v = 0; v < kValues; ++v)
        for (int d = 0; d < kDigits; ++d) {
            const std::uint32_t count = start[d][v];
            start[d][v] = sum[d];
            sum[d] += count;
        }
}

// Indices come in the order that `index` gives and go to dst by one digit. Keys are read all over
// memory: they are asked for early.
template <class Index>
inline void distribute(const Keys& keys, std::int32_t len, std::uint32_t (&start)[kValues],
                       int digit, std::int32_t* dst, Index index) {
    constexpr std::int32_t kAhead = 24;
    const auto put = [&](std::int32_t i) {
        const std::uint32_t to = start[digitOf(keys[i], digit)]++;
        simd::writeAny(dst + to, i);
    };
    std::int32_t n = 0;
    for (; n < len - kAhead; ++n) {
        __builtin_prefetch(keys.address(index(n + kAhead)));
        put(index(n));
    }
    for (; n < len; ++n) put(index(n));
}

}  // namespace

ZepStatus zepsSortRadixIndexDescend_32f(const Zep32f* pSrc, Zep32s srcStrideBytes, Zep32s* pDstIndx,
                                        Zep32s* pTmpIndx, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDstIndx, pTmpIndx); s != zepStsNoErr) return s;
    if (static_cast<std::uint32_t>(srcStrideBytes) < sizeof(Zep32f)) return zepStsSizeErr;
    const Keys keys(pSrc, srcStrideBytes);
    const auto in = [](const Zep32s* from) {
        return [from](std::int32_t n) { return simd::readAny(from + n); };
    };
    Counters start;
    startingPositions(keys, len, start);
    distribute(keys, len, start[0], 0, pDstIndx, [](std::int32_t n) { return n; });
    distribute(keys, len, start[1], 1, pTmpIndx, in(pDstIndx));
    distribute(keys, len, start[2], 2, pDstIndx, in(pTmpIndx));
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
