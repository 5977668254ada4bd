// What the tests of transforms on several threads share.
#pragma once

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "transform/fft_support.h"

namespace zep::test {

// Four threads transform x by transform(src, dst, scratch), in place and not, each with scratch of
// its own or without, and all get `want`.
template <class T, class Transform>
void expectSameOnThreads(const std::vector<T>& x, const std::vector<T>& want, int scratchBytes,
                         int calls, Transform transform) {
    std::vector<int> good(4);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < good.size(); ++t)
        threads.emplace_back([&, t] {
            std::vector<Zep8u> scratch(static_cast<std::size_t>(scratchBytes) + 1);
            std::vector<T> X(x.size());
            for (int call = 0; call < calls; ++call) {
                X = x;
                Zep8u* own =
                    (t + static_cast<std::size_t>(call)) % 2 == 0 ? scratch.data() : nullptr;
                const T* from = call % 2 == 0 ? X.data() : x.data();
                if (transform(from, X.data(), own) != zepStsNoErr) return;
                if (sameBits(X.data(), want.data(), x.size())) ++good[t];
            }
        });
    for (std::thread& thread : threads) thread.join();
    for (const int count : good) EXPECT_EQ(count, calls) << x.size() << " elements";
}

// createAndRelease(t) at the same time on four threads t.
template <class CreateAndRelease>
void expectCreationOnThreads(CreateAndRelease createAndRelease) {
    std::vector<std::thread> threads;
    std::vector<ZepStatus> status(4, zepStsErr);
    for (std::size_t t = 0; t < status.size(); ++t)
        threads.emplace_back([&, t] { status[t] = createAndRelease(t); });
    for (std::thread& thread : threads) thread.join();
    for (const ZepStatus s : status) EXPECT_EQ(s, zepStsNoErr);
}

}  // namespace zep::test
