// Transforms beyond the caches: every step walks the memory once.
//
// 1. Tiles (fft_tile.cpp): bit reversal and the first passes, from the source into the destination.
// 2. Blocks: M = 2^r blocks of L elements, each finished alone while it is in the cache; a block
// that is still too long
//    is treated by these steps itself, one level deeper.
// 3. Columns: the M-point transforms across the blocks, for tiles of adjacent columns. The first of
// their passes gathers
//    the tile's rows, whose power-of-two stride would collide in the cache, into scratch; the last
//    one scatters them back.
#include "transform/fft_passes.h"
#include "transform/fft_routes.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

constexpr std::ptrdiff_t kFine = std::ptrdiff_t{1} << kFineOrder;

// Twiddles of kFine columns: fine blocks as in joinColumns, times one coarse pair for each leg.
template <Direction D, int R, Output kOutput, class T>
inline void joinFactored(const T* in, std::ptrdiff_t inStride, T* out, std::ptrdiff_t outStride,
                         const T* fine, const T* coarse, T scale) {
    const Real<T> factor = Real<T>::broadcast(scale);
    for (std::ptrdiff_t c = 0; c < kFine; c += kLanes<T>) {
        Cplx<T> x[R];
        x[0] = Cplx<T>::load(in);
#pragma GCC unroll 16
        for (int e = 1; e < R; ++e) {
            const Cplx<T> base{Real<T>::broadcast(coarse[2 * e - 2]),
                               Real<T>::broadcast(coarse[2 * e - 1])};
            const Cplx<T> w =
                rotate<Direction::Forward>(Cplx<T>::load(fine + (e - 1) * 2 * kLanes<T>), base);
            x[e] = rotate<D>(Cplx<T>::load(in + reversedDigit<R>(e) * inStride), w);
        }
        butterfly<D, R>(x);
#pragma GCC unroll 16
        for (int k = 0; k < R; ++k) storeColumn<kOutput>(x[k], out + k * outStride, factor);
        in += 2 * kLanes<T>;
        out += 2 * kLanes<T>;
        fine += (R - 1) * 2 * kLanes<T>;
    }
}

// Rows of a tile: element (row, column) at rows + row * stride + 2 * column scalars.
template <class T>
struct Rows {
    T* base;
    std::ptrdiff_t stride;
    T* row(std::ptrdiff_t n) const { return base + n * stride; }
};

struct Tile {
    std::ptrdiff_t rows;         // M
    std::ptrdiff_t columns;      // q
    std::ptrdiff_t firstColumn;  // c0, of L
    std::ptrdiff_t blockLength;  // L
};

// One pass over a tile: rows already joined in groups of `joined`.
template <Direction D, int R, Output kOutput, class T>
void tilePass(Rows<T> in, Rows<T> out, const Tile& tile, std::ptrdiff_t joined, const T* table,
              T scale) {
    const T* coarse = table + static_cast<std::ptrdiff_t>(2 * (R - 1)) * kFine;
    for (std::ptrdiff_t block = 0; block < tile.rows; block += R * joined)
        for (std::ptrdiff_t row = 0; row < joined; ++row) {
            const T* from = in.row(block + row);
            T* to = out.row(block + row);
            const T* pair =
                coarse + (row * tile.blockLength + tile.firstColumn) / kFine * 2 * (R - 1);
            for (std::ptrdiff_t c = 0; c < tile.columns; c += kFine, pair += 2 * (R - 1))
                joinFactored<D, R, kOutput>(from + 2 * c, joined * in.stride, to + 2 * c,
                                            joined * out.stride, table, pair, scale);
        }
}

template <Direction D, Output kOutput, class T>
void tilePassOf(int radixOrder, Rows<T> in, Rows<T> out, const Tile& tile, std::ptrdiff_t joined,
                const T* table, T scale) {
    if (radixOrder == 2)
        tilePass<D, 4, kOutput>(in, out, tile, joined, table, scale);
    else
        tilePass<D, 8, kOutput>(in, out, tile, joined, table, scale);
}

template <Direction D, Output kOutput, class T>
void joinLevel(T* data, int blockOrder, int order, std::ptrdiff_t columns, const T* levelTable,
               T* scratch, T scale) {
    Tile tile{std::ptrdiff_t{1} << (order - blockOrder), columns, 0,
              std::ptrdiff_t{1} << blockOrder};
    const Rows<T> inScratch{scratch, 2 * columns};
    for (; tile.firstColumn < tile.blockLength; tile.firstColumn += columns) {
        const Rows<T> inData{data + 2 * tile.firstColumn, 2 * tile.blockLength};
        const T* table = levelTable;
        Rows<T> from = inData;
        for (PassSequence pass(blockOrder, order); !pass.done(); pass.next()) {
            const std::ptrdiff_t joined = std::ptrdiff_t{1} << (pass.groupOrder() - blockOrder);
            if (pass.last())
                tilePassOf<D, kOutput>(pass.radixOrder(), from, inData, tile, joined, table, scale);
            else
                tilePassOf<D, Output::Split>(pass.radixOrder(), from, inScratch, tile, joined,
                                             table, scale);
            from = inScratch;
            table += LevelTable<T>(pass.groupOrder(), pass.radixOrder()).scalars();
        }
    }
}

template <Direction D, class T>
void joinAll(T* data, int order, int level, const FftObject<T>& spec, T* scratch, T scale) {
    const Split split = splitAt<T>(level, order);
    if (split.r == 0)
        return Routes<D, T>::blockInPlace(data, 1, TuningOf<T>::tileOrder, order,
                                          spec.blockTwiddles);
    const int blockOrder = order - split.r;
    for (std::ptrdiff_t b = 0; b >> split.r == 0; ++b)
        joinAll<D>(data + (b << (blockOrder + 1)), blockOrder, level + 1, spec, scratch, scale);
    const std::ptrdiff_t columns = std::ptrdiff_t{1} << (split.t - split.r);
    const T* table = spec.levelTwiddles[level];
    if (level > 0)
        joinLevel<D, Output::Split>(data, blockOrder, order, columns, table, scratch, scale);
    else if (scale == 1)
        joinLevel<D, Output::Interleaved>(data, blockOrder, order, columns, table, scratch, scale);
    else
        joinLevel<D, Output::InterleavedScaled>(data, blockOrder, order, columns, table, scratch,
                                                scale);
}

}  // namespace

template <Direction D, class T>
void Routes<D, T>::splitBlocks(const T* src, T* dst, int order, const FftObject<T>& spec,
                               T* scratch, T scale) {
    reverseTiles(src, dst, order, spec, scratch);
    joinAll<D>(dst, order, 0, spec, scratch, scale);
}

template struct Routes<Direction::Forward, float>;
template struct Routes<Direction::Inverse, float>;
template struct Routes<Direction::Forward, double>;
template struct Routes<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::fft
