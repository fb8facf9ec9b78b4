/// A host as the other compiler builds it. Its checks stand by subject in the sources beside this.
#pragma once

#include "tests/windows/msvc/Runtime.h"
#include "tests/windows/msvc/Service.h"
#include "wren/PresentationPlugin.h"
#include "wren/PresentationPluginCbased.h"

namespace foreign {

/// Ends the program with the place and the words of what is not so.
#define CHECK(condition)                                                                                     \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            printf("%s, line %d: not so: %s\n", __FILE__, __LINE__, #condition);                             \
            exit(1);                                                                                         \
        }                                                                                                    \
    } while (0)

/// A call that must leave the stack pointer where it was.
#define BALANCED(call)                                                                                       \
    [&] {                                                                                                    \
        volatile size_t before = foreign::stackPointer();                                                    \
        auto result = call;                                                                                  \
        CHECK(foreign::stackPointer() == before);                                                            \
        return result;                                                                                       \
    }()

inline __attribute__((always_inline)) size_t stackPointer() {
    size_t pointer;
    asm volatile("movl %%esp, %0" : "=r"(pointer));
    return pointer;
}

/// The module and the service, and what this program uses of them.
struct Libraries {
    Handle module;
    decltype(&GetAvailableInterfaces) getInterfaces;
    decltype(&CreatePlugin) createPlugin;
    decltype(&DisposePlugin) disposePlugin;
    decltype(&CreateCbasedPlugin) createRecord;
    decltype(&DisposeCbasedPlugin) disposeRecord;
    decltype(&serviceSetFault) setFault;
    decltype(&serviceDeliver) deliver;
    decltype(&serviceTakeRequest) takeRequest;
    decltype(&serviceCounts) counts;
    decltype(&serviceDeliverAlways) deliverAlways;

    /// @param service null loads none
    Libraries(const char* moduleFile, const char* service);
    void* exported(const char* name) const { return GetProcAddress(module, name); }
};

constexpr uintptr_t hostHandle = 4711;

enum class Throws { Nothing, Object, Number, StructuredException };

/// What a thrown object is: its ends are counted.
struct Thrown {
    static int alive;
    Thrown() { ++alive; }
    Thrown(const Thrown&) { ++alive; }
    ~Thrown() { --alive; }
};

/// A host's callbacks, which note what they get.
class Callbacks final : public IPresentationCB, public ITranslator {
public:
    Callbacks();
    Callbacks(const Callbacks&) = delete;
    Callbacks& operator=(const Callbacks&) = delete;
    ~Callbacks() override { free(text); }

    int32_t Notify(uintptr_t handle, const char* xml) override;
    int32_t StopDone(uintptr_t handle) override;
    int32_t TranslatorOperation1(uintptr_t, uintptr_t, uintptr_t) override { return 0; }
    int32_t TranslatorOperation2(uintptr_t, uintptr_t, uintptr_t) override { return 0; }

    /// Whether a notice since the last question held those words; the notices are forgotten.
    bool hasShown(const char* words);
    void throwIfAsked();

    Throws throws = Throws::Nothing;
    const Callbacks* self = this; ///< what `this` has to be in every call
    unsigned notices = 0;
    unsigned stops = 0;
    unsigned long thread = 0; ///< of the latest notice

private:
    static constexpr size_t mostText = 256 * 1024;
    char* const text; ///< of the notices since the last question
    size_t length = 0;
};

/// The same callbacks as records of C; they refer to the object.
PresentationCbasedCallbacks recordOf(Callbacks& noting);
TranslatorCbasedCallbacks translatorRecord();

/// The documents of a device that enrolls.
extern const char* const notEnrolled;
extern const char* const enrolled;
extern const char* const enrollmentStarted;
extern const char* const enrollmentLogin;
extern const char* const enrollmentComplete;

enum Document { statusDocument, enrollmentDocument, loginDocument, unenrollmentDocument, dataplaneDocument };

// The checks.
void checkTable(const Libraries& libraries);
void checkTypeInformation(const Libraries& libraries);
void checkExportedClass(const Libraries& libraries);
void checkLife(const Libraries& libraries);
void checkDeletion(const Libraries& libraries);
void checkManyPlugins(const Libraries& libraries);
void checkServiceFaults(const Libraries& libraries);
void checkRecord(const Libraries& libraries);
void checkExceptions(const Libraries& libraries);
void checkRecordExceptions(const Libraries& libraries);
void checkServiceExceptions(const Libraries& libraries);
void checkManyLives(const char* moduleFile, const char* service, int lives);
/// The module is unloaded under the threads of the service.
void checkUnloading(const char* moduleFile, const char* service, int lives);

} // namespace foreign
