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
    PresentationPluginMachine machine{static_cast<IPresentationPluginSmCallbacks&>(slots), quillSmlLogger()};
    Event event;
};

} // namespace

std::vector<WorkloadEntry> machineWorkloads() {
    return {entryOf<MachineEvent<StatusNotification_e>>("event-taken"),
            entryOf<MachineEvent<EnrollmentStatusNotification_e>>("event-untaken")};
}

} // namespace bench
