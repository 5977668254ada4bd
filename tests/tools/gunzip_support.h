// Containers of Deflate streams made by hand, and the program's runs on them.
#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "deflate/sample_data.h"
#include "deflate/zlib_peer.h"
#include "tools/program_test.h"

namespace zep::test {

namespace fs = std::filesystem;

inline Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& part : parts) out.insert(out.end(), part.begin(), part.end());
    return out;
}

inline void appendNumber(Bytes& out, std::uint32_t value, int bytes) {
    for (int n = 0; n < bytes; ++n) out.push_back(static_cast<std::uint8_t>(value >> (8 * n)));
}

inline std::uint32_t crcOf(const Bytes& data) {
    return static_cast<std::uint32_t>(crc32(0, data.data(), static_cast<uInt>(data.size())));
}

inline Bytes gzipTrailer(const Bytes& data) {
    Bytes out;
    appendNumber(out, crcOf(data), 4);
    appendNumber(out, static_cast<std::uint32_t>(data.size()), 4);
    return out;
}

// Codes of all symbols that zlib allows, 286 and 30.
inline std::vector<int> manyLiterals() {
    std::vector<int> lengths(286, 8);
    std::fill_n(lengths.begin(), 60, 9);
    return lengths;
}
inline std::vector<int> manyDistances() {
    std::vector<int> lengths(30, 5);
    lengths[0] = lengths[1] = 4;
    return lengths;
}

inline const Bytes kPlainHeader{0x1F, 0x8B, 8, 0, 0, 0, 0, 0, 0, 3};

inline Bytes gzipped(const Bytes& data, int level = 6) {
    return joined({kPlainHeader, zlibDeflate(data, {.level = level}), gzipTrailer(data)});
}

inline Bytes zlibbed(const Bytes& data) {
    Bytes out = joined({{0x78, 0x9C}, zlibDeflate(data)});
    const auto sum =
        static_cast<std::uint32_t>(adler32(1, data.data(), static_cast<uInt>(data.size())));
    for (int n = 24; n >= 0; n -= 8) out.push_back(static_cast<std::uint8_t>(sum >> n));
    return out;
}

class GunzipTest : public FolderTest {
protected:
    GunzipTest() : FolderTest("gunzip") {}

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
        for (const auto& entry : fs::directory_iterator(directory())) EXPECT_EQ(entry.path(), file);
    }
};

}  // namespace zep::test
