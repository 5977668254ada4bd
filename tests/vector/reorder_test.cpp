// Flips, byte order and interleaving: elements and bytes at other places, with the same bits.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "support/variant.h"
#include "vector/movement_cases.h"
#include "zeps.h"

namespace zep::test {
namespace {

// Elements of elementBytes in reverse order.
Bytes reversedElements(const Bytes& x, std::size_t elementBytes) {
    Bytes y(x.size());
    for (std::size_t n = 0; n < x.size(); n += elementBytes)
        for (std::size_t i = 0; i < elementBytes; ++i)
            y[x.size() - elementBytes - n + i] = x[n + i];
    return y;
}

class Flip : public VariantTest {};

template <class T>
void expectFlips(ZepStatus (*flip)(const T*, T*, int)) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const int bytes : byteLengths(sizeof(T)))
            for (const int skew : {0, 1, 4, 16, 20}) {
                GuardedBuffer<std::uint8_t> src(bytes, edge, skew), dst(bytes, edge, 2 * skew);
                fillRandom(src);
                const Bytes expected = reversedElements(Bytes(src.begin(), src.end()), sizeof(T));
                ASSERT_EQ(flip(reinterpret_cast<const T*>(src.data()),
                               reinterpret_cast<T*>(dst.data()), bytes / int{sizeof(T)}),
                          zepStsNoErr);
                expectBytes(dst.data(), expected.data(), expected.size(), "flip");
                ASSERT_FALSE(testing::Test::HasFailure()) << "bytes " << bytes << " skew " << skew;
            }
    T x[2]{};
    EXPECT_EQ(flip(nullptr, x, 0), zepStsNullPtrErr);
    EXPECT_EQ(flip(x, nullptr, 2), zepStsNullPtrErr);
    EXPECT_EQ(flip(x, x + 1, 0), zepStsSizeErr);
    EXPECT_EQ(flip(x, x + 1, INT32_MIN + 1), zepStsSizeErr);
}

// In place: run against the expected bytes of a random buffer; and its checks.
template <class T>
void expectInPlace(ZepStatus (*run)(T*, int), auto expectedOf) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (const int bytes : byteLengths(sizeof(T)))
            for (const int skew : {0, 1, 4, 16, 20}) {
                GuardedBuffer<std::uint8_t> x(bytes, edge, skew);
                fillRandom(x);
                const Bytes expected = expectedOf(Bytes(x.begin(), x.end()));
                ASSERT_EQ(run(reinterpret_cast<T*>(x.data()), bytes / int{sizeof(T)}), zepStsNoErr);
                expectBytes(x.data(), expected.data(), expected.size(), "in place");
                ASSERT_FALSE(testing::Test::HasFailure()) << "bytes " << bytes << " skew " << skew;
            }
    T x[2];
    std::memset(x, 0x3C, sizeof x);
    EXPECT_EQ(run(nullptr, 0), zepStsNullPtrErr);
    EXPECT_EQ(run(x, 0), zepStsSizeErr);
    EXPECT_EQ(run(x, INT32_MIN + 1), zepStsSizeErr);
}

TEST_P(Flip, ReversesElementsAndKeepsTheirBits) {
    expectFlips<Zep32f>(zepsFlip_32f);
    expectFlips<Zep64f>(zepsFlip_64f);
}

TEST_P(Flip, ReversesInPlace) {
    expectInPlace<Zep32f>(zepsFlip_32f_I, [](const Bytes& x) { return reversedElements(x, 4); });
    expectInPlace<Zep8u>(zepsFlip_8u_I, [](const Bytes& x) { return reversedElements(x, 1); });
}

class SwapBytes : public VariantTest {};

template <class T>
void expectSwaps(ZepStatus (*swap)(T*, int)) {
    // Elements reversed, then all bytes: the elements stand where they were, their bytes in
    // reverse.
    expectInPlace<T>(
        swap, [](const Bytes& x) { return reversedElements(reversedElements(x, sizeof(T)), 1); });
}

TEST_P(SwapBytes, ReversesTheBytesOfEveryElement) {
    expectSwaps<Zep16u>(zepsSwapBytes_16u_I);
    expectSwaps<Zep32u>(zepsSwapBytes_32u_I);
    expectSwaps<Zep64u>(zepsSwapBytes_64u_I);
    Zep32u x = 0x01020304;
    ASSERT_EQ(zepsSwapBytes_32u_I(&x, 1), zepStsNoErr);
    EXPECT_EQ(x, 0x04030201u);
}

class Interleave : public VariantTest {};

template <class T>
using InterleaveFunction = ZepStatus (*)(const T* const*, int, int, T*);

template <class T>
void expectInterleaves(InterleaveFunction<T> interleave, int ch, int len, Edge edge, int skew) {
    std::vector<std::unique_ptr<GuardedBuffer<T>>> channels;
    std::vector<const T*> src;
    bool aligned = true;
    const auto isAligned = [](const void* p) {
        return reinterpret_cast<std::uintptr_t>(p) % 16 == 0;
    };
    for (int c = 0; c < ch; ++c) {
        channels.push_back(std::make_unique<GuardedBuffer<T>>(len, edge, c == ch - 1 ? skew : 0));
        auto& samples = *channels.back();
        for (int i = 0; i < len; ++i) {
            const Bytes bits = randomBytes(sizeof(T));
            std::memcpy(&samples[i], bits.data(), sizeof(T));
        }
        src.push_back(samples.data());
        aligned = aligned && isAligned(samples.data());
    }
    GuardedBuffer<T> dst(ch * len, edge);
    aligned = aligned && isAligned(dst.data());
    ASSERT_EQ(interleave(src.data(), ch, len, dst.data()),
              aligned ? zepStsNoErr : zepStsMisalignedBuf);
    for (int i = 0; i < len; ++i)
        for (int c = 0; c < ch; ++c)
            ASSERT_EQ(
                std::memcmp(&dst[i * ch + c], &src[static_cast<std::size_t>(c)][i], sizeof(T)), 0)
                << "channel " << c << " of " << ch << ", sample " << i << " of " << len;
}

template <class T>
void expectInterleaving(InterleaveFunction<T> interleave) {
    for (const Edge edge : {Edge::Front, Edge::Back})
        for (int ch = 1; ch <= 35; ++ch)
            for (int len = 1; len <= 70; len += (ch <= 9 || len < 10) ? 1 : 7)
                for (const int skew : {0, 4, 16}) {
                    expectInterleaves(interleave, ch, len, edge, skew);
                    if (testing::Test::HasFatalFailure()) return;
                }
    for (const int ch : {2, 3, 8, 64}) expectInterleaves(interleave, ch, 1001, Edge::Back, 0);
}

template <class T>
void expectChecks(InterleaveFunction<T> interleave) {
    alignas(16) T a[8]{}, b[8]{}, dst[16];
    std::memset(dst, 0x5A, sizeof dst);
    const T* src[2] = {a, b};
    const T* hole[2] = {a, nullptr};
    EXPECT_EQ(interleave(nullptr, 0, 0, dst), zepStsNullPtrErr);
    EXPECT_EQ(interleave(src, 0, 0, nullptr), zepStsNullPtrErr);
    EXPECT_EQ(interleave(hole, 0, 0, dst), zepStsNumChannelsErr);
    EXPECT_EQ(interleave(hole, -1, 8, dst), zepStsNumChannelsErr);
    EXPECT_EQ(interleave(hole, 2, 0, dst), zepStsSizeErr);
    EXPECT_EQ(interleave(hole, 2, -1, dst), zepStsSizeErr);
    EXPECT_EQ(interleave(hole, 2, 8, dst), zepStsNullPtrErr);
    const Bytes before(sizeof dst, 0x5A);
    expectBytes(dst, before.data(), before.size(), "written on an error");
    EXPECT_EQ(interleave(src, 2, 8, dst), zepStsNoErr);
    EXPECT_EQ(interleave(src, 2, 7, dst + 1), zepStsMisalignedBuf);
    const T* skewed[2] = {a, b + 1};
    EXPECT_EQ(interleave(skewed, 2, 7, dst), zepStsMisalignedBuf);
    EXPECT_EQ(interleave(skewed, 1, 7, dst), zepStsNoErr);
}

TEST_P(Interleave, PutsTheSamplesOfAllChannelsIntoFrames) {
    expectInterleaving<Zep16s>(zepsInterleave_16s);
    expectInterleaving<Zep32f>(zepsInterleave_32f);
}

TEST_P(Interleave, TestsItsArgumentsInOrderAndWarnsOfMisalignment) {
    expectChecks<Zep16s>(zepsInterleave_16s);
    expectChecks<Zep32f>(zepsInterleave_32f);
}

ZEP_FOR_EACH_VARIANT(Flip);
ZEP_FOR_EACH_VARIANT(SwapBytes);
ZEP_FOR_EACH_VARIANT(Interleave);

}  // namespace
}  // namespace zep::test
