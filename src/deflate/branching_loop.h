// Decoding symbols while neither the input nor the output can end within one of them, where
// literals come in long runs: one branch per symbol on its kind.
//
// A literal takes some eight instructions, a fifth of a step of the branchless loop, and a branch
// goes wrong about once for each match. The entry of the next symbol is always loaded before the
// bit buffer is refilled and before anything is copied, so that neither lengthens the chain from
// entry to entry: 56 bits serve three literals of 11 bits and the look-up of a fourth symbol, or
// two of them, a length with its extra bits (16) and the look-up of its distance.
#pragma once

#include <cstdint>

#include "deflate/careful_loop.h"
#include "deflate/fast_input.h"
#include "deflate/match_copy.h"
#include "deflate/table_format.h"
#include "simd/select.h"

namespace zep::ZEP_VARIANT {

inline constexpr std::size_t kBranchingCopy = 48;
// What a round writes beside matches that look after themselves: three literals, then a copy.
inline constexpr std::ptrdiff_t kBranchingOutput = 64;

// Matches may reach beyond this call's output.
template <class Layout>
[[gnu::noinline]] Stop decodeBranching(const TableEntry* tables, BitInput& in, Output& out,
                                       ZepLZ77State& state) {
    static_assert(3 * Layout::rootBits + Layout::rootBits <= kRefilledBits);
    static_assert(2 * Layout::rootBits + (Layout::rootBits + 5) + Layout::rootBits <=
                  kRefilledBits);
    static_assert(kBranchingOutput >= 3 + static_cast<std::ptrdiff_t>(kBranchingCopy));
    constexpr Zep64u kMask = Layout::rootSize - 1;
    const TableEntry* const distances = tables + Layout::distance;
    const auto address = [](const Zep8u* p) { return reinterpret_cast<std::uintptr_t>(p); };
    const std::uintptr_t begin = address(out.begin), window = address(out.window);
    const std::uintptr_t windowOffset = out.windowPos - begin;
    Zep8u* dst = out.next;
    Zep8u* const outEnd = out.end - kBranchingOutput;
    Stop stop = Stop::none;
    FastInput fast(in);

    fast.refill();
    TableEntry e = tables[fast.bits & kMask];
    const auto literal = [&](int place) {
        fast.consume(e);
        dst[place] = static_cast<Zep8u>(valueOf(e));
        e = tables[fast.bits & kMask];
        return (e & kLiteral) != 0;
    };
    const auto copyInFull = [&](std::size_t length, std::size_t distance) {
        out.next = dst;
        copyMatch(out, length, distance, state);
        dst = out.next;
    };
    do {
        if ((e & kLiteral) != 0) [[likely]] {
            if (literal(0)) [[likely]] {
                if (literal(1)) [[likely]] {
                    literal(2);
                    dst += 3;
                    fast.refill();
                    continue;
                }
                ++dst;
            }
            ++dst;
        }
        if ((e & kSpecial) != 0) [[unlikely]] {
            if (isLink(e)) {
                e = fast.follow(tables, e, Layout::rootBits);
                fast.refill();
                if ((e & kLiteral) != 0) continue;
            }
            if ((e & kSpecial) != 0) {
                fast.consume(e);
                stop = valueOf(e) == valueOf(kEndOfBlock) ? Stop::endOfBlock : Stop::corrupt;
                break;
            }
        }
        const Zep64u withLength = fast.bits;
        fast.consume(e);
        TableEntry d = distances[fast.bits & kMask];
        const std::size_t length = valueWithExtra(e, withLength);
        fast.refill();
        if ((d & kSpecial) != 0) [[unlikely]] {
            if (isLink(d)) d = fast.follow(tables, d, Layout::rootBits);
            if ((d & kSpecial) != 0) {
                fast.consume(d);
                stop = Stop::corrupt;
                break;
            }
        }
        const Zep64u withDistance = fast.bits;
        fast.consume(d);
        e = tables[fast.bits & kMask];
        const std::size_t distance = valueWithExtra(d, withDistance);
        fast.refill();

        std::uintptr_t from = address(dst) - distance;
        const bool straddles = begin - from < length;
        const std::uintptr_t inWindow = window + ((from + windowOffset) & (kWindowBytes - 1));
        from = simd::selectBelow(from, begin, inWindow, from);
        // Blocks of 16 bytes cannot repeat what is nearer.
        const bool repeats = distance < (length < 16 ? length : 16);
        if (straddles || repeats) [[unlikely]] {
            copyInFull(length, distance);
            continue;
        }
        const auto* const src = reinterpret_cast<const Zep8u*>(from);
        copyBlock<16>(dst, src);
        copyBlock<16>(dst + 16, src + 16);
        copyBlock<16>(dst + 32, src + 32);
        if (length > kBranchingCopy) [[unlikely]] {
            if (static_cast<std::size_t>(out.end - dst) < length + kCopyOvershoot) {
                copyInFull(length, distance);
                continue;
            }
            copyWide(dst + kBranchingCopy, src + kBranchingCopy, length - kBranchingCopy);
        }
        dst += length;
    } while (fast.next < fast.end && dst < outEnd);

    fast.save(in);
    out.next = dst;
    return stop;
}

}  // namespace zep::ZEP_VARIANT
