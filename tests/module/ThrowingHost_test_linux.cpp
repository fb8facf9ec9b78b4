#include "tests/module/ModuleTest.h"
#include "tests/support/Documents.h"

#include <stdexcept>
#include <string_view>

// A host whose callbacks throw. On Windows no exception may cross from one module into another.

namespace {

class ThrowingHost : public test::ModuleTest {};

TEST_F(ThrowingHost, AHostThatThrowsWhileThePluginStartsLeavesNothingToCrashOn) {
    test::CountingHost counting;
    counting.onNotice = [](const char* xml) {
        if (std::string_view(xml).find("type=\"setup\"") != std::string_view::npos) {
            throw std::runtime_error("host");
        }
    };
    const host::OwnedPlugin plugin = make(counting);
    // The exception is dropped where it is none of the backend's, and the machine goes on without a
    // connection.
    EXPECT_EQ(plugin->Start(), -10);
    counting.onNotice = nullptr;
    IQuillApiCallbacks& callbacks = test::callbacksOf(*plugin);
    callbacks.StatusNotification(test::textOf(test::notEnrolledStatusDocument()).c_str());
    press(*plugin, "quill_toast_enroll_action_btn_OnPress");
    EXPECT_EQ(plugin->Stop(0), 0);
    EXPECT_EQ(plugin->Start(), 0);
    EXPECT_EQ(plugin->Stop(0), 0);
}

} // namespace
