// A large range of addresses over few pages, so that vectors of gigabytes cost no memory.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>

namespace zep::test {

// Elements of T; data()[n] and data()[n + kPeriod] are the same place. data() is null where there is
// no such range.
template <class T>
class RepeatedPages {
public:
    static constexpr std::size_t kPiece = std::size_t{1} << 21;
    static constexpr int kPeriod = int{kPiece / sizeof(T)};

    explicit RepeatedPages(std::size_t len)
        : bytes_((len * sizeof(T) + kPiece - 1) / kPiece * kPiece) {
        const int file = memfd_create("repeated", 0);
        if (file < 0 || ftruncate(file, kPiece) != 0) return;
        void* all = mmap(nullptr, bytes_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (all != MAP_FAILED) {
            base_ = static_cast<std::byte*>(all);
            for (std::size_t n = 0; n < bytes_; n += kPiece)
                if (mmap(base_ + n, kPiece, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, file,
                         0) == MAP_FAILED)
                    std::abort();
        }
        close(file);
    }
    ~RepeatedPages() {
        if (base_ != nullptr) munmap(base_, bytes_);
    }
    RepeatedPages(const RepeatedPages&) = delete;
    RepeatedPages& operator=(const RepeatedPages&) = delete;

    T* data() { return reinterpret_cast<T*>(base_); }

private:
    std::byte* base_ = nullptr;
    std::size_t bytes_;
};

}  // namespace zep::test
