#include "output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "commands.h"

namespace mozep_program {
namespace {

// Signals by which a user or the system ends a program that means to tidy up.
constexpr int kEnding[] = {SIGINT, SIGTERM, SIGHUP, SIGXCPU, SIGXFSZ};

// What a signal removes; written only while signals are held back.
char partialFile[PATH_MAX];

extern "C" void removePartialFile(int signal) {
    if (partialFile[0] != '\0') unlink(partialFile);
    // The handler has been reset: this ends the program as the signal would have done.
    raise(signal);
}

// Between these a temporary name and what a signal removes may differ.
class SignalsHeld {
public:
    SignalsHeld() {
        sigset_t ending;
        sigemptyset(&ending);
        for (const int signal : kEnding) sigaddset(&ending, signal);
        sigprocmask(SIG_BLOCK, &ending, &before_);
    }
    ~SignalsHeld() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t before_;
};

void removeOnSignals(const std::string& name) {
    std::snprintf(partialFile, sizeof partialFile, "%s", name.c_str());
    for (const int signal : kEnding) {
        struct sigaction action {};
        // One that is ignored, as by nohup, stays so.
        if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
        action.sa_handler = removePartialFile;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(signal, &action, nullptr);
    }
}

std::size_t lengthOfFolder(const std::string& name) {
    return name.rfind('/') + 1;  // 0 without one
}

// The name behind a chain of symbolic links, which need not exist.
std::string behindLinks(std::string name) {
    char link[PATH_MAX];
    for (int depth = 0; depth < 40; ++depth) {
        const ssize_t length = readlink(name.c_str(), link, sizeof link);
        if (length < 0) break;
        std::string next(link, static_cast<std::size_t>(length));
        if (!next.starts_with('/')) next.insert(0, name, 0, lengthOfFolder(name));
        name = std::move(next);
    }
    return name;
}

}  // namespace

OutputFile::OutputFile(const std::string& name, Existing existing) : name_(name) {
    if (name.empty()) {
        name_ = "standard output";
        file_ = STDOUT_FILENO;
        return;
    }
    struct stat status {};
    if (existing == Existing::Refuse && lstat(name.c_str(), &status) == 0)
        throw Failure(name + ": exists already; --force replaces it");
    target_ = behindLinks(name);
    const bool exists = stat(target_.c_str(), &status) == 0;
    if (!exists && errno != ENOENT) fail();
    // Even where the folder would allow the exchange: who may not write the file may not replace it.
    if (exists && access(target_.c_str(), W_OK) != 0) fail();
    if (exists && S_ISDIR(status.st_mode)) throw Failure(name + ": is a directory");
    if (exists && !S_ISREG(status.st_mode)) {
        // A device or a pipe cannot be replaced by a file.
        file_ = open(target_.c_str(), O_WRONLY | O_CLOEXEC);
    } else {
        const mode_t mask = umask(0);
        umask(mask);
        mode_ = exists ? status.st_mode & 0777 : 0666 & ~mask;
        makeTemporary();
    }
    if (file_ < 0) fail();
}

// Readable for nobody else before it is whole.
void OutputFile::makeTemporary() {
    const std::size_t folder = lengthOfFolder(target_);
    std::string pattern = target_.substr(0, folder) + "." + target_.substr(folder, 200) + ".XXXXXX";
    const SignalsHeld held;
    file_ = mkostemp(pattern.data(), O_CLOEXEC);
    if (file_ < 0) return;
    temporary_ = pattern;
    removeOnSignals(temporary_);
}

OutputFile::~OutputFile() {
    if (file_ >= 0 && file_ != STDOUT_FILENO) close(file_);
    if (temporary_.empty()) return;
    const SignalsHeld held;
    unlink(temporary_.c_str());
    partialFile[0] = '\0';
}

void OutputFile::fail() const { throw Failure(name_ + ": " + std::strerror(errno)); }

void OutputFile::write(const std::uint8_t* data, std::size_t bytes) {
    while (bytes > 0) {
        const ssize_t done = ::write(file_, data, bytes);
        if (done < 0 && errno == EINTR) continue;
        if (done < 0) fail();
        data += done;
        bytes -= static_cast<std::size_t>(done);
    }
}

bool OutputFile::rewriteStart(const std::uint8_t* data, std::size_t bytes) {
    if (temporary_.empty()) return false;
    for (off_t at = 0; bytes > 0;) {
        const ssize_t done = pwrite(file_, data, bytes, at);
        if (done < 0 && errno == EINTR) continue;
        if (done < 0) fail();
        data += done;
        at += done;
        bytes -= static_cast<std::size_t>(done);
    }
    return true;
}

void OutputFile::commit(const struct stat& input) {
    if (S_ISREG(input.st_mode) && !temporary_.empty()) {
        mode_ = input.st_mode & 0777;
        // Where the file system knows no times, the contents are what counts.
        const struct timespec times[2] = {input.st_atim, input.st_mtim};
        (void)futimens(file_, times);
    }
    commit();
}

void OutputFile::commit() {
    if (temporary_.empty()) return;
    (void)fchmod(file_, mode_);
    if (fsync(file_) != 0) fail();
    const SignalsHeld held;
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) fail();
    temporary_.clear();
    partialFile[0] = '\0';
}

}  // namespace mozep_program
