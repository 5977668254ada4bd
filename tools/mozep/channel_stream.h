#pragma once

#include <span>
#include <vector>

namespace mozep_program {

// What turns the samples of one channel, a stream that comes in pieces of any length, into others.
class ChannelStream {
public:
    virtual ~ChannelStream() = default;
    ChannelStream() = default;
    ChannelStream(const ChannelStream&) = delete;
    ChannelStream& operator=(const ChannelStream&) = delete;

    // Appends to `out` what the inputs so far determine.
    virtual void add(std::span<const float> in, std::vector<float>& out) = 0;
    // Appends the rest, when the stream has ended: lengthAfter() outputs in all.
    virtual void finish(std::vector<float>& out) = 0;
    // How many outputs `length` inputs make. For lengths below 2^46.
    virtual long long lengthAfter(long long length) const = 0;
};

}  // namespace mozep_program
