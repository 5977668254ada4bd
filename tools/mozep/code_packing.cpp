#include "code_packing.h"

namespace mozep_program {

void CodePacker::pack(const std::vector<std::uint8_t>& codes, std::vector<std::uint8_t>& bytes) {
    for (const unsigned code : codes) {
        pending_ |= code << waiting_;
        waiting_ += bits_;
        if (waiting_ < 8) continue;
        bytes.push_back(static_cast<std::uint8_t>(pending_));
        pending_ >>= 8;
        waiting_ -= 8;
    }
}

void CodePacker::finish(std::vector<std::uint8_t>& bytes) {
    if (waiting_ > 0) bytes.push_back(static_cast<std::uint8_t>(pending_));
    waiting_ = 0;
    pending_ = 0;
}

std::vector<std::uint8_t> unpackCodes(const std::vector<std::uint8_t>& bytes, int bits) {
    std::vector<std::uint8_t> codes;
    codes.reserve(bytes.size() * 8 / static_cast<std::size_t>(bits));
    unsigned pending = 0;
    int waiting = 0;
    for (const unsigned byte : bytes) {
        pending |= byte << waiting;
        waiting += 8;
        for (; waiting >= bits; waiting -= bits) {
            codes.push_back(static_cast<std::uint8_t>(pending & ((1U << bits) - 1)));
            pending >>= bits;
        }
    }
    return codes;
}

}  // namespace mozep_program
