// What the tests of the movement functions share: lengths, and the comparison of bytes at any
// address.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/invented_cpu.h"
#include "support/random.h"

namespace zep::test {

using Bytes = std::vector<std::uint8_t>;

inline Bytes randomBytes(std::size_t n) {
    Bytes bytes(n);
    for (auto& b : bytes) b = static_cast<std::uint8_t>(rng()());
    return bytes;
}

// 1 to 70 and the neighbourhood of every size at which some variant changes its method; in bytes.
// Whole elements only.
inline std::vector<int> byteLengths(int elementBytes) {
    std::vector<int> lengths;
    const auto add = [&](int bytes) {
        if (bytes % elementBytes == 0) lengths.push_back(bytes);
    };
    for (int n = 1; n <= 70 * elementBytes && n <= 300; ++n) add(n);
    for (const int around : {128, 256, 512, 1024, 2048, 4096, 8192})
        for (int n = around - 9; n <= around + 9; ++n)
            if (n > 300 || n > 70 * elementBytes) add(n);
    return lengths;
}

template <class T>
void expectBytes(const T* actual, const std::uint8_t* expected, std::size_t bytes,
                 const char* what) {
    const auto* a = reinterpret_cast<const std::uint8_t*>(actual);
    if (std::memcmp(a, expected, bytes) == 0) return;
    std::size_t n = 0;
    while (a[n] == expected[n]) ++n;
    ADD_FAILURE() << what << ": byte " << n << " of " << bytes << " is " << int{a[n]} << ", not "
                  << int{expected[n]};
}

// An Intel processor with a cache of 128 KiB, as leaf 2 and leaf 4 tell.
inline InventedCpu smallCacheCpu(std::uint32_t logicalProcessors) {
    constexpr std::uint32_t kUnified = 3, kWays = 8, kLineBytes = 64, kSets = 256;
    static_assert(kWays * kLineBytes * kSets == 128 << 10);
    return InventedCpu({{0, InventedCpu::intelVendor(4)},
                        {2, InventedCpu::descriptor(0x41)},
                        {4,
                         {(logicalProcessors - 1) << 26 | kUnified,
                          (kWays - 1) << 22 | (kLineBytes - 1), kSets - 1, 0}}});
}

// A destination between two margins, for "nothing outside was written" where a guard page would be
// too far away.
class Framed {
public:
    static constexpr std::size_t kMargin = 96;

    Framed(std::size_t bytes, std::size_t skew)
        : storage_(randomBytes(bytes + skew + 2 * kMargin + 64)), bytes_(bytes) {
        const auto start = reinterpret_cast<std::uintptr_t>(storage_.data()) + kMargin;
        offset_ = (64 - start % 64) % 64 + kMargin + skew;
        before_ = storage_;
    }
    std::uint8_t* data() { return storage_.data() + offset_; }
    const std::uint8_t* original() const { return before_.data() + offset_; }

    // True where everything but the bytes themselves is as it was.
    bool frameIntact() const {
        const std::size_t end = offset_ + bytes_;
        return std::memcmp(storage_.data(), before_.data(), offset_) == 0 &&
               std::memcmp(storage_.data() + end, before_.data() + end, storage_.size() - end) == 0;
    }

private:
    Bytes storage_, before_;
    std::size_t bytes_, offset_ = 0;
};

}  // namespace zep::test
