#include "process_sound.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "commands.h"
#include "progress.h"
#include "sound_to_wav.h"
#include "wav_output.h"

namespace mozep_program {
namespace {

WavFormat::Samples samplesLike(const SoundFile& in) {
    switch (in.subtype()) {
        case SF_FORMAT_PCM_S8:
        case SF_FORMAT_PCM_U8:
            return WavFormat::Samples::UInt8;
        case SF_FORMAT_PCM_16:
            return WavFormat::Samples::Int16;
        case SF_FORMAT_PCM_24:
            return WavFormat::Samples::Int24;
        case SF_FORMAT_PCM_32:
            return WavFormat::Samples::Int32;
        default:
            return WavFormat::Samples::Float32;
    }
}

class Channels {
public:
    Channels(int count, const std::function<std::unique_ptr<ChannelStream>()>& makeStream) {
        for (int c = 0; c < count; ++c) channels_.push_back({makeStream(), {}, {}});
    }

    long long lengthAfter(long long length) const {
        return channels_.front().stream->lengthAfter(length);
    }

    // The results are those of the calls of add() or finish() since the last results().
    void add(const std::vector<float>& frames) {
        const std::size_t step = channels_.size();
        for (std::size_t c = 0; c < step; ++c) {
            Channel& channel = channels_[c];
            channel.in.resize(frames.size() / step);
            for (std::size_t n = 0; n < channel.in.size(); ++n)
                channel.in[n] = frames[n * step + c];
            channel.stream->add(channel.in, channel.out);
        }
    }
    void finish() {
        for (Channel& channel : channels_) channel.stream->finish(channel.out);
    }
    const std::vector<float>& results() {
        const std::size_t step = channels_.size(), count = channels_.front().out.size();
        frames_.resize(count * step);
        for (std::size_t c = 0; c < step; ++c) {
            std::vector<float>& out = channels_[c].out;
            for (std::size_t n = 0; n < count; ++n) frames_[n * step + c] = out[n];
            out.clear();
        }
        return frames_;
    }

private:
    struct Channel {
        std::unique_ptr<ChannelStream> stream;
        std::vector<float> in, out;
    };
    std::vector<Channel> channels_;
    std::vector<float> frames_;
};

void requireFinite(const std::vector<float>& samples, const std::string& name) {
    if (!std::all_of(samples.begin(), samples.end(), [](float x) { return std::isfinite(x); }))
        throw Failure(name + ": holds samples that are not finite numbers");
}

}  // namespace

void processSound(const SoundJob& job, SoundFile& in,
                  const std::function<std::unique_ptr<ChannelStream>()>& makeStream) {
    const WavFormat format = wavLike(in, samplesLike(in), job.rate);
    Channels channels(in.channels(), makeStream);
    // What a header may claim beyond 2^45 is more than any file can hold.
    const long long frames =
        channels.lengthAfter(std::llround(std::min(in.declaredFrames(), 0x1p45)));
    WavOutput out(job.out, format, wavFrames(job.out, format, in.lengthIsKnown(), frames));
    Progress progress(in.declaredFrames());
    const std::size_t block = job.block * static_cast<std::size_t>(in.channels());
    std::vector<float> samples(block);
    while (in.readFrames(samples) > 0) {
        requireFinite(samples, job.in);
        channels.add(samples);
        out.write(channels.results());
        samples.resize(block);
        progress.reached(static_cast<double>(in.framesRead()));
    }
    if (in.framesRead() == 0) throw Failure(job.in + ": holds no samples");
    channels.finish();
    out.write(channels.results());
    const std::string shortfall = in.shortfall();
    out.commit();
    if (!shortfall.empty()) warn(job.command, job.in + ": is cut short: " + shortfall);
    if (out.limited() > 0)
        warn(job.command, job.out + ": " + std::to_string(out.limited()) +
                              " samples beyond full scale were limited");
}

}  // namespace mozep_program
