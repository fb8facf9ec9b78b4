#include "backend-sim/Fault.h"

namespace sim {

Words failuresAt(Word when) {
    if (when == moment::enrollmentRequest || when == moment::enrollmentStarted ||
        when == moment::enrollmentLogin || when == moment::enrollmentCookie ||
        when == moment::enrollmentCancel) {
        return words::enrollmentFailure;
    }
    if (when == moment::unenrollmentStarted) {
        return words::unenrollmentFailure;
    }
    return {};
}

Mishap takeMishap(std::vector<Fault>& faults, Word when) {
    Mishap mishap;
    for (Fault& fault : faults) {
        if (fault.when != when) {
            continue;
        }
        if (fault.skip > 0) {
            --fault.skip;
            continue;
        }
        --fault.times;
        if (mishap.fail.empty()) {
            mishap.fail = fault.fail;
        }
        if (!fault.set.empty()) {
            mishap.changes.push_back(fault.set);
        }
    }
    std::erase_if(faults, [](const Fault& fault) { return fault.times == 0; });
    return mishap;
}

} // namespace sim
