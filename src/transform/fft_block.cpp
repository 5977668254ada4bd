// Transforms that stay in the cache: one pass after the other (fft_passes.h).
//
// The first pass reads the source in bit-reversed order and writes the work area, so that it never
// writes where it still has to read; the work area is the destination where that may be, else the
// scratch. A pass over more than fits the first-level cache is put off until the blocks that it
// joins have been finished one by one, depth first.
#include "transform/fft_passes.h"
#include "transform/fft_routes.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT {
namespace {

// Blocks up to this order run pass by pass: data and twiddles together stay in the first-level
// cache.
constexpr int kBreadthOrder = 11;

// Orders with code of their own, all counts known to the compiler, from the first with passes on.
// What surrounds the passes is a tenth of the time of the shortest and not worth it beyond.
constexpr int kFirstShortOrder = kStraightOrder + 1;
constexpr int kLastShortOrder = kStraightOrder + 3;

template <Direction D>
[[gnu::always_inline]] inline void firstPass(const float* src, float* work, int order,
                                             const std::int32_t* reversal) {
    const std::ptrdiff_t columns = std::ptrdiff_t{1} << (order - 2 * kLogLanes);
    const std::ptrdiff_t legStride = std::ptrdiff_t{2} << (order - kLogLanes);
    for (std::ptrdiff_t c = 0; c < columns; ++c)
        firstColumn<D>(src + 2 * kLanes * c, legStride,
                       work + 2 * kLanes * std::ptrdiff_t{reversal[c]}, legStride);
}

// Not part of the run of passes, where it would share their registers: 3 % of 2048 points.
template <Direction D>
[[gnu::noinline]] void firstPassApart(const float* src, float* work, int order,
                                      const std::int32_t* reversal) {
    firstPass<D>(src, work, order, reversal);
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
    else if (group == kLanes)  // no loop over columns
        joinBlocks<D, 8>(work, blocks, kLanes, twiddles);
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

template <Direction D, int kGroupOrder, int kOrder, Output kOutput>
[[gnu::always_inline]] inline void unrolledPasses(float* work, float* dst, const float* twiddles,
                                                  float scale) {
    constexpr int kRadixOrder = nextRadixOrder(kOrder - kGroupOrder);
    constexpr int kJoined = kGroupOrder + kRadixOrder;
    constexpr std::ptrdiff_t kGroup = std::ptrdiff_t{1} << kGroupOrder;
    const float* own = twiddles + passTwiddles(kGroupOrder);
    if constexpr (kJoined == kOrder) {
        joinColumns<D, 1 << kRadixOrder, kOutput>(work, 2 * kGroup, dst, 2 * kGroup, own, kGroup,
                                                  scale);
    } else {
        joinBlocks<D, 1 << kRadixOrder>(work, std::ptrdiff_t{1} << (kOrder - kJoined), kGroup, own);
        unrolledPasses<D, kJoined, kOrder, kOutput>(work, dst, twiddles, scale);
    }
}

template <Direction D, int kOrder, Output kOutput>
[[gnu::noinline]] void shortBlock(const float* src, float* work, float* dst, const FftObject& spec,
                                  float scale) {
    firstPass<D>(src, work, kOrder, spec.bitReversal);
    unrolledPasses<D, kLogLanes, kOrder, kOutput>(work, dst, spec.blockTwiddles, scale);
}

template <Direction D, int kOrder = kFirstShortOrder>
void shortBlockOf(int order, const float* src, float* work, float* dst, const FftObject& spec,
                  float scale) {
    if constexpr (kOrder < kLastShortOrder)
        if (order != kOrder) return shortBlockOf<D, kOrder + 1>(order, src, work, dst, spec, scale);
    if (scale == 1.0f)
        shortBlock<D, kOrder, Output::Interleaved>(src, work, dst, spec, scale);
    else
        shortBlock<D, kOrder, Output::InterleavedScaled>(src, work, dst, spec, scale);
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
    if (order <= kLastShortOrder)
        return shortBlockOf<D>(order, &src->re, work, &dst->re, spec, scale);
    firstPassApart<D>(&src->re, work, order, spec.bitReversal);
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
