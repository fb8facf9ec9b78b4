// Text from the backend, of the kind that the build names, through the real callback of a plugin at one stage
// or another.

#include "fuzz/Require.h"
#include "tests/boundary/Scene.h"
#include "tests/support/QuietLog.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace {

/// Whether it is refused before a record comes of it. Such text needs no plugin of its own, which is what
/// takes time.
bool isRefusedEarly(const std::string& text) {
    boost::system::error_code error;
    boost::json::parse(text.c_str(), error);
    return error.failed();
}

void requireRefusal(const std::string& text) {
    static test::Scene scene;
    static const bool isRunning = scene.step("start") == 0;
    static const std::weak_ptr<IQuillApiCallbacks> receiver = scene.backend.receiver();
    const std::size_t notices = scene.host.notices;
    test::deliver(*receiver.lock(), test::Document::WREN_FUZZ_DOCUMENT, text.c_str());
    fuzz::require(isRunning && scene.host.notices == notices, "the host hears nothing of what is no JSON");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::QuietLog quiet;
    const std::string text(reinterpret_cast<const char*>(data), size);

    if (isRefusedEarly(text)) {
        requireRefusal(text);
        return 0;
    }
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
