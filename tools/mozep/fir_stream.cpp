#include "fir_stream.h"

#include <algorithm>

#include "library_status.h"

namespace mozep_program {
namespace {

// Long filters run in transforms where their rate stays, so much faster that most of their outputs may
// be thrown away: 1771 taps take 0.9 ns an input, their sums for every sixth output 6.4 ns (Zen 5,
// AVX-512). Transforms of the longest filters would take too much memory.
bool isThinned(std::size_t taps, int up, int down) {
    constexpr std::size_t kFewest = 256, kMost = 1 << 18;
    return up == 1 && down > 1 && taps >= kFewest && taps <= kMost;
}

// Inputs of one call: about so many of them or of its outputs, unless a single turn of the ratio has
// more. Transforms are of two to four times the length of the filter.
std::size_t inputsAtOnce(std::size_t taps, int up, int down) {
    constexpr std::size_t kUsual = 16384;
    const auto turn = static_cast<std::size_t>(down);
    if (isThinned(taps, up, down) || up == down) return std::max(kUsual, 4 * taps) / turn * turn;
    const std::size_t larger = static_cast<std::size_t>(std::max(up, down));
    return std::max<std::size_t>(kUsual / larger, 1) * turn;
}

}  // namespace

FirStream::FirStream(const std::vector<float>& taps, int up, int down, int delay)
    : up_(up),
      down_(down),
      thinned_(isThinned(taps.size(), up, down)),
      room_(inputsAtOnce(taps.size(), up, down)),
      phase_(delay % down),
      ahead_(delay / down) {
    ZepFIRState* filter = nullptr;
    const int length = static_cast<int>(taps.size());
    requireSuccess(thinned_ ? zepsFIRInitAlloc_32f(&filter, taps.data(), length, nullptr)
                            : zepsFIRMRInitAlloc_32f(&filter, taps.data(), length, up, 0, down,
                                                     phase_, nullptr));
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
    // Transforms at the same places however the stream is cut.
    if (turns == 0 || (thinned_ && waiting_.size() < room_)) return;
    appendResults(turns, out);
    const auto at = [](auto& values, std::size_t n) {
        return values.begin() + static_cast<std::ptrdiff_t>(n);
    };
    waiting_.erase(waiting_.begin(), at(waiting_, turns * down));
    const auto early = std::min(static_cast<std::size_t>(ahead_), count);
    out.erase(at(out, before), at(out, before + early));
    ahead_ -= static_cast<long long>(early);
    produced_ += static_cast<long long>(count - early);
}

void FirStream::appendResults(std::size_t turns, std::vector<float>& out) {
    const std::size_t before = out.size(), count = turns * static_cast<std::size_t>(up_);
    out.resize(before + count);
    float* const results = out.data() + before;
    if (!thinned_) {
        requireSuccess(
            zepsFIR_32f(waiting_.data(), results, static_cast<int>(turns), filter_.get()));
        return;
    }
    all_.resize(room_);
    const int inputs = static_cast<int>(room_);
    requireSuccess(zepsFIR_32f(waiting_.data(), all_.data(), inputs, filter_.get()));
    int made = 0, phase = phase_;
    requireSuccess(
        zepsSampleDown_32f(all_.data(), inputs, results, &made, static_cast<int>(down_), &phase));
}

}  // namespace mozep_program
