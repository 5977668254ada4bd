// Transforms that stay in the cache: one pass after the other (fft_passes.h).
//
// The first pass reads the source in bit-reversed order and writes the work area, so that it never
// writes where it still has to read; the work area is the destination where that may be, else the
// scratch. A pass over more than fits the first-level cache is put off until the blocks that it
// joins have been finished one by one, depth first.
#include "transform/fft_first_pass.h"
#include "transform/fft_routes.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

// Orders with code of their own, all counts known to the compiler, from the first with passes on.
// What surrounds the passes is a tenth of the time of the shortest and not worth it beyond.
template <class T>
constexpr int kFirstShortOrder = kStraightOrder<T> + 1;
template <class T>
constexpr int kLastShortOrder = kStraightOrder<T> + 3;

template <Direction D, class T>
[[gnu::always_inline]] inline void firstPass(const T* src, T* work, int order,
                                             const std::int32_t* reversal) {
    constexpr std::ptrdiff_t kPair = 2 * kLanes<T>;
    const std::ptrdiff_t columns = std::ptrdiff_t{1} << (order - 2 * kLogLanes<T>);
    const std::ptrdiff_t legStride = std::ptrdiff_t{2} << (order - kLogLanes<T>);
    for (std::ptrdiff_t c = 0; c < columns; ++c)
        firstColumn<D>(src + kPair * c, legStride, work + kPair * std::ptrdiff_t{reversal[c]},
                       legStride);
}

// Not part of the run of passes, where it would share their registers: 3 % of 2048 points.
template <Direction D, class T>
[[gnu::noinline]] void firstPassApart(const T* src, T* work, int order,
                                      const std::int32_t* reversal) {
    firstPass<D>(src, work, order, reversal);
}

template <Direction D, int R, class T>
void lastPass(const T* work, T* dst, int order, const T* twiddles, T scale) {
    const std::ptrdiff_t group = (std::ptrdiff_t{1} << order) / R;
    if (scale == 1)
        joinColumns<D, R, Output::Interleaved>(work, 2 * group, dst, 2 * group, twiddles, group,
                                               scale);
    else
        joinColumns<D, R, Output::InterleavedScaled>(work, 2 * group, dst, 2 * group, twiddles,
                                                     group, scale);
}

template <Direction D, class T>
inline void joinPass(T* work, std::ptrdiff_t blocks, int groupOrder, int radixOrder,
                     const T* twiddles) {
    const std::ptrdiff_t group = std::ptrdiff_t{1} << groupOrder;
    if (radixOrder == 2)
        joinBlocks<D, 4>(work, blocks, group, twiddles + passTwiddles<T>(groupOrder));
    else if (group == kLanes<T>)  // no loop over columns
        joinBlocks<D, 8>(work, blocks, std::ptrdiff_t{kLanes<T>}, twiddles);
    else
        joinBlocks<D, 8>(work, blocks, group, twiddles + passTwiddles<T>(groupOrder));
}

template <Direction D, class T>
void passByPass(T* work, std::ptrdiff_t blocks, int groupOrder, int order, const T* twiddles) {
    for (PassSequence pass(groupOrder, order); !pass.done(); pass.next()) {
        const int joined = pass.groupOrder() + pass.radixOrder();
        joinPass<D>(work, blocks << (order - joined), pass.groupOrder(), pass.radixOrder(),
                    twiddles);
    }
}

template <Direction D, int kGroupOrder, int kOrder, Output kOutput, class T>
[[gnu::always_inline]] inline void unrolledPasses(T* work, T* dst, const T* twiddles, T scale) {
    constexpr int kRadixOrder = nextRadixOrder(kOrder - kGroupOrder);
    constexpr int kJoined = kGroupOrder + kRadixOrder;
    constexpr std::ptrdiff_t kGroup = std::ptrdiff_t{1} << kGroupOrder;
    const T* own = twiddles + passTwiddles<T>(kGroupOrder);
    if constexpr (kJoined == kOrder) {
        joinColumns<D, 1 << kRadixOrder, kOutput>(work, 2 * kGroup, dst, 2 * kGroup, own, kGroup,
                                                  scale);
    } else {
        joinBlocks<D, 1 << kRadixOrder>(work, std::ptrdiff_t{1} << (kOrder - kJoined), kGroup, own);
        unrolledPasses<D, kJoined, kOrder, kOutput>(work, dst, twiddles, scale);
    }
}

template <Direction D, int kOrder, Output kOutput, class T>
[[gnu::noinline]] void shortBlock(const T* src, T* work, T* dst, const FftObject<T>& spec,
                                  T scale) {
    firstPass<D>(src, work, kOrder, spec.bitReversal);
    unrolledPasses<D, kLogLanes<T>, kOrder, kOutput>(work, dst, spec.blockTwiddles, scale);
}

template <Direction D, class T, int kOrder = kFirstShortOrder<T>>
void shortBlockOf(int order, const T* src, T* work, T* dst, const FftObject<T>& spec, T scale) {
    if constexpr (kOrder < kLastShortOrder<T>)
        if (order != kOrder)
            return shortBlockOf<D, T, kOrder + 1>(order, src, work, dst, spec, scale);
    if (scale == 1)
        shortBlock<D, kOrder, Output::Interleaved>(src, work, dst, spec, scale);
    else
        shortBlock<D, kOrder, Output::InterleavedScaled>(src, work, dst, spec, scale);
}

}  // namespace

template <Direction D, class T>
void Routes<D, T>::blockInPlace(T* work, std::ptrdiff_t blocks, int groupOrder, int order,
                                const T* twiddles) {
    if (order <= TuningOf<T>::breadthOrder || groupOrder == order)
        return passByPass<D>(work, blocks, groupOrder, order, twiddles);
    const int radixOrder = lastRadixOrder(order - groupOrder);
    const int part = order - radixOrder;
    for (std::ptrdiff_t p = 0; p < blocks << radixOrder; ++p)
        blockInPlace(work + (p << (part + 1)), 1, groupOrder, part, twiddles);
    joinPass<D>(work, blocks, part, radixOrder, twiddles);
}

template <Direction D, class T>
void Routes<D, T>::singleBlock(const T* src, T* dst, int order, const FftObject<T>& spec,
                               T* scratch, T scale) {
    constexpr int kFirst = kLogLanes<T>;
    const bool workInDst = src != dst && alignUp(dst, sizeof(Real<T>)) == dst;
    T* work = workInDst ? dst : scratch;
    if (order <= kLastShortOrder<T>) return shortBlockOf<D>(order, src, work, dst, spec, scale);
    firstPassApart<D>(src, work, order, spec.bitReversal);
    const int radixOrder = lastRadixOrder(order - kFirst);
    const int part = order - radixOrder;
    if (order <= TuningOf<T>::breadthOrder)
        passByPass<D>(work, std::ptrdiff_t{1} << radixOrder, kFirst, part, spec.blockTwiddles);
    else
        for (std::ptrdiff_t p = 0; p >> radixOrder == 0; ++p)
            blockInPlace(work + (p << (part + 1)), 1, kFirst, part, spec.blockTwiddles);
    const T* twiddles = spec.blockTwiddles + passTwiddles<T>(part);
    if (radixOrder == 2)
        lastPass<D, 4>(work, dst, order, twiddles, scale);
    else
        lastPass<D, 8>(work, dst, order, twiddles, scale);
}

template struct Routes<Direction::Forward, float>;
template struct Routes<Direction::Inverse, float>;
template struct Routes<Direction::Forward, double>;
template struct Routes<Direction::Inverse, double>;

}  // namespace zep::ZEP_VARIANT::fft
