#pragma once

#include <zepsc.h>

#include <functional>
#include <string>
#include <vector>

namespace mozep_program {

// A codec of single samples at 8 kHz: 16-bit samples to codes, one a byte, and back.
struct SpeechCodec {
    const char* name;
    int bits;  // of a code
    Zep32s rate = 0;
};

// Encoders and decoders carry their state from call to call.
using SpeechEncoder = std::function<std::vector<Zep8u>(const std::vector<Zep16s>&)>;
using SpeechDecoder = std::function<std::vector<Zep16s>(const std::vector<Zep8u>&)>;

std::vector<std::string> speechCodecNames();
const SpeechCodec& speechCodec(const std::string& name);  // one of these

SpeechEncoder makeEncoder(const SpeechCodec& codec);
SpeechDecoder makeDecoder(const SpeechCodec& codec);

}  // namespace mozep_program
