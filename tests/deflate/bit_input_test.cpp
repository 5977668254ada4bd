// The bit buffer and the copying of matches by themselves, at every address.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "support/guarded_buffer.h"
#include "support/random.h"

// A build of the test's own, so that the linker cannot take it for a variant's.
#define ZEP_VARIANT apart
#include "deflate/bit_input.h"
#include "deflate/match_copy.h"

namespace zep::test {
namespace {

using apart::BitInput;
using apart::Output;

// Bits first to first + count of the bytes, the low end of each byte first.
Zep64u bitsOf(const GuardedBuffer<Zep8u>& bytes, int first, int count) {
    Zep64u value = 0;
    for (int n = 0; n < count; ++n) {
        const int bit = first + n;
        value |= static_cast<Zep64u>((bytes[bit / 8] >> (bit % 8)) & 1) << n;
    }
    return value;
}

TEST(BitInput, TakesTheBitsInOrderAtEveryAddress) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (int skew = 0; skew < 9; ++skew)
            for (int len = 1; len <= 30; ++len) {
                GuardedBuffer<Zep8u> bytes(len, edge, skew);
                fillRandom(bytes);
                ZepLZ77State state{};
                Zep8u* src = bytes.data();
                Zep32s srcLen = len;
                int at = 0;
                while (at < 8 * len) {
                    // Saved and begun again each time, as between two calls.
                    BitInput in(src, srcLen, state);
                    const int wish = static_cast<int>(rng()() % 25);
                    const int left = 8 * len - at;
                    if (rng()() % 2 == 0) in.fill();
                    ASSERT_EQ(in.gather(static_cast<unsigned>(wish)), wish <= left);
                    const int n = std::min(wish, left);
                    ASSERT_EQ(in.peek(static_cast<unsigned>(n)), bitsOf(bytes, at, n));
                    ASSERT_EQ(in.take(static_cast<unsigned>(n)), bitsOf(bytes, at, n));
                    at += n;
                    if (in.count >= 8 && rng()() % 2 == 0) in.returnBytes(in.count / 8);
                    in.save(&src, &srcLen, state);
                    ASSERT_EQ(src, bytes.data() + (len - srcLen));
                    ASSERT_EQ(8 * (len - srcLen) - state.bitCount, at);
                    ASSERT_EQ(state.bitBuffer, bitsOf(bytes, at, state.bitCount));
                }
            }
}

TEST(BitInput, FillsUntilNoByteFits) {
    for (int skew = 0; skew < 9; ++skew)
        for (int count = 0; count <= 64; ++count) {
            GuardedBuffer<Zep8u> bytes(16, Edge::Back, skew);
            fillRandom(bytes);
            ZepLZ77State state{};
            state.bitCount = count;
            BitInput in(bytes.data(), 16, state);
            in.fill();
            const int taken = count > 56 ? 0 : (64 - count) / 8;
            EXPECT_EQ(in.next, bytes.data() + taken);
            EXPECT_EQ(in.count, static_cast<unsigned>(count + 8 * taken));
            if (count < 64) {
                EXPECT_EQ(in.bits >> count, bitsOf(bytes, 0, 8 * taken)) << count;
            }
        }
}

TEST(BitInput, ANegativeLengthIsEmpty) {
    Zep8u byte = 0;
    ZepLZ77State state{};
    BitInput in(&byte + 1, -1, state);
    EXPECT_TRUE(in.empty());
    EXPECT_FALSE(in.gather(1));
}

const GuardedBuffer<Zep8u>& history() {
    static const auto window = [] {
        auto made = std::make_unique<GuardedBuffer<Zep8u>>(
            apart::kWindowBytes + apart::kWindowMirror + apart::kWindowSlack, Edge::Back);
        for (int n = 0; n < apart::kWindowBytes; ++n)
            (*made)[n] = static_cast<Zep8u>(n * 7 + n / 256);
        std::copy_n(made->begin(), apart::kWindowMirror, made->begin() + apart::kWindowBytes);
        return made;
    }();
    return *window;
}

// The byte before this call's output stands in the history right before windowPos.
void expectCopied(int length, int distance, int written, int room, int skew) {
    SCOPED_TRACE("length " + std::to_string(length) + " distance " + std::to_string(distance) +
                 " written " + std::to_string(written) + " room " + std::to_string(room));
    const GuardedBuffer<Zep8u>& window = history();
    GuardedBuffer<Zep8u> output(written + room, Edge::Back, skew);
    for (int n = 0; n < written; ++n) output[n] = static_cast<Zep8u>(n * 3 + 1);
    const int windowPos = (skew * 5) % apart::kWindowBytes;

    Output out{output.data(), output.data() + written, output.end(), window.data(),
               static_cast<unsigned>(windowPos)};
    ZepLZ77State state{};
    apart::copyMatch(out, static_cast<std::size_t>(length), static_cast<std::size_t>(distance),
                     state);
    const int copied = std::min(length, room);
    ASSERT_EQ(out.next, output.data() + written + copied);
    EXPECT_EQ(state.pendingMatchLength, length - copied);
    EXPECT_EQ(state.pendingMatchDistance, copied < length ? distance : 0);
    for (int n = written; n < written + copied; ++n) {
        const int from = n - distance;
        const int inWindow = (windowPos + from + 2 * apart::kWindowBytes) % apart::kWindowBytes;
        ASSERT_EQ(output[n], from >= 0 ? output[from] : window[inWindow]) << n;
    }
    for (int n = 0; n < written; ++n) ASSERT_EQ(output[n], static_cast<Zep8u>(n * 3 + 1)) << n;
}

TEST(MatchCopy, EveryShortDistanceWithAnyRoomAtAnyAddress) {
    for (int distance = 1; distance <= 40; ++distance)
        for (const int length : {3, 4, 7, 8, 9, 15, 16, 17, 31, 32, 33, 70, 258})
            for (const int room : {1, length - 1, length, length + 31, length + 32, length + 100})
                for (const int written : {0, 1, distance - 1, distance, 50})
                    expectCopied(length, distance, written, room, static_cast<int>(rng()() % 17));
}

TEST(MatchCopy, LongDistances) {
    for (const int distance : {100, 257, 258, 259, 32767, 32768})
        for (const int length : {3, 16, 258})
            for (const int room : {1, length - 1, length, length + 64})
                for (const int written : {0, 1, 99, 100, 260})
                    for (int skew = 0; skew < 3; ++skew)
                        expectCopied(length, distance, written, room, skew);
}

}  // namespace
}  // namespace zep::test
