// The host's calls in any order on several plugins of both interfaces, held against the model of a plugin's
// life; and whatever else may be called, with arguments of any kind.

#include "fuzz/Require.h"
#include "tests/boundary/BoundaryPlugin.h"
#include "tests/boundary/LifecycleModel.h"
#include "tests/boundary/MemoryBackend.h"
#include "tests/support/QuietLog.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using test::Call;

constexpr std::size_t mostPlugins = 4;
constexpr int mostCalls = 60;

struct Subject {
    std::unique_ptr<test::BoundaryHost> host = std::make_unique<test::BoundaryHost>();
    std::unique_ptr<test::BoundaryPlugin> plugin;
    test::LifecycleModel model;
};

std::int32_t take(Subject& subject, Call call) {
    switch (call) {
    case Call::Register:
        return subject.plugin->Register(*subject.host);
    case Call::Start:
        return subject.plugin->Start();
    case Call::Stop:
        return subject.plugin->Stop(1);
    case Call::Unregister:
        return subject.plugin->Unregister();
    case Call::Create:
    case Call::Dispose:
        break;
    }
    return 0;
}

void dispose(Subject& subject) {
    const std::size_t stops = subject.model.stops + (subject.model.isRunning() ? 1 : 0);
    subject.plugin.reset();
    fuzz::require(subject.host->stops == stops, "a running plugin tells of its end, another does not");
}

/// The text getters with any size of buffer, none included.
void getTexts(FuzzedDataProvider& input) {
    Plugin* const made = CreatePlugin("com.norvane.vantor.presentation");
    auto& plugin = dynamic_cast<IPresentationPluginV3&>(*made);
    std::vector<char> buffer(input.ConsumeIntegralInRange<std::size_t>(1, 64));
    auto size = static_cast<std::uint32_t>(buffer.size());
    const std::int32_t answer = plugin.GetIdentity(input.ConsumeBool() ? buffer.data() : nullptr, &size);
    fuzz::require(answer == 0 || answer == -3, "a getter fills the buffer or asks for another");
    fuzz::require(plugin.GetLabel(buffer.data(), nullptr) == -10, "without a size nothing is copied");
    const std::string name = input.ConsumeRandomLengthString(48);
    plugin.SupportsInterface(input.ConsumeBool() ? name.c_str() : nullptr, input.ConsumeIntegral<int>());
    plugin.Decrypt(1, 2, buffer.data(), nullptr);
    fuzz::require(plugin.Register(nullptr, 0, nullptr, nullptr) == -4, "null arguments are refused");
    DisposePlugin(made);
    fuzz::require(CreatePlugin(name.c_str()) == nullptr || name == "com.norvane.vantor.presentation",
                  "only one name makes a plugin");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::QuietLog quiet;
    test::MemoryBackend& backend = test::MemoryBackend::instance();
    backend.reset();
    FuzzedDataProvider input(data, size);
    std::vector<Subject> subjects;
    for (int calls = 0; calls < mostCalls && input.remaining_bytes() > 0; ++calls) {
        const auto kind = input.ConsumeIntegralInRange(0, 9);
        if (kind == 0 && subjects.size() < mostPlugins) {
            subjects.emplace_back();
            subjects.back().plugin =
                test::makePlugin(input.ConsumeBool() ? test::Interface::Cpp : test::Interface::C);
        } else if (kind == 9) {
            getTexts(input);
        } else if (!subjects.empty()) {
            const auto which = input.ConsumeIntegralInRange<std::size_t>(0, subjects.size() - 1);
            Subject& subject = subjects[which];
            if (kind == 5) {
                dispose(subject);
                subjects.erase(subjects.begin() + static_cast<std::ptrdiff_t>(which));
            } else if (kind < 5) {
                const auto call = static_cast<Call>(kind);
                const std::int32_t expected = subject.model.take(call);
                fuzz::require(take(subject, call) == expected,
                              std::string("what the model tells of ") +
                                  test::callNames[static_cast<std::size_t>(call)]);
            } else if (kind == 6) {
                const std::string text = input.ConsumeRandomLengthString(200);
                subject.plugin->EventNotification(input.ConsumeBool() ? text.c_str() : nullptr);
            } else {
                backend.deliver(static_cast<test::Document>(input.ConsumeIntegralInRange(0, 4)),
                                input.ConsumeRandomLengthString(200));
            }
        }
    }
    for (Subject& subject : subjects) {
        dispose(subject);
    }
    fuzz::require(backend.connectionCount() == 0, "no connection stays behind");
    return 0;
}
