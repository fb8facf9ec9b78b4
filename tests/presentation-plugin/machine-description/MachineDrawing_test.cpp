#include "presentation-plugin/machine-description/MachineDrawing.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

TEST(MachineDrawing, NamesTheRegions) {
    EXPECT_THAT(machineRegions(),
                ElementsAre("presentation_plugin", "main", "enroll", "dataplane_auth", "unenroll", "alert"));
}

TEST(MachineDrawing, MermaidOfTheRootHasNothingInside) {
    EXPECT_EQ(machineAsMermaid("presentation_plugin"), R"(stateDiagram-v2
    Unregistered_s : Unregistered_s
    Registered_s : Registered_s
    Starting_s : Starting_s
    Started_s : Started_s
    [*] --> Unregistered_s
    Unregistered_s --> Registered_s : Register_e<br>/ RegisterCallbacks_a
    Registered_s --> Starting_s : Start_e<br>/ InitUI_a, StartApi_a
    Registered_s --> Unregistered_s : Unregister_e<br>/ UnregisterCallbacks_a
    Starting_s --> Started_s
    Starting_s --> Registered_s : exception(ApiError_ex)<br>/ DisplayApiErrorInternal_a
    Started_s --> Registered_s : Stop_e<br>/ StopApi_a, NotifyUIStopDone_a
)");
}

TEST(MachineDrawing, MermaidPutsWhatLeavesNoStateIntoItsBox) {
    EXPECT_EQ(machineAsMermaid("alert"), R"(stateDiagram-v2
    AlertIdle_s : AlertIdle_s
    AlertIdle_s : AlertListChanged_e
    AlertShowingDialog_s : AlertShowingDialog_s
    AlertShowingDialog_s : DetailsButtonClicked_e / BringAlertDialogToForeground_a
    AlertShowingDialog_s : AlertListChanged_e [!alertListIsEmpty] / UpdateAlertDialog_a
    [*] --> AlertIdle_s
    AlertIdle_s --> AlertShowingDialog_s : DetailsButtonClicked_e<br>/ DisplayAlertDialog_a
    AlertShowingDialog_s --> AlertIdle_s : AlertListChanged_e [alertListIsEmpty]<br>/ DismissAlertDialog_a
    AlertShowingDialog_s --> AlertIdle_s : AlertDialogDismissed_e<br>/ DismissAlertDialog_a
)");
}

TEST(MachineDrawing, MermaidOfTheWholeNestsTheRegions) {
    const std::string whole = machineAsMermaid();
    EXPECT_THAT(whole,
                HasSubstr("\n    state Started_s {\n        state main {\n            MainActive_s : "));
    EXPECT_THAT(whole, HasSubstr("\n        }\n        --\n        state alert {\n"));
    EXPECT_THAT(whole, HasSubstr("\n        }\n    }\n    [*] --> Unregistered_s\n"));
}

TEST(MachineDrawing, GuardsReadLikeCalls) {
    EXPECT_THAT(machineAsTable("unenroll"), HasSubstr("| `unenrollmentStatusIs(Started)` |"));
    EXPECT_THAT(machineAsTable("enroll"), HasSubstr("| `!enrollmentStatusIs(Started)` |"));
    EXPECT_THAT(machineAsTable(), Not(HasSubstr("::")));
}

TEST(MachineDrawing, TableHasARowForEachOfTheTransitions) {
    EXPECT_EQ(machineAsTable("dataplane_auth"), R"(### Started_s, region dataplane_auth

Begins in `DataplaneAuthIdle_s`.

| state | event | guard | actions | next state |
|---|---|---|---|---|
| `DataplaneAuthIdle_s` | `DataplaneAuthRequest_e` |  | `DisplayDataplaneAuthRequest_a` | `DataplaneAuthenticating_s` |
| `DataplaneAuthenticating_s` | `DataplaneAuthRequest_e` |  | `DisplayDataplaneAuthRequest_a` | (stays) |
| `DataplaneAuthenticating_s` | `DataplaneAuthReply_e` |  | `DismissDataplaneAuth_a, DataplaneAuthReply_a` | `DataplaneAuthIdle_s` |
| `DataplaneAuthenticating_s` | `CancelDataplaneAuth_e` |  | `DismissDataplaneAuth_a` | `DataplaneAuthIdle_s` |
)");
    EXPECT_THAT(machineAsTable("presentation_plugin"),
                HasSubstr("| `Starting_s` | (completion) |  |  | `Started_s` |\n"));
}

TEST(MachineDrawing, DotOfTheWholeDrawsTheRunningMachineAsAFrame) {
    const std::string whole = machineAsDot();
    EXPECT_THAT(whole, HasSubstr("\n    subgraph \"cluster_Started_s\" {\n        label=\"Started_s\";\n"));
    EXPECT_THAT(whole, HasSubstr("\n        subgraph \"cluster_unenroll\" {\n"));
    EXPECT_THAT(whole, HasSubstr("\n    \"Starting_s\" -> \"MainActive_s\" [label=\"\", "
                                 "lhead=\"cluster_Started_s\"];\n"));
    EXPECT_THAT(whole, HasSubstr("\n    \"MainActive_s\" -> \"Registered_s\" [label=\"Stop_e\\n/ StopApi_a, "
                                 "NotifyUIStopDone_a\", ltail=\"cluster_Started_s\"];\n"));
}

TEST(MachineDrawing, DotOfARegion) {
    EXPECT_EQ(machineAsDot("dataplane_auth"), R"(digraph PresentationPlugin {
    compound=true;
    fontname="sans-serif";
    node [shape=box, style=rounded, fontname="sans-serif"];
    edge [fontname="sans-serif", fontsize=10];
    "start_dataplane_auth" [shape=point];
    "DataplaneAuthIdle_s" [label="DataplaneAuthIdle_s"];
    "DataplaneAuthenticating_s" [label="DataplaneAuthenticating_s\nDataplaneAuthRequest_e / DisplayDataplaneAuthRequest_a"];
    "start_dataplane_auth" -> "DataplaneAuthIdle_s" [label=""];
    "DataplaneAuthIdle_s" -> "DataplaneAuthenticating_s" [label="DataplaneAuthRequest_e\n/ DisplayDataplaneAuthRequest_a"];
    "DataplaneAuthenticating_s" -> "DataplaneAuthIdle_s" [label="DataplaneAuthReply_e\n/ DismissDataplaneAuth_a, DataplaneAuthReply_a"];
    "DataplaneAuthenticating_s" -> "DataplaneAuthIdle_s" [label="CancelDataplaneAuth_e\n/ DismissDataplaneAuth_a"];
}
)");
}

TEST(MachineDrawing, OfAnUnknownRegionThereIsNothing) {
    EXPECT_EQ(machineAsDot("Main"), "");
    EXPECT_EQ(machineAsMermaid("Main"), "");
    EXPECT_EQ(machineAsTable("Main"), "");
}

} // namespace
