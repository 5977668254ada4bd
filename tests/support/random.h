// Seeded random data. The seed is fixed unless ZEP_TEST_SEED is set, and a failing test prints it through SeedTrace.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>
#include <type_traits>

namespace zep::test {

inline std::uint64_t testSeed() {
    const char* text = std::getenv("ZEP_TEST_SEED");
    return text != nullptr ? std::strtoull(text, nullptr, 10) : 20110417u;
}

inline std::mt19937_64& rng() {
    static std::mt19937_64 engine{testSeed()};
    return engine;
}

// Integers over their whole range, floats uniform in [-1, 1), complex parts likewise.
template <class T>
T randomValue() {
    if constexpr (std::is_integral_v<T>) {
        return static_cast<T>(rng()());
    } else if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(std::uniform_real_distribution<double>(-1.0, 1.0)(rng()));
    } else {
        using Part = decltype(T::re);
        return T{randomValue<Part>(), randomValue<Part>()};
    }
}

template <class... Buffer>
void fillRandom(Buffer&... buffers) {
    const auto fill = [](auto& buffer) {
        for (auto& x : buffer) x = randomValue<std::remove_reference_t<decltype(x)>>();
    };
    (fill(buffers), ...);
}

}  // namespace zep::test
