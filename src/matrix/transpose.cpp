// Transposition. Rows of neighbouring elements go by square tiles in registers (simd/transpose.h):
// blocks of source rows, a stripe of tiles across each, all tiles of a block one below the other
// before the next column. So every row of the destination receives whole cache lines one after the
// other, whatever its distance to the next one: strides of a power of two, whose lines all compete
// for a few places of the cache, cost no line twice. Tiles at the end of a row or column overlap
// those before them.
//
// Where both matrices exceed the cache the source is fetched ahead, row by row, since no processor
// follows so many streams by itself; and rows that begin at cache lines are stored past the cache,
// which saves reading them first.
#include "simd/transpose.h"

#include <cstdint>

#include "core/checks.h"
#include "core/variant_exports.h"
#include "zepcore.h"

namespace zep::ZEP_VARIANT {
namespace {

using simd::Rows;

constexpr int kBlockRows = 64;
constexpr std::ptrdiff_t kLine = 64;

enum class Size { Cached, Large, Streamed };

// One tile; at is its first row and column in the source.
template <class V, Size kSize, class T>
[[gnu::always_inline]] inline void moveTile(Rows<const T> src, Rows<T> dst, std::ptrdiff_t row,
                                            std::ptrdiff_t column, bool stream) {
    const auto from = src.from(row, column);
    const auto to = dst.from(column, row);
    if constexpr (kSize != Size::Cached) {
        constexpr std::ptrdiff_t ahead = 2 * kLine / std::ptrdiff_t{sizeof(T)};
        simd::unroll<V::lanes>([&](auto k) __attribute__((always_inline)) {
            __builtin_prefetch(from.at(k, ahead));
        });
    }
    if constexpr (kSize == Size::Streamed) {
        if (stream)
            return simd::transposeTile<V>(
                from, to, [](V v, T * p) __attribute__((always_inline)) { v.storeStream(p); });
    }
    simd::transposeTile<V>(
        from, to, [](V v, T * p) __attribute__((always_inline)) { v.store(p); });
}

// At least one tile each way.
template <class V, Size kSize, class T>
[[gnu::noinline]] void moveTiles(Rows<const T> src, Rows<T> dst, std::ptrdiff_t width,
                                 std::ptrdiff_t height) {
    constexpr std::ptrdiff_t L = V::lanes;
    for (std::ptrdiff_t block = 0; block < height; block += kBlockRows) {
        const std::ptrdiff_t end = block + kBlockRows < height ? block + kBlockRows : height;
        for (std::ptrdiff_t column = 0; column < width; column += L) {
            const std::ptrdiff_t c = column < width - L ? column : width - L;
            std::ptrdiff_t row = block;
            for (; row <= end - L; row += L) moveTile<V, kSize>(src, dst, row, c, true);
            if (row < end) moveTile<V, kSize>(src, dst, end - L, c, false);
        }
    }
    if constexpr (kSize == Size::Streamed) simd::streamFence();
}

template <class T>
[[gnu::noinline]] void moveElements(const char* src, std::ptrdiff_t srcRow, std::ptrdiff_t srcStep,
                                    std::ptrdiff_t width, std::ptrdiff_t height, char* dst,
                                    std::ptrdiff_t dstRow, std::ptrdiff_t dstStep) {
    for (std::ptrdiff_t r = 0; r < height; ++r)
        for (std::ptrdiff_t c = 0; c < width; ++c)
            simd::writeAny(
                reinterpret_cast<T*>(dst + c * dstRow + r * dstStep),
                simd::readAny(reinterpret_cast<const T*>(src + r * srcRow + c * srcStep)));
}

// Bytes of the largest cache, or a usual one where it cannot be found out.
inline std::size_t cacheBytes() {
    constexpr std::size_t kUsual = std::size_t{32} << 20;
    int bytes = 0;
    return zepGetMaxCacheSizeB(&bytes) == zepStsNoErr && bytes > 0 ? static_cast<std::size_t>(bytes)
                                                                   : kUsual;
}

template <class V, class T>
inline void moveBySize(Rows<const T> src, Rows<T> dst, std::ptrdiff_t width,
                       std::ptrdiff_t height) {
    constexpr std::size_t kNear = std::size_t{1} << 20;  // about a core's own cache
    const std::size_t bytes =
        2 * sizeof(T) * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (bytes <= kNear) return moveTiles<V, Size::Cached>(src, dst, width, height);
    const bool lines = (reinterpret_cast<std::uintptr_t>(dst.first) % kLine |
                        static_cast<std::uintptr_t>(dst.stride) % kLine) == 0;
    if (lines && bytes > cacheBytes()) return moveTiles<V, Size::Streamed>(src, dst, width, height);
    moveTiles<V, Size::Large>(src, dst, width, height);
}

// The widest tiles that fit; true when there were any.
template <class V, class T>
inline bool movedByTiles(Rows<const T> src, Rows<T> dst, std::ptrdiff_t width,
                         std::ptrdiff_t height) {
    if (width >= V::lanes && height >= V::lanes) {
        moveBySize<V>(src, dst, width, height);
        return true;
    }
    if constexpr (!simd::isNarrow<V>) return movedByTiles<simd::Half<V>>(src, dst, width, height);
    return false;
}

template <class T>
inline bool goodStrides(auto... strides) {
    return (... && (strides > 0 && strides % int{sizeof(T)} == 0));
}

template <class T>
inline ZepStatus transpose(const T* pSrc, int srcStride1, int srcStride2, int width, int height,
                           T* pDst, int dstStride1, int dstStride2) {
    if (anyNull(pSrc, pDst)) return zepStsNullPtrErr;
    if (width <= 0 || height <= 0) return zepStsSizeErr;
    if (!goodStrides<T>(srcStride1, srcStride2, dstStride1, dstStride2))
        return zepStsStrideMatrixErr;
    constexpr int kElement = sizeof(T);
    if (srcStride2 == kElement && dstStride2 == kElement &&
        movedByTiles<simd::Native<T>>(Rows<const T>{pSrc, srcStride1}, Rows<T>{pDst, dstStride1},
                                      width, height))
        return zepStsNoErr;
    moveElements<T>(reinterpret_cast<const char*>(pSrc), srcStride1, srcStride2, width, height,
                    reinterpret_cast<char*>(pDst), dstStride1, dstStride2);
    return zepStsNoErr;
}

}  // namespace

ZepStatus zepmTranspose_m_32f(const Zep32f* pSrc, int srcStride1, int srcStride2, int width,
                              int height, Zep32f* pDst, int dstStride1, int dstStride2) {
    return transpose(pSrc, srcStride1, srcStride2, width, height, pDst, dstStride1, dstStride2);
}
ZepStatus zepmTranspose_m_64f(const Zep64f* pSrc, int srcStride1, int srcStride2, int width,
                              int height, Zep64f* pDst, int dstStride1, int dstStride2) {
    return transpose(pSrc, srcStride1, srcStride2, width, height, pDst, dstStride1, dstStride2);
}

}  // namespace zep::ZEP_VARIANT
