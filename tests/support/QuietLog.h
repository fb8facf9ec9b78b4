/// Keeps log statements from being written while it lives, for tests that make very many of them.
#pragma once

namespace test {

/// Lets nothing pass. The filter before it is not remembered: at its end everything passes.
class QuietLog {
public:
    QuietLog();
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;
    ~QuietLog();
};

} // namespace test
