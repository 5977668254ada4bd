// Writes WAV files: a plain 44-byte header and interleaved samples.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <type_traits>
#include <vector>

namespace zep::test {

// A packed sample of 24 bits.
struct Int24 {
    std::uint8_t bytes[3];
    Int24() = default;
    explicit Int24(int value)
        : bytes{static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
                static_cast<std::uint8_t>(value >> 16)} {}
    int value() const {
        return bytes[0] | bytes[1] << 8 | static_cast<std::int8_t>(bytes[2]) * 65536;
    }
    bool operator==(const Int24&) const = default;
};

// T: std::uint8_t, std::int16_t, Int24, std::int32_t, float or double.
template <class T>
void writeWav(const std::string& name, const std::vector<T>& samples, int rate, int channels = 1) {
    std::ofstream file(name, std::ios::binary);
    const auto put = [&file](auto value) {
        file.write(reinterpret_cast<const char*>(&value), sizeof value);
    };
    const auto bytes = static_cast<std::uint32_t>(samples.size() * sizeof(T));
    const auto frameBytes = static_cast<std::uint16_t>(sizeof(T) * static_cast<unsigned>(channels));
    file << "RIFF";
    put(36 + bytes);
    file << "WAVEfmt ";
    put(std::uint32_t{16});
    put(static_cast<std::uint16_t>(std::is_floating_point_v<T> ? 3 : 1));
    put(static_cast<std::uint16_t>(channels));
    put(static_cast<std::uint32_t>(rate));
    put(static_cast<std::uint32_t>(rate * frameBytes));
    put(frameBytes);
    put(static_cast<std::uint16_t>(8 * sizeof(T)));
    file << "data";
    put(bytes);
    for (const T sample : samples) put(sample);
}

}  // namespace zep::test
