#include "sound_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

#include "commands.h"

namespace mozep_program {
namespace {

// A stream without an end mark has the largest length there is, or that divided by bytes.
constexpr sf_count_t kUnknownLength = SF_COUNT_MAX >> 16;

// sndfile cuts a declared length to that of the file, and tells so in its log alone, in lines like
// "data : 192000 (should be 95978)". The lengths of a whole file (RIFF, FORM) are not looked at: many
// programs get them wrong by a few bytes, and nothing is missing for it.
std::string cutData(SNDFILE* file) {
    char log[16384];
    const int length = sf_command(file, SFC_GET_LOG_INFO, log, sizeof log);
    std::istringstream lines(std::string(log, static_cast<std::size_t>(length < 0 ? 0 : length)));
    for (std::string line; std::getline(lines, line);) {
        char key[32];
        unsigned long long declared = 0, present = 0;
        if (std::sscanf(line.c_str(), " %31[^:]: %llu (should be %llu)", key, &declared,
                        &present) != 3)
            continue;
        const std::string name(key, std::strcspn(key, " "));
        const bool ofData =
            name == "data" || name == "SSND" || name == "Data" || name == "riff" || name == "Riff";
        if (ofData && declared > present)
            return "it declares " + std::to_string(declared) + " bytes, and " +
                   std::to_string(present) + " are there";
    }
    return {};
}

// The bits of WAVEFORMATEXTENSIBLE, of which the lowest belongs to the first channel.
constexpr int kSpeakers[] = {
    SF_CHANNEL_MAP_LEFT,
    SF_CHANNEL_MAP_RIGHT,
    SF_CHANNEL_MAP_CENTER,
    SF_CHANNEL_MAP_LFE,
    SF_CHANNEL_MAP_REAR_LEFT,
    SF_CHANNEL_MAP_REAR_RIGHT,
    SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER,
    SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER,
    SF_CHANNEL_MAP_REAR_CENTER,
    SF_CHANNEL_MAP_SIDE_LEFT,
    SF_CHANNEL_MAP_SIDE_RIGHT,
    SF_CHANNEL_MAP_TOP_CENTER,
    SF_CHANNEL_MAP_TOP_FRONT_LEFT,
    SF_CHANNEL_MAP_TOP_FRONT_CENTER,
    SF_CHANNEL_MAP_TOP_FRONT_RIGHT,
    SF_CHANNEL_MAP_TOP_REAR_LEFT,
    SF_CHANNEL_MAP_TOP_REAR_CENTER,
    SF_CHANNEL_MAP_TOP_REAR_RIGHT,
};

// 0 where the channels have other places, or stand in another order.
std::uint32_t speakerBits(const std::vector<int>& places) {
    std::uint32_t bits = 0;
    for (const int place : places) {
        const auto* const found = std::find(std::begin(kSpeakers), std::end(kSpeakers), place);
        if (found == std::end(kSpeakers)) return 0;
        const std::uint32_t bit = 1U << (found - kSpeakers);
        if (bits >= bit) return 0;
        bits |= bit;
    }
    return bits;
}

}  // namespace

SoundFile::SoundFile(const std::string& name, int channel) : name_(name), channel_(channel) {
    // Said here, since sndfile calls all of these "System error".
    struct stat status {};
    if (stat(name.c_str(), &status) != 0) throw Failure(name + ": " + std::strerror(errno));
    if (S_ISDIR(status.st_mode)) throw Failure(name + ": is a directory");
    if (!std::ifstream(name)) throw Failure(name + ": " + std::strerror(errno));
    if (status.st_size == 0 && S_ISREG(status.st_mode)) throw Failure(name + ": is empty");
    file_.reset(sf_open(name.c_str(), SFM_READ, &info_));
    if (file_ == nullptr) throw Failure(name + ": is no sound file that can be read");
    if (info_.channels < 1 || info_.samplerate < 1 || info_.frames < 1)
        throw Failure(name + ": holds no samples");
    if (channel > info_.channels)
        throw Failure(name + ": has no channel " + std::to_string(channel) + ", only " +
                      std::to_string(info_.channels));
}

std::size_t SoundFile::readInto(float* frames, std::size_t count) {
    const sf_count_t got = sf_readf_float(file_.get(), frames, static_cast<sf_count_t>(count));
    if (sf_error(file_.get()) != SF_ERR_NO_ERROR)
        throw Failure(name_ + ": " + sf_strerror(file_.get()));
    framesRead_ += got < 0 ? 0 : got;
    return static_cast<std::size_t>(got < 0 ? 0 : got);
}

std::size_t SoundFile::readFrames(std::vector<float>& interleaved) {
    const auto channels = static_cast<std::size_t>(info_.channels);
    const std::size_t count = readInto(interleaved.data(), interleaved.size() / channels);
    interleaved.resize(count * channels);
    return count;
}

std::size_t SoundFile::read(std::vector<float>& mono) {
    const auto channels = static_cast<std::size_t>(info_.channels);
    frames_.resize(mono.size() * channels);
    const std::size_t count = readInto(frames_.data(), mono.size());
    const std::size_t first = channel_ == 0 ? 0 : static_cast<std::size_t>(channel_ - 1);
    const std::size_t taken = channel_ == 0 ? channels : 1;
    for (std::size_t n = 0; n < count; ++n) {
        // In double, so that the mean of large samples is one.
        double sum = 0;
        for (std::size_t c = first; c < first + taken; ++c)
            sum += static_cast<double>(frames_[n * channels + c]);
        mono[n] = static_cast<float>(sum / static_cast<double>(taken));
        if (!std::isfinite(mono[n]))
            throw Failure(name_ + ": holds samples that are not finite numbers");
    }
    return count;
}

bool SoundFile::lengthIsKnown() const { return info_.frames < kUnknownLength; }

std::string SoundFile::encoding() const {
    SF_FORMAT_INFO info{};
    info.format = info_.format & SF_FORMAT_SUBMASK;
    if (sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info) != 0 || info.name == nullptr)
        return "unknown samples";
    return info.name;
}

std::uint32_t SoundFile::speakers() const {
    std::vector<int> map(static_cast<std::size_t>(info_.channels));
    const int bytes = info_.channels * static_cast<int>(sizeof(int));
    if (sf_command(file_.get(), SFC_GET_CHANNEL_MAP_INFO, map.data(), bytes) != SF_TRUE) return 0;
    return speakerBits(map);
}

std::string SoundFile::shortfall() const {
    std::string cut = cutData(file_.get());
    if (!cut.empty()) return cut;
    if (!lengthIsKnown()) return "it does not say where it ends";
    if (framesRead_ < info_.frames)
        return "it declares " + std::to_string(info_.frames) + " samples a channel, and " +
               std::to_string(framesRead_) + " are there";
    return {};
}

}  // namespace mozep_program
