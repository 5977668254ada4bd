// The quarter-wave sine table that all twiddles come from: S[k] = sin(2*pi*k/T), k = 0 .. T/4, T =
// 2^tableOrder, each entry computed in double precision over at most an eighth of a turn and
// rounded to the scalar type.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "core/variant_exports.h"

namespace zep::ZEP_VARIANT::fft {

constexpr int kConstantSineOrder = 10;  // up to here a table compiled into the library serves

template <class T>
struct Twiddle {
    T cos;
    T sin;
};

// Reads cosines and sines of whole turns out of a quarter-wave table.
template <class T>
class Sines {
public:
    Sines(const T* table, int tableOrder) : table_(table), tableOrder_(tableOrder) {}

    // The angle 2*pi*k/2^order; order at most the table's, any k of at least 0. Free of branches:
    // set-up asks for one pair per twiddle.
    Twiddle<T> at(std::uint64_t k, int order) const {
        const int quarterBits = tableOrder_ - 2;
        const std::uint64_t quarter = std::uint64_t{1} << quarterBits;
        const std::uint64_t index = k << (tableOrder_ - order);
        const std::uint64_t quadrant = index >> quarterBits;
        const std::uint64_t rising = index & (quarter - 1), falling = quarter - rising;
        const bool odd = (quadrant & 1) != 0;
        return {signedBy(table_[odd ? rising : falling], quadrant + 1),
                signedBy(table_[odd ? falling : rising], quadrant)};
    }

private:
    // Negated where bit 1 of the quadrant is set.
    static T signedBy(T x, std::uint64_t quadrant) {
        using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
        const auto sign = static_cast<Bits>(quadrant & 2) << (8 * sizeof(T) - 2);
        return std::bit_cast<T>(std::bit_cast<Bits>(x) ^ sign);
    }

    const T* table_;
    int tableOrder_;
};

// The compiled table, of order kConstantSineOrder.
template <class T>
Sines<T> constantSines();

// Fills table (2^(order-2) + 1 entries) and reads from it.
template <class T>
Sines<T> computedSines(T* table, int order);

// One pair without a table, with the values that the table of that order would hold.
template <class T>
Twiddle<T> directTwiddle(std::uint64_t k, int order);

}  // namespace zep::ZEP_VARIANT::fft
