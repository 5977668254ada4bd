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
#include "transform/fft_first_pass.h"
#include "transform/fft_routes.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

template <class T>
constexpr int kTileOrder = TuningOf<T>::tileOrder;
template <class T>
constexpr std::ptrdiff_t kTile = std::ptrdiff_t{1} << kTileOrder<T>;
template <class T>
constexpr std::ptrdiff_t kTileScalars = 2 * kTile<T>* kTile<T>;
template <class T>
constexpr int kVectorsOrder = kTileOrder<T> - kLogLanes<T>;

template <class T>
struct VectorReversal {
    static_assert(kVectorsOrder<T> >= 2);  // what the passes inside a tile can join
    std::ptrdiff_t of[1 << kVectorsOrder<T>];
};
template <class T>
constexpr VectorReversal<T> makeVectorReversal() {
    constexpr int bits = kVectorsOrder<T>;
    VectorReversal<T> table{};
    for (int i = 0; i < 1 << bits; ++i)
        for (int bit = 0; bit < bits; ++bit)
            if ((i >> bit & 1) != 0) table.of[i] |= std::ptrdiff_t{1} << (bits - 1 - bit);
    return table;
}
template <class T>
constexpr VectorReversal<T> kReversed = makeVectorReversal<T>();

// tile[rev(low)][..] = first pass over the rows of the tile whose top left element is src.
template <Direction D, class T>
void gatherTile(const T* src, int order, T* tile) {
    constexpr std::ptrdiff_t kVectors = kTile<T> / kLanes<T>, kPair = 2 * kLanes<T>;
    const std::ptrdiff_t legStride = std::ptrdiff_t{2} << (order - kLogLanes<T>);
    const std::ptrdiff_t rowStride = std::ptrdiff_t{2} << (order - kTileOrder<T>);
    constexpr std::ptrdiff_t kOutStride = 2 * kTile<T> * kVectors;
    for (std::ptrdiff_t h = 0; h < kVectors; ++h)
        for (std::ptrdiff_t v = 0; v < kVectors; ++v)
            firstColumn<D>(src + h * rowStride + v * kPair, legStride,
                           tile + kReversed<T>.of[v] * 2 * kTile<T> + kReversed<T>.of[h] * kPair,
                           kOutStride);
}

// The other passes inside the tile; the last one writes its rows to dst.
template <Direction D, class T>
void scatterTile(T* tile, T* dst, int order, const T* twiddles) {
    constexpr int kRadixOrder = lastRadixOrder(kVectorsOrder<T>);
    constexpr int kPart = kTileOrder<T> - kRadixOrder;
    constexpr std::ptrdiff_t kGroup = std::ptrdiff_t{1} << kPart;
    const std::ptrdiff_t rowStride = std::ptrdiff_t{2} << (order - kTileOrder<T>);
    Routes<D, T>::blockInPlace(tile, kTile<T> << kRadixOrder, kLogLanes<T>, kPart, twiddles);
    for (std::ptrdiff_t row = 0; row < kTile<T>; ++row)
        joinColumns<D, 1 << kRadixOrder, Output::Split>(
            tile + row * 2 * kTile<T>, 2 * kGroup, dst + row * rowStride, 2 * kGroup,
            twiddles + passTwiddles<T>(kPart), kGroup, T{1});
}

}  // namespace

template <Direction D, class T>
void Routes<D, T>::reverseTiles(const T* src, T* dst, int order, const FftObject<T>& spec,
                                T* scratch) {
    const std::ptrdiff_t tiles = std::ptrdiff_t{1} << (order - 2 * kTileOrder<T>);
    T* second = scratch + kTileScalars<T>;
    for (std::ptrdiff_t m = 0; m < tiles; ++m) {
        const std::ptrdiff_t reversed = spec.bitReversal[m];
        const std::ptrdiff_t here = 2 * kTile<T> * m, there = 2 * kTile<T> * reversed;
        if (src != dst) {
            gatherTile<D>(src + here, order, scratch);
            scatterTile<D>(scratch, dst + there, order, spec.blockTwiddles);
        } else if (reversed >= m) {
            gatherTile<D>(src + here, order, scratch);
            if (reversed != m) gatherTile<D>(src + there, order, second);
            scatterTile<D>(scratch, dst + there, order, spec.blockTwiddles);
            if (reversed != m) scatterTile<D>(second, dst + here, order, spec.blockTwiddles);
        }
    }
}

template struct Routes<Direction::Forward, float>;
template struct Routes<Direction::Inverse, float>;
template struct Routes<Direction::Forward, double>;
template struct Routes<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::fft
