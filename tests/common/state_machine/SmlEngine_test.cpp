#include "common/state_machine/Sml.h"

#include "common/state_machine/SmTypeName.h"

#include <gtest/gtest.h>

#include <queue>
#include <stdexcept>
#include <string>
#include <vector>

// A small machine of our own: a root with a sub-machine of two regions.
class Off_s;
class Booting_s;
class LeftIdle_s;
class LeftBusy_s;
class RightIdle_s;
class RightBusy_s;

struct Boot_e {};
struct Halt_e {};
struct Work_e {
    int amount = 0;
};
struct Rest_e {};
struct Throw_e {};
struct ThrowOther_e {};
struct RaiseBoth_e {};
struct RaiseUnwanted_e {};
struct RaiseAndThrow_e {};
struct Later_e {};
struct Unwanted_e {};
struct Inner_e {};

class Trouble_ex : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

namespace {

struct Journal {
    std::vector<std::string> lines;
    bool allow = true;
    bool failWhileBooting = false;

    void note(std::string line) { lines.push_back(std::move(line)); }
    std::vector<std::string> take() { return std::exchange(lines, {}); }
};

struct NoteWork_a {
    void operator()(const Work_e& event, Journal& journal) const {
        journal.note("work " + std::to_string(event.amount));
    }
};
struct NoteBoot_a {
    void operator()(Journal& journal) const { journal.note("boot"); }
};
struct MayFail_a {
    void operator()(Journal& journal) const {
        journal.note("start");
        if (journal.failWhileBooting) {
            throw Trouble_ex("start");
        }
    }
};
struct NoteTrouble_a {
    void operator()(Journal& journal) const { journal.note("trouble"); }
};
struct NoteHalt_a {
    void operator()(Journal& journal) const { journal.note("halt"); }
};
struct NoteLater_a {
    void operator()(Journal& journal) const { journal.note("later"); }
};
struct NoteInner_a {
    void operator()(Journal& journal) const { journal.note("inner"); }
};
struct RaiseInner_a {
    void operator()(Journal& journal, sml::back::process<Inner_e> raise) const {
        journal.note("raise inner");
        raise(Inner_e{});
    }
};
struct RaiseBoot_a {
    void operator()(Journal& journal, sml::back::process<Boot_e> raise) const {
        raise(Boot_e{});
        journal.note("raise boot");
    }
};
struct Throw_a {
    void operator()(Journal& journal) const {
        journal.note("throwing");
        throw Trouble_ex("thrown");
    }
};
struct ThrowOther_a {
    void operator()(Journal& journal) const {
        journal.note("throwing other");
        throw std::logic_error("other");
    }
};
struct isAllowed {
    bool operator()(Journal& journal) const { return journal.allow; }
};

struct Running_s {
    auto operator()() const {
        using namespace sml;
        // clang-format off
        return make_transition_table(
            *state<LeftIdle_s>  + event<Work_e> [isAllowed{}]  / NoteWork_a{}                          = state<LeftBusy_s>,
             state<LeftIdle_s>  + event<Work_e> [!isAllowed{}] / NoteTrouble_a{},
             state<LeftBusy_s>  + event<Rest_e>                                                        = state<LeftIdle_s>,
             state<LeftIdle_s>  + event<Throw_e>               / (Throw_a{}, NoteLater_a{})            = state<LeftBusy_s>,
             state<LeftIdle_s>  + event<ThrowOther_e>          / ThrowOther_a{},
             state<LeftIdle_s>  + event<RaiseBoth_e>           / (RaiseInner_a{}, process(Later_e{})),
             state<LeftIdle_s>  + event<RaiseUnwanted_e>       / process(Unwanted_e{}),
             state<LeftIdle_s>  + event<RaiseAndThrow_e>       / RaiseInner_a{},
             state<LeftIdle_s>  + event<Later_e>               / NoteLater_a{},
            *state<RightIdle_s> + event<Work_e>                / NoteBoot_a{}                          = state<RightBusy_s>,
             state<RightIdle_s> + event<Throw_e>               / NoteBoot_a{},
             state<RightIdle_s> + event<RaiseBoth_e>           / []{},
             state<RightIdle_s> + event<RaiseAndThrow_e>       / ThrowOther_a{},
             state<RightIdle_s> + event<Inner_e>               / NoteInner_a{},
             state<RightBusy_s> + event<Rest_e>                / NoteHalt_a{}                          = state<RightIdle_s>
        );
        // clang-format on
    }
};

struct Engine_s {
    auto operator()() const {
        using namespace sml;
        // clang-format off
        return make_transition_table(
            *state<Off_s>     + event<Boot_e>          / (NoteBoot_a{}, MayFail_a{}) = state<Booting_s>,
             state<Off_s>     + event<Later_e>         / RaiseBoot_a{},
             state<Booting_s>                                                        = state<Running_s>,
             state<Booting_s> + exception<Trouble_ex>  / NoteTrouble_a{}             = state<Off_s>,
             state<Running_s> + event<Halt_e>          / NoteHalt_a{}                = state<Off_s>
        );
        // clang-format on
    }
};

class TraceLogger {
public:
    explicit TraceLogger(Journal& target)
        : journal(target) {}

    template <class Machine, class Event>
    void log_process_event(const Event&) {
        journal.note("[" + shortName<Machine>() + "] " + shortName<Event>());
    }
    template <class Machine, class Source, class Target>
    void log_state_change(const Source&, const Target&) {
        journal.note("[" + shortName<Machine>() + "] " + shortName<Source>() + " -> " + shortName<Target>());
    }
    template <class Machine, class Guard, class Event>
    void log_guard(const Guard&, const Event&, bool) {}
    template <class Machine, class Action, class Event>
    void log_action(const Action&, const Event&) {}

private:
    template <class T>
    static std::string shortName() {
        const std::string_view name = smTypeNameOf<T>;
        const std::size_t template_ = name.find('<');
        return std::string(name.substr(name.substr(0, template_).find_last_of(" :") + 1));
    }
    Journal& journal;
};

class SmlEngine : public testing::Test {
protected:
    using Lines = std::vector<std::string>;

    void boot() {
        machine.process_event(Boot_e{});
        journal.take();
    }

    Journal journal;
    TraceLogger logger{journal};
    sml::sm<Engine_s, sml::logger<TraceLogger>, sml::process_queue<std::queue>> machine{journal, logger};
};

const std::string entry = "[Engine_s] on_entry<struct boost::ext::sml::v1_1_11::back::_,struct "
                          "boost::ext::sml::v1_1_11::back::initial>";
const std::string trouble = "[Engine_s] exception<class Trouble_ex,class Trouble_ex>";

TEST_F(SmlEngine, StartsByItselfInTheInitialState) {
    EXPECT_EQ(journal.take(), (Lines{entry, "[Engine_s] anonymous"}));
    EXPECT_TRUE(machine.is(sml::state<Off_s>));
}

TEST_F(SmlEngine, StateIsTheTargetBeforeTheActionsRunAndCompletionFollows) {
    journal.take();
    EXPECT_TRUE(machine.process_event(Boot_e{}));
    EXPECT_EQ(journal.take(),
              (Lines{"[Engine_s] Boot_e", "[Engine_s] Off_s -> Booting_s", "boot", "start",
                     "[Engine_s] anonymous", "[Engine_s] Booting_s -> Running_s", "[Engine_s] anonymous"}));
    EXPECT_TRUE(machine.is(sml::state<Running_s>));
    EXPECT_TRUE(machine.is<decltype(sml::state<Running_s>)>(sml::state<LeftIdle_s>, sml::state<RightIdle_s>));
}

TEST_F(SmlEngine, AnEventWithoutRowIsNotTaken) {
    journal.take();
    EXPECT_FALSE(machine.process_event(Halt_e{}));
    EXPECT_EQ(journal.take(), (Lines{"[Engine_s] Halt_e", "[Engine_s] anonymous"}));
}

TEST_F(SmlEngine, AnExceptionOfAnActionBecomesAnEventOfTheRoot) {
    journal.take();
    journal.failWhileBooting = true;
    EXPECT_TRUE(machine.process_event(Boot_e{}));
    EXPECT_EQ(journal.take(),
              (Lines{"[Engine_s] Boot_e", "[Engine_s] Off_s -> Booting_s", "boot", "start", trouble,
                     "[Engine_s] Booting_s -> Off_s", "trouble", "[Engine_s] anonymous"}));
    EXPECT_TRUE(machine.is(sml::state<Off_s>));
}

TEST_F(SmlEngine, AllRegionsSeeAnEventInTableOrder) {
    boot();
    EXPECT_TRUE(machine.process_event(Work_e{7}));
    EXPECT_EQ(journal.take(),
              (Lines{"[Engine_s] Work_e", "[Running_s] Work_e", "[Running_s] LeftIdle_s -> LeftBusy_s",
                     "work 7", "[Running_s] RightIdle_s -> RightBusy_s", "boot", "[Engine_s] anonymous"}));
    EXPECT_TRUE(machine.is<decltype(sml::state<Running_s>)>(sml::state<LeftBusy_s>, sml::state<RightBusy_s>));
}

TEST_F(SmlEngine, GuardsChooseAmongRowsInOrder) {
    boot();
    journal.allow = false;
    EXPECT_TRUE(machine.process_event(Work_e{7}));
    EXPECT_EQ(journal.take(),
              (Lines{"[Engine_s] Work_e", "[Running_s] Work_e", "trouble",
                     "[Running_s] RightIdle_s -> RightBusy_s", "boot", "[Engine_s] anonymous"}));
}

TEST_F(SmlEngine, ATransitionWithoutActionLogsOnlyTheChange) {
    boot();
    machine.process_event(Work_e{1});
    journal.take();
    EXPECT_TRUE(machine.process_event(Rest_e{}));
    EXPECT_EQ(journal.take(),
              (Lines{"[Engine_s] Rest_e", "[Running_s] Rest_e", "[Running_s] LeftBusy_s -> LeftIdle_s",
                     "[Running_s] RightBusy_s -> RightIdle_s", "halt", "[Engine_s] anonymous"}));
}

TEST_F(SmlEngine, QueuedEventsOfTheSubMachineRunWithinTheEventAndThoseOfTheRootAfterIt) {
    boot();
    EXPECT_TRUE(machine.process_event(RaiseBoth_e{}));
    EXPECT_EQ(journal.take(),
              (Lines{"[Engine_s] RaiseBoth_e", "[Running_s] RaiseBoth_e", "raise inner",
                     "[Running_s] Inner_e", "inner", "[Engine_s] anonymous", "[Engine_s] Later_e",
                     "[Running_s] Later_e", "later", "[Engine_s] anonymous"}));
}

TEST_F(SmlEngine, AnActionOfTheRootMayRaiseAnEventThatRunsAfterItsOwn) {
    journal.take();
    EXPECT_TRUE(machine.process_event(Later_e{}));
    EXPECT_EQ(journal.take(),
              (Lines{"[Engine_s] Later_e", "raise boot", "[Engine_s] anonymous", "[Engine_s] Boot_e",
                     "[Engine_s] Off_s -> Booting_s", "boot", "start", "[Engine_s] anonymous",
                     "[Engine_s] Booting_s -> Running_s", "[Engine_s] anonymous"}));
    EXPECT_TRUE(machine.is(sml::state<Running_s>));
}

TEST_F(SmlEngine, AQueuedEventThatNobodyTakesMakesTheResultFalse) {
    boot();
    EXPECT_FALSE(machine.process_event(RaiseUnwanted_e{}));
    EXPECT_EQ(journal.take(),
              (Lines{"[Engine_s] RaiseUnwanted_e", "[Running_s] RaiseUnwanted_e", "[Engine_s] anonymous",
                     "[Engine_s] Unwanted_e", "[Engine_s] anonymous"}));
}

TEST_F(SmlEngine, AnExceptionInARegionSkipsTheRestOfTheRowAndTheRegionsBehindIt) {
    boot();
    EXPECT_FALSE(machine.process_event(Throw_e{}));
    EXPECT_EQ(journal.take(),
              (Lines{"[Engine_s] Throw_e", "[Running_s] Throw_e", "[Running_s] LeftIdle_s -> LeftBusy_s",
                     "throwing", trouble, "[Engine_s] anonymous"}));
    EXPECT_TRUE(machine.is<decltype(sml::state<Running_s>)>(sml::state<LeftBusy_s>, sml::state<RightIdle_s>));
}

TEST_F(SmlEngine, AnExceptionThatTheTableDoesNotNameIsDropped) {
    boot();
    EXPECT_FALSE(machine.process_event(ThrowOther_e{}));
    EXPECT_EQ(journal.take(), (Lines{"[Engine_s] ThrowOther_e", "[Running_s] ThrowOther_e", "throwing other",
                                     "[Engine_s] anonymous"}));
    EXPECT_TRUE(machine.process_event(Work_e{}));
}

TEST_F(SmlEngine, WhatAnExceptionLeftInTheQueueOfTheSubMachineRunsWithTheCompletion) {
    boot();
    EXPECT_FALSE(machine.process_event(RaiseAndThrow_e{}));
    EXPECT_EQ(journal.take(),
              (Lines{"[Engine_s] RaiseAndThrow_e", "[Running_s] RaiseAndThrow_e", "raise inner",
                     "throwing other", "[Engine_s] anonymous", "[Running_s] Inner_e", "inner"}));
}

/// A logger that never wants to hear of anything: the machine passes by what it can.
class DeafLogger {
public:
    static bool isListening() { return false; }
    template <class Machine, class Event>
    void log_process_event(const Event&) {}
    template <class Machine, class Source, class Target>
    void log_state_change(const Source&, const Target&) {}
};

class DeafSmlEngine : public testing::Test {
protected:
    using Lines = std::vector<std::string>;

    Journal journal;
    DeafLogger logger;
    sml::sm<Engine_s, sml::logger<DeafLogger>, sml::process_queue<std::queue>> machine{journal, logger};
};

TEST_F(DeafSmlEngine, CompletesAndTakesEventsAndPassesOthersBy) {
    EXPECT_FALSE(machine.process_event(Work_e{1}));
    EXPECT_FALSE(machine.process_event(Halt_e{}));
    EXPECT_TRUE(machine.process_event(Boot_e{}));
    EXPECT_TRUE(machine.is(sml::state<Running_s>));
    EXPECT_FALSE(machine.process_event(Rest_e{}));
    EXPECT_FALSE(machine.process_event(Boot_e{}));
    EXPECT_TRUE(machine.process_event(Work_e{2}));
    EXPECT_TRUE(machine.process_event(Rest_e{}));
    EXPECT_TRUE(machine.process_event(RaiseBoth_e{}));
    EXPECT_FALSE(machine.process_event(RaiseUnwanted_e{}));
    EXPECT_EQ(journal.take(),
              (Lines{"boot", "start", "work 2", "boot", "halt", "raise inner", "inner", "later"}));
}

TEST_F(DeafSmlEngine, RunsWhatAnExceptionLeftInTheQueueOfTheSubMachine) {
    machine.process_event(Boot_e{});
    journal.take();
    EXPECT_FALSE(machine.process_event(RaiseAndThrow_e{}));
    EXPECT_EQ(journal.take(), (Lines{"raise inner", "throwing other", "inner"}));
}

TEST_F(SmlEngine, RegionsBeginAnewAtEachEntry) {
    boot();
    machine.process_event(Work_e{1});
    EXPECT_TRUE(machine.process_event(Halt_e{}));
    machine.process_event(Boot_e{});
    EXPECT_TRUE(machine.is<decltype(sml::state<Running_s>)>(sml::state<LeftIdle_s>, sml::state<RightIdle_s>));
}

} // namespace
