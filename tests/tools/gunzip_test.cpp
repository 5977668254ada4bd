// mozep gunzip, run as a program: real files against gzip itself, hand-made containers, damage of
// all kinds.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "deflate/sample_data.h"
#include "deflate/zlib_peer.h"
#include "support/program.h"
#include "support/random.h"

namespace zep::test {
namespace {

namespace fs = std::filesystem;
using reference::DeflateWriter;

Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& part : parts) out.insert(out.end(), part.begin(), part.end());
    return out;
}

void appendNumber(Bytes& out, std::uint32_t value, int bytes) {
    for (int n = 0; n < bytes; ++n) out.push_back(static_cast<std::uint8_t>(value >> (8 * n)));
}

std::uint32_t crcOf(const Bytes& data) {
    return static_cast<std::uint32_t>(crc32(0, data.data(), static_cast<uInt>(data.size())));
}

Bytes gzipTrailer(const Bytes& data) {
    Bytes out;
    appendNumber(out, crcOf(data), 4);
    appendNumber(out, static_cast<std::uint32_t>(data.size()), 4);
    return out;
}

// Codes of all symbols that zlib allows, 286 and 30.
std::vector<int> manyLiterals() {
    std::vector<int> lengths(286, 8);
    std::fill_n(lengths.begin(), 60, 9);
    return lengths;
}
std::vector<int> manyDistances() {
    std::vector<int> lengths(30, 5);
    lengths[0] = lengths[1] = 4;
    return lengths;
}

const Bytes kPlainHeader{0x1F, 0x8B, 8, 0, 0, 0, 0, 0, 0, 3};

Bytes gzipped(const Bytes& data, int level = 6) {
    return joined({kPlainHeader, zlibDeflate(data, {.level = level}), gzipTrailer(data)});
}

Bytes zlibbed(const Bytes& data) {
    Bytes out = joined({{0x78, 0x9C}, zlibDeflate(data)});
    const auto sum =
        static_cast<std::uint32_t>(adler32(1, data.data(), static_cast<uInt>(data.size())));
    for (int n = 24; n >= 0; n -= 8) out.push_back(static_cast<std::uint8_t>(sum >> n));
    return out;
}

class GunzipTest : public testing::Test {
protected:
    void SetUp() override {
        directory_ = testing::TempDir() + "mozep_gunzip_" + std::to_string(getpid());
        fs::remove_all(directory_);
        fs::create_directory(directory_);
    }
    void TearDown() override { fs::remove_all(directory_); }

    std::string path(const std::string& name) const { return directory_ + "/" + name; }

    std::string write(const std::string& name, const Bytes& content) const {
        std::ofstream(path(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(content.data()),
                   static_cast<std::streamsize>(content.size()));
        return path(name);
    }
    static Bytes read(const std::string& file) {
        std::ifstream in(file, std::ios::binary);
        return Bytes(std::istreambuf_iterator<char>(in), {});
    }
    static ProgramResult run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {ZEP_PROGRAM, "gunzip"});
        return runProgram(arguments);
    }

    // Decompresses to a file and to the standard output; both must be the expected bytes.
    void expectContent(const Bytes& compressed, const Bytes& expected) const {
        const std::string file = write("in.gz", compressed);
        const ProgramResult toFile = run({file, "-o", path("out")});
        ASSERT_EQ(toFile.code, 0) << toFile.error;
        EXPECT_EQ(toFile.error, "");
        EXPECT_TRUE(read(path("out")) == expected);
        const ProgramResult toStdout = run({file, "--stdout"});
        EXPECT_EQ(toStdout.code, 0) << toStdout.error;
        EXPECT_TRUE(Bytes(toStdout.out.begin(), toStdout.out.end()) == expected);
    }

    // One line that says what is wrong, a code that is not 0, and no file left behind, under
    // whatever name.
    void expectFailure(const Bytes& compressed, const std::string& words) const {
        const std::string file = write("in.gz", compressed);
        const ProgramResult result = run({file, "-o", path("out")});
        EXPECT_EQ(result.code, 1) << result.error;
        EXPECT_TRUE(result.error.starts_with("mozep gunzip: " + file)) << result.error;
        EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
        EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
        for (const auto& entry : fs::directory_iterator(directory_)) EXPECT_EQ(entry.path(), file);
    }

private:
    std::string directory_;
};

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

TEST_F(GunzipTest, NamesTheOutputAfterTheInput) {
    const Bytes data = textLike(100);
    ASSERT_EQ(run({write("a.txt.gz", gzipped(data))}).code, 0);
    EXPECT_TRUE(read(path("a.txt")) == data);
    EXPECT_TRUE(fs::exists(path("a.txt.gz")));
    ASSERT_EQ(run({write("b.tgz", gzipped(data))}).code, 0);
    EXPECT_TRUE(read(path("b.tar")) == data);
    const ProgramResult unknown = run({write("c.bin", gzipped(data))});
    EXPECT_EQ(unknown.code, 1);
    EXPECT_NE(unknown.error.find("-o"), std::string::npos);
}

TEST_F(GunzipTest, KnowsExtensionsInCapitalLetters) {
    const Bytes data = textLike(100);
    for (const auto& [name, expected] : {std::pair{"a.txt.GZ", "a.txt"},
                                         {"b.Gz", "b"},
                                         {"c.TGZ", "c.TAR"},
                                         {"d.tgz", "d.tar"},
                                         {"e.ZLIB", "e"}}) {
        ASSERT_EQ(run({write(name, gzipped(data))}).code, 0) << name;
        EXPECT_TRUE(read(path(expected)) == data) << name;
    }
}

TEST_F(GunzipTest, ReadsTheStandardInput) {
    const Bytes data = textLike(100000);
    const std::string file = write("in.gz", gzipped(data));
    const auto piped = [&](const std::string& arguments) {
        return runProgram(
            {"/bin/sh", "-c", "cat '" + file + "' | '" ZEP_PROGRAM "' gunzip " + arguments});
    };
    for (const char* arguments : {"-", "- --stdout", "- -o -"}) {
        const ProgramResult result = piped(arguments);
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_TRUE(Bytes(result.out.begin(), result.out.end()) == data) << arguments;
    }
    EXPECT_EQ(piped("- -o '" + path("out") + "'").code, 0);
    EXPECT_TRUE(read(path("out")) == data);
    // What is wrong with it has a name.
    const ProgramResult empty = run({"-"});
    EXPECT_EQ(empty.code, 1);
    EXPECT_EQ(empty.error, "mozep gunzip: standard input: is empty\n");
}

TEST_F(GunzipTest, WritesTheTargetOfALink) {
    const Bytes data = textLike(100);
    const std::string file = write("a.gz", gzipped(data));
    fs::create_directory(path("deep"));
    write("deep/target", {'o', 'l', 'd'});
    fs::create_symlink("deep/target", path("near"));
    fs::create_symlink(path("near"), path("far"));
    fs::create_symlink("deep/new", path("dangling"));
    for (const auto& [link, target] : {std::pair{"far", "deep/target"}, {"dangling", "deep/new"}}) {
        const ProgramResult result = run({file, "-o", path(link)});
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_TRUE(fs::is_symlink(path(link)));
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path(target))));
        EXPECT_TRUE(read(path(target)) == data);
    }
    // A link in the place of the default name is not followed unasked.
    fs::create_symlink("deep/other", path("a"));
    EXPECT_EQ(run({file}).code, 1);
    EXPECT_FALSE(fs::exists(path("deep/other")));
    fs::create_symlink("circle", path("circle"));
    EXPECT_EQ(run({file, "-o", path("circle")}).code, 1);
}

TEST_F(GunzipTest, ReplacesAFileOnlyWhenTold) {
    const Bytes data = textLike(100);
    const std::string file = write("a.gz", gzipped(data));
    write("a", {'o', 'l', 'd'});
    EXPECT_EQ(run({file}).code, 1);
    EXPECT_EQ(read(path("a")), (Bytes{'o', 'l', 'd'}));
    EXPECT_EQ(run({file, "-f"}).code, 0);
    EXPECT_TRUE(read(path("a")) == data);
    write("b", {'o', 'l', 'd'});
    EXPECT_EQ(run({file, "-o", path("b")}).code, 0);
    EXPECT_TRUE(read(path("b")) == data);
    // A failure leaves the old file as it was.
    write("c", {'o', 'l', 'd'});
    EXPECT_EQ(run({write("bad.gz", {0x1F, 0x8B, 8, 0, 0, 0, 0, 0, 0, 3, 7}), "-o", path("c")}).code,
              1);
    EXPECT_EQ(read(path("c")), (Bytes{'o', 'l', 'd'}));
}

TEST_F(GunzipTest, SaysWhatStandsInTheWay) {
    const std::string file = write("a.gz", gzipped(textLike(10)));
    const auto expectLine = [&](const std::vector<std::string>& arguments, int code,
                                const std::string& words) {
        const ProgramResult result = run(arguments);
        EXPECT_EQ(result.code, code);
        EXPECT_TRUE(result.error.starts_with("mozep gunzip: ")) << result.error;
        EXPECT_NE(result.error.find(words), std::string::npos) << result.error;
        EXPECT_EQ(result.error.find('\n'), result.error.size() - 1) << result.error;
    };
    expectLine({path("none.gz")}, 1, "No such file");
    expectLine({path("."), "-o", path("x")}, 1, "is a directory");
    expectLine({file, "-o", path("no/such/folder")}, 1, "No such file");
    expectLine({file, "-o", path(".")}, 1, "is a directory");
    expectLine({}, 2, "FILE");
    expectLine({file, "--stdout", "-o", path("x")}, 2, "");
}

TEST_F(GunzipTest, OutputHasThePermissionsAndTheTimeOfTheInput) {
    for (const mode_t mode : {0600u, 0644u, 0440u, 0755u}) {
        const std::string file = write("a.gz", gzipped(textLike(10)));
        const timespec times[2] = {{1000000000, 5}, {1111111111, 123456789}};
        ASSERT_EQ(chmod(file.c_str(), mode), 0);
        ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
        ASSERT_EQ(run({file, "-f"}).code, 0);
        struct stat input {
        }, output{};
        ASSERT_EQ(stat(file.c_str(), &input), 0);
        ASSERT_EQ(stat(path("a").c_str(), &output), 0);
        EXPECT_EQ(output.st_mode, input.st_mode);
        EXPECT_EQ(output.st_mtim.tv_sec, 1111111111);
        EXPECT_EQ(output.st_mtim.tv_nsec, 123456789);
        fs::remove(file);
        fs::remove(path("a"));
    }
}

TEST_F(GunzipTest, OutputOfAPipeHasTheUsualPermissions) {
    const std::string file = write("a.gz", gzipped(textLike(10)));
    ASSERT_EQ(runProgram({"/bin/sh", "-c",
                          "umask 027; cat '" + file + "' | '" ZEP_PROGRAM "' gunzip - -o '" +
                              path("a") + "'"})
                  .code,
              0);
    struct stat output {};
    ASSERT_EQ(stat(path("a").c_str(), &output), 0);
    EXPECT_EQ(output.st_mode & 0777, 0640u);
}

// Stopped in the midst of its work, by a signal that a user or the system sends.
TEST_F(GunzipTest, LeavesNothingBehindWhenInterrupted) {
    const Bytes compressed = gzipped(noise(2'000'000));
    const auto files = [this] {
        return std::distance(fs::directory_iterator(path("")), fs::directory_iterator());
    };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGXCPU}) {
        const std::string fifo = path("in.gz");
        ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
        const pid_t program = fork();
        ASSERT_GE(program, 0);
        if (program == 0) {
            execl(ZEP_PROGRAM, "mozep", "gunzip", fifo.c_str(), "-o", path("out").c_str(), nullptr);
            _exit(127);
        }
        // More than its buffers hold, so that it has begun to write when all this has been read.
        const int pipe = open(fifo.c_str(), O_WRONLY | O_CLOEXEC);
        ASSERT_GE(pipe, 0);
        for (std::size_t at = 0; at < 1'500'000;) {
            const ssize_t done = ::write(pipe, compressed.data() + at, 1'500'000 - at);
            ASSERT_GT(done, 0);
            at += static_cast<std::size_t>(done);
        }
        EXPECT_EQ(files(), 2);  // the input and a partial output
        ASSERT_EQ(kill(program, signal), 0);
        int status = 0;
        ASSERT_EQ(waitpid(program, &status, 0), program);
        close(pipe);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        EXPECT_EQ(files(), 1);
        fs::remove(fifo);
    }
}

// The program that zeps/deflate.h prints.
TEST_F(GunzipTest, TheExampleDecompressesARawStream) {
    const Bytes data = textLike(100000);
    const std::string raw = write("raw", zlibDeflate(data, {.flushEvery = 777, .flush = Z_BLOCK}));
    EXPECT_EQ(runProgram({ZEP_INFLATE_EXAMPLE, raw, path("out")}).code, 0);
    EXPECT_TRUE(read(path("out")) == data);
    for (const auto& [input, output] : {std::pair{path("none"), path("out")},
                                        {raw, path("no/folder")},
                                        {raw, std::string("/dev/full")},
                                        {write("bad", {7}), path("out")}}) {
        const ProgramResult result = runProgram({ZEP_INFLATE_EXAMPLE, input, output});
        EXPECT_EQ(result.code, 1);
        EXPECT_TRUE(result.error.starts_with("inflate: ")) << result.error;
    }
}

}  // namespace
}  // namespace zep::test
