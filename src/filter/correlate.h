// Direct sums of products, the one kernel below all direct paths of this folder:
//
//   y[i] = sum over j of h[j] * x[j + lag + i],  i = 0 .. count-1,
//
// j over all indices for which both factors exist: 0 <= j < taps, 0 <= j + lag + i < samples. Where
// there is none y is 0. Nothing outside h, x and y is touched. y overlaps neither.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/variant_exports.h"

namespace zep::ZEP_VARIANT::filter {

void correlate(const Zep32f* h, std::int64_t taps, const Zep32f* x, std::int64_t samples,
               std::int64_t lag, Zep32f* y, std::int64_t count);
void correlate(const Zep32fc* h, std::int64_t taps, const Zep32fc* x, std::int64_t samples,
               std::int64_t lag, Zep32fc* y, std::int64_t count);

// The same with lag 0 for outputs that meet every tap, 64 bytes of them or more.
void correlateInside(const Zep32f* h, std::int64_t taps, const Zep32f* x, Zep32f* y,
                     std::int64_t count);
void correlateInside(const Zep32fc* h, std::int64_t taps, const Zep32fc* x, Zep32fc* y,
                     std::int64_t count);

// With conj(h[j]).
void correlateConjugate(const Zep32fc* h, std::int64_t taps, const Zep32fc* x, std::int64_t samples,
                        std::int64_t lag, Zep32fc* y, std::int64_t count);

}  // namespace zep::ZEP_VARIANT::filter
