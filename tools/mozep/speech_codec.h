#pragma once

#include <zepsc.h>

#include <functional>
#include <string>
#include <vector>

#include "code_packing.h"

namespace mozep_program {

// A codec at 8 kHz: 16-bit samples to codes and back.
struct SpeechCodec {
    enum class Kind { ALaw, MuLaw, G726, G728 };
    const char* name;
    Kind kind;
    int bits;             // of a code
    Zep32s rate = 0;      // of G.726
    int codeSamples = 1;  // that a code stands for
    int frameCodes = 1;   // that are sent together
    PackingOrder order = PackingOrder::LowestFirst;

    int frameSamples() const { return codeSamples * frameCodes; }
};

// Encoders and decoders carry their state from call to call. Encoders take whole frames.
using SpeechEncoder = std::function<std::vector<Zep16u>(const std::vector<Zep16s>&)>;
using SpeechDecoder = std::function<std::vector<Zep16s>(const std::vector<Zep16u>&)>;

std::vector<std::string> speechCodecNames();
const SpeechCodec& speechCodec(const std::string& name);  // one of these

SpeechEncoder makeEncoder(const SpeechCodec& codec);
SpeechDecoder makeDecoder(const SpeechCodec& codec, bool postfilter);

}  // namespace mozep_program
