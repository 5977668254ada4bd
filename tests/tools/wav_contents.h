// Reads a WAV file chunk by chunk: any channels, plain or extensible. What a strict reader would
// refuse fails the test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tools/wav_reader.h"

namespace zep::test {

struct WavContents {
    int format = 0, channels = 0, rate = 0, bits = 0;  // format: 1 integers, 3 floats
    bool extensible = false;
    std::uint32_t speakers = 0;
    long long fact = -1;
    std::string data;

    template <class T>
    std::vector<T> samples() const {
        EXPECT_EQ(bits, 8 * static_cast<int>(sizeof(T)));
        std::vector<T> s(data.size() / sizeof(T));
        std::memcpy(s.data(), data.data(), s.size() * sizeof(T));
        return s;
    }
};

inline void readFormat(const std::string& chunk, WavContents& wav) {
    constexpr int kExtensible = 0xFFFE;
    const auto word = [&](std::size_t at) { return fieldAt<std::uint16_t>(chunk, at); };
    const auto number = [&](std::size_t at) { return fieldAt<std::uint32_t>(chunk, at); };
    wav.extensible = word(0) == kExtensible;
    wav.format = wav.extensible ? word(24) : word(0);
    wav.channels = word(2);
    wav.rate = static_cast<int>(number(4));
    wav.bits = word(14);
    EXPECT_EQ(word(12), wav.channels * wav.bits / 8);
    EXPECT_EQ(number(8), number(4) * word(12));
    if (wav.extensible) {
        ASSERT_EQ(chunk.size(), 40u);
        EXPECT_EQ(word(16), 22);
        EXPECT_EQ(word(18), wav.bits);
        wav.speakers = number(20);
        EXPECT_EQ(chunk.substr(26), std::string("\0\0\0\0\x10\0\x80\0\0\xaa\0\x38\x9b\x71", 14));
    } else {
        EXPECT_EQ(chunk.size(), wav.format == 1 ? 16u : 18u);
        EXPECT_EQ(word(16), 0);
    }
}

inline WavContents wavContents(const std::string& bytes) {
    WavContents wav;
    EXPECT_EQ(bytes.substr(0, 4), "RIFF");
    EXPECT_EQ(fieldAt<std::uint32_t>(bytes, 4), bytes.size() - 8);
    EXPECT_EQ(bytes.size() % 2, 0u);
    EXPECT_EQ(bytes.substr(8, 4), "WAVE");
    for (std::size_t at = 12; at < bytes.size();) {
        const std::string name = bytes.substr(at, 4);
        const std::size_t size = fieldAt<std::uint32_t>(bytes, at + 4);
        const std::string chunk = bytes.substr(at + 8, size);
        EXPECT_EQ(chunk.size(), size) << name;
        if (name == "fmt ")
            readFormat(chunk, wav);
        else if (name == "fact")
            wav.fact = fieldAt<std::uint32_t>(chunk, 0);
        else if (name == "data")
            wav.data = chunk;
        else
            ADD_FAILURE() << name;
        at += 8 + size + size % 2;
    }
    EXPECT_EQ(wav.fact >= 0, wav.format == 3);
    return wav;
}

}  // namespace zep::test
