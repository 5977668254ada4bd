// mozep gunzip, run as a program: real files against gzip itself, hand-made containers, damage of
// all kinds.
#include "gunzip_support.h"
#include "support/random.h"

namespace zep::test {
namespace {

using reference::DeflateWriter;

TEST_F(GunzipTest, DecompressesGzipAndZlibFiles) {
    for (const Sample& sample : samples(300000)) {
        SCOPED_TRACE(sample.name);
        for (const int level : {0, 1, 6, 9})
            expectContent(gzipped(sample.data, level), sample.data);
        expectContent(zlibbed(sample.data), sample.data);
    }
    expectContent(gzipped({}), {});
    expectContent(zlibbed({}), {});
}

TEST_F(GunzipTest, MoreThanAnyBuffer) {
    const Bytes text = textLike(5'000'000);
    expectContent(gzipped(text), text);
    // Highly compressible: a byte of input makes a thousand.
    expectContent(gzipped(zeros(8'000'000), 9), zeros(8'000'000));
    // Hardly compressible: stored blocks, more of them than fit the input buffer.
    const Bytes random = noise(3'000'000);
    expectContent(gzipped(random), random);
}

TEST_F(GunzipTest, AgreesWithGzipOnRealFiles) {
    int files = 0;
    for (const std::string name :
         {"/usr/bin/ls", "/usr/include/zlib.h", "/usr/share/sounds/alsa/Noise.wav"}) {
        const Bytes content = read(name);
        if (content.empty()) continue;
        ++files;
        write("real", content);
        for (const char* level : {"-1", "-9"}) {
            ASSERT_EQ(runProgram({"/bin/gzip", "-kf", level, path("real")}).code, 0);
            const ProgramResult theirs = runProgram({"/bin/gzip", "-dc", path("real.gz")});
            const ProgramResult ours = run({path("real.gz"), "--stdout"});
            EXPECT_EQ(ours.code, 0) << ours.error;
            EXPECT_TRUE(ours.out == theirs.out) << name;
            EXPECT_TRUE(Bytes(ours.out.begin(), ours.out.end()) == content) << name;
        }
    }
    EXPECT_GT(files, 0);
}

TEST_F(GunzipTest, EveryOptionalHeaderField) {
    const Bytes data = textLike(500), body = zlibDeflate(data), trailer = gzipTrailer(data);
    for (int flags = 0; flags < 32; ++flags) {
        Bytes header{0x1F, 0x8B, 8, static_cast<std::uint8_t>(flags), 1, 2, 3, 4, 2, 255};
        if ((flags & 4) != 0) {
            appendNumber(header, 300, 2);
            header.insert(header.end(), 300, 0x55);
        }
        for (const int text : {8, 16})
            if ((flags & text) != 0) header = joined({header, {'n', 'a', 'm', 'e', 0}});
        if ((flags & 2) != 0) appendNumber(header, crcOf(header) & 0xFFFF, 2);
        SCOPED_TRACE(flags);
        expectContent(joined({header, body, trailer}), data);
    }
}

TEST_F(GunzipTest, SeveralMembersAndPadding) {
    const Bytes a = textLike(1000), b = noise(70000), c;
    expectContent(joined({gzipped(a), gzipped(b), gzipped(c), gzipped(a, 0)}),
                  joined({a, b, c, a}));
    expectContent(joined({gzipped(a), zeros(1)}), a);
    expectContent(joined({gzipped(a), gzipped(b), zeros(400000)}), joined({a, b}));
    expectContent(joined({zlibbed(a), zeros(511)}), a);
    expectContent(joined({zlibbed(a), zlibbed(b), zlibbed(c), zlibbed(a), zeros(2)}),
                  joined({a, b, c, a}));
}

// Each with a checksum over its header, which begins anew.
TEST_F(GunzipTest, SeveralMembersWithChecksumsOfTheirHeaders) {
    const Bytes a = textLike(100), b = textLike(200);
    Bytes header{0x1F, 0x8B, 8, 2, 0, 0, 0, 0, 0, 3};
    appendNumber(header, crcOf(header) & 0xFFFF, 2);
    expectContent(
        joined({header, zlibDeflate(a), gzipTrailer(a), header, zlibDeflate(b), gzipTrailer(b)}),
        joined({a, b}));
}

TEST_F(GunzipTest, WarnsOfOtherDataBehindAndKeepsTheOutput) {
    const Bytes data = textLike(50);
    for (const Bytes& garbage : {Bytes{'x'}, joined({zeros(100), {1}}), Bytes{0x1F}, noise(300000)})
        for (const bool gzip : {true, false}) {
            const std::string file =
                write("in.gz", joined({gzip ? gzipped(data) : zlibbed(data), {'#'}, garbage}));
            const ProgramResult result = run({file, "-o", path("out")});
            EXPECT_EQ(result.code, 0);
            EXPECT_EQ(result.error, "mozep gunzip: " + file +
                                        ": other data behind the compressed data is ignored\n");
            EXPECT_TRUE(read(path("out")) == data);
        }
}

// A block that fills the output buffer but for a few bytes and ends with a short code, then a stored
// block shorter than what the decoder holds: what it writes too many and takes back must not have
// been passed on in between.
TEST_F(GunzipTest, StoredBlocksWithLittleRoomLeft) {
    constexpr int kRoom = 262144;
    for (int endBits = 1; endBits <= 3; ++endBits)
        for (int left = 1; left <= 4; ++left)
            for (int phase = 0; phase < 8; ++phase) {
                std::vector<int> lengths(286, 0);
                lengths[256] = endBits;
                lengths['A'] = endBits == 1 ? 2 : 1;
                lengths['B'] = endBits == 3 ? 2 : 3;
                lengths[285] = 3;
                DeflateWriter out;
                out.dynamic(false, lengths, {1});
                // Literals of different lengths move the end of the block through the bits.
                int made = 1 + phase;
                out.literal('A');
                for (int n = 0; n < phase; ++n) out.literal('B');
                for (; made + 258 <= kRoom - left; made += 258) out.match(258, 1);
                for (; made < kRoom - left; ++made) out.literal('A');
                out.endOfBlock();
                const int len = 1 + phase % 3;
                out.stored(false, noise(len));
                out.fixed(true);
                out.match(30, len + 2);
                out.endOfBlock();
                const auto expected = zlibInflate(out.bytes());
                ASSERT_TRUE(expected.has_value());
                SCOPED_TRACE(std::to_string(left) + " left, end of " + std::to_string(endBits) +
                             " bits, phase " + std::to_string(phase));
                const std::string file = write(
                    "in.gz", joined({kPlainHeader, out.bytes(), gzipTrailer(expected->output)}));
                const ProgramResult result = run({file, "--stdout"});
                ASSERT_EQ(result.code, 0) << result.error;
                ASSERT_TRUE(Bytes(result.out.begin(), result.out.end()) == expected->output);
            }
}

// A stored block right behind a Huffman block: whole bytes of it may be in the decoder's bit buffer
// already, and those do not enter its history. The matches behind it need them.
TEST_F(GunzipTest, StoredBlocksBehindShortHuffmanBlocks) {
    for (const bool dynamic : {false, true})
        for (const int literals : {0, 1, 2, 3, 50, 1000})
            for (const int len : {1, 2, 3, 4, 5, 7, 20, 300, 40000}) {
                DeflateWriter out;
                for (const bool final : {false, true}) {
                    if (dynamic)
                        out.dynamic(false, manyLiterals(), manyDistances());
                    else
                        out.fixed(false);
                    for (int n = 0; n < literals; ++n) out.literal(n & 0xFF);
                    out.endOfBlock();
                    out.stored(false, noise(len));
                    out.fixed(final);
                    for (const int distance : {len, 1, 1 + len / 2, len}) out.match(258, distance);
                    out.endOfBlock();
                }
                const auto expected = zlibInflate(out.bytes());
                ASSERT_TRUE(expected.has_value());
                SCOPED_TRACE(std::to_string(literals) + " literals, " + std::to_string(len) +
                             " stored");
                const std::string file = write(
                    "in.gz", joined({kPlainHeader, out.bytes(), gzipTrailer(expected->output)}));
                const ProgramResult result = run({file, "--stdout"});
                ASSERT_EQ(result.code, 0) << result.error;
                ASSERT_TRUE(Bytes(result.out.begin(), result.out.end()) == expected->output);
            }
}

// An empty stored block as the last one: bytes of the trailer may be in the bit buffer and do not
// come back.
TEST_F(GunzipTest, AnEmptyStoredBlockAtTheEnd) {
    for (const bool dynamic : {false, true})
        for (int literals = 0; literals < 12; ++literals) {
            DeflateWriter out;
            if (dynamic)
                out.dynamic(false, manyLiterals(), manyDistances());
            else
                out.fixed(false);
            for (int n = 0; n < literals; ++n) out.literal(n);
            out.endOfBlock();
            out.stored(true, {});
            Bytes expected(static_cast<std::size_t>(literals));
            for (int n = 0; n < literals; ++n)
                expected[static_cast<std::size_t>(n)] = static_cast<std::uint8_t>(n);
            const Bytes member = joined({kPlainHeader, out.bytes(), gzipTrailer(expected)});
            expectContent(member, expected);
            expectContent(joined({member, member, zeros(3)}), joined({expected, expected}));
        }
}

TEST_F(GunzipTest, RandomStreams) {
    for (int n = 0; n < 60; ++n) {
        const RandomStream s = randomStream(1 + n % 8, true);
        const auto expected = zlibInflate(s.stream);
        ASSERT_TRUE(expected.has_value());
        const Bytes body(s.stream.begin(),
                         s.stream.begin() + static_cast<std::ptrdiff_t>(expected->consumed));
        SCOPED_TRACE(n);
        expectContent(joined({kPlainHeader, body, gzipTrailer(expected->output)}),
                      expected->output);
    }
}

TEST_F(GunzipTest, RefusesWhatIsNoCompressedFile) {
    expectFailure({}, "is empty");
    expectFailure({0x1F}, "too short");
    expectFailure({'h', 'e', 'l', 'l', 'o'}, "neither gzip nor zlib");
    expectFailure({0x1F, 0x8C, 8, 0}, "neither gzip nor zlib");
    expectFailure({0x1F, 0x8B, 7, 0, 0, 0, 0, 0, 0, 0}, "method");
    expectFailure({0x1F, 0x8B, 8, 0x20, 0, 0, 0, 0, 0, 0}, "flags");
    expectFailure({0x78, 0xBB, 0, 0, 0, 0}, "dictionary");
}

TEST_F(GunzipTest, RefusesAHeaderWithABadChecksum) {
    const Bytes data = textLike(50);
    Bytes header{0x1F, 0x8B, 8, 2, 0, 0, 0, 0, 0, 3};
    appendNumber(header, (crcOf(header) & 0xFFFF) ^ 1, 2);
    expectFailure(joined({header, zlibDeflate(data), gzipTrailer(data)}), "header");
}

TEST_F(GunzipTest, ReportsEveryTruncation) {
    const Bytes whole = gzipped(textLike(600));
    for (std::size_t length = 2; length < whole.size(); length += 3) {
        SCOPED_TRACE(length);
        expectFailure(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)),
                      "ends too early");
    }
    const Bytes stream = zlibbed(noise(300));
    for (std::size_t length = 2; length < stream.size(); length += 7)
        expectFailure(Bytes(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(length)),
                      "ends too early");
}

TEST_F(GunzipTest, FindsEveryFlippedBitThatGzipFinds) {
    const Bytes whole = gzipped(textLike(400));
    for (std::size_t bit = 0; bit < 8 * whole.size(); bit += 19) {
        Bytes damaged = whole;
        damaged[bit / 8] ^= static_cast<std::uint8_t>(1u << (bit % 8));
        write("in.gz", damaged);
        const ProgramResult theirs = runProgram({"/bin/gzip", "-t", path("in.gz")});
        SCOPED_TRACE(bit);
        if (theirs.code == 0) {
            EXPECT_EQ(run({path("in.gz"), "--stdout"}).code, 0);
        } else {
            expectFailure(damaged, "");
        }
    }
}

TEST_F(GunzipTest, ReportsEachKindOfCorruption) {
    const Bytes data = textLike(300);
    const auto container = [&](const DeflateWriter& out) {
        return joined({kPlainHeader, out.bytes(), Bytes(32, 0x5A), gzipTrailer(data)});
    };
    DeflateWriter reserved, badLength, badSymbol, badDistance, endless, wrongSum;
    reserved.header(true, 3);
    expectFailure(container(reserved), "block type");
    badLength.storedHeader(true, 7, 7);
    expectFailure(container(badLength), "stored block");
    badSymbol.fixed(true);
    badSymbol.literalSymbol(287);
    expectFailure(container(badSymbol), "invalid code");
    badDistance.fixed(true);
    badDistance.literalSymbol(257);
    badDistance.distanceSymbol(30);
    expectFailure(container(badDistance), "invalid code");
    endless.dynamic(true, std::vector<int>(257, 0), {0});
    expectFailure(container(endless), "endless output");
    wrongSum.fixed(true);
    wrongSum.endOfBlock();
    expectFailure(container(wrongSum), "checksum");
}

}  // namespace
}  // namespace zep::test
