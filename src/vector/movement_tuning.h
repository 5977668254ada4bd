// Sizes at which copies and fills change their method, by variant, and the question whether a block
// is to be written past the cache. A block that does not fit the cache would throw out everything
// else, so it is written with streaming stores; where the cache size cannot be found out, with
// ordinary ones.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cache_descriptors.h"
#include "core/variant/tag.h"
#include "zepcore.h"

namespace zep::ZEP_VARIANT {

inline constexpr std::size_t kNever = SIZE_MAX;

// Bytes of the largest cache as the core remembers them, 0 where they are not known.
inline std::size_t rememberedCacheBytes() {
    int bytes = 0;
    return zepGetMaxCacheSizeB(&bytes) == zepStsNoErr && bytes > 0 ? static_cast<std::size_t>(bytes)
                                                                   : 0;
}

struct CopyTuningBase {
    // The cache is asked for above this size only, since identification instructions are slow.
    static constexpr std::size_t probeAbove = 0x100000;
    // Streaming copies first read a chunk of this size into the cache, so that reads and writes of
    // the memory alternate in long bursts; 0: they do not.
    static constexpr std::size_t readAheadChunk = 0;
    // Copies downwards where reads would otherwise wait for stores at the same offset in another 4
    // KiB page.
    static constexpr bool avoidsPageAliasing = false;
    // From this size on rep movs is faster than the loop.
    static constexpr std::size_t repeatMoveFrom = kNever;

    static bool exceedsCache(std::size_t bytes) {
        return exceedsHalf(bytes, probeDescribedCacheBytes());
    }
    static bool exceedsHalf(std::size_t bytes, std::int32_t cacheBytes) {
        return cacheBytes > 0 && bytes > static_cast<std::size_t>(cacheBytes / 2);
    }
};

template <class Tag>
struct CopyTuning;

template <>
struct CopyTuning<tag::m7> : CopyTuningBase {
    static constexpr std::size_t probeAbove = 0x80000;
    static constexpr std::size_t readAheadChunk = 0x40000;
    // Logical processors share the cache; and a block of exactly half of it streams already.
    static bool exceedsCache(std::size_t bytes) {
        return exceedsHalf(bytes + 1, probeDescribedCacheBytesPerProcessor());
    }
};
template <>
struct CopyTuning<tag::u8> : CopyTuningBase {
    static constexpr std::size_t probeAbove = 0x20000;
};
template <>
struct CopyTuning<tag::n8> : CopyTuning<tag::u8> {};
template <>
struct CopyTuning<tag::y8> : CopyTuningBase {
    static constexpr std::size_t readAheadChunk = 0x40000;
    static constexpr bool avoidsPageAliasing = true;
};
template <>
struct CopyTuning<tag::e9> : CopyTuningBase {
    static constexpr std::size_t repeatMoveFrom = 0x6000;
    static bool exceedsCache(std::size_t bytes) {
        const std::size_t cacheBytes = rememberedCacheBytes();
        return cacheBytes != 0 && bytes > cacheBytes;
    }
};

struct MoveTuningBase {
    // From this size on, which the first-level cache does not hold, the source is asked for ahead:
    // loads that straddle two lines keep too few of them under way.
    static constexpr std::size_t readAheadFrom = kNever;
};

template <class Tag>
struct MoveTuning;

template <>
struct MoveTuning<tag::m7> : MoveTuningBase {};
template <>
struct MoveTuning<tag::u8> : MoveTuningBase {};
template <>
struct MoveTuning<tag::n8> : MoveTuningBase {};
template <>
struct MoveTuning<tag::y8> : MoveTuningBase {};

template <>
struct MoveTuning<tag::e9> : MoveTuningBase {
    static constexpr std::size_t readAheadFrom = 0x20000;
};

// Fills of 1, 2, 4 and 8 byte patterns; a clear counts as a byte fill.
struct FillTuningBase {
    static constexpr std::size_t repeatStoreFrom = kNever;

    // In elements of the pattern, as each fill counts.
    static constexpr std::size_t probeAbove(std::size_t elementBytes) {
        return elementBytes <= 2 ? 0x80000 : 0x100000 / elementBytes;
    }
    template <std::size_t elementBytes>
    static bool reachesCache(std::size_t bytes) {
        return reaches(bytes, probeDescribedCacheBytes());
    }
    static bool reaches(std::size_t bytes, std::int64_t cacheBytes) {
        return cacheBytes > 0 && bytes >= static_cast<std::size_t>(cacheBytes);
    }
};

template <class Tag>
struct FillTuning;

template <>
struct FillTuning<tag::m7> : FillTuningBase {
    template <std::size_t elementBytes>
    static bool reachesCache(std::size_t bytes) {
        return reaches(bytes, probeDescribedCacheBytesPerProcessor());
    }
};
template <>
struct FillTuning<tag::u8> : FillTuningBase {};
template <>
struct FillTuning<tag::n8> : FillTuningBase {};
template <>
struct FillTuning<tag::y8> : FillTuningBase {};
template <>
struct FillTuning<tag::e9> : FillTuningBase {
    static constexpr std::size_t repeatStoreFrom = 0x100000;

    static constexpr std::size_t probeAbove(std::size_t elementBytes) {
        return elementBytes == 8 ? 0x20000 : elementBytes == 4 ? 0x200000 : 0x200000 / elementBytes;
    }
    template <std::size_t elementBytes>
    static bool reachesCache(std::size_t bytes) {
        if constexpr (elementBytes == 8) return reaches(bytes, probeDescribedCacheBytes());
        return reaches(bytes, static_cast<std::int64_t>(rememberedCacheBytes()));
    }
};

}  // namespace zep::ZEP_VARIANT
