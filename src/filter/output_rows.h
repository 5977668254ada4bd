// Outputs in blocks of registers, whatever their sums consist of.
#pragma once

#include "filter/correlate_sums.h"
#include "filter/polyphase_sums.h"

namespace zep::ZEP_VARIANT::filter {

// The sums for each pair of tap and sample types. vectors: of sums for the least count of outputs.
template <class Sums>
struct RowsOf;
template <>
struct RowsOf<RealSums> {
    using Kernel = RealTaps;
    static constexpr int vectors = 1;
};
template <>
struct RowsOf<ComplexSums> {
    using Kernel = ComplexTaps;
    static constexpr int vectors = 1;
};
template <>
struct RowsOf<DoubleSums> {
    using Kernel = DoubleTaps;
    static constexpr int vectors = 2;
};

// add(sums, q) adds the products of outputs q, q + 1, ...; the last block adds those of outputs that
// are not stored.
template <class Sums, class Add>
class OutputRows {
    using Of = RowsOf<Sums>;
    using Kernel = typename Of::Kernel;
    static constexpr Index kParts = Sums::parts;
    static constexpr Index kOutputs = Of::vectors * Kernel::V::lanes / kParts;

public:
    explicit OutputRows(Add add) : add_(add) {}

    [[gnu::always_inline]] void run(float* dst, Index n) const {
        constexpr int kRows = Tuned<CorrelateTuning>::sums / (Of::vectors * int{kParts});
        Index q = 0;
        rows<kRows>(q, n, dst);
        if constexpr (kRows > 8) rows<8>(q, n, dst);
        if constexpr (kRows > 4) rows<4>(q, n, dst);
        rows<2>(q, n, dst);
        rows<1>(q, n, dst);
    }

private:
    template <int R>
    [[gnu::always_inline]] void rows(Index& q, Index n, float* dst) const {
        constexpr Index kStep = R * kOutputs;
        for (; q + kStep <= n || (R == 1 && q < n); q += kStep) {
            OutputSums<Kernel, R * Of::vectors> sums;
            add_(sums, q);
            const Index left = n - q;
            simd::unroll<R>([&](auto r) __attribute__((always_inline)) {
                store<r>(sums, dst + (q + r * kOutputs) * kParts, left - r * kOutputs);
            });
        }
    }
    template <int r, class O>
    [[gnu::always_inline]] static void store(const O& sums, float* to, Index n) {
        const auto put = [&](auto v) __attribute__((always_inline)) {
            if (n >= kOutputs)
                v.store(to);
            else
                v.storePartial(to, static_cast<int>(n * kParts));
        };
        if constexpr (Of::vectors == 1)
            put(sums.template finish<r>());
        else
            put(narrow(sums.template finish<2 * r>(), sums.template finish<2 * r + 1>()));
    }

    Add add_;
};

}  // namespace zep::ZEP_VARIANT::filter
