// Documents, clicks and the host's calls in any order, some of them while the backend refuses everything: the
// machine's trace is held against a model that shares no code with it.

#include "fuzz/Require.h"
#include "tests/boundary/MachineWalk.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

constexpr std::size_t longestWalk = 64;
constexpr std::uint8_t failingBit = 0x80;

std::string_view stepOf(std::uint8_t byte) {
    const auto& steps = test::allSteps();
    const std::size_t number = byte % (steps.size() + 2);
    return number < steps.size() ? steps[number] : number == steps.size() ? "start" : "stop";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    test::MachineWalk walk;
    std::string way;
    for (std::size_t at = 0; at < std::min(size, longestWalk); ++at) {
        walk.failAll((data[at] & failingBit) != 0);
        const std::string_view step = stepOf(data[at] & static_cast<std::uint8_t>(~failingBit));
        way.append(" ").append(step);
        const std::string complaint = walk.step(step);
        fuzz::require(complaint.empty(), complaint + " after" + way);
    }
    return 0;
}
