// Running medians of any width by ranks: the samples of a stretch are sorted once, and each has a bit
// in the order of values from then on. Those of the window are set; the bit of the median moves to
// the next or the last one set, or stays, with every step.
//
// What a step costs depends neither on the width nor on how far apart the values are that leave and
// come: a window in order would have to move all values between them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/variant_exports.h"
#include "simd/vec_fwd.h"

namespace zep::ZEP_VARIANT::median {

class Ranks {
public:
    static constexpr std::int64_t kWordBits = 64;

    // Words of 64 bits that `count` samples need.
    static constexpr std::int64_t wordsFor(std::int64_t count) {
        return count + (count + kWordBits - 1) / kWordBits;
    }

    // Sorts count samples; memory holds wordsFor(count) words.
    Ranks(const Zep32f* samples, int count, std::uint64_t* memory)
        : samples_(samples),
          set_(memory),
          order_(reinterpret_cast<std::int32_t*>(memory + (count + kWordBits - 1) / kWordBits)),
          rank_(order_ + count) {
        zepsSortRadixIndexDescend_32f(samples, sizeof(Zep32f), order_, rank_, count);
        for (std::int32_t r = 0; r < count; ++r) rank_[order_[r]] = r;
        for (std::ptrdiff_t n = 0; n < count; n += kWordBits) set_[n / kWordBits] = 0;
    }

    // Samples 0 to width - 1, width odd, are the first window.
    void open(int width) {
        for (int n = 0; n < width; ++n) flip(rank_[n]);
        const std::uint32_t first = static_cast<std::uint32_t>(rank_[0]);
        at_ = first;
        // The bit of any sample, moved to the middle by the number of bits beyond.
        std::ptrdiff_t beyond = 0;
        for (int n = 0; n < width; ++n) beyond += static_cast<std::uint32_t>(rank_[n]) > first;
        for (std::ptrdiff_t k = beyond; k > width / 2; --k) goUp();
        for (std::ptrdiff_t k = beyond; k < width / 2; ++k) goDown();
    }
    // The sample with number `oldest` leaves, the one with number `next` comes.
    [[gnu::always_inline]] void replace(std::ptrdiff_t oldest, std::ptrdiff_t next) {
        const auto from = static_cast<std::uint32_t>(rank_[oldest]);
        const auto to = static_cast<std::uint32_t>(rank_[next]);
        flip(from);
        flip(to);
        if ((from <= at_) & (to > at_))
            goUp();
        else if ((from >= at_) & (to < at_))
            goDown();
    }
    [[gnu::always_inline]] Zep32f median() const { return samples_[order_[at_]]; }

private:
    void flip(std::uint32_t r) { set_[r / kWordBits] ^= std::uint64_t{1} << r % kWordBits; }
    void goUp() {
        std::size_t word = at_ / kWordBits;
        std::uint64_t above = set_[word] & (~std::uint64_t{1} << at_ % kWordBits);
        while (above == 0) above = set_[++word];
        at_ = static_cast<std::uint32_t>(word * kWordBits) +
              static_cast<std::uint32_t>(__builtin_ctzll(above));
    }
    void goDown() {
        std::size_t word = at_ / kWordBits;
        std::uint64_t below = set_[word] & ((std::uint64_t{1} << at_ % kWordBits) - 1);
        while (below == 0) below = set_[--word];
        at_ = static_cast<std::uint32_t>(word * kWordBits) + 63 -
              static_cast<std::uint32_t>(__builtin_clzll(below));
    }

    const Zep32f* samples_;
    std::uint64_t* set_;
    std::int32_t *order_, *rank_;
    std::uint32_t at_ = 0;
};

}  // namespace zep::ZEP_VARIANT::median
