// Blocks of G.728 in exact integers, by their definitions: plain, slow, one value at a time.
#pragma once

#include <deque>
#include <vector>

namespace zep::reference {

using Int = __int128;
using Ints = std::vector<int>;

Int limited(Int v, int bits);     // to the range of a signed word
Int shifted(Int v, int left);     // v * 2^left, rounded down
int rounded16(Int v);             // high word of 32 bits, to nearest
int normaliser(Int v, int bits);  // left shifts that make v fit the bits exactly
int largest(const Ints& v);       // the element of largest magnitude

struct HybridWindowModel {
    Ints window;  // entry 0 weighs the newest sample
    int M, N, L, div;
    int halvings;  // a step of the recursive part loses 1 / 2^halvings
    Ints history = Ints(static_cast<std::size_t>(M + N + L));
    Ints exponents = div > 0 ? Ints(static_cast<std::size_t>((M + N + L) / div), 16) : Ints();
    Ints recursive = Ints(static_cast<std::size_t>(M + 1));
    int exponent = 31;

    // M + 1 lags; sets usable.
    Ints update(const Ints& samples, const Ints& newExponents, bool block, bool& usable);
};

struct LevinsonModel {
    Ints a;  // Q(scale)
    int reflect = 0, residual = 0, scale = 15;
    enum class End { Good, Failed, OutOfScale } end = End::Good;
    int failedAt = 0;
};
LevinsonModel levinsonFirst(const Ints& lags, int order);
// On a failure residual and scale keep what came in.
LevinsonModel levinsonContinue(const Ints& lags, int start, int end, LevinsonModel from);

struct VectorModel {
    int exponent = 16;
    Ints x = Ints(5);
};
// Newest vector first.
using PastModel = std::deque<VectorModel>;
VectorModel ringingModel(const Ints& a, const PastModel& past);
VectorModel restModel(const Ints& a, VectorModel excitation);
VectorModel speechModel(const VectorModel& ringing, const VectorModel& response);
int inQ2(int word, int exponent);

// Zero section b, pole section c, 10 each; memories newest first, brought up to date.
int poleZeroModel(const Ints& bc, int x, Ints& inputs, Ints& outputs);

struct SearchModel {
    int shape, gain, code;
};
Ints energiesModel(const std::vector<Ints>& shapes, const Ints& impulse);
SearchModel searchModel(const std::vector<Ints>& shapes, const Ints& target, const Ints& energies,
                        int rate);

struct PostfilterModel {
    Ints inputs = Ints(10), outputs = Ints(10);
    int gain = 16384;
    // x: kp past samples, then the 5 of the vector.
    Ints filter(int gl, int glb, int kp, int tilt, const Ints& coefficients, const Ints& x);
};

struct PitchModel {
    Ints decimated = Ints(60), past = Ints(3);
    int period = 50;
    int extract(const Ints& residual);  // 240, oldest first
};

}  // namespace zep::reference
