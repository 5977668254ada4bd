// Codes of 2 to 5 bits in bytes as RFC 3551, 4.5.4 packs them: the first code in the lowest bits of
// the first byte, the next above it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace mozep_program {

class CodePacker {
public:
    explicit CodePacker(int bits) : bits_(bits) {}
    // Appends the bytes that codes fill; the rest waits for the next call.
    void pack(const std::vector<std::uint8_t>& codes, std::vector<std::uint8_t>& bytes);
    // Appends the last byte, filled up with zeros, unless the codes end with a byte.
    void finish(std::vector<std::uint8_t>& bytes);

private:
    int bits_, waiting_ = 0;
    unsigned pending_ = 0;
};

// As many codes as the bytes hold whole.
std::vector<std::uint8_t> unpackCodes(const std::vector<std::uint8_t>& bytes, int bits);

}  // namespace mozep_program
