/// The buttons of a row of the progress tables, as their tests write them.
#pragma once

#include "presentation-plugin/tables/WrenProgressStrings.h"

#include <string>

namespace test {

/// Hidden and disabled of enroll, cancel and details, a digit each.
inline std::string flagsOf(const WrenProgressStrings_t& entry) {
    std::string flags;
    for (const bool flag : {entry.enroll_hidden, entry.enroll_disabled, entry.cancel_hidden,
                            entry.cancel_disabled, entry.details_hidden, entry.details_disabled}) {
        flags += flag ? '1' : '0';
    }
    return flags;
}

} // namespace test
