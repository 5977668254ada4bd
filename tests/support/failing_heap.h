// A heap that fails on demand, and counts. A test program that uses it links zep_failing_heap,
// which puts itself between the library's allocator and the C heap.
#pragma once

namespace zep::test {

// While it lives, the calling thread's allocations succeed `allowed` times and fail from then on.
class FailingHeap {
public:
    explicit FailingHeap(int allowed);
    ~FailingHeap();
    FailingHeap(const FailingHeap&) = delete;
    FailingHeap& operator=(const FailingHeap&) = delete;

    int asked() const;  // allocations, failed ones included
    int live() const;   // blocks allocated and not yet released
};

}  // namespace zep::test
