#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace mozep_program {

// Where the decompressed bytes go. A file takes its name only in commit(), when all of it is on the
// disk: until then it stands beside it under a temporary name, and is removed when anything goes
// wrong.
class GunzipOutput {
public:
    // An empty name is the standard output. replace: whether a file of that name may exist.
    GunzipOutput(const std::string& name, bool replace);
    ~GunzipOutput();
    GunzipOutput(const GunzipOutput&) = delete;
    GunzipOutput& operator=(const GunzipOutput&) = delete;

    void write(const std::uint8_t* data, std::size_t bytes);
    void commit();

private:
    [[noreturn]] void fail() const;

    std::string name_, temporary_;  // temporary_ is empty when there is nothing to rename
    int file_ = -1;
};

}  // namespace mozep_program
