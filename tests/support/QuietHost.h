/// A host that takes everything and only counts the notices. Any thread.
#pragma once

#include "wren/PresentationPlugin.h"

#include <atomic>
#include <cstdint>

namespace test {

class QuietHost final : public IPresentationCB, public ITranslator {
public:
    std::int32_t Notify(std::uintptr_t, const char*) override {
        ++notices;
        return 0;
    }
    std::int32_t StopDone(std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation1(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation2(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }

    std::atomic<unsigned long> notices = 0;
};

} // namespace test
