// Scratch of one execution: the caller's buffer, aligned, or memory of this call's own.
#pragma once

#include "transform/fft_spec.h"

namespace zep::ZEP_VARIANT::fft {

class Scratch {
public:
    // buffer holds 32 bytes more than `bytes`, for its alignment.
    Scratch(Zep8u* buffer, std::int32_t bytes) {
        if (bytes <= 0) return;
        if (buffer != nullptr) {
            // To a cache line where that costs no more than those 32 bytes.
            Zep8u* line = alignUp(buffer, kLine);
            memory_ = line - buffer <= std::ptrdiff_t{kObjectAlignment} ? line : alignUp(buffer);
        } else {
            memory_ = owned_ = zepMalloc(bytes);
            missing_ = owned_ == nullptr;
        }
    }
    ~Scratch() {
        if (owned_ != nullptr) zepFree(owned_);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    bool missing() const { return missing_; }
    template <class T>
    T* as() const {
        return static_cast<T*>(memory_);
    }

private:
    void* memory_ = nullptr;
    void* owned_ = nullptr;
    bool missing_ = false;
};

}  // namespace zep::ZEP_VARIANT::fft
