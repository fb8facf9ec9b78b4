#include "bench/Workload.h"

#include "common2/logging/LogCore.h"
#include "presentation-plugin/PresentationPluginSm.h"
#include "tests/support/IdleSlots.h"

namespace bench {
namespace {

/// Nobody logs while it lives.
struct Silence {
    Silence() {
        common2::installLogFilter([](const boost::log::attribute_value_set&) { return false; }, DBG_ERROR);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence() { common2::removeLogFilter(); }
};

/// One event after another to a machine whose five regions run.
template <class Event>
class MachineEvent final : public Workload {
public:
    MachineEvent() {
        machine.process_event(Register_e{});
        machine.process_event(Start_e{});
    }
    void step() override { machine.process_event(event); }

private:
    Silence silence;
    test::IdleSlots slots;
    PresentationPluginMachine machine{slots, quillSmlLogger()};
    Event event;
};

template <class Event>
WorkloadEntry machineEntry(const char* name) {
    return {name, 1'000, [] { return std::make_unique<MachineEvent<Event>>(); }};
}

} // namespace

std::vector<WorkloadEntry> machineWorkloads() {
    return {machineEntry<StatusNotification_e>("event-taken"),
            machineEntry<EnrollmentStatusNotification_e>("event-untaken")};
}

} // namespace bench
