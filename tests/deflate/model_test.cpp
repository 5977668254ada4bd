// The model and the stream writer, before anything is judged by them: against hand-computed bytes
// and against zlib.
#include <gtest/gtest.h>

#include "deflate/sample_data.h"
#include "deflate/zlib_peer.h"
#include "reference/deflate_model.h"

namespace zep::test {
namespace {

using reference::DecoderCall;
using reference::DeflateModel;
using reference::DeflateWriter;

const Bytes kEmptyHistory(DeflateModel::kWindowBytes, 0);

// Runs the model alone over a stream of one block. What it says of the calls is of no interest,
// only what it decodes.
Bytes decodeByModel(const Bytes& stream) {
    DeflateModel model(kEmptyHistory);
    int type = -1;
    EXPECT_EQ(model.blockType(stream, {zepStsNoErr, 1, 0}, type), "");
    constexpr DecoderCall kCalls[3] = {DecoderCall::Fixed, DecoderCall::Dynamic,
                                       DecoderCall::Stored};
    model.decode(kCalls[type], std::span(stream).subspan(1), 1 << 20, {zepStsStreamEnd, 0, 0});
    EXPECT_EQ(model.status(), 0);
    return model.output();
}

TEST(DeflateWriter, WritesAFixedBlockAsComputedByHand) {
    // BFINAL 1, BTYPE 01: bits 1,1,0. 'a' (0x61) is 0x30 + 0x61 = 10010001; the end is seven zeros.
    // In order: 1 1 0 1 0 0 1 0 | 0 0 1 0 0 0 0 0 | 0 0
    DeflateWriter out;
    out.fixed(true);
    out.literal('a');
    out.endOfBlock();
    EXPECT_EQ(out.bytes(), (Bytes{0x4B, 0x04, 0x00}));
}

TEST(DeflateWriter, WritesAMatchAsComputedByHand) {
    // Length 11 is symbol 265, code 0001001, one extra bit 0; distance 1 is code 00000.
    // 1 1 0 | 1 0 0 1 0 0 0 1 | 0 0 0 1 0 0 1 | 0 | 0 0 0 0 0 | 0 0 0 0 0 0 0
    DeflateWriter out;
    out.fixed(true);
    out.literal('a');
    out.match(11, 1);
    out.endOfBlock();
    EXPECT_EQ(out.bytes(), (Bytes{0x4B, 0x44, 0x02, 0x00}));
}

TEST(DeflateWriter, LengthAndDistanceSymbolsAreThoseOfTheTable) {
    // RFC 1951, section 3.2.5.
    EXPECT_EQ(reference::baseOfLengthSymbol(257), 3);
    EXPECT_EQ(reference::baseOfLengthSymbol(269), 19);
    EXPECT_EQ(reference::baseOfLengthSymbol(284), 227);
    EXPECT_EQ(reference::baseOfLengthSymbol(285), 258);
    EXPECT_EQ(reference::extraOfLengthSymbol(264), 0);
    EXPECT_EQ(reference::extraOfLengthSymbol(265), 1);
    EXPECT_EQ(reference::extraOfLengthSymbol(284), 5);
    EXPECT_EQ(reference::baseOfDistanceSymbol(3), 4);
    EXPECT_EQ(reference::baseOfDistanceSymbol(4), 5);
    EXPECT_EQ(reference::baseOfDistanceSymbol(29), 24577);
    EXPECT_EQ(reference::extraOfDistanceSymbol(29), 13);
    EXPECT_EQ(reference::codeOfLength(258).symbol, 285);
    EXPECT_EQ(reference::codeOfLength(257).symbol, 284);
    EXPECT_EQ(reference::codeOfDistance(32768).extra, 8191);
}

TEST(DeflateWriter, CanonicalCodesAreThoseOfTheExample) {
    // RFC 1951, section 3.2.2: lengths (3, 3, 3, 3, 3, 2, 4, 4).
    const reference::CanonicalCode code({3, 3, 3, 3, 3, 2, 4, 4});
    EXPECT_EQ(code.codes, (std::vector<std::uint32_t>{2, 3, 4, 5, 6, 0, 14, 15}));
}

TEST(DeflateWriter, ProperRandomStreamsAreAcceptedByZlib) {
    for (int n = 0; n < 300; ++n) {
        const RandomStream s = randomStream(1 + n % 6, true);
        ASSERT_TRUE(zlibInflate(s.stream).has_value()) << n;
    }
}

TEST(DeflateModel, DecodesWhatZlibDecodes) {
    for (const Sample& sample : samples(3000))
        for (const int strategy : {Z_DEFAULT_STRATEGY, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED}) {
            const Bytes stream = zlibDeflate(sample.data, {.level = 9, .strategy = strategy});
            // One block, so one call.
            EXPECT_EQ(decodeByModel(stream), sample.data)
                << sample.name << " strategy " << strategy;
        }
}

}  // namespace
}  // namespace zep::test
