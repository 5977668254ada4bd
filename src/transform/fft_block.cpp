// Transforms that stay in the cache: one pass after the other (fft_passes.h).
//
// The first pass reads the source in bit-reversed order and writes the work area, so that it never
// writes where it still has to read; the work area is the destination where that may be, else the
// scratch. A pass over more than fits the first-level cache is put off until the blocks that it
// joins have been finished one by one, depth first.
#include "transform/fft_passes.h"
#include "transform/fft_routes.h"

namespace zep::ZEP_VARIANT {
namespace {

// Blocks up to this order run pass by pass: data and twiddles together stay in the first-level
// cache.
constexpr int kBreadthOrder = 11;

template <Direction D>
void firstPass(const float* src, float* work, int order, const std::int32_t* reversal) {
    const std::ptrdiff_t columns = std::ptrdiff_t{1} << (order - 2 * kLogLanes);
    const std::ptrdiff_t legStride = std::ptrdiff_t{2} << (order - kLogLanes);
    for (std::ptrdiff_t c = 0; c < columns; ++c)
        firstColumn<D>(src + 2 * kLanes * c, legStride,
                       work + 2 * kLanes * std::ptrdiff_t{reversal[c]}, legStride);
}

template <Direction D, int R>
void lastPass(const float* work, float* dst, int order, const float* twiddles, float scale) {
    const std::ptrdiff_t group = (std::ptrdiff_t{1} << order) / R;
    if (scale == 1.0f)
        joinColumns<D, R, Output::Interleaved>(work, 2 * group, dst, 2 * group, twiddles, group,
                                               scale);
    else
        joinColumns<D, R, Output::InterleavedScaled>(work, 2 * group, dst, 2 * group, twiddles,
                                                     group, scale);
}

template <Direction D>
inline void joinPass(float* work, std::ptrdiff_t blocks, int groupOrder, int radixOrder,
                     const float* twiddles) {
    const std::ptrdiff_t group = std::ptrdiff_t{1} << groupOrder;
    if (radixOrder == 2)
        joinBlocks<D, 4>(work, blocks, group, twiddles + passTwiddles(groupOrder));
    else
        joinBlocks<D, 8>(work, blocks, group, twiddles + passTwiddles(groupOrder));
}

template <Direction D>
void passByPass(float* work, std::ptrdiff_t blocks, int groupOrder, int order,
                const float* twiddles) {
    for (PassSequence pass(groupOrder, order); !pass.done(); pass.next()) {
        const int joined = pass.groupOrder() + pass.radixOrder();
        joinPass<D>(work, blocks << (order - joined), pass.groupOrder(), pass.radixOrder(),
                    twiddles);
    }
}

}  // namespace

template <Direction D>
void FFTBlockInPlace(float* work, std::ptrdiff_t blocks, int groupOrder, int order,
                     const float* twiddles) {
    if (order <= kBreadthOrder || groupOrder == order)
        return passByPass<D>(work, blocks, groupOrder, order, twiddles);
    const int radixOrder = lastRadixOrder(order - groupOrder);
    const int part = order - radixOrder;
    for (std::ptrdiff_t p = 0; p < blocks << radixOrder; ++p)
        FFTBlockInPlace<D>(work + (p << (part + 1)), 1, groupOrder, part, twiddles);
    joinPass<D>(work, blocks, part, radixOrder, twiddles);
}

template <Direction D>
void FFTSingleBlock(const Zep32fc* src, Zep32fc* dst, int order, const FftObject& spec,
                    float* scratch, float scale) {
    const bool workInDst = src != dst && alignUp(dst) == dst;
    float* work = workInDst ? &dst->re : scratch;
    firstPass<D>(&src->re, work, order, spec.bitReversal);
    const int radixOrder = lastRadixOrder(order - kLogLanes);
    const int part = order - radixOrder;
    if (order <= kBreadthOrder)
        passByPass<D>(work, std::ptrdiff_t{1} << radixOrder, kLogLanes, part, spec.blockTwiddles);
    else
        for (std::ptrdiff_t p = 0; p >> radixOrder == 0; ++p)
            FFTBlockInPlace<D>(work + (p << (part + 1)), 1, kLogLanes, part, spec.blockTwiddles);
    const float* twiddles = spec.blockTwiddles + passTwiddles(part);
    if (radixOrder == 2)
        lastPass<D, 4>(work, &dst->re, order, twiddles, scale);
    else
        lastPass<D, 8>(work, &dst->re, order, twiddles, scale);
}

template void FFTBlockInPlace<Direction::Forward>(float*, std::ptrdiff_t, int, int, const float*);
template void FFTBlockInPlace<Direction::Inverse>(float*, std::ptrdiff_t, int, int, const float*);
template void FFTSingleBlock<Direction::Forward>(const Zep32fc*, Zep32fc*, int, const FftObject&,
                                                 float*, float);
template void FFTSingleBlock<Direction::Inverse>(const Zep32fc*, Zep32fc*, int, const FftObject&,
                                                 float*, float);

}  // namespace zep::ZEP_VARIANT
