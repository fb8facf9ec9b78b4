// Text from the host: read as an event document, and given to a plugin at one stage or another.

#include "fuzz/Require.h"
#include "tests/boundary/Scene.h"
#include "tests/support/QuietLog.h"
#include "xml/XmlUIEvent.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::QuietLog quiet;
    const std::string text(reinterpret_cast<const char*>(data), size);

    XmlUIEvent event(text.c_str());
    const bool isValid = !event.getId().empty();
    fuzz::require(event.parse(text.c_str()) == isValid, "a second reading finds what the first found");
    event.getControl("quill_alert_browser_web_control").getAttribute("type");

    if (!isValid) {
        // Refused before the plugin looks at where it is: one will do for all of them.
        static test::Scene scene;
        fuzz::require(scene.plugin->EventNotification(text.c_str()) == -10, "what is no event is refused");
        return 0;
    }
    const auto& stages = test::allStages();
    test::Scene scene(size % 2 == 0 ? test::Interface::Cpp : test::Interface::C);
    scene.step("start");
    scene.play(stages[size / 2 % stages.size()].steps);
    const std::int32_t answer = scene.plugin->EventNotification(text.c_str());
    fuzz::require(answer == 0 || answer == -10, "an event is taken or refused");
    fuzz::require(scene.step("stop") == 0, "the plugin stops");
    return 0;
}
