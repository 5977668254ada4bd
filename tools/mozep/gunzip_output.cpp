#include "gunzip_output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "commands.h"

namespace mozep_program {

GunzipOutput::GunzipOutput(const std::string& name, bool replace) : name_(name) {
    if (name.empty()) {
        name_ = "standard output";
        file_ = STDOUT_FILENO;
        return;
    }
    struct stat status {};
    const bool exists = stat(name.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode)) throw Failure(name + ": is a directory");
    if (exists && !replace) throw Failure(name + ": exists already; --force replaces it");
    if (exists && !S_ISREG(status.st_mode)) {
        // A device or a pipe cannot be replaced by a file.
        file_ = open(name.c_str(), O_WRONLY | O_CLOEXEC);
    } else {
        const std::size_t slash = name.rfind('/') + 1;  // 0 without one
        temporary_ = name.substr(0, slash) + "." + name.substr(slash, 200) + ".XXXXXX";
        file_ = mkostemp(temporary_.data(), O_CLOEXEC);
        if (file_ >= 0) {
            const mode_t mask = umask(0);
            umask(mask);
            fchmod(file_, exists ? status.st_mode & 07777 : 0666 & ~mask);
        } else {
            temporary_.clear();
        }
    }
    if (file_ < 0) fail();
}

GunzipOutput::~GunzipOutput() {
    if (file_ >= 0 && file_ != STDOUT_FILENO) close(file_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void GunzipOutput::fail() const { throw Failure(name_ + ": " + std::strerror(errno)); }

void GunzipOutput::write(const std::uint8_t* data, std::size_t bytes) {
    while (bytes > 0) {
        const ssize_t done = ::write(file_, data, bytes);
        if (done < 0 && errno == EINTR) continue;
        if (done < 0) fail();
        data += done;
        bytes -= static_cast<std::size_t>(done);
    }
}

void GunzipOutput::commit() {
    if (temporary_.empty()) return;
    if (fsync(file_) != 0) fail();
    if (std::rename(temporary_.c_str(), name_.c_str()) != 0) fail();
    temporary_.clear();
}

}  // namespace mozep_program
