#include "gunzip_input.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "commands.h"

namespace mozep_program {

GunzipInput::GunzipInput(const std::string& name)
    : name_(name == "-" ? "standard input" : name), buffer_(kStepBack + kPiece) {
    next = buffer_.data() + kStepBack;
    file_ = name == "-" ? dup(STDIN_FILENO) : open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (file_ < 0 || fstat(file_, &status_) != 0) {
        const std::string reason = std::strerror(errno);
        if (file_ >= 0) close(file_);
        throw Failure(name_ + ": " + reason);
    }
    if (S_ISDIR(status_.st_mode)) {
        close(file_);
        throw Failure(name_ + ": is a directory");
    }
}

GunzipInput::~GunzipInput() { close(file_); }

bool GunzipInput::refill() {
    const auto kept = static_cast<std::size_t>(left);
    // Bytes already used that the decoder may step back to move along with those that are left.
    const auto back = std::min(kStepBack, static_cast<std::size_t>(next - buffer_.data()));
    std::memmove(buffer_.data() + kStepBack - back, next - back, back + kept);
    next = buffer_.data() + kStepBack;
    ssize_t got = 0;
    do got = read(file_, next + kept, std::min(kPiece, buffer_.size() - kStepBack - kept));
    while (got < 0 && errno == EINTR);
    if (got < 0) throw Failure(name_ + ": " + std::strerror(errno));
    left += static_cast<Zep32s>(got);
    read_ += static_cast<std::uint64_t>(got);
    return got > 0;
}

bool GunzipInput::reach(int count) {
    while (left < count)
        if (!refill()) return false;
    return true;
}

int GunzipInput::byte() {
    if (!reach(1)) return -1;
    --left;
    return *next++;
}

bool GunzipInput::onlyZerosLeft() {
    for (;;) {
        const int value = byte();
        if (value != 0) return value < 0;
    }
}

}  // namespace mozep_program
