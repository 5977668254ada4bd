// Median filter: networks for masks up to 9, a window in order for wider ones.
#include "core/checks.h"
#include "core/variant_exports.h"
#include "sampling/median_network.h"
#include "sampling/median_window.h"
#include "vector/shapes.h"

namespace zep::ZEP_VARIANT {
namespace median {
namespace {

constexpr int kMostRegisters = 8;
// Of eight bytes: the allocator takes sizes of 31 bits.
constexpr int kMostWords = INT32_MAX / 8;

// Keys of x[first], x[first + 1] and so on; the end values stand for what lies outside.
void readKeys(Key* keys, const Zep32f* x, std::ptrdiff_t len, std::ptrdiff_t first,
              std::ptrdiff_t count) {
    const auto* bits = reinterpret_cast<const Key*>(x);
    std::ptrdiff_t n = 0;
    const Key front = keyOfBits(simd::readAny(bits)),
              back = keyOfBits(simd::readAny(bits + len - 1));
    for (; n < count && first + n < 0; ++n) keys[n] = front;
    for (; n + Keys::lanes <= count && first + n + Keys::lanes <= len; n += Keys::lanes)
        keyOfBits(Keys::load(bits + first + n)).store(keys + n);
    for (; n < count && first + n < len; ++n) keys[n] = keyOfBits(simd::readAny(bits + first + n));
    for (; n < count; ++n) keys[n] = back;
}

// `count` keys in the caller's array become the values again.
void writeValues(Zep32f* y, std::ptrdiff_t count) {
    auto* bits = reinterpret_cast<Key*>(y);
    std::ptrdiff_t n = 0;
    for (; n + Keys::lanes <= count; n += Keys::lanes)
        keyOfBits(Keys::load(bits + n)).store(bits + n);
    if (n < count) {
        const auto left = static_cast<int>(count - n);
        keyOfBits(Keys::loadPartial(bits + n, left)).storePartial(bits + n, left);
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

void inMemory(const Key* keys, int width, Key* sorted, Key* out, int count) {
    MemoryWindow window(sorted, width);
    for (int n = 0; n < count; ++n) {
        window.replace(keys[n], keys[n + width]);
        simd::writeAny(out + n, window.median());
    }
}

// Block by block: the inputs of a block's windows are read before its outputs are written.
ZepStatus wideMedian(const Zep32f* x, Zep32f* y, int len, int width) {
    const bool registers = width < RegisterWindow<kMostRegisters>::lanes;
    const int most = registers ? 2048 : 65536;
    const int block = len - 2 < most ? len - 2 : most;
    const std::int64_t words = (2 * std::int64_t{width} + block + 1) / 2;
    if (words > kMostWords) return zepStsMemAllocErr;
    auto* const keys = reinterpret_cast<Key*>(zepsMalloc_64s(static_cast<int>(words)));
    if (keys == nullptr) return zepStsMemAllocErr;
    Key* const sorted = keys + width + block;
    const std::ptrdiff_t h = width / 2;
    readKeys(keys, x, len, -h, width);
    if (!registers) {
        __builtin_memcpy(sorted, keys, static_cast<std::size_t>(width) * sizeof(Key));
        zepsSortAscend_32s_I(sorted, width);
    }
    for (std::ptrdiff_t n = 1; n < len - 1;) {
        const auto left = static_cast<int>(len - 1 - n);
        const int count = left < block ? left : block;
        readKeys(keys + width, x, len, n + h, count);
        auto* const out = reinterpret_cast<Key*>(y + n);
        if (registers)
            inFewestRegisters(keys, width, sorted, out, count);
        else
            inMemory(keys, width, sorted, out, count);
        writeValues(y + n, count);
        __builtin_memmove(keys, keys + count, static_cast<std::size_t>(width) * sizeof(Key));
        n += count;
    }
    zepsFree(keys);
    return zepStsNoErr;
}

// h >= len - 1: every window holds all the data and, beyond them, only end values; h - n of the
// first one, the others of the last one.
ZepStatus medianOfAll(const Zep32f* x, Zep32f* y, int len, std::int64_t h) {
    Key* const sorted = len / 2 < kMostWords ? zepsMalloc_32s(len) : nullptr;
    if (sorted == nullptr) return zepStsMemAllocErr;
    readKeys(sorted, x, len, 0, len);
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
