#include "progress.h"

#include <unistd.h>

#include <cstdio>

namespace mozep_program {

using namespace std::chrono_literals;

Progress::Progress(double total)
    : total_(total),
      wanted_(total > 0 && isatty(STDERR_FILENO) != 0),
      next_(Clock::now() + 500ms) {}

Progress::~Progress() {
    if (shown_) std::fputs("\r     \r", stderr);
}

void Progress::reached(double done) {
    if (!wanted_ || Clock::now() < next_) return;
    std::fprintf(stderr, "\r%3.0f %%", 100 * done / total_);
    shown_ = true;
    next_ = Clock::now() + 100ms;
}

}  // namespace mozep_program
