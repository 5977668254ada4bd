#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace mozep_program {

// Where the decompressed bytes go. A file takes its name only in commit(), when all of it is on the
// disk: until then it stands beside it under a temporary name, which is removed when anything goes
// wrong or a signal ends the program.
class GunzipOutput {
public:
    enum class Existing { Refuse, Replace };

    // An empty name is the standard output. Of a symbolic link the target is written.
    GunzipOutput(const std::string& name, Existing existing);
    ~GunzipOutput();
    GunzipOutput(const GunzipOutput&) = delete;
    GunzipOutput& operator=(const GunzipOutput&) = delete;

    void write(const std::uint8_t* data, std::size_t bytes);
    // A file takes the permissions and times of the input, if that is a file as well.
    void commit(const struct stat& input);

private:
    [[noreturn]] void fail() const;
    void makeTemporary();

    std::string name_, target_;
    std::string temporary_;  // empty when there is nothing to rename
    mode_t mode_ = 0;        // unless the input tells
    int file_ = -1;
};

}  // namespace mozep_program
