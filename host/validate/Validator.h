/// Holds a module against the checks, each in a process of its own.
#pragma once

#include "host/PluginObject.h"
#include "host/validate/Check.h"
#include "host/validate/Verdict.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

namespace host::validate {

struct Subject {
    std::filesystem::path module;
    PluginInterface way = PluginInterface::Cpp;
    std::uint32_t seed = 0;
    std::chrono::milliseconds limit{20'000}; ///< for each check
};

/// Stands for a check that loads the module and nothing else.
inline constexpr std::string_view loadOnly = "load";

/// Runs one check in this process, which the children do. The module is loaded before and unloaded after, so
/// that trouble with either counts.
/// @param check its name, or `loadOnly`
/// @throws HostError for a name that no check has
Verdict runInThisProcess(const Subject& subject, std::string_view check);

/// Makes sure that the module can be checked at all.
/// @throws HostError with the reason why it cannot
void requireCheckable(const Subject& subject);

/// Runs checks in children, as many at once as the machine has cores.
/// @param tell gets each verdict, in the order of the checks, on this thread
/// @throws HostError where no child can be started
void runInChildren(const Subject& subject, const std::vector<const Check*>& checks,
                   const std::function<void(const Check&, const Verdict&)>& tell);

} // namespace host::validate
