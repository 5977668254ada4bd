// Leaf 2 reports its caches as a heap of one-byte descriptors, in any order. Each register with bit
// 31 clear holds four, but AL is the number of times the leaf must be read (1 on every processor
// that still has it). The table below runs from large caches to small ones, so the first hit is the
// last level, whatever else is described.
#include "core/cache_descriptors.h"

namespace zep {
namespace {

struct Descriptor {
    std::uint8_t key;
    std::int32_t bytes;
};

constexpr std::int32_t kKiB = 1024;
constexpr std::int32_t kMiB = 1024 * kKiB;

constexpr Descriptor kDescriptors[] = {
    {0xEC, 24 * kMiB},  {0xEB, 18 * kMiB},  {0x4D, 16 * kMiB},  {0xEA, 12 * kMiB},
    {0x4C, 12 * kMiB},  {0xE4, 8 * kMiB},   {0xDE, 8 * kMiB},   {0x4B, 8 * kMiB},
    {0x47, 8 * kMiB},   {0x4E, 6 * kMiB},   {0x4A, 6 * kMiB},   {0xE3, 4 * kMiB},
    {0xDD, 4 * kMiB},   {0xD8, 4 * kMiB},   {0x49, 4 * kMiB},   {0x29, 4 * kMiB},
    {0x46, 4 * kMiB},   {0x48, 3 * kMiB},   {0xE2, 2 * kMiB},   {0xDC, 2 * kMiB},
    {0xD7, 2 * kMiB},   {0xD2, 2 * kMiB},   {0x25, 2 * kMiB},   {0x7D, 2 * kMiB},
    {0x85, 2 * kMiB},   {0x45, 2 * kMiB},   {0xD6, 1 * kMiB},   {0xD1, 1 * kMiB},
    {0x23, 1 * kMiB},   {0x87, 1 * kMiB},   {0x7C, 1 * kMiB},   {0x78, 1 * kMiB},
    {0x84, 1 * kMiB},   {0x44, 1 * kMiB},   {0xD0, 512 * kKiB}, {0x22, 512 * kKiB},
    {0x7B, 512 * kKiB}, {0x80, 512 * kKiB}, {0x86, 512 * kKiB}, {0x3E, 512 * kKiB},
    {0x7F, 512 * kKiB}, {0x83, 512 * kKiB}, {0x43, 512 * kKiB}, {0x3D, 384 * kKiB},
    {0x21, 256 * kKiB}, {0x7A, 256 * kKiB}, {0x82, 256 * kKiB}, {0x3C, 256 * kKiB},
    {0x3F, 256 * kKiB}, {0x42, 256 * kKiB}, {0x3A, 192 * kKiB}, {0x79, 128 * kKiB},
    {0x39, 128 * kKiB}, {0x3B, 128 * kKiB}, {0x41, 128 * kKiB},
};

// The registers that hold descriptors, packed in order. The search looks at offsets count down to
// 1: with EAX present these are all bytes but AL, its count being one short; without it offset 0
// stays out.
struct PackedDescriptors {
    std::uint8_t bytes[17] = {};  // one more than four registers, for offset 16
    int size = 0;
    int count = 0;

    void append(std::uint32_t reg, int descriptors) {
        constexpr std::uint32_t kHoldsNoDescriptors = 0x80000000;
        if ((reg & kHoldsNoDescriptors) != 0) return;
        for (int i = 0; i < 4; ++i) bytes[size++] = static_cast<std::uint8_t>(reg >> (8 * i));
        count += descriptors;
    }

    bool holds(std::uint8_t key) const {
        for (int offset = count; offset >= 1; --offset)
            if (bytes[offset] == key) return true;
        return false;
    }
};

}  // namespace

std::int32_t describedCacheBytes(const CpuidRegisters& leaf2) {
    if ((leaf2.eax & 0xFF) != 1) return kNoCacheDescriptor;
    PackedDescriptors packed;
    packed.append(leaf2.eax, 3);
    packed.append(leaf2.ebx, 4);
    packed.append(leaf2.ecx, 4);
    packed.append(leaf2.edx, 4);
    for (const Descriptor& d : kDescriptors)
        if (packed.holds(d.key)) return d.bytes;
    return kNoCacheDescriptor;
}

std::int32_t probeDescribedCacheBytes() {
    return zepCpuIsGenuineIntel() ? describedCacheBytes(zepCpuid(2)) : kNoCacheDescriptor;
}

std::int32_t probeDescribedCacheBytesPerProcessor() {
    const std::int32_t bytes = probeDescribedCacheBytes();
    if (bytes <= 0 || zepCpuid(0).eax < 4) return bytes;
    const std::uint32_t logicalProcessors = (zepCpuid(4).eax >> 26) + 1;
    return bytes / static_cast<std::int32_t>(logicalProcessors);
}

}  // namespace zep
