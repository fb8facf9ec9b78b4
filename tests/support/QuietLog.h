/// Keeps log statements from being written while it lives, for tests that make very many of them.
#pragma once

#include "common2/logging/Common2Loggers.h"

namespace test {

/// Lets only records of a severity and above pass. The filter before it is not remembered: at its end all
/// pass.
class QuietLog {
public:
    /// @param lowest that passes; without it nothing does
    explicit QuietLog(int lowest = DBG_ERROR + 1);
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;
    ~QuietLog();
};

} // namespace test
