// G.728 at 16 kbit/s, by the coder of examples/g728_codec: codes of 10 bits for 5 samples each.
#pragma once

#include "speech_codec.h"

namespace mozep_program {

SpeechEncoder makeG728Encoder();
SpeechDecoder makeG728Decoder(bool postfilter);

}  // namespace mozep_program
