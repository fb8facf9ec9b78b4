/// Threads that wait for others.
#pragma once

#include <atomic>
#include <thread>

namespace test {

/// As the standard library's, for waits that are short. Where the system has no futex, that of GCC 12 may
/// wait for ever; and a mutex leaves memory behind there, which programs would count that look for what
/// others leave.
class Latch {
public:
    explicit Latch(unsigned expected)
        : left(expected) {}

    void count_down() { --left; }
    void wait() const {
        while (left != 0) {
            std::this_thread::yield();
        }
    }

private:
    std::atomic<unsigned> left;
};

} // namespace test
