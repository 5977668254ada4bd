#include "whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "commands.h"

namespace mozep_program {
namespace {

std::size_t lengthOfFolder(const std::string& name) {
    return name.rfind('/') + 1;
}  // 0 without one

// The name behind a chain of symbolic links, which need not exist.
std::string behindLinks(std::string name) {
    char target[PATH_MAX];
    for (int depth = 0; depth < 40; ++depth) {
        const ssize_t length = readlink(name.c_str(), target, sizeof target);
        if (length < 0) return name;
        const std::string next(target, static_cast<std::size_t>(length));
        name = next.starts_with('/') ? next : name.substr(0, lengthOfFolder(name)) + next;
    }
    return name;  // a circle, which opening will complain about
}

mode_t modeOfNewFiles() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// A descriptor, and a name to be removed unless it has been given away.
struct Output {
    int file = -1;
    std::string temporary;
    ~Output() {
        if (file >= 0) close(file);
        if (!temporary.empty()) unlink(temporary.c_str());
    }
};

bool writeAll(int file, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t done = write(file, contents.data(), contents.size());
        if (done < 0 && errno != EINTR) return false;
        if (done > 0) contents.remove_prefix(static_cast<std::size_t>(done));
    }
    return true;
}

}  // namespace

void writeWhole(const std::string& name, std::string_view contents) {
    const auto check = [&name](bool good) {
        if (!good) throw Failure(name + ": " + std::strerror(errno));
    };
    const std::string target = behindLinks(name);
    struct stat status {};
    const bool exists = stat(target.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode)) throw Failure(name + ": is a directory");
    const bool replace = !exists || S_ISREG(status.st_mode);
    // Even where the folder would allow the exchange: who may not write the file may not replace it.
    if (exists) check(access(target.c_str(), W_OK) == 0);

    Output out;
    if (replace) {
        const std::size_t folder = lengthOfFolder(target);
        std::string pattern = target.substr(0, folder) + ".mozep.XXXXXX";
        out.file = mkostemp(pattern.data(), O_CLOEXEC);
        check(out.file >= 0);
        out.temporary = pattern;
        check(fchmod(out.file, exists ? status.st_mode & 07777 : modeOfNewFiles()) == 0);
    } else {
        out.file = open(target.c_str(), O_WRONLY | O_CLOEXEC);
        check(out.file >= 0);
    }
    check(writeAll(out.file, contents));
    // Some file systems tell of a full disk only here.
    check(!replace || fsync(out.file) == 0);
    const int closed = close(out.file);
    out.file = -1;
    check(closed == 0);
    if (!replace) return;
    check(std::rename(out.temporary.c_str(), target.c_str()) == 0);
    out.temporary.clear();
}

}  // namespace mozep_program
