#include "code_packing.h"

namespace mozep_program {

// What waits stands in the lowest bits of pending_, the older ones below or above the newer.
void CodePacker::pack(const std::vector<std::uint16_t>& codes, std::vector<std::uint8_t>& bytes) {
    for (const unsigned code : codes) {
        if (order_ == PackingOrder::LowestFirst)
            pending_ |= code << waiting_;
        else
            pending_ = pending_ << bits_ | code;
        for (waiting_ += bits_; waiting_ >= 8; waiting_ -= 8) {
            if (order_ == PackingOrder::LowestFirst) {
                bytes.push_back(static_cast<std::uint8_t>(pending_));
                pending_ >>= 8;
            } else {
                bytes.push_back(static_cast<std::uint8_t>(pending_ >> (waiting_ - 8)));
            }
        }
        pending_ &= order_ == PackingOrder::LowestFirst ? ~0U : (1U << waiting_) - 1;
    }
}

void CodePacker::finish(std::vector<std::uint8_t>& bytes) {
    const int fill = order_ == PackingOrder::LowestFirst ? 0 : 8 - waiting_;
    if (waiting_ > 0) bytes.push_back(static_cast<std::uint8_t>(pending_ << fill));
    waiting_ = 0;
    pending_ = 0;
}

std::vector<std::uint16_t> unpackCodes(const std::vector<std::uint8_t>& bytes, int bits,
                                       PackingOrder order) {
    std::vector<std::uint16_t> codes;
    codes.reserve(bytes.size() * 8 / static_cast<std::size_t>(bits));
    const unsigned mask = (1U << bits) - 1;
    unsigned pending = 0;
    int waiting = 0;
    for (const unsigned byte : bytes) {
        if (order == PackingOrder::LowestFirst)
            pending |= byte << waiting;
        else
            pending = pending << 8 | byte;
        for (waiting += 8; waiting >= bits; waiting -= bits) {
            if (order == PackingOrder::LowestFirst) {
                codes.push_back(static_cast<std::uint16_t>(pending & mask));
                pending >>= bits;
            } else {
                codes.push_back(static_cast<std::uint16_t>(pending >> (waiting - bits) & mask));
            }
        }
    }
    return codes;
}

}  // namespace mozep_program
