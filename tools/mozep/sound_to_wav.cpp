#include "sound_to_wav.h"

#include "commands.h"

namespace mozep_program {

void addSoundToWav(CLI::App& command, std::string& in, std::string& out) {
    command.add_option("IN", in, "sound file, of any kind that libsndfile reads")->required();
    command
        .add_option("OUT", out, "WAV file to write or replace, IN too; - is the standard output")
        ->required();
}

WavFormat wavLike(const SoundFile& in, WavFormat::Samples samples, int rate) {
    constexpr std::uint32_t kCentre = 4, kLeftAndRight = 3;
    WavFormat format{samples, rate, in.channels(), in.speakers()};
    if (format.speakers == 0 && format.channels <= 2)
        format.speakers = format.channels == 1 ? kCentre : kLeftAndRight;
    return format;
}

long long wavFrames(const std::string& out, const WavFormat& format, bool known, long long frames) {
    const long long most = longestWav(format);
    if (!known) return most;
    if (frames > most)
        throw Failure(out + ": would have " + std::to_string(frames) +
                      " samples a channel, of which a WAV file can hold " + std::to_string(most));
    return frames;
}

}  // namespace mozep_program
