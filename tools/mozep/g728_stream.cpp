#include "g728_stream.h"

#include <codec.h>

#include <memory>
#include <new>

namespace mozep_program {
namespace {

constexpr std::size_t kVector = 5;

}  // namespace

SpeechEncoder makeG728Encoder() {
    // Shared, since functions are copied; the coder itself may not move.
    const std::shared_ptr<G728Encoder> encoder(g728EncoderCreate(), g728EncoderFree);
    if (encoder == nullptr) throw std::bad_alloc();
    return [encoder](const std::vector<Zep16s>& samples) {
        std::vector<Zep16u> codes(samples.size() / kVector);
        for (std::size_t n = 0; n < codes.size(); ++n)
            codes[n] = static_cast<Zep16u>(g728Encode(encoder.get(), samples.data() + kVector * n));
        return codes;
    };
}

SpeechDecoder makeG728Decoder(bool postfilter) {
    const std::shared_ptr<G728Decoder> decoder(g728DecoderCreate(postfilter ? 1 : 0),
                                               g728DecoderFree);
    if (decoder == nullptr) throw std::bad_alloc();
    return [decoder](const std::vector<Zep16u>& codes) {
        std::vector<Zep16s> samples(codes.size() * kVector);
        for (std::size_t n = 0; n < codes.size(); ++n)
            g728Decode(decoder.get(), static_cast<Zep16s>(codes[n]), samples.data() + kVector * n);
        return samples;
    };
}

}  // namespace mozep_program
