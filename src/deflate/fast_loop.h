// Decoding symbols while neither the input nor the output can end within one of them, without a
// branch on their kind.
//
// Whether a literal, a match length or a distance comes next is close to random, and a mispredicted
// branch costs as much as two symbols. So a step decodes one symbol of any kind without a branch:
// it looks up the table that the symbol before has chosen, copies 32 bytes to the output, from the
// place that the entry's kind selects, and moves on by as many as count. Branches remain for what
// is rare: long matches, near ones, subtables, the end of the block.
//
//   literal    copies from an array in which byte n is n, moves on by 1
//   length     is kept for the next step, moves on by 0: what it has copied is overwritten
//   distance   copies from the output, or from the history window, moves on by the length
//
// What limits the speed is the chain shift, mask, load from one look-up to the next; all else runs
// beside it. 56 to 63 bits after a refill serve two steps (root entries take at most 16 and 24
// bits) and the look-up of a third.
#pragma once

#include <cstdint>

#include "deflate/careful_loop.h"
#include "deflate/fast_input.h"
#include "deflate/match_copy.h"
#include "deflate/table_format.h"
#include "simd/select.h"

namespace zep::ZEP_VARIANT {

inline constexpr unsigned kStepBytes = 32;
// Two short steps, the second one written in full. A long match looks after itself.
inline constexpr std::ptrdiff_t kFastOutput = 3 * kStepBytes;

// Source of literals and, of no account, of steps that decode a match length.
struct LiteralBytes {
    Zep8u bytes[256 + kStepBytes];
};
constexpr LiteralBytes makeLiteralBytes() {
    LiteralBytes t{};
    for (unsigned i = 0; i < 256; ++i) t.bytes[i] = static_cast<Zep8u>(i);
    return t;
}
inline constexpr LiteralBytes kLiteralBytes = makeLiteralBytes();

// kHistory: matches may reach beyond this call's output.
template <class Layout, bool kHistory>
class FastLoop {
public:
    FastLoop(const TableEntry* tables, const BitInput& in, Output& out, ZepLZ77State& state)
        : tables_(tables),
          in_(in),
          dst_(out.next),
          outEnd_(out.end - kFastOutput),
          begin_(address(out.begin)),
          window_(address(out.window)),
          windowOffset_(out.windowPos - address(out.begin)),
          out_(out),
          state_(state) {
        // From there on no match reaches beyond the output.
        if (kHistory && outEnd_ - out.begin > kWindowBytes) outEnd_ = out.begin + kWindowBytes;
    }

    // Inlined, so that the members live in registers.
    [[gnu::always_inline]] Stop run(BitInput& in) {
        in_.refill();
        entry_ = lookUpRoot(0);
        do {
            if (!step() || !step()) break;
            in_.refill();
        } while (in_.next < in_.end && dst_ < outEnd_);
        // A length whose distance is still to come: there is input for it, and room for what
        // copyMatch does.
        if (stop_ == Stop::none && length_ != 0) step();

        in_.save(in);
        out_.next = dst_;
        return stop_;
    }

private:
    // kind: the entry before, whose kLength bit leads to the distance table
    [[gnu::always_inline]] TableEntry lookUpRoot(TableEntry kind) const {
        constexpr unsigned kScale = 0x2000 / (Layout::distance * sizeof(TableEntry));
        // Beside the chain from entry to entry, not on it.
        const TableEntry* const table =
            simd::computed(tables_ + (kind & 0x2000) / kScale / sizeof(TableEntry));
        return table[static_cast<unsigned>(in_.bits) & (Layout::rootSize - 1)];
    }
    // False: the loop has to be left; a length may be waiting for its distance.
    [[gnu::always_inline]] bool step() {
        if ((entry_ & (kSpecial | kNear)) != 0) [[unlikely]] {
            if (isLink(entry_)) {
                entry_ = in_.follow(tables_, entry_, Layout::rootBits);
                // The two steps may now take more than was reckoned with.
                in_.refill();
            }
            if ((entry_ & kSpecial) != 0) {
                in_.consume(entry_);
                stop_ = valueOf(entry_) == valueOf(kEndOfBlock) ? Stop::endOfBlock : Stop::corrupt;
                return false;
            }
            if ((entry_ & kNear) != 0) {
                const std::size_t distance = valueWithExtra(entry_, in_.bits);
                in_.consume(entry_);
                return copyInFull(distance);
            }
        }
        const TableEntry e = entry_;
        const Zep64u before = in_.bits;
        in_.consume(e);
        entry_ = lookUpRoot(e);

        const auto own = static_cast<unsigned>(simd::lowBits(before, e));
        const std::size_t value = std::size_t{e >> 16} + std::size_t{own >> ((e >> 8) & 31)};
        const std::size_t advance = length_ + e / kLiteral;

        // Of a length the lowest byte too, so that it reads from the array.
        const std::uintptr_t literal = literals_ + static_cast<Zep8u>(value);
        std::uintptr_t back = address(dst_) - value;
        bool straddles = false;
        if constexpr (kHistory) {
            const std::uintptr_t inWindow = window_ + ((back + windowOffset_) & (kWindowBytes - 1));
            straddles = begin_ - back < length_;
            back = simd::selectBelow(back, begin_, inWindow, back);
        }
        const std::uintptr_t from = simd::selectIfSet<kDistance>(e, back, literal);
        const auto* const src = reinterpret_cast<const Zep8u*>(from);

        if (straddles) [[unlikely]]
            return copyInFull(value);
        copyBlock<16>(dst_, src);
        copyBlock<16>(dst_ + 16, src + 16);
        if (advance > kStepBytes) [[unlikely]] {
            if (static_cast<std::size_t>(out_.end - dst_) < advance + kCopyOvershoot)
                return copyInFull(value);
            copyWide(dst_ + 32, src + 32, advance - 32);
            dst_ += advance;
            length_ = 0;
            return dst_ < outEnd_;
        }
        dst_ += advance;
        length_ = simd::selectIfSet<kLength>(e, value, 0);
        return true;
    }

    // The match of this length_, with every check.
    [[gnu::always_inline]] bool copyInFull(std::size_t distance) {
        out_.next = dst_;
        copyMatch(out_, length_, distance, state_);
        dst_ = out_.next;
        length_ = 0;
        entry_ = lookUpRoot(0);
        return dst_ < outEnd_;
    }

    static std::uintptr_t address(const Zep8u* p) { return reinterpret_cast<std::uintptr_t>(p); }

    const TableEntry* tables_;
    TableEntry entry_ = 0;  // of the next symbol, not consumed
    FastInput in_;
    Zep8u* dst_;
    Zep8u* outEnd_;
    std::size_t length_ = 0;  // of the match whose distance comes next, else 0
    Stop stop_ = Stop::none;
    std::uintptr_t begin_;  // of the output
    std::uintptr_t window_;
    std::uintptr_t literals_ = address(kLiteralBytes.bytes);
    std::uintptr_t windowOffset_;  // address in the output -> index in the window
    Output& out_;
    ZepLZ77State& state_;
};

template <class Layout, bool kHistory>
[[gnu::noinline]] Stop decodeFast(const TableEntry* tables, BitInput& in, Output& out,
                                  ZepLZ77State& state) {
    return FastLoop<Layout, kHistory>(tables, in, out, state).run(in);
}

}  // namespace zep::ZEP_VARIANT
