// The real module with defects. Which ones is told by the environment variable WREN_DEFECTS, their names
// between commas; each breaks one rule between host and module.
#include "tests/host/module-system/ModuleSystem.h"
#include "wren/PresentationPlugin.h"
#include "wren/PresentationPluginCbased.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

bool has(std::string_view defect) {
    const char* const chosen = std::getenv("WREN_DEFECTS");
    const std::string all = std::string(",").append(chosen != nullptr ? chosen : "").append(",");
    return all.find(std::string(",").append(defect).append(",")) != std::string::npos;
}

/// The real module, for as long as this one is loaded.
struct RealModule : test::module_system::OtherModule {
    RealModule()
        : OtherModule(WREN_REAL_MODULE) {
        if (has("crash-when-loaded")) {
            test::module_system::crash();
        }
    }
};
const RealModule real;

void replace(std::string& text, std::string_view old, std::string_view fresh) {
    for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at + fresh.size())) {
        text.replace(at, old.size(), fresh);
    }
}

bool holds(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

void withoutTime(std::string& xml) {
    const std::size_t begin = xml.find(" timestamp=\"");
    const std::size_t end = xml.find('"', begin + std::string_view(" timestamp=\"").size());
    xml.erase(begin, end + 1 - begin);
}

std::string spoiled(std::string xml) {
    if (has("tooltip")) {
        replace(xml, "Navigate to WREN Advanced Window", "Navigate to Advanced Window");
    }
    if (has("unreadable-login") && holds(xml, "b=&lt;2&gt;")) {
        replace(xml, "&lt;", "<");
    }
    if (has("foreign-module")) {
        replace(xml, "module=\"com.norvane.vantor.presentation.quill\"",
                "module=\"com.norvane.vantor.other\"");
    }
    if (has("unknown-attribute") && holds(xml, " type=\"update\"")) {
        replace(xml, "<log ", "<log glow=\"1\" ");
    }
    if (has("disposal-without-time") && holds(xml, " dispose=\"true\"")) {
        withoutTime(xml);
    }
    if (has("log-notice-order")) {
        replace(xml, " type=\"apilog\" tag=\"apilog\"", " tag=\"apilog\" type=\"apilog\"");
    }
    if (has("congratulation")) {
        replace(xml, "Congratulations!", "Congratulation!");
    }
    if (has("proxy-words")) {
        replace(xml, "Paused by TND", "Paused");
    }
    if (has("managed-words") && holds(xml, " type=\"setup\"")) {
        replace(xml, "This setting is managed by your administrator.", "Managed.");
    }
    if (has("bound-in-updates") && holds(xml, " type=\"update\"")) {
        replace(xml, "<button id=\"quill_adv_unenroll_btn\"",
                "<button id=\"quill_adv_unenroll_btn\" OnPress=\"quill_adv_unenroll_btn_OnPress\"");
    }
    return xml;
}

/// Half of the defects stand between host and plugin, half of them between plugin and host.
class DefectivePlugin final : public IPresentationPluginV3, private IPresentationCB {
public:
    explicit DefectivePlugin(Plugin* made)
        : inner(static_cast<IPresentationPluginV3*>(made)) {}
    DefectivePlugin(const DefectivePlugin&) = delete;
    DefectivePlugin& operator=(const DefectivePlugin&) = delete;
    ~DefectivePlugin() override { real.function<decltype(&::DisposePlugin)>("DisposePlugin")(inner); }

    bool SupportsInterface(const char* name, int version) override {
        return inner->SupportsInterface(name, has("version-4") && version == 4 ? 3 : version);
    }
    std::int32_t Register(const char* arguments, std::uintptr_t handle, IPresentationCB* given,
                          ITranslator* translator) override {
        if (has("null-arguments") && arguments == nullptr) {
            return presentationFailed;
        }
        const std::int32_t result =
            inner->Register(arguments, handle, given != nullptr ? this : nullptr, translator);
        host = result == presentationDone ? given : host;
        return result;
    }
    std::int32_t Start() override {
        constexpr int manyStarts = 60;
        isStopped = false;
        return has("tires") && ++starts > manyStarts ? presentationFailed : inner->Start();
    }
    std::int32_t Stop(std::uint32_t reason) override {
        if (has("hang-on-stop") && reason == 1) {
            test::module_system::hang();
        }
        if (has("free-log-text")) {
            test::module_system::log("stopping now");
        }
        isQuiet = has("stop-done-missing") && reason == 1;
        const std::int32_t result = inner->Stop(reason);
        isStopped = result == presentationDone;
        return result;
    }
    std::int32_t Unregister() override {
        const std::int32_t result = inner->Unregister();
        isUnregistered = result == presentationDone;
        return result;
    }
    bool IsUIEnabled() override { return inner->IsUIEnabled(); }
    std::int32_t GetIdentity(char* buffer, std::uint32_t* size) override {
        if (has("size-kept") && buffer == nullptr && size != nullptr) {
            return presentationBufferTooSmall;
        }
        return inner->GetIdentity(buffer, size);
    }
    std::int32_t GetLabel(char* buffer, std::uint32_t* size) override {
        const std::int32_t result = inner->GetLabel(buffer, size);
        if (has("label") && result == presentationDone) {
            buffer[0] = 'w';
        }
        return result;
    }
    std::int32_t GetDisplayVersion(char* buffer, std::uint32_t* size) override {
        if (has("crash-on-null-size") && size == nullptr) {
            test::module_system::crash();
        }
        return inner->GetDisplayVersion(buffer, size);
    }
    std::int32_t Encrypt(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t) override {
        return has("encrypt") ? presentationNotProvided : presentationEncryptUnavailable;
    }
    std::int32_t Decrypt(std::uintptr_t first, std::uintptr_t second, char* output,
                         std::uint32_t* size) override {
        std::uint32_t kept = 0;
        return inner->Decrypt(first, second, output, has("decrypt") ? &kept : size);
    }
    std::int32_t EventNotification(const char* xml) override {
        if (has("crash-on-null-event") && xml == nullptr) {
            test::module_system::crash();
        }
        if (xml != nullptr && isSpoilt(xml)) {
            return presentationFailed;
        }
        if (has("late-callback") && isUnregistered && host != nullptr) {
            host->Notify(0, "<vtguiNotice/>");
        }
        if (has("details-toast") && xml != nullptr && holds(xml, "quill_tile_details_action_toast_btn")) {
            return presentationDone;
        }
        return inner->EventNotification(xml);
    }
    bool IsMultiUserModeEnabled() override { return inner->IsMultiUserModeEnabled(); }
    std::int32_t GetPendingApprovalData(std::uintptr_t first, std::uintptr_t second) override {
        constexpr int earlyEnd = 3;
        if (has("early-exit")) {
            test::module_system::leave(earlyEnd);
        }
        return inner->GetPendingApprovalData(first, second);
    }
    std::int32_t ApprovalEventNotification(std::uintptr_t first) override {
        return inner->ApprovalEventNotification(first);
    }

private:
    /// Whether a text is too much for this module, some of which it does not survive.
    static bool isSpoilt(std::string_view xml) {
        constexpr std::size_t greatText = 500'000;
        constexpr std::ptrdiff_t manyOddBytes = 40;
        const auto isOdd = [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; };
        if (has("crash-on-odd-bytes") && std::count_if(xml.begin(), xml.end(), isOdd) > manyOddBytes) {
            test::module_system::crash();
        }
        return has("short-events") && xml.size() > greatText;
    }

    std::int32_t Notify(std::uintptr_t handle, const char* xml) override {
        if (has("no-late-copies") && isStopped) {
            return 0;
        }
        constexpr unsigned halfAWord = sizeof handle * 4;
        const std::uintptr_t passed = has("handle-cut") ? handle << halfAWord >> halfAWord : handle;
        return host->Notify(passed, spoiled(xml).c_str());
    }
    std::int32_t StopDone(std::uintptr_t handle) override { return isQuiet ? 0 : host->StopDone(handle); }

    IPresentationPluginV3* inner;
    IPresentationCB* host = nullptr;
    int starts = 0;
    bool isStopped = false;
    bool isQuiet = false;
    bool isUnregistered = false;
};

decltype(PresentationPluginCbasedMethods::Stop) realStop = nullptr;
const void* lastDisposed = nullptr; ///< a record's address, until another record has it

std::int32_t stopWhateverTheReason(void* handle, std::uint32_t reason) {
    return realStop(handle, reason & 1U);
}

} // namespace

PluginInterfaceList GetAvailableInterfaces() {
    static constexpr PluginInterfaceEntry olderEntries[] = {{presentationInterfaceName, 2},
                                                            {cBasedPresentationInterfaceName, 3}};
    if (has("interface-version")) {
        return {olderEntries, 2};
    }
    return real.function<decltype(&::GetAvailableInterfaces)>("GetAvailableInterfaces")();
}

Plugin* CreatePlugin(const char* interfaceName) {
    std::string name = interfaceName != nullptr ? interfaceName : "";
    if (has("any-case")) {
        std::transform(name.begin(), name.end(), name.begin(), [](char letter) {
            return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
        });
    }
    Plugin* const made = real.function<decltype(&::CreatePlugin)>("CreatePlugin")(
        interfaceName != nullptr ? name.c_str() : nullptr);
    return made != nullptr ? new DefectivePlugin(made) : nullptr;
}

bool DisposePlugin(Plugin* plugin) {
    const bool isObject = plugin != nullptr;
    delete static_cast<DefectivePlugin*>(plugin);
    return !(has("dispose-says-false") && isObject);
}

PresentationPluginCbasedMethods* CreateCbasedPlugin(const char* interfaceName) {
    auto* const record = real.function<decltype(&::CreateCbasedPlugin)>("CreateCbasedPlugin")(interfaceName);
    lastDisposed = record == lastDisposed ? nullptr : lastDisposed;
    if (record != nullptr && has("record-size")) {
        record->size += sizeof(void*);
    }
    if (record != nullptr && has("record-reasons")) {
        realStop = record->Stop;
        record->Stop = &stopWhateverTheReason;
    }
    return record;
}

bool DisposeCbasedPlugin(PresentationPluginCbasedMethods* methods) {
    if (has("record-disposed-twice") && methods != nullptr && methods == lastDisposed) {
        return true;
    }
    lastDisposed = methods;
    return real.function<decltype(&::DisposeCbasedPlugin)>("DisposeCbasedPlugin")(methods);
}
