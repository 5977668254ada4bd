// What every entry refuses, and in which order.
#include <gtest/gtest.h>

#include <array>

#include "deflate/session.h"
#include "support/variant.h"

namespace zep::test {
namespace {

using reference::DeflateWriter;

class DeflateEntry : public VariantTest {
protected:
    void SetUp() override {
        VariantTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        state_ = makeState();
    }
    void TearDown() override {
        state_.reset();
        VariantTest::TearDown();
    }

    using HuffmanEntry = ZepStatus (*)(Zep8u**, Zep32s*, Zep8u**, Zep32s*, void*, ZepLZ77State*);
    static constexpr std::array<HuffmanEntry, 2> huffmanEntries() {
        return {zepsDecodeLZ77FixedHuffFull_8u, zepsDecodeLZ77DynamicHuffFull_8u};
    }
    void expectUntouched() const {
        EXPECT_EQ(pSrc_, src_.data());
        EXPECT_EQ(pDst_, dst_.data());
        EXPECT_EQ(dst_, (std::array<Zep8u, 8>{}));
    }

    StatePtr state_;
    std::array<Zep8u, 8> src_{0x4B, 0x04, 0x00, 0, 0, 0, 0, 0};
    std::array<Zep8u, 8> dst_{};
    Zep8u* pSrc_ = src_.data();
    Zep8u* pDst_ = dst_.data();
    Zep32s srcLen_ = 8, dstLen_ = 8, type_ = 77;
};

TEST_P(DeflateEntry, InitAllocRefusesANullPointer) {
    EXPECT_EQ(zepsDecodeLZ77InitAlloc_8u(0, nullptr), zepStsNullPtrErr);
}

TEST_P(DeflateEntry, InitAllocTakesAnyArgument) {
    for (const Zep32s argument : {0, 1, -1, 8192, 0x7FFFFFFF}) {
        ZepLZ77State* state = nullptr;
        ASSERT_EQ(zepsDecodeLZ77InitAlloc_8u(argument, &state), zepStsNoErr);
        ASSERT_NE(state, nullptr);
        zepsLZ77Free_8u(state);
    }
}

TEST_P(DeflateEntry, BlockTypeRefusesNullPointers) {
    EXPECT_EQ(zepsDecodeLZ77GetBlockType_8u(nullptr, &srcLen_, &type_, state_.get()),
              zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeLZ77GetBlockType_8u(&pSrc_, nullptr, &type_, state_.get()),
              zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeLZ77GetBlockType_8u(&pSrc_, &srcLen_, nullptr, state_.get()),
              zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeLZ77GetBlockType_8u(&pSrc_, &srcLen_, &type_, nullptr), zepStsNullPtrErr);
    Zep8u* none = nullptr;
    Zep32s noLen = 0;
    EXPECT_EQ(zepsDecodeLZ77GetBlockType_8u(&none, &noLen, &type_, state_.get()), zepStsNullPtrErr);
    EXPECT_EQ(srcLen_, 8);
    EXPECT_EQ(type_, 77);
    expectUntouched();
}

TEST_P(DeflateEntry, StoredBlockRefusesNullPointersBeforeMissingRoom) {
    dstLen_ = 0;
    Zep8u* none = nullptr;
    EXPECT_EQ(zepsDecodeLZ77StoredBlock_8u(nullptr, &srcLen_, &pDst_, &dstLen_, state_.get()),
              zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeLZ77StoredBlock_8u(&pSrc_, nullptr, &pDst_, &dstLen_, state_.get()),
              zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeLZ77StoredBlock_8u(&pSrc_, &srcLen_, nullptr, &dstLen_, state_.get()),
              zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeLZ77StoredBlock_8u(&pSrc_, &srcLen_, &pDst_, nullptr, state_.get()),
              zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeLZ77StoredBlock_8u(&none, &srcLen_, &pDst_, &dstLen_, state_.get()),
              zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeLZ77StoredBlock_8u(&pSrc_, &srcLen_, &none, &dstLen_, state_.get()),
              zepStsNullPtrErr);
    EXPECT_EQ(zepsDecodeLZ77StoredBlock_8u(&pSrc_, &srcLen_, &pDst_, &dstLen_, nullptr),
              zepStsNullPtrErr);
    // Missing room comes before a status that is not a stored block's.
    EXPECT_EQ(zepsDecodeLZ77StoredBlock_8u(&pSrc_, &srcLen_, &pDst_, &dstLen_, state_.get()),
              zepStsDstSizeLessExpected);
    EXPECT_EQ(srcLen_, 8);
    expectUntouched();
}

TEST_P(DeflateEntry, HuffmanDecodersTestPointersThenNegativeLengthsThenRoom) {
    for (const HuffmanEntry decode : huffmanEntries()) {
        srcLen_ = -1, dstLen_ = -1;
        EXPECT_EQ(decode(nullptr, &srcLen_, &pDst_, &dstLen_, nullptr, state_.get()),
                  zepStsNullPtrErr);
        EXPECT_EQ(decode(&pSrc_, nullptr, &pDst_, &dstLen_, nullptr, state_.get()),
                  zepStsNullPtrErr);
        EXPECT_EQ(decode(&pSrc_, &srcLen_, nullptr, &dstLen_, nullptr, state_.get()),
                  zepStsNullPtrErr);
        EXPECT_EQ(decode(&pSrc_, &srcLen_, &pDst_, nullptr, nullptr, state_.get()),
                  zepStsNullPtrErr);
        EXPECT_EQ(decode(&pSrc_, &srcLen_, &pDst_, &dstLen_, nullptr, nullptr), zepStsNullPtrErr);
        EXPECT_EQ(decode(&pSrc_, &srcLen_, &pDst_, &dstLen_, nullptr, state_.get()), zepStsSizeErr);
        dstLen_ = 0;
        EXPECT_EQ(decode(&pSrc_, &srcLen_, &pDst_, &dstLen_, nullptr, state_.get()), zepStsSizeErr);
        srcLen_ = 8, dstLen_ = -1;
        EXPECT_EQ(decode(&pSrc_, &srcLen_, &pDst_, &dstLen_, nullptr, state_.get()), zepStsSizeErr);
        dstLen_ = 0;
        EXPECT_EQ(decode(&pSrc_, &srcLen_, &pDst_, &dstLen_, nullptr, state_.get()),
                  zepStsDstSizeLessExpected);
        EXPECT_EQ(srcLen_, 8);
        EXPECT_EQ(dstLen_, 0);
        expectUntouched();
    }
}

TEST_P(DeflateEntry, HuffmanDecodersAcceptAnEmptyInputAtAnyAddress) {
    for (const HuffmanEntry decode : huffmanEntries()) {
        Zep8u* none = nullptr;
        Zep32s noLen = 0;
        EXPECT_EQ(decode(&none, &noLen, &pDst_, &dstLen_, nullptr, state_.get()),
                  zepStsSrcSizeLessExpected);
        EXPECT_EQ(none, nullptr);
        EXPECT_EQ(noLen, 0);
    }
}

// The header of a block of another type: two bytes are read where they stand in one aligned word.
TEST_P(DeflateEntry, AnotherTypeOfBlockIsRefusedAtEvenAndOddAddresses) {
    for (const HuffmanEntry decode : huffmanEntries())
        for (int skew = 0; skew < 4; ++skew)
            for (int len = 1; len <= 3; ++len) {
                GuardedBuffer<Zep8u> src(len, Edge::Front, skew);
                std::fill(src.begin(), src.end(), Zep8u{0});
                Zep8u* pSrc = src.data();
                Zep32s srcLen = len;
                const StatePtr state = makeState();
                EXPECT_EQ(decode(&pSrc, &srcLen, &pDst_, &dstLen_, nullptr, state.get()),
                          zepStsErr);
                const int taken = len > 1 && skew % 2 == 0 ? 2 : 1;
                EXPECT_EQ(pSrc, src.data() + taken);
                EXPECT_EQ(srcLen, len - taken);
            }
}

TEST_P(DeflateEntry, TheReservedArgumentIsNotLookedAt) {
    void* const nowhere = reinterpret_cast<void*>(1);
    EXPECT_EQ(
        zepsDecodeLZ77FixedHuffFull_8u(&pSrc_, &srcLen_, &pDst_, &dstLen_, nowhere, state_.get()),
        zepStsStreamEnd);
    EXPECT_EQ(dst_[0], 'a');
}

TEST_P(DeflateEntry, SetStatusKeepsItsValueWithoutAnyEffect) {
    DeflateWriter out;
    out.fixed(false);
    out.literal('x');
    out.match(9, 1);
    out.endOfBlock();
    out.stored(true, Bytes{1, 2, 3});
    for (const Zep32s value : {0, 1, 4, 8, 11, -1, 0x7FFFFFFF}) {
        Session session(out.bytes());
        const Cuts cuts{[&] {
                            EXPECT_EQ(zepsDecodeLZ77SetStatus_8u(value, session.state()),
                                      zepStsNoErr);
                            EXPECT_EQ(session.fields().externalStatus, value);
                            return 1;
                        },
                        [] { return 1; }};
        EXPECT_EQ(session.run(cuts), zepStsStreamEnd);
        EXPECT_EQ(session.output(),
                  (Bytes{'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x', 1, 2, 3}));
    }
}

TEST_P(DeflateEntry, StoredDecoderRefusesAnotherBlock) {
    EXPECT_EQ(zepsDecodeLZ77StoredBlock_8u(&pSrc_, &srcLen_, &pDst_, &dstLen_, state_.get()),
              zepStsErr);
    expectUntouched();
    ASSERT_EQ(zepsDecodeLZ77GetBlockType_8u(&pSrc_, &srcLen_, &type_, state_.get()), zepStsNoErr);
    ASSERT_EQ(type_, 0);
    EXPECT_EQ(zepsDecodeLZ77StoredBlock_8u(&pSrc_, &srcLen_, &pDst_, &dstLen_, state_.get()),
              zepStsErr);
    // The refusal has not disturbed the block.
    EXPECT_EQ(
        zepsDecodeLZ77FixedHuffFull_8u(&pSrc_, &srcLen_, &pDst_, &dstLen_, nullptr, state_.get()),
        zepStsStreamEnd);
    EXPECT_EQ(dst_[0], 'a');
}

TEST_P(DeflateEntry, HuffmanDecodersRefuseAnotherBlockAtItsBeginning) {
    for (int type = 0; type < 4; ++type) {
        for (const DecoderCall call : {DecoderCall::Fixed, DecoderCall::Dynamic}) {
            if (type == (call == DecoderCall::Fixed ? 1 : 2)) continue;
            DeflateWriter out;
            out.header(true, type);
            out.bits(0, 40);
            Session session(out.bytes());
            EXPECT_EQ(session.decode(call, 100, 100), zepStsErr) << type;
            EXPECT_EQ(session.decode(call, 100, 100), zepStsErr) << type;
            // The header is still there to be read.
            int reported = session.blockType(100);
            EXPECT_EQ(reported, zepStsNoErr);
            constexpr int kReported[4] = {2, 0, 1, -1};
            EXPECT_EQ(session.type(), kReported[type]);
        }
    }
}

TEST_P(DeflateEntry, HuffmanDecodersRefuseAStoredBlockUnderWay) {
    DeflateWriter out;
    out.stored(true, Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9});
    for (int sent = 1; sent <= 8; ++sent) {
        Session session(out.bytes(), LockStep::Off);
        ASSERT_EQ(session.blockType(1), zepStsNoErr);
        if (sent > 1) {
            ASSERT_EQ(session.decode(DecoderCall::Stored, sent - 1, 100),
                      zepStsSrcSizeLessExpected);
        }
        EXPECT_EQ(session.decode(DecoderCall::Fixed, 4, 100), zepStsErr);
        EXPECT_EQ(session.decode(DecoderCall::Dynamic, 4, 100), zepStsErr);
        EXPECT_EQ(session.decode(DecoderCall::Stored, 100, 100), zepStsStreamEnd);
        EXPECT_EQ(session.output(), (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9}));
    }
}

TEST_P(DeflateEntry, FixedDecoderRefusesADynamicBlockUnderWay) {
    DeflateWriter out;
    out.dynamic(true, reference::fixedLiteralLengths(), reference::fixedDistanceLengths());
    out.literal('q');
    out.endOfBlock();
    const int total = static_cast<int>(out.bytes().size());
    for (int sent = 1; sent < 12; ++sent) {
        Session session(out.bytes(), LockStep::Off);
        ASSERT_EQ(session.decode(DecoderCall::Dynamic, sent, 100), zepStsSrcSizeLessExpected);
        EXPECT_EQ(session.decode(DecoderCall::Fixed, 4, 100), zepStsErr) << sent;
        EXPECT_EQ(session.decode(DecoderCall::Dynamic, total, 100), zepStsStreamEnd);
        EXPECT_EQ(session.output(), (Bytes{'q'}));
    }
}

ZEP_FOR_EACH_VARIANT(DeflateEntry);

}  // namespace
}  // namespace zep::test
