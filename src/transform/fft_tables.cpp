// Tables of the power-of-two transform, in the order in which the passes read them (see
// fft_passes.h).
//
// Single block: reversed indices of the first pass, then the twiddles of every later pass.
// Long: reversed indices of the middle bits of the tiled permutation, the block's twiddles, and for
// each level the twiddles of the passes across its blocks in two factors: W(e, c) = fine(e, c mod
// 2^kFineOrder) * coarse(e, c div 2^kFineOrder). The two tables together take about N/32 elements where one would take
// N; the product costs one rounding of 2^-25 in a pass that waits for memory anyway.
#include "transform/fft_tables.h"

#include "transform/fft_legs.h"
#include "transform/fft_passes.h"
#include "transform/fft_tuning.h"

namespace zep::ZEP_VARIANT::fft {
namespace {

// Hands out pieces of a block on boundaries of cache lines; without a block it only counts.
class Layout {
public:
    explicit Layout(void* memory) : memory_(static_cast<char*>(memory)) {}

    template <class P>
    P* piece(std::size_t count) {
        char* p = memory_ == nullptr ? nullptr : memory_ + used_;
        used_ += (count * sizeof(P) + kLine - 1) / kLine * kLine;
        return reinterpret_cast<P*>(p);
    }
    std::size_t bytes() const { return used_; }

private:
    char* memory_;
    std::size_t used_ = 0;
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

// One pass of radix R: for each vector of columns the legs 1 .. R-1, cosines then negated sines.
// angle(k) is 2*pi*k/(R*G).
template <class T, class Angle>
void fillPass(T* out, int radix, std::uint64_t columns, Angle angle) {
    for (std::uint64_t c = 0; c < columns; c += kLanes<T>)
        for (int e = 1; e < radix; ++e)
            out = fillVectors<Real<T>>(out, c, kLanes<T>, [&](std::uint64_t column) {
                const Twiddle<T> w = angle(static_cast<std::uint64_t>(e) * column);
                return Twiddle<T>{w.cos, -w.sin};
            });
}

template <class T>
void fillPasses(T* out, int groupOrder, int order, const Sines<T>& sines) {
    for (PassSequence passes(groupOrder, order); !passes.done(); passes.next()) {
        const int joined = passes.groupOrder() + passes.radixOrder();
        T* leg = out + passTwiddles<T>(passes.groupOrder());
        for (std::uint64_t c = 0; c >> passes.groupOrder() == 0; c += kLanes<T>)
            for (int e = 1; e >> passes.radixOrder() == 0; ++e, leg += 2 * kLanes<T>)
                fillLeg<LaneOrder::Slots>(leg, e, c, joined, sines);
    }
}

template <class T>
void layoutLevel(Layout& layout, FftObject<T>* spec, int level, int blockOrder, int order) {
    for (PassSequence passes(blockOrder, order); !passes.done(); passes.next()) {
        const LevelTable<T> size(passes.groupOrder(), passes.radixOrder());
        T* out = layout.piece<T>(size.scalars());
        if (spec == nullptr) continue;
        if (passes.groupOrder() == blockOrder) spec->levelTwiddles[level] = out;
        const int joined = passes.groupOrder() + passes.radixOrder();
        const auto angle = [&](std::uint64_t k) { return directTwiddle<T>(k, joined); };
        fillPass(out, 1 << passes.radixOrder(), std::uint64_t{1} << kFineOrder, angle);
        T* coarse = out + size.fineScalars();
        for (std::uint64_t c = 0; c >> (passes.groupOrder() - kFineOrder) == 0; ++c)
            for (std::uint64_t e = 1; e >> passes.radixOrder() == 0; ++e, coarse += 2) {
                const Twiddle<T> w = angle(e * c << kFineOrder);
                coarse[0] = w.cos;
                coarse[1] = -w.sin;
            }
    }
}

template <class T>
void layoutComplex(Layout& layout, FftObject<T>* spec, int order, const Sines<T>* sines) {
    using Tuning = TuningOf<T>;
    if (order <= kStraightOrder<T>) return;
    int blockOrder = order;
    const bool isLong = order >= Tuning::splitFromOrder;
    for (int level = 0; isLong && splitAt<T>(level, blockOrder).r > 0; ++level) {
        const int joined = blockOrder;
        blockOrder -= splitAt<T>(level, joined).r;
        layoutLevel(layout, spec, level, blockOrder, joined);
    }
    const int reversedBits = order - 2 * (isLong ? Tuning::tileOrder : kLogLanes<T>);
    std::int32_t* reversal = layout.piece<std::int32_t>(std::size_t{1} << reversedBits);
    T* block = layout.piece<T>(static_cast<std::size_t>(passTwiddles<T>(blockOrder)));
    if (spec == nullptr) return;
    fillReversal(reversal, reversedBits);
    // The tiled permutation of a long transform ends its own passes at groups of one tile row.
    const int tileRow = isLong ? Tuning::tileOrder : kLogLanes<T>;
    fillPasses(block, kLogLanes<T>, tileRow, *sines);
    fillPasses(block, tileRow, blockOrder, *sines);
    spec->bitReversal = reversal;
    spec->blockTwiddles = block;
}

// k = 1 .. N/4: A(k) = cos/2 and B(k) = (1 - sin)/2; unfolding: cos and -sin.
template <class T>
void layoutFold(Layout& layout, FftObject<T>* spec, int order, const Sines<T>* sines) {
    const std::size_t entries = std::size_t{1} << (order - 2);
    T* fold = layout.piece<T>(2 * entries);
    T* unfold = layout.piece<T>(2 * entries);
    if (spec == nullptr) return;
    spec->foldTwiddles = fold;
    spec->unfoldTwiddles = unfold;
    const T *wave = sines->quarterWave(order), *end = wave + entries;
    withFoldVector<T>(order, [&]<class V>(V) {
        const V half = V::broadcast(T{0.5}), sign = V::broadcast(T{-1});
        for (std::size_t k = 1; k <= entries; k += V::lanes, fold += 2 * V::lanes) {
            const V sine = V::load(wave + k), cosine = reverse(V::load(end - k - (V::lanes - 1)));
            storeLanes<LaneOrder::Slots>(half * cosine, half - half * sine, fold);
            storeLanes<LaneOrder::Slots>(cosine, sign * sine, unfold + 2 * (k - 1));
        }
    });
}

// k = a + 1024*b: fine entries (cos, -sin) for a = 1 .. 1024, then coarse pairs for b = 0, 1, ...
// Folding and unfolding share it.
template <class T>
void layoutLongFold(Layout& layout, FftObject<T>* spec, int order) {
    const std::size_t coarseEntries = std::size_t{1} << (order - 12);
    T* fine = layout.piece<T>(2 * (kFineFold + coarseEntries));
    if (spec == nullptr) return;
    spec->foldTwiddles = spec->unfoldTwiddles = fine;
    const auto negated = [order](std::uint64_t k) {
        const Twiddle<T> w = directTwiddle<T>(k, order);
        return Twiddle<T>{w.cos, -w.sin};
    };
    static_assert(kFineFold % kLanes<T> == 0);
    T* coarse = fillVectors<Real<T>>(fine, 1, kFineFold, negated);
    for (std::size_t b = 0; b < coarseEntries; ++b, coarse += 2) {
        const Twiddle<T> w = negated(b * kFineFold);
        coarse[0] = w.cos;
        coarse[1] = w.sin;
    }
}

template <class T>
void layoutAll(Layout& layout, FftObject<T>* spec, FftKind kind, int order, const Sines<T>* sines) {
    if (kind != FftKind::Real) return layoutComplex(layout, spec, order, sines);
    if (order < kFirstFoldedOrder) return;
    layoutComplex(layout, spec, order - 1, sines);
    if (order < kLongFoldOrder)
        layoutFold(layout, spec, order, sines);
    else
        layoutLongFold(layout, spec, order);
}

}  // namespace

template <class T>
std::size_t tableBytes(FftKind kind, int order) {
    Layout layout(nullptr);
    layoutAll<T>(layout, nullptr, kind, order, nullptr);
    return layout.bytes();
}

template <class T>
int sineOrder(FftKind kind, int order) {
    const int largest = kind == FftKind::Real ? kLongFoldOrder - 1 : innermostBlock<T>(order);
    if (order <= kConstantSineOrder) return kConstantSineOrder;
    return order < largest ? order : largest;
}

template <class T>
void buildTables(FftObject<T>& spec, FftKind kind, void* memory, const Sines<T>& sines) {
    Layout layout(memory);
    layoutAll(layout, &spec, kind, spec.order, &sines);
}

template std::size_t tableBytes<float>(FftKind, int);
template std::size_t tableBytes<double>(FftKind, int);
template int sineOrder<float>(FftKind, int);
template int sineOrder<double>(FftKind, int);
template void buildTables(FftObject<float>&, FftKind, void*, const Sines<float>&);
template void buildTables(FftObject<double>&, FftKind, void*, const Sines<double>&);

}  // namespace zep::ZEP_VARIANT::fft
