// Bit reversal of long transforms in square tiles, fused with the passes that a tile allows.
//
// Write an index as high t bits, middle bits and low t bits, with T = 2^t: bit reversal swaps and
// reverses high and low and reverses the middle. The tile of one middle value m is T rows (high) of
// T adjacent elements (low); it lands on the rows of middle value rev(m). Each row is several cache
// lines long, so every line is fetched and written once. The first passes join just the elements of
// equal low bits, the T rows of a tile: they run in scratch, on a tile that lies transposed, in
// bit-reversed order of the low bits, each row a group of T elements in the end.
//
// In place the tiles of m and rev(m) are both taken into scratch before either is written.
#include "transform/fft_tile.h"

#include "transform/fft_passes.h"
#include "transform/fft_routes.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr int kTileOrder = Tuning::tileOrder;
constexpr std::ptrdiff_t kTile = std::ptrdiff_t{1} << kTileOrder;
constexpr std::ptrdiff_t kTileFloats = 2 * kTile * kTile;
constexpr int kVectorsOrder = kTileOrder - kLogLanes;

struct VectorReversal {
    std::ptrdiff_t of[1 << kVectorsOrder];
};
constexpr VectorReversal makeVectorReversal() {
    VectorReversal table{};
    for (int i = 0; i < 1 << kVectorsOrder; ++i)
        for (int bit = 0; bit < kVectorsOrder; ++bit)
            if ((i >> bit & 1) != 0) table.of[i] |= std::ptrdiff_t{1} << (kVectorsOrder - 1 - bit);
    return table;
}
constexpr VectorReversal kReversed = makeVectorReversal();

// tile[rev(low)][..] = first pass over the rows of the tile whose top left element is src.
template <Direction D>
void gatherTile(const float* src, int order, float* tile) {
    const std::ptrdiff_t legStride = std::ptrdiff_t{2} << (order - kLogLanes);
    const std::ptrdiff_t rowStride = std::ptrdiff_t{2} << (order - kTileOrder);
    constexpr std::ptrdiff_t kOutStride = 2 * kTile * (kTile / kLanes);
    for (std::ptrdiff_t h = 0; h < kTile / kLanes; ++h)
        for (std::ptrdiff_t v = 0; v < kTile / kLanes; ++v)
            firstColumn<D>(src + h * rowStride + v * 2 * kLanes, legStride,
                           tile + kReversed.of[v] * 2 * kTile + kReversed.of[h] * 2 * kLanes,
                           kOutStride);
}

// The other passes inside the tile; the last one writes its rows to dst.
template <Direction D>
void scatterTile(float* tile, float* dst, int order, const float* twiddles) {
    constexpr int kRadixOrder = lastRadixOrder(kTileOrder - kLogLanes);
    constexpr int kPart = kTileOrder - kRadixOrder;
    constexpr std::ptrdiff_t kGroup = std::ptrdiff_t{1} << kPart;
    const std::ptrdiff_t rowStride = std::ptrdiff_t{2} << (order - kTileOrder);
    FFTBlockInPlace<D>(tile, kTile << kRadixOrder, kLogLanes, kPart, twiddles);
    for (std::ptrdiff_t row = 0; row < kTile; ++row)
        joinColumns<D, 1 << kRadixOrder, Output::Split>(
            tile + row * 2 * kTile, 2 * kGroup, dst + row * rowStride, 2 * kGroup,
            twiddles + passTwiddles(kPart), kGroup, 1.0f);
}

}  // namespace

template <Direction D>
void reverseTiles(const float* src, float* dst, int order, const FftObject& spec, float* scratch) {
    const std::ptrdiff_t tiles = std::ptrdiff_t{1} << (order - 2 * kTileOrder);
    for (std::ptrdiff_t m = 0; m < tiles; ++m) {
        const std::ptrdiff_t reversed = spec.bitReversal[m];
        const std::ptrdiff_t here = 2 * kTile * m, there = 2 * kTile * reversed;
        if (src != dst) {
            gatherTile<D>(src + here, order, scratch);
            scatterTile<D>(scratch, dst + there, order, spec.blockTwiddles);
        } else if (reversed >= m) {
            gatherTile<D>(src + here, order, scratch);
            if (reversed != m) gatherTile<D>(src + there, order, scratch + kTileFloats);
            scatterTile<D>(scratch, dst + there, order, spec.blockTwiddles);
            if (reversed != m)
                scatterTile<D>(scratch + kTileFloats, dst + here, order, spec.blockTwiddles);
        }
    }
}

template void reverseTiles<Direction::Forward>(const float*, float*, int, const FftObject&, float*);
template void reverseTiles<Direction::Inverse>(const float*, float*, int, const FftObject&, float*);

}  // namespace zep::ZEP_VARIANT
