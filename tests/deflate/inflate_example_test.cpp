// examples/inflate.c, the loop that zeps/deflate.h prints, against zlib: every level, strategy and
// way of flushing, input cut in every way, room of several sizes.
//
// The program stands here in namespaces of its own, once for each size of its pieces, and reads and
// writes through the functions below.
#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <cstdio>

#include "deflate/sample_data.h"
#include "deflate/session.h"
#include "deflate/zlib_peer.h"
#include "support/random.h"
#include "support/variant.h"

namespace zep::test {
namespace {

using reference::DeflateWriter;

struct Files {
    Bytes in, out;
    std::size_t at = 0;
    std::size_t (*most)(std::size_t) = nullptr;  // how much of a wish is read
} files;

std::size_t readPiece(void* data, std::size_t, std::size_t wish, std::FILE*) {
    const std::size_t bytes = std::min(files.most(wish), files.in.size() - files.at);
    if (bytes != 0) std::memcpy(data, files.in.data() + files.at, bytes);
    files.at += bytes;
    return bytes;
}

std::size_t writePiece(const void* data, std::size_t, std::size_t bytes, std::FILE*) {
    const auto* const first = static_cast<const std::uint8_t*>(data);
    files.out.insert(files.out.end(), first, first + bytes);
    return bytes;
}

}  // namespace

#define fread readPiece
#define fwrite writePiece
#define main unusedMain
namespace pieces4096 {
#include "../../examples/inflate.c"
}
#undef PIECE
#undef BACK
#undef HISTORY
namespace pieces16 {
#define PIECE 16
#include "../../examples/inflate.c"
}  // namespace pieces16
#undef PIECE
#undef BACK
#undef HISTORY
namespace pieces61 {
#define PIECE 61
#include "../../examples/inflate.c"
}  // namespace pieces61
#undef fread
#undef fwrite
#undef main

namespace {

using Program = const char* (*)(std::FILE*, std::FILE*, ZepLZ77State*);

std::size_t all(std::size_t wish) { return wish; }
std::size_t one(std::size_t) { return 1; }
std::size_t some(std::size_t wish) {
    const std::size_t most = std::min(wish, std::size_t{1} << rng()() % 13);
    return 1 + static_cast<std::size_t>(rng()()) % most;
}

struct Way {
    Program program;
    std::size_t (*most)(std::size_t);
} constexpr kWays[] = {{pieces4096::inflate, all},
                       {pieces4096::inflate, one},
                       {pieces16::inflate, all},
                       {pieces16::inflate, some},
                       {pieces61::inflate, some}};

const char* inflated(const Way& way, const Bytes& stream) {
    files = {stream, {}, 0, way.most};
    return way.program(nullptr, nullptr, makeState().get());
}

struct Case {
    std::string name;
    Bytes stream, data;
};

void expectRight(const Case& c) {
    SCOPED_TRACE(c.name);
    for (const Way& way : kWays) {
        const char* const wrong = inflated(way, c.stream);
        ASSERT_EQ(wrong, nullptr) << wrong;
        ASSERT_TRUE(files.out == c.data);
    }
}

// Twenty messages, flushed one by one; what does not compress is stored.
Bytes twentyMessages(int len) {
    const Bytes text = textLike(5000);
    Bytes data;
    while (data.size() < static_cast<std::size_t>(20 * len)) {
        const auto from = text.begin() + static_cast<std::ptrdiff_t>(rng()() % 4900);
        data.insert(data.end(), from, from + static_cast<std::ptrdiff_t>(rng()() % 60));
        const Bytes random = noise(1 + static_cast<int>(rng()() % 60));
        data.insert(data.end(), random.begin(), random.end());
    }
    return data;
}

// Compressed once for all variants: that takes longer than the decoding.
const std::vector<Case>& zlibCases() {
    static const std::vector<Case> cases = [] {
        std::vector<Case> made;
        for (const int flush : {Z_NO_FLUSH, Z_PARTIAL_FLUSH, Z_SYNC_FLUSH, Z_FULL_FLUSH, Z_BLOCK})
            for (const int strategy :
                 {Z_DEFAULT_STRATEGY, Z_FILTERED, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED})
                for (int level = 0; level <= 9; ++level) {
                    const int len = level == 6 ? 2000 : 50;
                    const Bytes data = twentyMessages(len);
                    made.push_back({"flush " + std::to_string(flush) + " strategy " +
                                        std::to_string(strategy) + " level " +
                                        std::to_string(level),
                                    zlibDeflate(data, {.level = level,
                                                       .strategy = strategy,
                                                       .memLevel = 1 + level % 9,
                                                       .flushEvery = len,
                                                       .flush = flush}),
                                    data});
                }
        return made;
    }();
    return cases;
}

class InflateExample : public VariantTest {};

TEST_P(InflateExample, DecodesWhatZlibMakes) {
    for (const Case& c : zlibCases()) expectRight(c);
}

// A dynamic block whose end takes endBits bits, so that nearly all of the bit buffer is left over.
void literalsWithShortEnd(DeflateWriter& out, int literals, int endBits) {
    std::vector<int> lengths(258, 0);
    lengths[256] = endBits;
    lengths['A'] = endBits == 1 ? 2 : 1;
    lengths['B'] = endBits == 3 ? 2 : 3;
    lengths[257] = 3;
    out.dynamic(false, lengths, {1});
    for (int n = 0; n < literals; ++n) out.literal(n % 3 == 0 ? 'B' : 'A');
    out.endOfBlock();
}

// Every number of held bytes, of stored bytes up to more than those, of room that is left when the
// stored block begins, every position of its header in a byte.
TEST_P(InflateExample, StoredBlocksBehindShortHuffmanBlocks) {
    for (int endBits = 1; endBits <= 3; ++endBits)
        for (int literals = 3; literals < 64; ++literals)
            for (const int len : {0, 1, 2, 3, 4, 20}) {
                DeflateWriter out;
                for (const bool last : {false, true}) {
                    literalsWithShortEnd(out, literals, endBits);
                    out.stored(false, noise(len));
                    out.fixed(last);
                    for (const int distance : {1, 1 + len / 2, len + 1, literals + len})
                        out.match(5, distance);
                    out.endOfBlock();
                }
                const auto expected = zlibInflate(out.bytes());
                ASSERT_TRUE(expected.has_value());
                expectRight({std::to_string(literals) + " literals, " + std::to_string(len) +
                                 " stored, end of " + std::to_string(endBits) + " bits",
                             out.bytes(), expected->output});
            }
}

TEST_P(InflateExample, SaysWhatIsWrong) {
    const Bytes whole = zlibDeflate(textLike(3000));
    for (const Way& way : kWays) {
        for (std::size_t len = 0; len < whole.size(); len += 1 + len / 8)
            EXPECT_STREQ(inflated(way, {whole.begin(), whole.begin() + std::ptrdiff_t(len)}),
                         "ends too early, or cannot be read");
        DeflateWriter reserved, badLength, endless;
        reserved.header(true, 3);
        EXPECT_STREQ(inflated(way, reserved.bytes()), "corrupt: reserved block type");
        badLength.storedHeader(true, 7, 7);
        EXPECT_STREQ(inflated(way, badLength.bytes()), "corrupt");
        endless.dynamic(true, std::vector<int>(257, 0), {0});
        endless.bits(0, 64);
        EXPECT_STREQ(inflated(way, endless.bytes()), "corrupt: codes of no bits");
    }
}

ZEP_FOR_EACH_VARIANT(InflateExample);

}  // namespace
}  // namespace zep::test
