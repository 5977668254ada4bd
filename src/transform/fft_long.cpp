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
#include "transform/fft_tile.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT {
namespace {

constexpr std::ptrdiff_t kFine = std::ptrdiff_t{1} << kFineOrder;

// Twiddles of kFine columns: fine blocks as in joinColumns, times one coarse pair for each leg.
template <Direction D, int R, Output kOutput>
inline void joinFactored(const float* in, std::ptrdiff_t inStride, float* out,
                         std::ptrdiff_t outStride, const float* fine, const float* coarse,
                         float scale) {
    const Real factor = Real::broadcast(scale);
    for (std::ptrdiff_t c = 0; c < kFine; c += kLanes) {
        Cplx x[R];
        x[0] = Cplx::load(in);
#pragma GCC unroll 16
        for (int e = 1; e < R; ++e) {
            const Cplx base{Real::broadcast(coarse[2 * e - 2]), Real::broadcast(coarse[2 * e - 1])};
            const Cplx w =
                rotate<Direction::Forward>(Cplx::load(fine + (e - 1) * 2 * kLanes), base);
            x[e] = rotate<D>(Cplx::load(in + reversedDigit<R>(e) * inStride), w);
        }
        butterfly<D, R>(x);
#pragma GCC unroll 16
        for (int k = 0; k < R; ++k) storeColumn<kOutput>(x[k], out + k * outStride, factor);
        in += 2 * kLanes;
        out += 2 * kLanes;
        fine += (R - 1) * 2 * kLanes;
    }
}

// Rows of a tile: element (row, column) at rows + row * stride + 2 * column floats.
struct Rows {
    float* base;
    std::ptrdiff_t stride;
    float* row(std::ptrdiff_t n) const { return base + n * stride; }
};

struct Tile {
    std::ptrdiff_t rows;         // M
    std::ptrdiff_t columns;      // q
    std::ptrdiff_t firstColumn;  // c0, of L
    std::ptrdiff_t blockLength;  // L
};

// One pass over a tile: rows already joined in groups of `joined`.
template <Direction D, int R, Output kOutput>
void tilePass(Rows in, Rows out, const Tile& tile, std::ptrdiff_t joined, const float* table,
              float scale) {
    const float* coarse = table + static_cast<std::ptrdiff_t>(2 * (R - 1)) * kFine;
    for (std::ptrdiff_t block = 0; block < tile.rows; block += R * joined)
        for (std::ptrdiff_t row = 0; row < joined; ++row) {
            const float* from = in.row(block + row);
            float* to = out.row(block + row);
            const float* pair =
                coarse + (row * tile.blockLength + tile.firstColumn) / kFine * 2 * (R - 1);
            for (std::ptrdiff_t c = 0; c < tile.columns; c += kFine, pair += 2 * (R - 1))
                joinFactored<D, R, kOutput>(from + 2 * c, joined * in.stride, to + 2 * c,
                                            joined * out.stride, table, pair, scale);
        }
}

template <Direction D, Output kOutput>
void tilePassOf(int radixOrder, Rows in, Rows out, const Tile& tile, std::ptrdiff_t joined,
                const float* table, float scale) {
    if (radixOrder == 2)
        tilePass<D, 4, kOutput>(in, out, tile, joined, table, scale);
    else
        tilePass<D, 8, kOutput>(in, out, tile, joined, table, scale);
}

template <Direction D, Output kOutput>
void joinLevel(float* data, int blockOrder, int order, std::ptrdiff_t columns,
               const float* levelTable, float* scratch, float scale) {
    Tile tile{std::ptrdiff_t{1} << (order - blockOrder), columns, 0,
              std::ptrdiff_t{1} << blockOrder};
    const Rows inScratch{scratch, 2 * columns};
    for (; tile.firstColumn < tile.blockLength; tile.firstColumn += columns) {
        const Rows inData{data + 2 * tile.firstColumn, 2 * tile.blockLength};
        const float* table = levelTable;
        Rows from = inData;
        for (PassSequence pass(blockOrder, order); !pass.done(); pass.next()) {
            const std::ptrdiff_t joined = std::ptrdiff_t{1} << (pass.groupOrder() - blockOrder);
            if (pass.last())
                tilePassOf<D, kOutput>(pass.radixOrder(), from, inData, tile, joined, table, scale);
            else
                tilePassOf<D, Output::Split>(pass.radixOrder(), from, inScratch, tile, joined,
                                             table, scale);
            from = inScratch;
            table += LevelTable(pass.groupOrder(), pass.radixOrder()).floats();
        }
    }
}

template <Direction D>
void joinAll(float* data, int order, int level, const FftObject& spec, float* scratch,
             float scale) {
    const FftSplit split = splitAt(level, order);
    if (split.r == 0)
        return FFTBlockInPlace<D>(data, 1, Tuning::tileOrder, order, spec.blockTwiddles);
    const int blockOrder = order - split.r;
    for (std::ptrdiff_t b = 0; b >> split.r == 0; ++b)
        joinAll<D>(data + (b << (blockOrder + 1)), blockOrder, level + 1, spec, scratch, scale);
    const std::ptrdiff_t columns = std::ptrdiff_t{1} << (split.t - split.r);
    const float* table = spec.levelTwiddles[level];
    if (level > 0)
        joinLevel<D, Output::Split>(data, blockOrder, order, columns, table, scratch, scale);
    else if (scale == 1.0f)
        joinLevel<D, Output::Interleaved>(data, blockOrder, order, columns, table, scratch, scale);
    else
        joinLevel<D, Output::InterleavedScaled>(data, blockOrder, order, columns, table, scratch,
                                                scale);
}

}  // namespace

template <Direction D>
void FFTLong(const Zep32fc* src, Zep32fc* dst, int order, const FftObject& spec, float* scratch,
             float scale) {
    reverseTiles<D>(&src->re, &dst->re, order, spec, scratch);
    joinAll<D>(&dst->re, order, 0, spec, scratch, scale);
}

template void FFTLong<Direction::Forward>(const Zep32fc*, Zep32fc*, int, const FftObject&, float*,
                                          float);
template void FFTLong<Direction::Inverse>(const Zep32fc*, Zep32fc*, int, const FftObject&, float*,
                                          float);

}  // namespace zep::ZEP_VARIANT
