// A buffer that ends, or begins, at an unreadable page: the first access outside it faults.
#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace zep::test {

// The end of the buffer that stands against the unreadable page.
enum class Edge { Front, Back };

// Two unreadable pages with readable ones between; freed on destruction, recycled through a small cache.
class GuardedPages {
public:
    explicit GuardedPages(std::size_t bytes);
    ~GuardedPages();
    GuardedPages(const GuardedPages&) = delete;
    GuardedPages& operator=(const GuardedPages&) = delete;

    std::byte* begin() const { return begin_; }
    std::byte* end() const { return end_; }

private:
    std::byte* begin_;
    std::byte* end_;
};

// len elements of T. With Edge::Back the last byte is followed by an unreadable page, with Edge::Front the first byte
// is preceded by one; skewBytes moves the buffer away from that page, for misaligned pointers.
template <class T>
class GuardedBuffer {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    GuardedBuffer(int len, Edge edge, int skewBytes = 0)
        : pages_(static_cast<std::size_t>(len) * sizeof(T) + static_cast<std::size_t>(skewBytes)),
          len_(len) {
        const std::size_t bytes = static_cast<std::size_t>(len) * sizeof(T);
        std::byte* start =
            edge == Edge::Front ? pages_.begin() + skewBytes : pages_.end() - bytes - skewBytes;
        data_ = reinterpret_cast<T*>(start);
        std::memset(start, 0xA5, bytes);
    }

    T* data() { return data_; }
    const T* data() const { return data_; }
    T& operator[](int n) { return data_[n]; }
    const T& operator[](int n) const { return data_[n]; }
    T* begin() { return data_; }
    T* end() { return data_ + len_; }
    int size() const { return len_; }

private:
    GuardedPages pages_;
    T* data_;
    int len_;
};

}  // namespace zep::test
