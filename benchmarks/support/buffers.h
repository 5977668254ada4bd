// Arrays for benchmarks: aligned to a cache line, filled with seeded data; ours and the peers get
// the same ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <random>
#include <type_traits>

namespace zep::bench {

inline constexpr std::size_t kLineBytes = 64;

template <class T>
class AlignedArray {
public:
    explicit AlignedArray(std::size_t size, std::size_t skewElements = 0)
        : block_(static_cast<T*>(
              ::operator new ((size + skewElements) * sizeof(T), std::align_val_t{kLineBytes}))),
          data_(block_.get() + skewElements),
          size_(size) {}

    T* data() { return data_; }
    const T* data() const { return data_; }
    std::size_t size() const { return size_; }
    T& operator[](std::size_t n) { return data_[n]; }
    const T& operator[](std::size_t n) const { return data_[n]; }
    T* begin() { return data_; }
    T* end() { return data_ + size_; }

private:
    struct Release {
        void operator()(T* p) const { ::operator delete (p, std::align_val_t{kLineBytes}); }
    };
    std::unique_ptr<T, Release> block_;
    T* data_;
    std::size_t size_;
};

// Uniform in [low, high); both parts of a complex element.
template <class T>
void fillUniform(AlignedArray<T>& array, double low, double high, std::uint64_t seed = 20110417) {
    std::mt19937_64 engine{seed};
    std::uniform_real_distribution<double> value{low, high};
    for (T& x : array) {
        if constexpr (std::is_arithmetic_v<T>) {
            x = static_cast<T>(value(engine));
        } else {
            using Part = decltype(T::re);
            x = T{static_cast<Part>(value(engine)), static_cast<Part>(value(engine))};
        }
    }
}

}  // namespace zep::bench
