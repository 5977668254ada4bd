#pragma once

#include <sys/stat.h>
#include <zeps.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace mozep_program {

// A file read in pieces. The decoder advances next and left itself, and may step back over a few
// bytes of an earlier piece: the last kStepBack of them always stand right before the present
// piece.
class GunzipInput {
public:
    // "-" is the standard input.
    explicit GunzipInput(const std::string& name);
    ~GunzipInput();
    GunzipInput(const GunzipInput&) = delete;
    GunzipInput& operator=(const GunzipInput&) = delete;

    // Appends the next piece to what is left; false at the end of the file.
    bool refill();
    // refill() until count bytes are left; false when the file ends before.
    bool reach(int count);
    // The next byte, -1 at the end of the file.
    int byte();
    // Whether nothing follows but bytes of zero, which tape blocks are filled up with. Reads to the
    // end.
    bool onlyZerosLeft();

    const std::string& name() const { return name_; }
    const struct stat& status() const { return status_; }
    double size() const { return static_cast<double>(status_.st_size); }  // 0 if it has none
    double consumed() const { return static_cast<double>(read_) - left; }

    Zep8u* next;
    Zep32s left = 0;

private:
    static constexpr std::size_t kStepBack = 64, kPiece = 256 * 1024;

    std::string name_;
    std::vector<Zep8u> buffer_;
    std::uint64_t read_ = 0;
    struct stat status_ {};
    int file_ = -1;
};

}  // namespace mozep_program
