// A multi-rate filter: the output is y[q] = sum over i of x[i] * h[q*down + downPhase - upPhase -
// i*up]. The raised stream is never formed; each output meets only the taps that fall on inputs.
//
// Positions count samples of the delay line: x[0] of a call stands at position D = ceil(L/up), and
// output q needs the D positions that end at the last input not newer than it. Outputs repeat their
// pattern of taps every `up` of them, while the input advances by `down`. Two layouts of the taps
// serve: groups of consecutive outputs (polyphase_sums.h), whose lines hold a zero where an input
// and an output do not meet, and a row per output, where too many lines would be zeros.
#pragma once

#include <numeric>

#include "core/checks.h"
#include "filter/fir_record.h"
#include "filter/polyphase_sorted.h"
#include "filter/polyphase_sums.h"

namespace zep::ZEP_VARIANT::filter {

using Index = std::ptrdiff_t;

struct Rates {
    Index taps, up, upPhase, down, downPhase;

    Index history() const { return (taps + up - 1) / up; }
    // Position of the newest input that output q meets, and the tap it meets there.
    Index newest(Index q) const { return floored(q) + history(); }
    Index tap(Index q, Index position) const {
        return q * down + downPhase - upPhase - (position - history()) * up;
    }

private:
    // Rounded down; never below -1.
    Index floored(Index q) const {
        const Index at = q * down + downPhase - upPhase;
        return at < 0 ? -1 : at / up;
    }
};

[[nodiscard]] inline ZepStatus checkRates(const Rates& rates) {
    if (rates.taps < 1) return zepStsFIRLenErr;
    if (rates.up < 1 || rates.down < 1) return zepStsFIRMRFactorErr;
    if (rates.upPhase < 0 || rates.upPhase >= rates.up || rates.downPhase < 0 ||
        rates.downPhase >= rates.down)
        return zepStsFIRMRPhaseErr;
    return zepStsNoErr;
}

// The ratio tells what share of rows of four outputs would hold taps; Real is its precision.
template <class Real>
inline int kernelKindOf(const Rates& rates) {
    const Real ratio =
        static_cast<Real>(rates.taps) / static_cast<Real>(3 * rates.down + rates.taps);
    if (rates.up == 1) return ratio > Real(0.5) ? 1 : 2;
    return static_cast<double>(ratio) > 0.3 ? 1 : 3;
}

// Counts that follow from the rates.
struct Split {
    Index history;  // D
    Index splitCount;
    Index headOutputs;
};
inline Split splitOf(const Rates& rates, Index rowLen) {
    const Index D = rates.history(), period = 4 * rates.down;
    Split split{D, period * (rowLen / period + 1) + 1,
                (D + rates.down - 1) / rates.down * rates.up};
    while (split.headOutputs % (4 * rates.up) != 0) {
        split.headOutputs += rates.up;
        split.splitCount += rates.down;
    }
    return split;
}
inline Index rowLenOf(const Rates& rates, int kernelKind, bool complex) {
    if (complex) return (rates.history() + 1) & ~Index{1};
    if (kernelKind != 1) return rates.history();
    return (3 * rates.down + rates.taps + rates.up - 1) / rates.up;
}

// Layout of the taps.
template <class Sums>
struct Layout {
    Index groups;   // of a period; 0: rows
    Index entries;  // groups or rows
    Index lines;    // of a group, or taps of a row, padded
    Index table;    // scalars

    static Layout of(const Rates& rates) {
        constexpr Index kGroup = Sums::group, kRow = Sums::row;
        const Index D = rates.history();
        const Index groups = rates.up / std::gcd(rates.up, kGroup);
        const Index lines = D + ((kGroup - 1) * rates.down + rates.up - 1) / rates.up;
        const Index padded = (D + kRow - 1) / kRow * kRow;
        // In sums of one vector for an output: those of a row, and what adding up its lanes costs.
        constexpr Index kAddingUp = 2, kCachedLines = 16384;
        const bool dense =
            lines <= kGroup * (padded / kRow + kAddingUp) &&
            (groups <= kCachedLines / (lines < kCachedLines ? lines : kCachedLines) || groups == 1);
        if (dense) return {groups, groups, lines, product(groups, lines * kGroup * Sums::parts)};
        return {0, rates.up, padded, product(rates.up, padded * Sums::parts)};
    }

private:
    // Large enough to be refused, if it overflows.
    static Index product(Index a, Index b) {
        Index result;
        return __builtin_mul_overflow(a, b, &result) ? Index{1} << 62 : result;
    }
};

// Entry e of the tables: outputs from q on, count of them, each with its taps one step apart.
template <class Sums>
inline void buildTables(ZepFIRState& state, const Rates& rates, const typename Sums::Tap* taps,
                        const Layout<Sums>& layout) {
    constexpr Index kParts = Sums::parts;
    const bool dense = layout.groups > 0;
    const Index outputs = dense ? Sums::group : 1;
    auto* table = static_cast<typename Sums::Tap*>(state.pTapsTable);
    for (Index e = 0; e < layout.entries; ++e) {
        const Index q = e * outputs;
        const Index start = rates.newest(q) - rates.history() + 1;
        state.pPhaseTable[e] = static_cast<std::int32_t>(start);
        for (Index line = 0; line < layout.lines; ++line) {
            for (Index r = 0; r < outputs; ++r, table += kParts) {
                const Index k = rates.tap(q + r, start + line);
                if (k < 0 || k >= rates.taps) continue;
                for (Index part = 0; part < kParts; ++part)
                    table[part] = simd::readAny(taps + kParts * k + part);
            }
        }
    }
}

// Tap j of stream s meets the input j periods and s places behind the first one.
template <class Sums>
inline void buildSortedTaps(ZepFIRState& state, Index K) {
    constexpr Index kParts = Sums::parts;
    const auto* reversed = static_cast<const typename Sums::Tap*>(state.pTapsRev);
    auto* table = static_cast<typename Sums::Tap*>(state.pTapsTable);
    for (Index s = 0; s < state.downFactor; ++s)
        for (Index j = 0; j < K; ++j, table += kParts) {
            const Index k = j * state.downFactor + s;
            for (Index part = 0; part < kParts && k < state.tapsLen; ++part)
                table[part] = reversed[kParts * k + part];
        }
}

// A multi-rate state; null if memory is short.
template <class Sums>
inline ZepFIRState* createMultirate(FirKinds kind, int kernelKind, const Rates& rates,
                                    const typename Sums::Tap* taps, const float* delayLine) {
    using Tap = typename Sums::Tap;
    constexpr Index kParts = Sums::parts, kBlock = 4096, kSlack = 16;
    const bool complex = kParts == 2;
    const Index rowLen = rowLenOf(rates, kernelKind, complex);
    const Split split = splitOf(rates, complex ? rates.history() : rowLen);
    const auto sizes = SortedSizes<Sums>::of(rates.taps, rates.up, rates.down);
    const bool sorted = sizes.length > 0;
    auto layout = Layout<Sums>::of(rates);
    if (sorted) layout = {0, 0, sizes.taps, sizes.taps * rates.down * kParts};
    // Sorting reads vectors of periods, and a few outputs are all made from the delay line.
    const Index behind = sorted ? 2 * SortedSizes<Sums>::kVector * rates.down + kSlack : 0;
    BlockPlan plan;
    const auto scalars = [](Index count) { return static_cast<std::size_t>(kParts * count); };
    // In whole rows.
    const Index padded = (rates.taps + Sums::row - 1) / Sums::row * Sums::row;
    const std::size_t reversed = plan.add(scalars(padded), sizeof(Tap));
    const std::size_t line =
        plan.add(scalars(split.history + 1 + split.splitCount + behind), sizeof(float));
    const std::size_t table = plan.add(static_cast<std::size_t>(layout.table), sizeof(Tap));
    const std::size_t phases =
        plan.add(static_cast<std::size_t>(layout.entries), sizeof(std::int32_t));
    const std::size_t block = plan.add(scalars(kBlock), sizeof(float));
    const std::size_t streams = plan.add(static_cast<std::size_t>((rates.down + 1) * sizes.length),
                                         sizeof(typename SortedOf<Sums>::Stream));
    char* memory = plan.allocate();
    if (memory == nullptr) return nullptr;
    auto* state = reinterpret_cast<ZepFIRState*>(memory);
    state->idFIR = kind;
    state->pTapsRev = memory + reversed;
    state->pDlyLine = memory + line;
    state->pTapsTable = memory + table;
    state->pPhaseTable = reinterpret_cast<std::int32_t*>(memory + phases);
    state->pBlockBuf = memory + block;
    state->tapsLen = static_cast<std::int32_t>(rates.taps);
    state->upFactor = static_cast<std::int32_t>(rates.up);
    state->upPhase = static_cast<std::int32_t>(rates.upPhase);
    state->downFactor = static_cast<std::int32_t>(rates.down);
    state->downPhase = static_cast<std::int32_t>(rates.downPhase);
    state->splitCount = static_cast<std::int32_t>(split.splitCount);
    state->headOutputs = static_cast<std::int32_t>(split.headOutputs);
    state->dlyLineLen = static_cast<std::int32_t>(split.history);
    state->kernelKind = kernelKind;
    state->fftLen = -1;
    state->groups = static_cast<std::int32_t>(layout.groups);
    state->rowLen = static_cast<std::int32_t>(layout.lines);
    storeReversed<kParts>(static_cast<Tap*>(state->pTapsRev), taps, rates.taps);
    if (delayLine != nullptr)
        storeReversed<kParts>(static_cast<float*>(state->pDlyLine), delayLine, split.history);
    if (sorted) {
        state->pSorted = memory + streams;
        state->sortedLen = static_cast<std::int32_t>(sizes.length);
        state->sortedOutputs = static_cast<std::int32_t>(sizes.bunch);
        buildSortedTaps<Sums>(*state, sizes.taps);
    } else {
        buildTables<Sums>(*state, rates, taps, layout);
    }
    state->ownsMemory = 1;
    return state;
}

}  // namespace zep::ZEP_VARIANT::filter
