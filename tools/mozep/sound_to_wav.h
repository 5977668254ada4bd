// What the subcommands that make a WAV file of a sound file have in common.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "sound_file.h"
#include "wav_header.h"

namespace mozep_program {

// The arguments IN and OUT.
void addSoundToWav(CLI::App& command, std::string& in, std::string& out);

// The channels of `in`, where they are one or two at the usual places even if it does not tell.
WavFormat wavLike(const SoundFile& in, WavFormat::Samples samples, int rate);

// What to declare to WavOutput for as many frames, of which a file whose length is not known has at
// most as many as fit. Throws Failure where they do not fit.
long long wavFrames(const std::string& out, const WavFormat& format, bool known, long long frames);

}  // namespace mozep_program
