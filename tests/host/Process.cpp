#include "tests/host/Process.h"

namespace test {

ProcessEnd runProcess(const ProcessPlan& plan) { return Process(plan).finish(); }

} // namespace test
