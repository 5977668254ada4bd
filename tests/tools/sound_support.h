// What the tests of commands that process sound share: tones, and samples of all formats.
#pragma once

#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <type_traits>
#include <vector>

#include "tools/wav_contents.h"
#include "tools/wav_file.h"

namespace zep::test {

// One channel's samples, relative to full scale.
using Sound = std::vector<double>;

inline Sound tone(double Hz, int rate, std::size_t length, double amplitude = 1) {
    Sound x(length);
    for (std::size_t n = 0; n < length; ++n)
        x[n] = amplitude *
               std::cos(2 * std::numbers::pi * std::fmod(Hz * static_cast<double>(n), rate) / rate);
    return x;
}

template <class T>
inline constexpr double kFullScale = std::is_floating_point_v<T>
                                         ? 1
                                         : static_cast<double>(std::int64_t{1}
                                                               << (8 * sizeof(T) - 1));

template <class T>
T coded(double x) {
    if constexpr (std::is_floating_point_v<T>)
        return static_cast<T>(x);
    else
        return static_cast<T>(static_cast<int>(std::lround(x * kFullScale<T>)) +
                              (std::is_same_v<T, std::uint8_t> ? 128 : 0));
}
template <class T>
double decoded(T x) {
    if constexpr (std::is_same_v<T, Int24>)
        return x.value() / kFullScale<T>;
    else if constexpr (std::is_same_v<T, std::uint8_t>)
        return (x - 128) / kFullScale<T>;
    else
        return static_cast<double>(x) / kFullScale<T>;
}

// Channels of one length.
template <class T>
void writeSound(const std::string& name, const std::vector<Sound>& channels, int rate) {
    std::vector<T> frames;
    for (std::size_t n = 0; n < channels.front().size(); ++n)
        for (const Sound& channel : channels) frames.push_back(coded<T>(channel[n]));
    writeWav(name, frames, rate, static_cast<int>(channels.size()));
}

template <class T>
std::vector<Sound> channelsOf(const WavContents& wav) {
    std::vector<Sound> channels(static_cast<std::size_t>(wav.channels));
    std::size_t c = 0;
    for (const T& sample : wav.samples<T>()) {
        channels[c].push_back(decoded(sample));
        c = (c + 1) % channels.size();
    }
    return channels;
}

// The largest difference, `edge` samples away from both ends.
inline double deviation(const Sound& x, const Sound& y, std::size_t edge) {
    EXPECT_EQ(x.size(), y.size());
    EXPECT_GT(x.size(), 2 * edge);
    double largest = 0;
    for (std::size_t n = edge; n + edge < std::min(x.size(), y.size()); ++n)
        largest = std::max(largest, std::abs(x[n] - y[n]));
    return largest;
}

// The most memory that any program took which this one has seen end, in bytes; at least what this one
// had when it started that.
inline long long mostMemoryOfPrograms() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss * 1024LL;
}

}  // namespace zep::test
