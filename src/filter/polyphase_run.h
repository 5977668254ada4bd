// Filtering with a multi-rate state.
#pragma once

#include "core/variant/tag.h"
#include "filter/polyphase.h"

namespace zep::ZEP_VARIANT::filter {

// Sums of groups that are under way at once; with a line they fill half of the registers or more.
template <class Tag>
struct PolyphaseTuning;
template <>
struct PolyphaseTuning<tag::m7> {
    static constexpr int sums = 8;
};
template <>
struct PolyphaseTuning<tag::u8> : PolyphaseTuning<tag::m7> {};
template <>
struct PolyphaseTuning<tag::n8> : PolyphaseTuning<tag::m7> {};
template <>
struct PolyphaseTuning<tag::y8> : PolyphaseTuning<tag::m7> {};
template <>
struct PolyphaseTuning<tag::e9> : PolyphaseTuning<tag::m7> {};
template <>
struct PolyphaseTuning<tag::e9_avx512> {
    static constexpr int sums = 16;
};

// kCount groups with the same taps, one period after the other; each line is loaded once for all.
template <class Sums, int kCount>
[[gnu::always_inline]] inline void addGroups(const typename Sums::Tap* line, Index lines,
                                             const float* x, Index periodIn,
                                             typename Sums::Group (&sums)[kCount]) {
    constexpr Index kStep = Sums::group * Sums::parts;
    for (Index t = 0; t < lines; ++t, line += kStep, x += Sums::parts) {
        const auto taps = Sums::Line::load(line);
        simd::unroll<kCount>([&](auto k) __attribute__((always_inline)) {
            sums[k].add(taps, x + k * periodIn);
        });
    }
}

template <class Sums>
struct Groups {
    static constexpr Index parts = Sums::parts, group = Sums::group;
    const ZepFIRState& state;
    Index outputs = group * state.groups;  // of a period
    Index inputs = outputs / state.upFactor * state.downFactor;
    Index last = state.pPhaseTable[state.groups - 1] + state.rowLen;

    const typename Sums::Tap* lines(Index j) const {
        return static_cast<const typename Sums::Tap*>(state.pTapsTable) +
               j * state.rowLen * group * parts;
    }

    // As many blocks of kCount periods as the inputs, which end at position `end`, allow.
    template <int kCount>
    [[gnu::always_inline]] void blocks(const float*& x, Index& end, float*& dst,
                                       Index& numOut) const {
        while (numOut >= kCount * outputs && end >= (kCount - 1) * inputs + last) {
            for (Index j = 0; j < state.groups; ++j) {
                typename Sums::Group sums[kCount];
                addGroups<Sums, kCount>(lines(j), state.rowLen, x + parts * state.pPhaseTable[j],
                                        parts * inputs, sums);
                simd::unroll<kCount>([&](auto k) __attribute__((always_inline)) {
                    sums[k].store(dst + parts * (k * outputs + j * group));
                });
            }
            x += parts * kCount * inputs;
            end -= kCount * inputs;
            dst += parts * kCount * outputs;
            numOut -= kCount * outputs;
        }
    }

    // Group by group, no line beyond the inputs.
    void rest(const float* x, Index end, float* dst, Index numOut) const {
        for (Index j = 0; numOut > 0;) {
            const Index start = state.pPhaseTable[j];
            const Index count = end - start < state.rowLen ? end - start : state.rowLen;
            typename Sums::Group sums[1];
            addGroups<Sums, 1>(lines(j), count, x + parts * start, 0, sums);
            if (numOut < group) return sums[0].storePartial(dst, static_cast<int>(numOut));
            sums[0].store(dst);
            dst += parts * group;
            numOut -= group;
            if (++j == state.groups) {
                j = 0;
                x += parts * inputs;
                end -= inputs;
            }
        }
    }
};

// kCount outputs at once, each with its own row.
template <class Sums, int kCount>
[[gnu::always_inline]] inline void addRows(const typename Sums::Tap* const (&rows)[kCount],
                                           const float* const (&x)[kCount], Index taps,
                                           float* dst) {
    constexpr Index kStep = Sums::row, kParts = Sums::parts;
    typename Sums::Dot sums[kCount];
    Index t = 0;
    for (; t + kStep <= taps; t += kStep)
        simd::unroll<kCount>([&](auto k) __attribute__((always_inline)) {
            sums[k].add(rows[k] + kParts * t, x[k] + kParts * t);
        });
    if (t < taps)
        simd::unroll<kCount>([&](auto k) __attribute__((always_inline)) {
            sums[k].addPartial(rows[k] + kParts * t, x[k] + kParts * t, static_cast<int>(taps - t));
        });
    simd::unroll<kCount>([&](auto k)
                             __attribute__((always_inline)) { sums[k].store(dst + k * kParts); });
}

template <class Sums>
struct Rows {
    using Tap = typename Sums::Tap;
    static constexpr Index parts = Sums::parts;
    const ZepFIRState& state;
    const float* x;
    Index q = 0;

    template <int kCount>
    [[gnu::always_inline]] void outputs(float* dst) {
        const Tap* rows[kCount];
        const float* from[kCount];
        simd::unroll<kCount>([&](auto k) __attribute__((always_inline)) {
            rows[k] = static_cast<const Tap*>(state.pTapsTable) + q * state.rowLen * parts;
            from[k] = x + parts * state.pPhaseTable[q];
            if (++q == state.upFactor) {
                q = 0;
                x += parts * state.downFactor;
            }
        });
        addRows<Sums, kCount>(rows, from, state.dlyLineLen, dst);
    }
};

// numOut outputs from the beginning of a period on; x is position 0, `end` the first position that
// may not be read.
template <class Sums>
[[gnu::noinline]] void runOutputs(const ZepFIRState& state, const float* x, Index end, float* dst,
                                  Index numOut) {
    if (state.groups > 0) {
        const Groups<Sums> groups{state};
        constexpr int kMost = Tuned<PolyphaseTuning>::sums /
                              (sizeof(typename Sums::Group) / sizeof(typename Sums::V));
        groups.template blocks<kMost>(x, end, dst, numOut);
        groups.template blocks<kMost / 2>(x, end, dst, numOut);
        if constexpr (kMost / 4 > 2) groups.template blocks<kMost / 4>(x, end, dst, numOut);
        if constexpr (kMost / 2 > 2) groups.template blocks<2>(x, end, dst, numOut);
        return groups.rest(x, end, dst, numOut);
    }
    constexpr int kAtOnce = 4;
    Rows<Sums> rows{state, x};
    for (; numOut >= kAtOnce; numOut -= kAtOnce, dst += kAtOnce * Sums::parts)
        rows.template outputs<kAtOnce>(dst);
    for (; numOut > 0; --numOut, dst += Sums::parts) rows.template outputs<1>(dst);
}

// Outputs of a state that sorts its inputs, too few for that; x is position 0.
template <class Sums>
inline void decimateFew(const ZepFIRState& state, const float* x, float* dst, Index numOut) {
    const auto* row = static_cast<const typename Sums::Tap*>(state.pTapsRev);
    const Index step = Sums::parts * Index{state.downFactor};
    x += Sums::parts * (state.downPhase + 1);
    for (; numOut >= 4; numOut -= 4, x += 4 * step, dst += 4 * Sums::parts)
        addRows<Sums, 4>({row, row, row, row}, {x, x + step, x + 2 * step, x + 3 * step},
                         state.tapsLen, dst);
    for (; numOut > 0; --numOut, x += step, dst += Sums::parts)
        addRows<Sums, 1>({row}, {x}, state.tapsLen, dst);
}

// With a state that sorts its inputs.
template <class Sums>
void decimate(ZepFIRState& state, const float* src, float* dst, Index numIters) {
    constexpr Index kParts = Sums::parts;
    const Index numIn = numIters * state.downFactor, D = state.dlyLineLen;
    auto* line = static_cast<float*>(state.pDlyLine);
    const bool few = numIters < SortedFilter<Sums>::few(state.rowLen);
    const bool all = few || numIn <= state.splitCount;
    copyFew(line + kParts * D, src, kParts * (all ? numIn : state.splitCount));
    if (few) {
        decimateFew<Sums>(state, line, dst, numIters);
    } else {
        // Position 0 meets no output.
        const Index start = state.downPhase + 1;
        SortedFilter<Sums>(state).run(line + kParts * start, D - start, src, numIn, dst, numIters);
    }
    copyFew(line, all ? line + kParts * numIn : src + kParts * (numIn - D), kParts * D);
}

// numIters * downFactor samples to numIters * upFactor samples; the arrays do not overlap.
template <class Sums>
void filterMultirate(ZepFIRState& state, const float* src, float* dst, Index numIters) {
    constexpr Index kParts = Sums::parts;
    constexpr std::size_t kBytes = sizeof(float) * Sums::parts;
    const Index numIn = numIters * state.downFactor, numOut = numIters * state.upFactor;
    const Index D = state.dlyLineLen;
    auto* line = static_cast<float*>(state.pDlyLine);
    state.dlyLineIndex = 0;
    if (state.pSorted != nullptr) return decimate<Sums>(state, src, dst, numIters);
    if (state.kernelKind == 2 ? numIn < state.splitCount : numIn <= state.splitCount) {
        __builtin_memcpy(line + kParts * D, src, kBytes * static_cast<std::size_t>(numIn));
        runOutputs<Sums>(state, line, D + numIn, dst, numOut);
        __builtin_memmove(line, line + kParts * numIn, kBytes * static_cast<std::size_t>(D));
        return;
    }
    const Index split = state.splitCount, head = state.headOutputs;
    __builtin_memcpy(line + kParts * D, src, kBytes * static_cast<std::size_t>(split));
    runOutputs<Sums>(state, line, D + split, dst, head);
    __builtin_memcpy(line, src + kParts * (numIn - D), kBytes * static_cast<std::size_t>(D));
    // Whole periods lie behind the head, at least D inputs.
    const Index used = head / state.upFactor * state.downFactor;
    runOutputs<Sums>(state, src + kParts * (used - D), D + numIn - used, dst + kParts * head,
                     numOut - head);
}

template <class Sums>
ZepStatus filterMultirateInPlace(ZepFIRState& state, float* data, Index numIters) {
    constexpr Index kParts = Sums::parts, kBlock = 4096;
    constexpr std::size_t kBytes = sizeof(float) * Sums::parts;
    const Index up = state.upFactor, down = state.downFactor, most = kBlock / up;
    // The outputs run ahead of the inputs, or do not fit the scratch.
    if (up > down || most == 0) {
        const std::size_t bytes = kBytes * static_cast<std::size_t>(down * numIters);
        void* copy = bytes > 0x7FFFFFFF ? nullptr : zepMalloc(static_cast<int>(bytes));
        if (copy == nullptr) return zepStsMemAllocErr;
        __builtin_memcpy(copy, data, bytes);
        filterMultirate<Sums>(state, static_cast<const float*>(copy), data, numIters);
        zepFree(copy);
        return zepStsNoErr;
    }
    auto* block = static_cast<float*>(state.pBlockBuf);
    const float* from = data;
    for (float* to = data; numIters > 0;) {
        const Index n = numIters < most ? numIters : most;
        filterMultirate<Sums>(state, from, block, n);
        __builtin_memcpy(to, block, kBytes * static_cast<std::size_t>(up * n));
        from += kParts * down * n;
        to += kParts * up * n;
        numIters -= n;
    }
    return zepStsNoErr;
}

}  // namespace zep::ZEP_VARIANT::filter
