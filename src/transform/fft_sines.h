// The quarter-wave sine table that all twiddles come from: S[k] = sin(2*pi*k/T), k = 0 .. T/4, T =
// 2^tableOrder, each entry computed in double precision over at most an eighth of a turn and
// rounded to the scalar type. Behind it stand those of every lower order down to 2, so that angles
// that follow each other stand side by side.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "core/variant_exports.h"

namespace zep::ZEP_VARIANT::fft {

constexpr int kConstantSineOrder = 10;  // up to here a table compiled into the library serves

// Entries of the tables of all orders from `order` down to 2.
constexpr std::size_t waveEntries(int order) {
    return (std::size_t{1} << (order - 1)) - 1 + static_cast<std::size_t>(order - 1);
}

template <class T>
struct Twiddle {
    T cos;
    T sin;
};

// Reads cosines and sines of whole turns out of quarter-wave tables.
template <class T>
class Sines {
public:
    Sines(const T* table, int tableOrder) : table_(table), tableOrder_(tableOrder) {}

    // Sines of 2*pi*k/2^order, k = 0 .. 2^order/4; order at least 2 and at most the table's.
    const T* quarterWave(int order) const {
        return table_ + (waveEntries(tableOrder_) - waveEntries(order));
    }

    // The angle 2*pi*k/2^order, any k of at least 0. Free of branches: set-up asks often.
    Twiddle<T> at(std::uint64_t k, int order) const {
        const T* wave = quarterWave(order);
        const int quarterBits = order - 2;
        const std::uint64_t quarter = std::uint64_t{1} << quarterBits;
        const std::uint64_t quadrant = k >> quarterBits;
        const std::uint64_t rising = k & (quarter - 1), falling = quarter - rising;
        const bool odd = (quadrant & 1) != 0;
        return {signedBy(wave[odd ? rising : falling], quadrant + 1),
                signedBy(wave[odd ? falling : rising], quadrant)};
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

// Fills table (waveEntries(order)) and reads from it.
template <class T>
Sines<T> computedSines(T* table, int order);

// One pair without a table, with the values that the table of that order would hold.
template <class T>
Twiddle<T> directTwiddle(std::uint64_t k, int order);

}  // namespace zep::ZEP_VARIANT::fft
