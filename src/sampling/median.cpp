// Median filter: networks for masks up to 9, a window in order in registers for wider ones, and
// ranks for those that registers do not hold.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "sampling/median_network.h"
#include "sampling/median_ranks.h"
#include "sampling/median_window.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace median {
namespace {

constexpr int kMostRegisters = 8;
constexpr int kLeastRanked = 512;
// Of eight bytes: the allocator takes sizes of 31 bits.
constexpr int kMostWords = INT32_MAX / 8;

// x[first], x[first + 1] and so on; the end values stand for what lies outside.
void readSamples(Zep32f* dst, const Zep32f* x, std::ptrdiff_t len, std::ptrdiff_t first,
                 std::ptrdiff_t count) {
    std::ptrdiff_t n = 0;
    const Zep32f front = simd::readAny(x), back = simd::readAny(x + len - 1);
    for (; n < count && first + n < 0; ++n) dst[n] = front;
    const std::ptrdiff_t rest = len - first - n, inside = count - n < rest ? count - n : rest;
    if (inside > 0) {
        __builtin_memcpy(dst + n, x + first + n, static_cast<std::size_t>(inside) * sizeof(Zep32f));
        n += inside;
    }
    for (; n < count; ++n) dst[n] = back;
}

// Values become keys in place, and keys values.
void exchangeKeys(void* p, std::ptrdiff_t count) {
    auto* const keys = static_cast<Key*>(p);
    std::ptrdiff_t n = 0;
    for (; n + Keys::lanes <= count; n += Keys::lanes)
        keyOfBits(Keys::load(keys + n)).store(keys + n);
    if (n < count) {
        const auto left = static_cast<int>(count - n);
        keyOfBits(Keys::loadPartial(keys + n, left)).storePartial(keys + n, left);
    }
}

// Narrow windows wait for each other's steps: two stretches of the data take turns.
template <int R>
constexpr int kStreams = R <= 4 ? 2 : 1;

// out[n] = median of keys[n + 1] to keys[n + width], 0 <= n < count; scratch holds `width` keys.
template <int R>
[[gnu::noinline]] void inRegisters(const Key* keys, int width, Key* scratch, Key* out, int count) {
    constexpr int S = kStreams<R>;
    const int each = (count + S - 1) / S;
    const Key* in[S];
    Key* to[S];
    RegisterWindow<R> window[S];
    simd::unroll<S>([&](auto s) {
        // The stretches may overlap by one: both have the same value there.
        const int from = s == 0 ? 0 : count - each;
        in[s] = keys + from;
        to[s] = out + from;
        __builtin_memcpy(scratch, in[s], static_cast<std::size_t>(width) * sizeof(Key));
        zepsSortAscend_32s_I(scratch, width);
        window[s] = RegisterWindow<R>::of(scratch, width);
    });
    for (int n = 0; n < each; ++n)
        simd::unroll<S>([&](auto s) {
            window[s].replace(in[s][n], in[s][n + width]);
            simd::writeAny(to[s] + n, window[s].median());
        });
}

template <int R = 1>
inline void inFewestRegisters(const Key* keys, int width, Key* scratch, Key* out, int count) {
    if constexpr (R < kMostRegisters)
        if (width >= RegisterWindow<R>::lanes)
            return inFewestRegisters<R + 1>(keys, width, scratch, out, count);
    inRegisters<R>(keys, width, scratch, out, count);
}

// Medians of the windows of `width` samples that begin at sample 1 and so on.
void byRanks(const Zep32f* samples, int width, std::uint64_t* memory, Zep32f* out, int count) {
    Ranks ranks(samples, width + count, memory);
    ranks.open(width);
    for (std::ptrdiff_t n = 0; n < count; ++n) {
        ranks.replace(n, n + width);
        simd::writeAny(out + n, ranks.median());
    }
}

// Block by block: the inputs of a block's windows are read before its outputs are written.
ZepStatus wideMedian(const Zep32f* x, Zep32f* y, int len, int width) {
    const bool registers = width < RegisterWindow<kMostRegisters>::lanes;
    // Every block sorts the window that it begins with anew, so it is a few times as long.
    const std::int64_t most = registers ? 2048 : kLeastRanked + 3 * std::int64_t{width};
    const int block = len - 2 < most ? len - 2 : static_cast<int>(most);
    const std::int64_t samplesHeld = std::int64_t{width} + block;
    const std::int64_t words =
        (samplesHeld + 1) / 2 + (registers ? (width + 1) / 2 : Ranks::wordsFor(samplesHeld));
    if (words > kMostWords) return zepStsMemAllocErr;
    const auto memory = reinterpret_cast<std::uint64_t*>(zepsMalloc_64s(static_cast<int>(words)));
    if (memory == nullptr) return zepStsMemAllocErr;
    auto* const samples = reinterpret_cast<Zep32f*>(memory);
    std::uint64_t* const scratch = memory + (samplesHeld + 1) / 2;
    const std::ptrdiff_t h = width / 2;
    const auto read = [&](Zep32f* dst, std::ptrdiff_t first, std::ptrdiff_t count) {
        readSamples(dst, x, len, first, count);
        if (registers) exchangeKeys(dst, count);
    };
    read(samples, -h, width);
    for (std::ptrdiff_t n = 1; n < len - 1;) {
        const auto left = static_cast<int>(len - 1 - n);
        const int count = left < block ? left : block;
        read(samples + width, n + h, count);
        if (registers) {
            inFewestRegisters(reinterpret_cast<const Key*>(samples), width,
                              reinterpret_cast<Key*>(scratch), reinterpret_cast<Key*>(y + n),
                              count);
            exchangeKeys(y + n, count);
        } else {
            byRanks(samples, width, scratch, y + n, count);
        }
        __builtin_memmove(samples, samples + count,
                          static_cast<std::size_t>(width) * sizeof(Zep32f));
        n += count;
    }
    zepsFree(memory);
    return zepStsNoErr;
}

// h >= len - 1: every window holds all the data and, beyond them, only end values; h - n of the
// first one, the others of the last one.
ZepStatus medianOfAll(const Zep32f* x, Zep32f* y, int len, std::int64_t h) {
    Key* const sorted = len / 2 < kMostWords ? zepsMalloc_32s(len) : nullptr;
    if (sorted == nullptr) return zepStsMemAllocErr;
    readSamples(reinterpret_cast<Zep32f*>(sorted), x, len, 0, len);
    exchangeKeys(sorted, len);
    const Key front = sorted[0], back = sorted[len - 1];
    zepsSortAscend_32s_I(sorted, len);
    const bool rising = front <= back;
    const Key low = rising ? front : back, high = rising ? back : front;
    const std::int64_t belowLow = countBelow(sorted, len, low);
    const std::int64_t belowHigh = countBelow(sorted, len, high);
    const std::int64_t extra = 2 * h + 1 - len;
    for (std::ptrdiff_t n = 1; n < len - 1; ++n) {
        const std::int64_t lows = rising ? h - n : extra - (h - n);
        const Key k = h < belowLow            ? sorted[h]
                      : h < belowLow + lows   ? low
                      : h < belowHigh + lows  ? sorted[h - lows]
                      : h < belowHigh + extra ? high
                                              : sorted[h - extra];
        simd::writeAny(reinterpret_cast<Key*>(y) + n, keyOfBits(k));
    }
    zepsFree(sorted);
    return zepStsNoErr;
}

ZepStatus filter(const Zep32f* x, Zep32f* y, int len, int maskSize) {
    const int width = maskSize - (maskSize % 2 == 0 ? 1 : 0);
    const ZepStatus done = width == maskSize ? zepStsNoErr : zepStsEvenMedianMaskSize;
    if (width == 1 || len < 3) {
        if (x != y) zepsCopy_32f(x, y, len);
        return done;
    }
    ZepStatus status = zepStsNoErr;
    if (len == 3 || width == 3)
        smallMedian<3>(x, y, len);
    else if (width == 5)
        smallMedian<5>(x, y, len);
    else if (width == 7)
        smallMedian<7>(x, y, len);
    else if (width == 9)
        smallMedian<9>(x, y, len);
    else if (width / 2 >= len - 1)
        status = medianOfAll(x, y, len, width / 2);
    else
        status = wideMedian(x, y, len, width);
    if (x != y) {
        if (status != zepStsNoErr) {
            zepsCopy_32f(x, y, len);
        } else {
            simd::writeAny(y, simd::readAny(x));
            simd::writeAny(y + len - 1, simd::readAny(x + len - 1));
        }
    }
    return status == zepStsNoErr ? done : status;
}

ZepStatus checkedFilter(const Zep32f* x, Zep32f* y, int len, int maskSize) {
    if (const ZepStatus s = checkVectors(len, x, y); s != zepStsNoErr) return s;
    if (maskSize < 1) return zepStsSizeErr;
    return filter(x, y, len, maskSize);
}

}  // namespace
}  // namespace median

ZepStatus zepsFilterMedian_32f(const Zep32f* pSrc, Zep32f* pDst, int len, int maskSize) {
    return median::checkedFilter(pSrc, pDst, len, maskSize);
}
ZepStatus zepsFilterMedian_32f_I(Zep32f* pSrcDst, int len, int maskSize) {
    return median::checkedFilter(pSrcDst, pSrcDst, len, maskSize);
}

}  // namespace zep::ZEP_VARIANT
