#pragma once

#include <chrono>

namespace mozep_program {

// A line on the standard error that counts percent, on a terminal only, and only when the work
// takes long enough to wonder. Erased when it ends.
class Progress {
public:
    explicit Progress(double total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void reached(double done);

private:
    using Clock = std::chrono::steady_clock;
    double total_;
    bool shown_ = false, wanted_;
    Clock::time_point next_;
};

}  // namespace mozep_program
