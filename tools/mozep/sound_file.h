#pragma once

#include <sndfile.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace mozep_program {

// A sound file that is read from its beginning to its end. Throws Failure with the reason.
class SoundFile {
public:
    // channel: from 1 on; 0 averages all of them.
    SoundFile(const std::string& name, int channel);

    int rate() const { return info_.samplerate; }
    int channels() const { return info_.channels; }
    // As the file declares it: not a promise.
    double declaredFrames() const { return static_cast<double>(info_.frames); }
    bool lengthIsKnown() const;
    // How its samples are stored: one of sndfile's SF_FORMAT_PCM_16 and so on.
    int subtype() const { return info_.format & SF_FORMAT_SUBMASK; }
    // The same in words.
    std::string encoding() const;
    // The loudspeakers of the channels as in WavFormat, 0 where the file does not tell.
    std::uint32_t speakers() const;
    long long framesRead() const { return framesRead_; }

    // The next samples of the channel, or of the mean of all; at most mono.size(), fewer at the end
    // only. An infinity or a not-a-number is a Failure.
    std::size_t read(std::vector<float>& mono);

    // The next frames of all channels, as many as whole ones fit; interleaved takes their size. Any
    // value is passed on.
    std::size_t readFrames(std::vector<float>& interleaved);

    // When all has been read: how the file falls short of what it declares; empty if it does not.
    std::string shortfall() const;

private:
    struct Close {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };
    std::string name_;
    int channel_;
    SF_INFO info_{};
    std::unique_ptr<SNDFILE, Close> file_;
    std::size_t readInto(float* frames, std::size_t count);

    std::vector<float> frames_;
    long long framesRead_ = 0;
};

}  // namespace mozep_program
