// Puts an invented processor in place of the real one for the life of the object, and counts what
// it was asked. What the library remembers of processors is forgotten before and after.
#pragma once

#include <cstdint>
#include <map>
#include <utility>

#include "core/cache_size.h"
#include "core/cpu.h"
#include "core/features.h"

namespace zep::test {

// Bits of leaf 1.
namespace leaf1 {
inline constexpr std::uint32_t kMmx = 1u << 23, kSse = 1u << 25, kSse2 = 1u << 26,
                               kHyperThreading = 1u << 28;  // EDX
inline constexpr std::uint32_t kSse3 = 1u << 0, kPclmulqdq = 1u << 1, kSsse3 = 1u << 9,
                               kSse41 = 1u << 19, kSse42 = 1u << 20, kMovbe = 1u << 22,
                               kAes = 1u << 25, kOsxsave = 1u << 27, kAvx = 1u << 28;  // ECX
}  // namespace leaf1

// What an invented processor is made of.
struct InventedState {
    using Leaves = std::map<std::uint32_t, CpuidRegisters>;

    Leaves leaves;
    std::map<std::uint32_t, Leaves> subleaves;
    std::uint64_t xcr0 = 0;
    std::uint32_t mxcsrFeatureMask = 0xFFFF;
    std::uint64_t countsPerSecond = 1000, step = 1000, counter = 0;
    int queries = 0;
};

class InventedCpu {
    using State = InventedState;
    inline static State state_;

public:
    using Leaves = InventedState::Leaves;

    explicit InventedCpu(Leaves leaves) {
        state_ = State{};
        state_.leaves = std::move(leaves);
        install(&kSource);
    }
    ~InventedCpu() { install(&kHardwareCpu); }
    InventedCpu(const InventedCpu&) = delete;
    InventedCpu& operator=(const InventedCpu&) = delete;

    // From then on the leaf answers by sub-leaf, and with zeros for those that were not set.
    InventedCpu& set(std::uint32_t leaf, std::uint32_t subleaf, CpuidRegisters r) {
        state_.subleaves[leaf][subleaf] = r;
        return *this;
    }
    InventedCpu& xcr0(std::uint64_t value) { return put(&State::xcr0, value); }
    InventedCpu& mxcsrFeatureMask(std::uint32_t value) {
        return put(&State::mxcsrFeatureMask, value);
    }
    // A counter of so many counts a second that moves by one step at each reading of the clock.
    InventedCpu& clock(std::uint64_t countsPerSecond, std::uint64_t step, std::uint64_t start = 0) {
        state_.countsPerSecond = countsPerSecond;
        state_.step = step;
        state_.counter = start;
        return *this;
    }

    int queries() const { return state_.queries; }

    static CpuidRegisters intelVendor(std::uint32_t maxLeaf) {
        return {maxLeaf, 0x756E6547, 0x6C65746E, 0x49656E69};
    }
    static CpuidRegisters amdVendor(std::uint32_t maxLeaf) {
        return {maxLeaf, 0x68747541, 0x444D4163, 0x69746E65};
    }
    // Leaf 2 with the one descriptor.
    static CpuidRegisters descriptor(std::uint8_t key) {
        return {0x01u | std::uint32_t{key} << 8, 0, 0, 0};
    }
    // Leaf 1 EAX.
    static std::uint32_t signature(std::uint32_t family, std::uint32_t model) {
        const std::uint32_t base = family < 15 ? family : 15;
        return (family - base) << 20 | (model >> 4) << 16 | base << 8 | (model & 15) << 4;
    }

private:
    template <class T>
    InventedCpu& put(T State::*field, T value) {
        state_.*field = value;
        return *this;
    }

    static void install(const CpuSource* source) {
        cpuSource = source;
        resetFeatureCache();
        resetCacheSize();
    }

    static CpuidRegisters find(const Leaves& leaves, std::uint32_t key) {
        const auto it = leaves.find(key);
        return it == leaves.end() ? CpuidRegisters{} : it->second;
    }

    static CpuidRegisters answer(std::uint32_t leaf, std::uint32_t subleaf) {
        ++state_.queries;
        const auto it = state_.subleaves.find(leaf);
        return it == state_.subleaves.end() ? find(state_.leaves, leaf) : find(it->second, subleaf);
    }

    static constexpr CpuSource kSource{
        answer,
        [](std::uint32_t) { return state_.xcr0; },
        [] { return state_.counter; },
        [] {
            state_.counter += state_.step;
            return static_cast<std::int64_t>(state_.counter / state_.countsPerSecond);
        },
        [] { return state_.mxcsrFeatureMask; },
    };
};

}  // namespace zep::test
