#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace mozep_program {

// Where results go. A file takes its name only in commit(), when all of it is on the disk: until then
// it stands beside it under a temporary name, which is removed when anything goes wrong or a signal
// ends the program; a file of that name stays as it is. Throws Failure with the reason.
class OutputFile {
public:
    enum class Existing { Refuse, Replace };

    // An empty name is the standard output. Of a symbolic link the target is written.
    OutputFile(const std::string& name, Existing existing);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(const std::uint8_t* data, std::size_t bytes);
    // Writes over the first bytes, of which there must be as many; false where what has been written
    // is out of reach.
    bool rewriteStart(const std::uint8_t* data, std::size_t bytes);
    // A file takes the permissions and times of the one that it is made from, if that is a file as
    // well; else it keeps its permissions.
    void commit(const struct stat& input);
    void commit();

private:
    [[noreturn]] void fail() const;
    void makeTemporary();

    std::string name_, target_;
    std::string temporary_;  // empty when there is nothing to rename
    mode_t mode_ = 0;        // unless the input tells
    int file_ = -1;
};

}  // namespace mozep_program
