// What the tests of the G.728 blocks share.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "reference/g728_model.h"
#include "speech/data_files.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/variant.h"
#include "zeps.h"

namespace zep::test {

using reference::Ints;

// Words at any address, against an unreadable page.
class WordBuffer {
public:
    explicit WordBuffer(int len, int skew = 0) : memory_(2 * len, Edge::Back, skew), len_(len) {}
    explicit WordBuffer(const Ints& values, int skew = 0)
        : WordBuffer(static_cast<int>(values.size()), skew) {
        for (std::size_t n = 0; n < values.size(); ++n) {
            const auto v = static_cast<Zep16s>(values[n]);
            std::memcpy(memory_.data() + 2 * n, &v, 2);
        }
    }
    Zep16s* data() { return reinterpret_cast<Zep16s*>(memory_.data()); }
    Ints values() const {
        Ints v;
        for (int n = 0; n < len_; ++n) {
            Zep16s word;
            std::memcpy(&word, memory_.data() + 2 * n, 2);
            v.push_back(word);
        }
        return v;
    }

private:
    GuardedBuffer<std::uint8_t> memory_;
    int len_;
};

// A state in memory of exactly its size, at an odd address.
template <class State>
class StateMemory {
public:
    explicit StateMemory(int bytes) : memory_(bytes, Edge::Back, 1) {}
    State* get() { return reinterpret_cast<State*>(memory_.data()); }
    // Its first words.
    Ints words(int count) const {
        Ints v;
        for (int n = 0; n < count; ++n) {
            Zep16s word;
            std::memcpy(&word, memory_.data() + 2 * n, 2);
            v.push_back(word);
        }
        return v;
    }
    bool isZero() const {
        return std::all_of(memory_.data(), memory_.data() + memory_.size(),
                           [](auto b) { return b == 0; });
    }

private:
    GuardedBuffer<std::uint8_t> memory_;
};

// Words of a random loudness: the whole range, or any number of bits.
inline Ints randomWords(int count) {
    const int shift = randomValue<std::uint8_t>() % 20;
    Ints v;
    for (int n = 0; n < count; ++n) {
        const int extremes[] = {-32768, 32767, 0};
        const int w = randomValue<Zep16s>();
        v.push_back(shift < 15 ? w >> shift : shift == 15 ? extremes[w & 1] : shift == 16 ? 0 : w);
    }
    return v;
}

inline Ints numbers(const std::vector<std::string>& row) {
    Ints v;
    for (const std::string& field : row) v.push_back(std::stoi(field));
    return v;
}

// count elements from `from` on, which moves behind them.
inline Ints take(const Ints& row, int& from, int count) {
    const Ints part(row.begin() + from, row.begin() + from + count);
    from += count;
    return part;
}

}  // namespace zep::test
