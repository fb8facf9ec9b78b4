/// A rule between host and module that any built module can be held against.
#pragma once

#include "host/PluginObject.h"

#include <span>
#include <string_view>
#include <vector>

namespace host::validate {

class Trial;

/// Which of the module's interfaces a check is run through.
enum class Through { Both, Cpp, C };

/// One row of the table.
struct Check {
    std::string_view name;        ///< "subject.words"; stable
    std::string_view description; ///< what the module has to do, one sentence
    Through through;
    void (*run)(Trial& trial); ///< @throws CheckFailure with the reason; HostError where it cannot go on
};

/// The tables, a subject each.
std::span<const Check> exportChecks();
std::span<const Check> recordChecks();
std::span<const Check> getterChecks();
std::span<const Check> lifecycleChecks();
std::span<const Check> registrationChecks();
std::span<const Check> noticeChecks();
std::span<const Check> tileChecks();
std::span<const Check> panelChecks();
std::span<const Check> statisticsChecks();
std::span<const Check> popupChecks();
std::span<const Check> browserChecks();
std::span<const Check> eventChecks();
std::span<const Check> routeChecks();
std::span<const Check> enrollmentChecks();
std::span<const Check> machineChecks();
std::span<const Check> documentChecks();
std::span<const Check> backendFaultChecks();
std::span<const Check> alertChecks();
std::span<const Check> logChecks();
std::span<const Check> robustnessChecks();

/// All checks that make sense through an interface, in the order of the tables.
std::vector<const Check*> checksFor(PluginInterface way);

} // namespace host::validate
