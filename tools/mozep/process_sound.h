#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "channel_stream.h"
#include "sound_file.h"

namespace mozep_program {

struct SoundJob {
    std::string command;  // that warnings name
    std::string in, out;  // files; "-" is the standard output
    int rate;             // of the output
    std::size_t block;    // frames that are read at once
};

// Sends each channel of `in`, which has been opened as job.in, through a stream of its own and writes
// the results to a WAV file, block by block. Integers of 8 to 32 bits and floats stay what they are,
// samples of any other kind become floats. Warns of samples that had to be limited, and of an input
// that is cut short. Throws Failure with the reason.
void processSound(const SoundJob& job, SoundFile& in,
                  const std::function<std::unique_ptr<ChannelStream>()>& makeStream);

}  // namespace mozep_program
