// Stable radix sort of indices by float keys, from the least significant digit on.
//
// The bits of a float are turned into a key that ascends where values descend: those of a negative
// one ascend with its magnitude already, and of a positive one all bits below the sign are
// complemented, which puts it before all negative ones with the largest first. Digits of 11, 11 and
// 10 bits make three passes; one reading of the keys counts all three. The tables of short vectors
// would cost more than the passes: they take four digits of 8 bits, and the shortest are sorted by
// ranks. The order is the same, since a stable sort has only one.
#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "sort/ranks.h"

namespace zep::ZEP_VARIANT {
namespace {

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

using V = simd::Native<std::int32_t>;
constexpr int kMostRanked = 32 * V::lanes;

// Of equal keys the one with the lower index is before the other: in blocks behind it they count too.
[[gnu::noinline]] void sortByRanks(const Keys& keys, std::int32_t* dst, std::int32_t len) {
    constexpr int L = V::lanes;
    // As signed integers in the same order; the last block reads what stands behind them.
    std::int32_t x[kMostRanked + L], ranks[kMostRanked + L];
    for (std::int32_t n = 0; n < len; ++n) x[n] = static_cast<std::int32_t>(keys[n] ^ 0x80000000u);
    for (int n = len; n < len + L; ++n) x[n] = INT32_MAX;
    std::int32_t lanes[L];
    for (int k = 0; k < L; ++k) lanes[k] = k;
    const V lane = V::load(lanes);
    forRankBlocks<V>(
        len, [&](auto vectors, int first) __attribute__((always_inline)) {
            V block[vectors], counts[vectors] = {}, places[vectors];
            simd::unroll<vectors>([&](auto k) {
                block[k] = V::load(x + first + k * L);
                places[k] = lane + V::broadcast(first + k * L);
            });
            const int behind = first + vectors * L < len ? first + vectors * L : len;
            countBefore(x, 0, first, block, counts, [](V a, V b) { return a <= b; });
            for (int n = first; n < behind; ++n) {
                const V key = V::broadcast(x[n]), place = V::broadcast(n);
                simd::unroll<vectors>([&](auto k) {
                    const auto before =
                        (key < block[k]) | ((key == block[k]) & (place < places[k]));
                    counts[k] = counts[k] + keepIf(before, V::broadcast(1));
                });
            }
            countBefore(x, behind, len, block, counts, [](V a, V b) { return a < b; });
            simd::unroll<vectors>([&](auto k) { counts[k].store(ranks + first + k * L); });
        });
    for (std::int32_t n = 0; n < len; ++n) simd::writeAny(dst + ranks[n], n);
}

template <int kDigits, int kBits>
class RadixSort {
    static constexpr std::uint32_t kValues = 1u << kBits;
    static_assert(kDigits * kBits >= 32);

public:
    static void run(const Keys& keys, std::int32_t* dst, std::int32_t* scratch, std::int32_t len) {
        std::uint32_t start[kDigits][kValues] = {};
        startingPositions(keys, len, start);
        // To and fro, so that the last pass ends in dst.
        const std::int32_t* from = nullptr;
        for (int digit = 0; digit < kDigits; ++digit) {
            std::int32_t* const to = (kDigits - digit) % 2 == 1 ? dst : scratch;
            if (digit == 0)
                distribute(keys, len, start[0], 0, to, [](std::int32_t n) { return n; });
            else
                distribute(keys, len, start[digit], digit, to,
                           [from](std::int32_t n) { return simd::readAny(from + n); });
            from = to;
        }
    }

private:
    static std::uint32_t digitOf(std::uint32_t key, int digit) {
        return key >> digit * kBits & (kValues - 1);
    }

    // Counts, and then where the first index with each digit goes.
    static void startingPositions(const Keys& keys, std::int32_t len,
                                  std::uint32_t (&start)[kDigits][kValues]) {
        for (std::int32_t n = 0; n < len; ++n) {
            const std::uint32_t key = keys[n];
            for (int d = 0; d < kDigits; ++d) ++start[d][digitOf(key, d)];
        }
        std::uint32_t sum[kDigits] = {};
        for (std::uint32_t v = 0; v < kValues; ++v)
            for (int d = 0; d < kDigits; ++d) {
                const std::uint32_t count = start[d][v];
                start[d][v] = sum[d];
                sum[d] += count;
            }
    }

    // Indices come in the order that `index` gives and go to dst by one digit. Keys are read all
    // over memory: they are asked for early.
    template <class Index>
    static void distribute(const Keys& keys, std::int32_t len, std::uint32_t (&start)[kValues],
                           int digit, std::int32_t* dst, Index index) {
        constexpr std::int32_t kAhead = 24;
        const auto put = [&](std::int32_t i) {
            simd::writeAny(dst + start[digitOf(keys[i], digit)]++, i);
        };
        std::int32_t n = 0;
        for (; n < len - kAhead; ++n) {
            __builtin_prefetch(keys.address(index(n + kAhead)));
            put(index(n));
        }
        for (; n < len; ++n) put(index(n));
    }
};

constexpr std::int32_t kFewKeys = 4096;

}  // namespace

ZepStatus zepsSortRadixIndexDescend_32f(const Zep32f* pSrc, Zep32s srcStrideBytes, Zep32s* pDstIndx,
                                        Zep32s* pTmpIndx, Zep32s len) {
    if (const ZepStatus s = checkVectors(len, pSrc, pDstIndx, pTmpIndx); s != zepStsNoErr) return s;
    if (static_cast<std::uint32_t>(srcStrideBytes) < sizeof(Zep32f)) return zepStsSizeErr;
    const Keys keys(pSrc, srcStrideBytes);
    if (len <= kMostRanked)
        sortByRanks(keys, pDstIndx, len);
    else if (len < kFewKeys)
        RadixSort<4, 8>::run(keys, pDstIndx, pTmpIndx, len);
    else
        RadixSort<3, 11>::run(keys, pDstIndx, pTmpIndx, len);
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT
