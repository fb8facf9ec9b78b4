/// @file
/// The interfaces between a host and a presentation plugin: what the host calls, and what it supplies.
///
/// The order of virtual operations is fixed in every class here. Texts are NUL-terminated UTF-8. Where an
/// argument is called a word, it has the size of a pointer and the plugin does not look into it.
#pragma once

#include "wren/Plugin.h"
#include "wren/PresentationPluginResult.h"

#include <cstdint>

/// The host's callback object, supplied to `Register` and used until `Unregister` or the plugin's end. An
/// `EventNotification` that is under way on another thread meanwhile may still call it: the object must
/// outlive all calls that the host makes into the plugin.
///
/// Calls arrive on host threads (from within the host's own calls into the plugin) and on threads of the
/// backend library. From inside them the host must not call `Register`, `Start`, `Stop`, `Unregister` or
/// `EventNotification` of the same plugin on the same thread: it hands such work to another thread.
///
/// No exception may leave a callback: the notices that follow would be lost. On Windows an exception of
/// Microsoft's compiler ends at the plugin, which logs it and goes on; one of MinGW's compilers ends the
/// process.
class IPresentationCB {
public:
    /// Shows one notice.
    /// @param hostHandle the word given to `Register`
    /// @param xml a "vtguiNotice" document, valid during the call only
    /// @return ignored
    virtual std::int32_t Notify(std::uintptr_t hostHandle, const char* xml) = 0;

    /// Tells that a running plugin has stopped. Arrives on the thread that called `Stop`, before it returns.
    /// @param hostHandle the word given to `Register`
    /// @return ignored
    virtual std::int32_t StopDone(std::uintptr_t hostHandle) = 0;

    /// The object is the host's: the plugin never deletes it.
    virtual ~IPresentationCB() = default;
};

/// The host's text translator. This plugin insists on getting one and never calls it.
class ITranslator {
public:
    /// The first translation, of three words.
    /// @return a `PresentationPluginResult`
    virtual std::int32_t TranslatorOperation1(std::uintptr_t first, std::uintptr_t second,
                                              std::uintptr_t third) = 0;
    /// The second translation, likewise.
    virtual std::int32_t TranslatorOperation2(std::uintptr_t first, std::uintptr_t second,
                                              std::uintptr_t third) = 0;

protected:
    /// The object is the host's: the plugin never deletes it.
    ~ITranslator() = default;
};

/// Version 1 of the plugin as the host drives it.
///
/// Every operation may be called from any thread; calls are serialised inside. `Register`, `Start`, `Stop`,
/// `Unregister` in a state that they do not fit return `presentationFailed` and change nothing.
class IPresentationPlugin : public Plugin {
public:
    /// Gives the plugin its callbacks. First call after creation.
    /// @param arguments must not be null; not read
    /// @param hostHandle word passed back with every callback
    /// @param presentationCB not owned, must outlive the registration, must not be null
    /// @param translator not owned, must outlive the registration, must not be null
    /// @return `presentationDone`, `presentationNullArgument` or `presentationFailed`
    virtual std::int32_t Register(const char* arguments, std::uintptr_t hostHandle,
                                  IPresentationCB* presentationCB, ITranslator* translator) = 0;

    /// Draws the first screen and starts the backend. On failure the plugin stays registered, with the error
    /// on screen, and `Start` may be called again.
    /// @return `presentationDone` or `presentationFailed`
    virtual std::int32_t Start() = 0;

    /// Stops the backend and calls `StopDone`, also where the backend reports a failure.
    /// @param reason 0 or 1, treated alike
    /// @return `presentationDone` or `presentationFailed`
    virtual std::int32_t Stop(std::uint32_t reason) = 0;

    /// Forgets the callbacks. Only while stopped. See `IPresentationCB` for calls under way on other threads.
    /// @return `presentationDone` or `presentationFailed`
    virtual std::int32_t Unregister() = 0;

    /// Whether the plugin shows anything.
    /// @return true
    virtual bool IsUIEnabled() = 0;

    /// Copies the plugin's identity. All three getters work alike: the text with its NUL needs n bytes. With
    /// a buffer and `*size >= n` the text is copied and 0 returned, `*size` unchanged. Otherwise `*size`
    /// becomes n and `presentationBufferTooSmall` is returned, so that a null buffer asks for the size. A
    /// null `size` gives `presentationFailed`.
    virtual std::int32_t GetIdentity(char* buffer, std::uint32_t* size) = 0;
    /// Copies the name that users know the plugin by, likewise.
    virtual std::int32_t GetLabel(char* buffer, std::uint32_t* size) = 0;
    /// Copies the version that users are shown, likewise.
    virtual std::int32_t GetDisplayVersion(char* buffer, std::uint32_t* size) = 0;

    /// Not offered: touches no argument and returns `presentationEncryptUnavailable`.
    virtual std::int32_t Encrypt(std::uintptr_t first, std::uintptr_t second, std::uintptr_t third,
                                 std::uintptr_t fourth) = 0;

    /// Not offered: writes an empty text to `output` and 0 to `outputSize`, each where it is not null, and
    /// returns `presentationNotProvided`.
    virtual std::int32_t Decrypt(std::uintptr_t first, std::uintptr_t second, char* output,
                                 std::uint32_t* outputSize) = 0;

    /// Reports what the user did.
    /// @param xml a "vtguiEvent" document
    /// @return `presentationDone`, also for a click that is refused; `presentationFailed` for a document that
    ///         is no event and for a control that the plugin does not know
    virtual std::int32_t EventNotification(const char* xml) = 0;
};

/// Version 2.
class IPresentationPluginV2 : public IPresentationPlugin {
public:
    /// Whether several users may be logged in.
    /// @return true
    virtual bool IsMultiUserModeEnabled() = 0;
};

/// Version 3: the whole table.
class IPresentationPluginV3 : public IPresentationPluginV2 {
public:
    /// Not offered: touches no argument.
    /// @return `presentationNotProvided`
    virtual std::int32_t GetPendingApprovalData(std::uintptr_t first, std::uintptr_t second) = 0;

    /// Not offered: touches no argument.
    /// @return `presentationNotProvided`
    virtual std::int32_t ApprovalEventNotification(std::uintptr_t first) = 0;
};
