#include "fir_stream.h"

#include <algorithm>

#include "library_status.h"

namespace mozep_program {
namespace {

// Inputs of one call: about so many of them or of its outputs, unless a single turn of the ratio has
// more. At one rate long filters run in transforms of two to four times their length.
std::size_t inputsAtOnce(int taps, int up, int down) {
    constexpr int kUsual = 16384;
    if (up == 1 && down == 1)
        return std::max<std::size_t>(kUsual, 4 * static_cast<std::size_t>(taps));
    const int turns = std::max(kUsual / std::max(up, down), 1);
    return static_cast<std::size_t>(turns) * static_cast<std::size_t>(down);
}

}  // namespace

FirStream::FirStream(const std::vector<float>& taps, int up, int down, int delay)
    : up_(up),
      down_(down),
      room_(inputsAtOnce(static_cast<int>(taps.size()), up, down)),
      ahead_(delay / down) {
    ZepFIRState* filter = nullptr;
    requireSuccess(zepsFIRMRInitAlloc_32f(&filter, taps.data(), static_cast<int>(taps.size()), up,
                                          0, down, delay % down, nullptr));
    filter_.reset(filter);
    waiting_.reserve(room_);
}

void FirStream::add(std::span<const float> in, std::vector<float>& out) {
    received_ += static_cast<long long>(in.size());
    while (!in.empty()) {
        const auto taken = in.first(std::min(in.size(), room_ - waiting_.size()));
        waiting_.insert(waiting_.end(), taken.begin(), taken.end());
        in = in.subspan(taken.size());
        filterWaiting(out);
    }
}

void FirStream::finish(std::vector<float>& out) {
    const long long total = lengthAfter(received_);
    while (produced_ < total) {
        waiting_.resize(room_);
        filterWaiting(out);
    }
    out.resize(out.size() - static_cast<std::size_t>(produced_ - total));
    produced_ = total;
}

// As much of the inputs that wait as the filter can take.
void FirStream::filterWaiting(std::vector<float>& out) {
    const auto up = static_cast<std::size_t>(up_), down = static_cast<std::size_t>(down_);
    const std::size_t turns = waiting_.size() / down, count = turns * up, before = out.size();
    if (turns == 0) return;
    out.resize(before + count);
    requireSuccess(
        zepsFIR_32f(waiting_.data(), out.data() + before, static_cast<int>(turns), filter_.get()));
    const auto at = [](auto& values, std::size_t n) {
        return values.begin() + static_cast<std::ptrdiff_t>(n);
    };
    waiting_.erase(waiting_.begin(), at(waiting_, turns * down));
    const auto early = std::min(static_cast<std::size_t>(ahead_), count);
    out.erase(at(out, before), at(out, before + early));
    ahead_ -= static_cast<long long>(early);
    produced_ += static_cast<long long>(count - early);
}

}  // namespace mozep_program
