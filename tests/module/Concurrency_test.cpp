#include "tests/module/ModuleTest.h"
#include "tests/support/Documents.h"
#include "tests/support/Sanitizer.h"

#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

// The real module under several threads at once. The thread sanitizer has the last word.

namespace {

using test::callbacksOf;
using test::CountingHost;
using test::textOf;

class Concurrency : public test::ModuleTest {};

/// Runs each function on a thread of its own, until all have returned.
void together(const std::vector<std::function<void()>>& works) {
    std::vector<std::thread> threads;
    threads.reserve(works.size());
    for (const auto& work : works) {
        threads.emplace_back(work);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

/// Fails an enrollment, as far as the other threads let it: the error popup comes up.
void failAnEnrollment(IPresentationPluginV3& plugin, IQuillApiCallbacks& callbacks) {
    static const std::string reset = textOf(test::errorStatusDocument());
    static const std::string notEnrolled = textOf(test::notEnrolledStatusDocument());
    static const std::string failed = textOf(test::enrollmentStatusDocument("error"));
    callbacks.StatusNotification(reset.c_str());
    callbacks.StatusNotification(notEnrolled.c_str());
    plugin.EventNotification("<vtguiEvent id=\"quill_tile_enroll_action_btn_OnPress\"/>");
    callbacks.EnrollmentStatusNotification(failed.c_str());
}

TEST_F(Concurrency, EventsAndDocumentsFromEightThreadsWhileErrorPopupsComeAndGo) {
    constexpr unsigned steps = test::isSanitized ? 20'000 : 100'000;
    constexpr unsigned stepsOfEach = steps / 8;
    CountingHost counting;
    const host::OwnedPlugin plugin = make(counting);
    ASSERT_EQ(plugin->Start(), 0);
    auto& callbacks = callbacksOf(*plugin);

    const std::array<std::string, 9> events{"quill_tile_enroll_action_btn_OnPress",
                                            "quill_tile_cancel_action_btn_OnPress",
                                            "quill_tile_details_action_btn_OnPress",
                                            "wren_client_error_close_btn_OnPress",
                                            "quill_adv_unenroll_btn_OnPress",
                                            "wren_client_error_gen_close_btn_OnClose",
                                            "quill_tile_verify_action_btn_OnPress",
                                            "quill_alert_browser_close_btn_OnClose",
                                            "quill_enrollment_browser_close_btn_OnClose"};
    const std::array<std::pair<void (IQuillApiCallbacks::*)(const char*), std::string>, 10> documents{{
        {&IQuillApiCallbacks::StatusNotification, textOf(test::notEnrolledStatusDocument())},
        {&IQuillApiCallbacks::EnrollmentStatusNotification,
         textOf(test::enrollmentStatusDocument("started"))},
        {&IQuillApiCallbacks::EnrollmentStatusNotification,
         textOf(test::enrollmentStatusDocument("complete", "internal_error"))},
        {&IQuillApiCallbacks::EnrollmentAuthRequest, textOf(test::enrollmentAuthRequestDocument())},
        {&IQuillApiCallbacks::EnrollmentStatusNotification,
         textOf(test::enrollmentStatusDocument("complete", "server_certificate_error"))},
        {&IQuillApiCallbacks::StatusNotification, textOf(test::enrolledStatusDocument())},
        {&IQuillApiCallbacks::DataplaneNotification, textOf(test::dataplaneDocument(1, 0))},
        {&IQuillApiCallbacks::DataplaneNotification, textOf(test::dataplaneDocument(0, 1))},
        {&IQuillApiCallbacks::UnenrollmentStatusNotification,
         textOf(test::unenrollmentStatusDocument("started"))},
        {&IQuillApiCallbacks::StatusNotification, textOf(test::errorStatusDocument())},
    }};
    std::vector<std::function<void()>> works;
    for (unsigned thread = 0; thread < 4; ++thread) {
        works.push_back([&, thread] {
            for (unsigned step = 0; step < stepsOfEach; ++step) {
                press(*plugin, events[(step * (thread + 1) + thread) % events.size()]);
            }
        });
        works.push_back([&, thread] {
            for (unsigned step = 0; step < stepsOfEach; ++step) {
                const auto& [callback, text] =
                    documents[(step * (2 * thread + 1) + thread) % documents.size()];
                (callbacks.*callback)(text.c_str());
                if (thread == 0) {
                    failAnEnrollment(*plugin, callbacks);
                }
            }
        });
    }
    together(works);
    // Every document and every event has been told to the host.
    EXPECT_GE(counting.notices, steps);
    EXPECT_GT(counting.errorPopups, 0u);
    EXPECT_GT(counting.disposals, 0u);
    EXPECT_EQ(plugin->Stop(0), 0);
    EXPECT_EQ(plugin->Unregister(), 0);
}

TEST_F(Concurrency, LifecycleCallsAndDocumentsMayCross) {
    CountingHost counting;
    const host::OwnedPlugin plugin = make(counting);
    auto& callbacks = callbacksOf(*plugin);
    const std::string status = textOf(test::notEnrolledStatusDocument());
    std::atomic<bool> done = false;
    together({[&] {
                  for (int round = 0; round < 200; ++round) {
                      EXPECT_EQ(plugin->Start(), 0);
                      EXPECT_EQ(plugin->Stop(0), 0);
                      EXPECT_EQ(plugin->Unregister(), 0);
                      EXPECT_EQ(plugin->Register("", 7, &counting, &counting), 0);
                  }
                  done = true;
              },
              [&] {
                  while (!done) {
                      callbacks.StatusNotification(status.c_str());
                  }
              },
              [&] {
                  while (!done) {
                      press(*plugin, "quill_tile_enroll_action_btn_OnPress");
                  }
              }});
    EXPECT_EQ(counting.stops, 200u);
}

TEST_F(Concurrency, APluginMayBeDisposedOfWhileDocumentsArrive) {
    const std::string status = textOf(test::notEnrolledStatusDocument());
    for (int round = 0; round < 200; ++round) {
        CountingHost counting;
        host::OwnedPlugin plugin = make(counting);
        ASSERT_EQ(plugin->Start(), 0);
        std::atomic<bool> done = false;
        std::thread deliverer([&] {
            while (!done) {
                wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, status.c_str());
                wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, status.c_str());
            }
        });
        while (counting.notices < 6) {
            std::this_thread::yield();
        }
        plugin.reset();
        counting.isGone = true;
        done = true;
        deliverer.join();
        EXPECT_EQ(counting.stops, 1u);
        EXPECT_EQ(counting.lateCalls, 0u);
    }
}

TEST_F(Concurrency, DocumentsMayArriveWhileThePluginStarts) {
    const std::string status = textOf(test::notEnrolledStatusDocument());
    for (int round = 0; round < 100; ++round) {
        CountingHost counting;
        const host::OwnedPlugin plugin = make(counting);
        std::thread starter([&] { EXPECT_EQ(plugin->Start(), 0); });
        while (wrensim_deliver(WRENSIM_LATEST_API, wrensim_status_notification, status.c_str()) !=
               wrensim_delivered) {
            std::this_thread::yield();
        }
        starter.join();
        wrensim_deliver_and_wait(WRENSIM_LATEST_API, wrensim_status_notification, status.c_str());
        // Five notices of the start; then the two documents, the first of which was drawn.
        EXPECT_GE(counting.notices, 5u + 2u + 5u);
    }
}

TEST_F(Concurrency, TheHostMayCloseTheErrorPopupFromInsideItsOwnCallback) {
    CountingHost counting;
    IPresentationPluginV3* running = nullptr;
    bool isClosing = false;
    std::vector<std::string> seen;
    counting.onNotice = [&](const char* text) {
        const std::string xml = text;
        if (xml.find("id=\"wren_client_error_dialog\"") != std::string::npos) {
            seen.push_back(xml.find("dispose=\"true\"") == std::string::npos ? "opened" : "closed");
        }
        if (!isClosing && xml.find("type=\"custom\"") != std::string::npos) {
            isClosing = true;
            press(*running, "wren_client_error_close_btn_OnPress");
            isClosing = false;
        }
    };
    const host::OwnedPlugin plugin = make(counting);
    running = plugin.get();
    ASSERT_EQ(plugin->Start(), 0);
    auto& callbacks = callbacksOf(*plugin);
    for (int round = 0; round < 2; ++round) {
        callbacks.StatusNotification(textOf(test::notEnrolledStatusDocument()).c_str());
        press(*plugin, "quill_tile_enroll_action_btn_OnPress");
        callbacks.EnrollmentStatusNotification(textOf(test::enrollmentStatusDocument("error")).c_str());
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"opened", "closed", "opened", "closed"}));
}

TEST_F(Concurrency, ClosingAPopupThatIsAlreadyGoneSendsNothing) {
    CountingHost counting;
    IPresentationPluginV3* running = nullptr;
    unsigned closings = 0;
    unsigned disposals = 0;
    const std::string closeEvent = "wren_client_error_close_btn_OnPress";
    counting.onNotice = [&](const char* text) {
        const std::string xml = text;
        disposals += xml.find("dispose=\"true\"") == std::string::npos ? 0 : 1;
        // A second click arrives while the first is being told to the host's log.
        if (xml.find("<eventnotification") != std::string::npos &&
            xml.find(closeEvent) != std::string::npos && ++closings == 1) {
            press(*running, closeEvent);
        }
    };
    const host::OwnedPlugin plugin = make(counting);
    running = plugin.get();
    ASSERT_EQ(plugin->Start(), 0);
    auto& callbacks = callbacksOf(*plugin);
    callbacks.StatusNotification(textOf(test::notEnrolledStatusDocument()).c_str());
    press(*plugin, "quill_tile_enroll_action_btn_OnPress");
    callbacks.EnrollmentStatusNotification(textOf(test::enrollmentStatusDocument("error")).c_str());
    press(*plugin, closeEvent);
    EXPECT_EQ(closings, 2u);
    EXPECT_EQ(disposals, 1u);
}

} // namespace
