/// What a check works with: a module, a plugin object of it, and everything that comes of its steps.
#pragma once

#include "host/BackendControls.h"
#include "host/HostCallbacks.h"
#include "host/LogTap.h"
#include "host/PluginModule.h"
#include "host/PluginObject.h"
#include "host/validate/Step.h"

#include <boost/json/value.hpp>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace host::validate {

/// Numbers that depend on the seed alone, on every system.
class Dice {
public:
    explicit Dice(std::uint64_t seed)
        : engine(seed) {}

    /// From 0 to `count` - 1.
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(engine() % count); }

private:
    std::mt19937_64 engine;
};

/// The stand-in service does only what the check tells it. One trial at a time; its steps are taken from one
/// thread, unless a step says otherwise.
class Trial {
public:
    /// Loads the module, which logs everything.
    /// @param way how its objects are made
    /// @throws HostError where the file is no module, lacks the interface or drives no stand-in service
    Trial(std::filesystem::path moduleFile, PluginInterface way, std::uint64_t seed);
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;
    /// Disposes of the plugin and unloads the module.
    ~Trial();

    // The module.
    const std::filesystem::path& moduleFile() const { return file; }
    PluginInterface way() const { return usedWay; }
    const PluginModule& module() const { return *loaded; }
    const BackendControls& backend() const { return *controls; }
    Dice& dice() { return ownDice; }
    /// Unloads the module and loads it again.
    /// @param settings the text of its log settings file
    void reload(const std::string& settings);

    // The plugin.
    /// Makes an object in the place of the last one.
    /// @throws CheckFailure where the module makes none
    PluginObject& create();
    PluginObject& plugin() { return *object; }
    bool hasPlugin() const { return object != nullptr; }
    /// What is given to `Register` unless a check brings its own.
    HostCallbacks& callbacks() { return ownCallbacks; }
    HostTranslator& translator() { return ownTranslator; }
    /// Disposes of the object.
    Step dispose();

    // Steps.
    /// Takes a step of the check's own.
    Step step(const std::function<std::int32_t()>& call);
    Step registerHost(std::uintptr_t handle = usualHandle);
    Step start();
    Step stop(std::uint32_t reason = 0);
    Step unregister();
    /// Makes an object, registers and starts it.
    /// @throws CheckFailure where one of that fails
    Step begin();
    Step event(std::string_view xml);
    /// Presses a button.
    Step press(std::string_view control);
    /// Delivers a document and waits for the plugin to take it.
    /// @throws CheckFailure where the plugin has given the backend nobody to take it
    Step deliver(WrenSimDocument document, std::string_view json);
    Step status(const boost::json::value& document);
    Step dataplane(const boost::json::value& document);
    Step enrollment(std::string_view status, std::string_view substatus = "");
    Step unenrollment(std::string_view status, std::string_view substatus = "");
    Step login();

    /// Takes a running plugin, whatever happened to it before, to an enrollment: an error's status ends what
    /// is in progress, a status offers to enroll, and the press of the button has to reach the backend.
    /// @throws CheckFailure where it does not
    void expectUsable();

    static constexpr std::uintptr_t usualHandle = 7;

private:
    void load(const std::string& settings);
    void unload();
    void add(Arrival arrival);
    std::vector<Arrival> take();
    static void onRequest(void* context, std::uint64_t api, const char* operation, const char* json);

    const std::filesystem::path file;
    const PluginInterface usedWay;
    Dice ownDice;
    std::mutex mutex;
    std::vector<Arrival> arrivals;
    LogTap log;
    HostCallbacks ownCallbacks;
    HostTranslator ownTranslator;
    std::optional<PluginModule> loaded;
    std::optional<BackendControls> controls;
    std::unique_ptr<PluginObject> object;
};

} // namespace host::validate
