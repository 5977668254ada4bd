// Codes of a few bits in bytes, as RFC 3551 packs them. G.726 (4.5.4): the first code in the lowest
// bits of the first byte, the next above it. G.728 (4.5.8): the first code in the highest bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace mozep_program {

enum class PackingOrder { LowestFirst, HighestFirst };

class CodePacker {
public:
    // bits: 2 to 16
    CodePacker(int bits, PackingOrder order) : bits_(bits), order_(order) {}
    // Appends the bytes that codes fill; the rest waits for the next call.
    void pack(const std::vector<std::uint16_t>& codes, std::vector<std::uint8_t>& bytes);
    // Appends the last byte, filled up with zeros, unless the codes end with a byte.
    void finish(std::vector<std::uint8_t>& bytes);

private:
    int bits_, waiting_ = 0;
    PackingOrder order_;
    unsigned pending_ = 0;
};

// As many codes as the bytes hold whole.
std::vector<std::uint16_t> unpackCodes(const std::vector<std::uint8_t>& bytes, int bits,
                                       PackingOrder order);

}  // namespace mozep_program
