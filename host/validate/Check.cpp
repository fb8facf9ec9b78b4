#include "host/validate/Check.h"

#include <array>

namespace host::validate {
namespace {

constexpr std::array tables{
    &exportChecks,   &recordChecks,       &getterChecks, &lifecycleChecks,  &registrationChecks,
    &noticeChecks,   &tileChecks,         &panelChecks,  &statisticsChecks, &popupChecks,
    &browserChecks,  &eventChecks,        &routeChecks,  &enrollmentChecks, &machineChecks,
    &documentChecks, &backendFaultChecks, &alertChecks,  &logChecks,        &robustnessChecks,
};

bool makesSense(const Check& check, PluginInterface way) {
    return check.through == Through::Both || (check.through == Through::C) == (way == PluginInterface::C);
}

} // namespace

std::vector<const Check*> checksFor(PluginInterface way) {
    std::vector<const Check*> checks;
    for (const auto& table : tables) {
        for (const Check& check : table()) {
            if (makesSense(check, way)) {
                checks.push_back(&check);
            }
        }
    }
    return checks;
}

} // namespace host::validate
