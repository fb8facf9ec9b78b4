// Text from the backend, of the kind that the build names, through the real callback of a plugin at one stage
// or another.

#include "fuzz/Require.h"
#include "tests/boundary/Scene.h"
#include "tests/support/QuietLog.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::QuietLog quiet;
    const std::string text(reinterpret_cast<const char*>(data), size);

    const auto& stages = test::allStages();
    test::Scene scene;
    scene.step("start");
    scene.play(stages[size % stages.size()].steps);
    std::size_t copies = 0;
    scene.host.onNotice = [&copies](const char* xml) {
        copies += std::string_view(xml).find("type=\"apilog\"") != std::string_view::npos ? 1 : 0;
    };
    scene.backend.deliver(test::Document::WREN_FUZZ_DOCUMENT, text);
    fuzz::require(copies <= 1, "a document is told to the host's log once");
    const bool isTaken = copies == 1;
    scene.backend.deliver(test::Document::WREN_FUZZ_DOCUMENT, text);
    fuzz::require(copies == (isTaken ? 2u : 0u), "the same document is taken again, or refused again");
    scene.play({"details", "enroll", "unenroll", "verify", "cancel"});
    fuzz::require(scene.step("stop") == 0, "the plugin stops");
    fuzz::require(scene.host.stops == 1, "and says so once");
    return 0;
}
