// Scratch of one execution: the caller's buffer, aligned, or memory of this call's own.
#pragma once

#include "transform/fft_spec.h"

namespace zep::ZEP_VARIANT {

class FftScratch {
public:
    FftScratch(Zep8u* buffer, std::int32_t bytes) {
        if (bytes <= 0) return;
        if (buffer != nullptr) {
            memory_ = alignUp(buffer);
        } else {
            memory_ = owned_ = zepMalloc(bytes);
            missing_ = owned_ == nullptr;
        }
    }
    ~FftScratch() {
        if (owned_ != nullptr) zepFree(owned_);
    }
    FftScratch(const FftScratch&) = delete;
    FftScratch& operator=(const FftScratch&) = delete;

    bool missing() const { return missing_; }
    float* floats() const { return static_cast<float*>(memory_); }

private:
    void* memory_ = nullptr;
    void* owned_ = nullptr;
    bool missing_ = false;
};

}  // namespace zep::ZEP_VARIANT
