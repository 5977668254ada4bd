// The tables of a transform of any length. All angles of one come from a full circle of roots, made
// for the occasion.
#pragma once

#include "transform/dft_plan.h"
#include "transform/dft_spec.h"

namespace zep::ZEP_VARIANT::dft {

// Memory from the library's allocator, by count; null where there is none or an int cannot say it.
template <class P>
P* allocate(std::size_t count) {
    const std::size_t bytes = count * sizeof(P);
    if (bytes > 0x7FFFFFFF) return nullptr;
    return static_cast<P*>(zepMalloc(static_cast<int>(bytes)));
}

// W[k] = exp(-2*pi*i*k/T), k = 0 .. T-1, in pairs of parts, times a scale near to 1 and rounded once;
// owned.
template <class T>
class Roots {
public:
    explicit Roots(std::int64_t T0, long double scale = 1);
    ~Roots() {
        if (w_ != nullptr) zepFree(w_);
    }
    Roots(const Roots&) = delete;
    Roots& operator=(const Roots&) = delete;

    bool missing() const { return w_ == nullptr; }
    std::int64_t length() const { return length_; }
    T re(std::int64_t k) const { return w_[2 * k]; }
    T im(std::int64_t k) const { return w_[2 * k + 1]; }

private:
    std::int64_t length_;
    T* w_;
};

// Tables of the passes, for len points; false where memory is short.
template <class T>
bool buildPasses(DftObject<T>& spec, int len, const Factors& factors);
// The real passes of an odd length.
bool buildRealPasses(DftObject<float>& spec, const Factors& factors);

template <class T>
bool buildDirect(DftObject<T>& spec, int len);
bool buildFold(DftObject<float>& spec);
template <class T>
bool buildChirp(DftObject<T>& spec, int len);

// Bytes of scratch of the mixed-radix route.
template <class T>
std::size_t mixedRadixScratch(int len, const Factors& factors);

}  // namespace zep::ZEP_VARIANT::dft
