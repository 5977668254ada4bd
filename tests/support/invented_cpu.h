// Puts an invented processor in place of the real one for the life of the object, and counts what
// it was asked.
#pragma once

#include <cstdint>
#include <map>

#include "core/cpu.h"

namespace zep::test {

class InventedCpu {
public:
    using Leaves = std::map<std::uint32_t, CpuidRegisters>;

    explicit InventedCpu(Leaves leaves) {
        leaves_ = std::move(leaves);
        queries_ = 0;
        cpuSource = &kSource;
    }
    ~InventedCpu() { cpuSource = &kHardwareCpu; }
    InventedCpu(const InventedCpu&) = delete;
    InventedCpu& operator=(const InventedCpu&) = delete;

    int queries() const { return queries_; }

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

private:
    static CpuidRegisters answer(std::uint32_t leaf, std::uint32_t) {
        ++queries_;
        const auto it = leaves_.find(leaf);
        return it == leaves_.end() ? CpuidRegisters{} : it->second;
    }
    static constexpr CpuSource kSource{answer, [](std::uint32_t) { return std::uint64_t{0}; }};

    inline static Leaves leaves_;
    inline static int queries_ = 0;
};

}  // namespace zep::test
