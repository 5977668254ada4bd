// Tables of the power-of-two transform, in the order in which the passes read them (see
// fft_passes.h).
//
// Single block: reversed indices of the first pass, then the twiddles of every later pass.
// Long: reversed indices of the middle bits of the tiled permutation, the block's twiddles, and for
// each level the twiddles of the passes across its blocks in two factors: W(e, c) = fine(e, c mod
// 64) * coarse(e, c div 64). The two tables together take about N/32 elements where one would take
// N; the product costs one rounding of 2^-25 in a pass that waits for memory anyway.
#include "transform/fft_tables.h"

#include "transform/fft_passes.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT {
namespace {

// Hands out pieces of a block on 32-byte boundaries; without a block it only counts.
class Layout {
public:
    explicit Layout(float* memory) : memory_(memory) {}

    float* floats(std::size_t count) {
        float* piece = memory_ == nullptr ? nullptr : memory_ + used_;
        used_ += (count + 7) / 8 * 8;
        return piece;
    }
    std::int32_t* ints(std::size_t count) { return reinterpret_cast<std::int32_t*>(floats(count)); }
    std::size_t bytes() const { return used_ * sizeof(float); }

private:
    float* memory_;
    std::size_t used_ = 0;  // floats
};

// table[i] = the low `bits` bits of i, reversed: a counter that carries from the top bit downward.
void fillReversal(std::int32_t* table, int bits) {
    const std::int32_t count = std::int32_t{1} << bits;
    for (std::int32_t i = 0, reversed = 0; i < count; ++i) {
        table[i] = reversed;
        std::int32_t bit = count >> 1;
        for (; (reversed & bit) != 0; bit >>= 1) reversed -= bit;
        reversed += bit;
    }
}

// One pass of radix R: blocks of kLanes columns, legs 1 .. R-1, cosines then negated sines.
// angle(k) is 2*pi*k/(R*G).
template <class Angle>
void fillPass(float* out, int radix, std::int64_t columns, Angle angle) {
    for (std::int64_t c = 0; c < columns; c += kLanes)
        for (int e = 1; e < radix; ++e, out += 2 * kLanes)
            for (int s = 0; s < kLanes; ++s) {
                const Twiddle w = angle(static_cast<std::uint64_t>(e) *
                                        static_cast<std::uint64_t>(c + simd::slotElement<Real>(s)));
                out[s] = w.cos;
                out[s + kLanes] = -w.sin;
            }
}

void fillPasses(float* out, int groupOrder, int order, const Sines& sines) {
    for (PassSequence passes(groupOrder, order); !passes.done(); passes.next()) {
        const int joined = passes.groupOrder() + passes.radixOrder();
        fillPass(out + passTwiddles(passes.groupOrder()), 1 << passes.radixOrder(),
                 std::int64_t{1} << passes.groupOrder(),
                 [&](std::uint64_t k) { return sines.at(k, joined); });
    }
}

void layoutLevel(Layout& layout, FftObject* spec, int level, int blockOrder, int order) {
    for (PassSequence passes(blockOrder, order); !passes.done(); passes.next()) {
        const LevelTable size(passes.groupOrder(), passes.radixOrder());
        float* out = layout.floats(size.floats());
        if (spec == nullptr) continue;
        if (passes.groupOrder() == blockOrder) spec->levelTwiddles[level] = out;
        const int joined = passes.groupOrder() + passes.radixOrder();
        const auto angle = [&](std::uint64_t k) { return directTwiddle(k, joined); };
        fillPass(out, 1 << passes.radixOrder(), std::int64_t{1} << kFineOrder, angle);
        float* coarse = out + size.fineFloats();
        for (std::uint64_t c = 0; c >> (passes.groupOrder() - kFineOrder) == 0; ++c)
            for (std::uint64_t e = 1; e >> passes.radixOrder() == 0; ++e, coarse += 2) {
                const Twiddle w = angle(e * c << kFineOrder);
                coarse[0] = w.cos;
                coarse[1] = -w.sin;
            }
    }
}

void layoutComplex(Layout& layout, FftObject* spec, int order, const Sines* sines) {
    if (order <= kStraightOrder) return;
    int blockOrder = order;
    const bool isLong = order >= kSplitFromOrder;
    for (int level = 0; isLong && splitAt(level, blockOrder).r > 0; ++level) {
        const int joined = blockOrder;
        blockOrder -= splitAt(level, joined).r;
        layoutLevel(layout, spec, level, blockOrder, joined);
    }
    const int reversedBits = order - 2 * (isLong ? Tuning::tileOrder : kLogLanes);
    std::int32_t* reversal = layout.ints(std::size_t{1} << reversedBits);
    float* block = layout.floats(static_cast<std::size_t>(passTwiddles(blockOrder)));
    if (spec == nullptr) return;
    fillReversal(reversal, reversedBits);
    // The tiled permutation of a long transform ends its own passes at groups of one tile row.
    const int tileRow = isLong ? Tuning::tileOrder : kLogLanes;
    fillPasses(block, kLogLanes, tileRow, *sines);
    fillPasses(block, tileRow, blockOrder, *sines);
    spec->bitReversal = reversal;
    spec->blockTwiddles = block;
}

// k = 1 .. N/4 in blocks of kLanes: A(k) = cos/2, then B(k) = (1 - sin)/2; unfolding: cos, then
// -sin.
void layoutFold(Layout& layout, FftObject* spec, int order, const Sines* sines) {
    const std::size_t entries = std::size_t{1} << (order - 2);
    float* fold = layout.floats(2 * entries);
    float* unfold = layout.floats(2 * entries);
    if (spec == nullptr) return;
    spec->foldTwiddles = fold;
    spec->unfoldTwiddles = unfold;
    for (std::size_t k = 1; k <= entries; k += kLanes, fold += 2 * kLanes, unfold += 2 * kLanes)
        for (int s = 0; s < kLanes; ++s) {
            const Twiddle w =
                sines->at(k + static_cast<std::size_t>(simd::slotElement<Real>(s)), order);
            fold[s] = 0.5f * w.cos;
            fold[s + kLanes] = 0.5f - 0.5f * w.sin;
            unfold[s] = w.cos;
            unfold[s + kLanes] = -w.sin;
        }
}

// k = a + 1024*b: fine entries (cos, -sin) for a = 1 .. 1024 in blocks of kLanes, then coarse pairs
// for b = 0, 1, ... Folding and unfolding share it.
void layoutLongFold(Layout& layout, FftObject* spec, int order) {
    const std::size_t coarseEntries = std::size_t{1} << (order - 12);
    float* out = layout.floats(2 * (kFineFold + coarseEntries));
    if (spec == nullptr) return;
    spec->foldTwiddles = spec->unfoldTwiddles = out;
    for (std::size_t a = 1; a <= kFineFold; a += kLanes, out += 2 * kLanes)
        for (int s = 0; s < kLanes; ++s) {
            const Twiddle w =
                directTwiddle(a + static_cast<std::size_t>(simd::slotElement<Real>(s)), order);
            out[s] = w.cos;
            out[s + kLanes] = -w.sin;
        }
    for (std::size_t b = 0; b < coarseEntries; ++b, out += 2) {
        const Twiddle w = directTwiddle(b * kFineFold, order);
        out[0] = w.cos;
        out[1] = -w.sin;
    }
}

void layoutAll(Layout& layout, FftObject* spec, FftKind kind, int order, const Sines* sines) {
    if (kind == FftKind::Complex) return layoutComplex(layout, spec, order, sines);
    if (order < kFirstFoldedOrder) return;
    layoutComplex(layout, spec, order - 1, sines);
    if (order < kLongFoldOrder)
        layoutFold(layout, spec, order, sines);
    else
        layoutLongFold(layout, spec, order);
}

}  // namespace

std::size_t tableBytes(FftKind kind, int order) {
    Layout layout(nullptr);
    layoutAll(layout, nullptr, kind, order, nullptr);
    return layout.bytes();
}

int sineOrder(FftKind kind, int order) {
    const int largest = kind == FftKind::Complex ? innermostBlock(order) : kLongFoldOrder - 1;
    if (order <= kConstantSineOrder) return kConstantSineOrder;
    return order < largest ? order : largest;
}

void buildTables(FftObject& spec, FftKind kind, float* memory, const Sines& sines) {
    Layout layout(memory);
    layoutAll(layout, &spec, kind, spec.order, &sines);
}

}  // namespace zep::ZEP_VARIANT
