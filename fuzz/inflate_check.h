#pragma once

#include <cstdint>
#include <span>

namespace zep::fuzz {

// Decodes what the input says in the way it says, and aborts with a message when the decoder
// disagrees with the model or with zlib, or makes no progress.
//
// Input: byte 0 chooses the variant, byte 1 how input and output are cut, bytes 2 and 3 seed random
// cuts; the rest is the raw Deflate stream. With fewer than four bytes there is nothing to do.
void checkInflate(std::span<const std::uint8_t> input);

inline constexpr int kChoiceBytes = 4;

}  // namespace zep::fuzz
