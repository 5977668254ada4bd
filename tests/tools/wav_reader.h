// Reads the WAV files that the program writes, field by field.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace zep::test {

inline std::string fileContents(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A copy of the bytes from at on; zeros where there are none.
template <class T>
T fieldAt(const std::string& bytes, std::size_t at) {
    T value{};
    if (at + sizeof value <= bytes.size()) std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

// The samples of a file of one channel, whose header must be right to the byte. T: std::int16_t or
// float.
template <class T>
std::vector<T> wavSamples(const std::string& bytes, int rate) {
    constexpr bool floats = std::is_floating_point_v<T>;
    constexpr std::size_t dataAt = floats ? 58 : 44;
    EXPECT_GE(bytes.size(), dataAt);
    if (bytes.size() < dataAt) return {};
    EXPECT_EQ(bytes.substr(0, 4), "RIFF");
    EXPECT_EQ(fieldAt<std::uint32_t>(bytes, 4), bytes.size() - 8);
    EXPECT_EQ(bytes.substr(8, 8), "WAVEfmt ");
    EXPECT_EQ(fieldAt<std::uint32_t>(bytes, 16), floats ? 18u : 16u);
    EXPECT_EQ(fieldAt<std::uint16_t>(bytes, 20), floats ? 3 : 1);
    EXPECT_EQ(fieldAt<std::uint16_t>(bytes, 22), 1);
    EXPECT_EQ(fieldAt<std::uint32_t>(bytes, 24), static_cast<std::uint32_t>(rate));
    EXPECT_EQ(fieldAt<std::uint32_t>(bytes, 28), static_cast<std::uint32_t>(rate) * sizeof(T));
    EXPECT_EQ(fieldAt<std::uint16_t>(bytes, 32), sizeof(T));
    EXPECT_EQ(fieldAt<std::uint16_t>(bytes, 34), 8 * sizeof(T));
    std::vector<T> samples((bytes.size() - dataAt) / sizeof(T));
    if (floats) {
        EXPECT_EQ(fieldAt<std::uint16_t>(bytes, 36), 0);
        EXPECT_EQ(bytes.substr(38, 4), "fact");
        EXPECT_EQ(fieldAt<std::uint32_t>(bytes, 42), 4u);
        EXPECT_EQ(fieldAt<std::uint32_t>(bytes, 46), samples.size());
    }
    EXPECT_EQ(bytes.substr(dataAt - 8, 4), "data");
    EXPECT_EQ(fieldAt<std::uint32_t>(bytes, dataAt - 4), samples.size() * sizeof(T));
    std::memcpy(samples.data(), bytes.data() + dataAt, samples.size() * sizeof(T));
    return samples;
}

}  // namespace zep::test
