#include <gtest/gtest.h>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/variant.h"
#include "vector/movement_cases.h"
#include "zeps.h"

namespace zep::test {
namespace {

class Move : public VariantTest {};

template <class T>
using MoveFunction = ZepStatus (*)(const T*, T*, int);

// The area is one guarded buffer: source at one end of it, destination at the other.
template <class T>
void expectMoves(MoveFunction<T> move) {
    for (const int bytes : byteLengths(sizeof(T)))
        for (const int shift : {0, 1, 2, 3, 8, 15, 16, 31, 32, 33, 64, 127, 128, 129, 300, 5000})
            for (const bool up : {false, true}) {
                if (bytes > 600 && shift > 40 && shift < 5000 && shift != 128) continue;
                GuardedBuffer<std::uint8_t> area(bytes + shift, up ? Edge::Front : Edge::Back);
                fillRandom(area);
                Bytes expected(area.begin(), area.end());
                std::uint8_t* src = up ? area.data() : area.data() + shift;
                std::uint8_t* dst = up ? area.data() + shift : area.data();
                const Bytes moved(src, src + bytes);
                std::copy(moved.begin(), moved.end(), expected.begin() + (up ? shift : 0));
                ASSERT_EQ(move(reinterpret_cast<const T*>(src), reinterpret_cast<T*>(dst),
                               bytes / int{sizeof(T)}),
                          zepStsNoErr);
                expectBytes(area.data(), expected.data(), expected.size(),
                            up ? "move up" : "move down");
                ASSERT_FALSE(testing::Test::HasFailure())
                    << "bytes " << bytes << " shift " << shift;
            }
}

template <class T>
void expectChecks(MoveFunction<T> move) {
    T a[4]{};
    EXPECT_EQ(move(nullptr, a, 4), zepStsNullPtrErr);
    EXPECT_EQ(move(a, nullptr, 4), zepStsNullPtrErr);
    EXPECT_EQ(move(a, nullptr, 0), zepStsNullPtrErr);
    EXPECT_EQ(move(a, a + 1, 0), zepStsSizeErr);
    EXPECT_EQ(move(a, a + 1, -1), zepStsSizeErr);
    EXPECT_EQ(move(a, a + 1, INT32_MIN + 1), zepStsSizeErr);
    EXPECT_EQ(move(a, a, 0),
              zepStsSizeErr);  // the checks come before the short cut of equal pointers
    EXPECT_EQ(move(a, a, 4), zepStsNoErr);
}

template <class T>
void expectMoveOf(MoveFunction<T> move) {
    expectMoves(move);
    expectChecks(move);
}

TEST_P(Move, IsSafeForEveryOverlapAndType) {
    expectMoveOf<Zep8u>(zepsMove_8u);
    expectMoveOf<Zep16s>(zepsMove_16s);
    expectMoveOf<Zep32s>(zepsMove_32s);
    expectMoveOf<Zep32f>(zepsMove_32f);
    expectMoveOf<Zep64f>(zepsMove_64f);
}

TEST_P(Move, IsSafeAtEveryAlignment) {
    for (const int bytes : {65, 129, 200, 257, 700, 5000})
        for (int skew = 0; skew < 64; ++skew)
            for (int shift = -70; shift <= 70; shift += bytes < 600 ? 1 : 7) {
                Framed area(static_cast<std::size_t>(bytes) + 140, static_cast<std::size_t>(skew));
                std::uint8_t* src = area.data() + 70;
                const Bytes expected(src, src + bytes);
                ASSERT_EQ(zepsMove_8u(src, src + shift, bytes), zepStsNoErr);
                expectBytes(src + shift, expected.data(), expected.size(), "move");
                ASSERT_TRUE(area.frameIntact());
                ASSERT_FALSE(HasFailure())
                    << bytes << " bytes, skew " << skew << ", shift " << shift;
            }
}

TEST_P(Move, MovesLargeBlocksBothWays) {
    constexpr int kMargin = 100000;
    // 0x20000 is where some variant asks for the source ahead.
    for (const int bytes : {0x1FF00, 0x1FFFF, 0x20000, 0x20001, 0x20085, 0x210000})
        for (const int shift : {-kMargin, -4096, -64, -16, -1, 1, 16, 64, 4096, kMargin}) {
            Bytes area = randomBytes(static_cast<std::size_t>(bytes + 2 * kMargin));
            std::uint8_t* src = area.data() + kMargin;
            const Bytes before = area;
            ASSERT_EQ(zepsMove_8u(src, src + shift, bytes), zepStsNoErr);
            Bytes expected = before;
            std::copy_n(before.begin() + kMargin, bytes, expected.begin() + kMargin + shift);
            expectBytes(area.data(), expected.data(), expected.size(), "move");
            ASSERT_FALSE(HasFailure()) << bytes << " bytes, shift " << shift;
        }
}

ZEP_FOR_EACH_VARIANT(Move);

}  // namespace
}  // namespace zep::test
