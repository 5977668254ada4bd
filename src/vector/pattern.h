// Byte patterns that repeat: the value of a fill or a mask, as 8 bytes.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zep::ZEP_VARIANT {

// Patterns: block<B>() in phase with the start, atOffset(n) the pattern n bytes further on.
struct Zeros {
    static constexpr std::size_t elementBytes = 1;
    template <class B>
    B block() const {
        return B::zero();
    }
    std::uint64_t word() const { return 0; }
    Zeros atOffset(std::size_t) const { return {}; }
};

template <std::size_t N>
struct Repeated {
    static constexpr std::size_t elementBytes = N;
    std::uint64_t value;

    template <class B>
    B block() const {
        return B::broadcast(value);
    }
    std::uint64_t word() const { return value; }
    Repeated atOffset(std::size_t n) const {
        return {std::rotr(value, static_cast<int>(8 * (n % 8)))};
    }
};

template <class T>
inline Repeated<sizeof(T)> repeated(T val) {
    std::uint64_t pattern = 0;
    std::memcpy(&pattern, &val, sizeof val);
    for (std::size_t n = sizeof val; n < sizeof pattern; n *= 2) pattern |= pattern << (8 * n);
    return {pattern};
}

}  // namespace zep::ZEP_VARIANT
