#include "common/logging/QuillLogging.h"

#include "common/QuillInstallPaths.h"
#include "common/logging/QuillLogConfig.h"
#include "common2/filesystem/File2.h"
#include "common2/logging/LogClock.h"
#include "common2/logging/LogCore.h"
#include "common2/logging/PlatformLogSink.h"

#include <boost/log/attributes/clock.hpp>
#include <boost/log/attributes/constant.hpp>
#include <boost/log/attributes/current_process_id.hpp>
#include <boost/log/attributes/current_thread_id.hpp>
#include <boost/log/core/core.hpp>

#include <filesystem>
#include <utility>

namespace {

namespace logging = boost::log;

constexpr const char* configFileName = "logconfig.json";
constexpr int machineContext = 0;
constexpr std::size_t attributeCount = 4;

/// Of memory: more than the allocator keeps apart by size, so that what is given back serves any request.
constexpr std::size_t reserveSize = 4096;

/// Does one thing; what goes wrong with it concerns nobody else.
/// @return whether it went well
template <class Step>
bool attempt(Step&& step) noexcept {
    try {
        step();
        return true;
    } catch (...) {
        return false; // There is no log yet to tell it to.
    }
}

void install(const LogChannelConfig& config) { common2::installLogFilter(config, config.lowestSeverity()); }

std::filesystem::path configFile() {
    const std::filesystem::path folder = QuillInstallPaths::GetProgramDataPath(machineContext);
    return folder.empty() ? folder : folder / configFileName;
}

void applyConfig(const std::filesystem::path& path) {
    constexpr const char* function = "QuillBaseLogging::applyConfigFile";
    std::string text;
    const std::string readError = File2::ReadSync(path, text);
    if (!readError.empty()) {
        COMMON2_LOG(DBG_ERROR, function) << "File2::ReadSync error: " << readError;
        return;
    }
    std::string configError;
    const QuillLogConfig config(text, configError);
    if (!configError.empty()) {
        COMMON2_LOG(DBG_ERROR, function) << "QuillLogConfig::QuillLogConfig error: " << configError;
        return;
    }
    install(config.channelConfig());
}

} // namespace

QuillBaseLogging::QuillBaseLogging(std::string_view sourceName) noexcept {
    attempt([this] { reserve = std::make_unique<std::byte[]>(reserveSize); });
    attempt([this] { addClockAndIds(); });
    attempt([&] { addFilterAndSource(sourceName); });
    attempt([&] { addSink(sourceName); });
    applyConfigFile();
}

QuillBaseLogging::~QuillBaseLogging() {
    // Each step on its own: whatever of ours stayed behind would be called after the module has gone.
    attempt([this] {
        if (sink) {
            logging::core::get()->remove_sink(sink);
        }
    });
    if (!attempt(common2::removeLogFilter)) { // the library needs memory to go back to its own filter
        reserve.reset();
        attempt(common2::removeLogFilter);
    }
    attempt([this] {
        for (const auto& attribute : attributes) {
            logging::core::get()->remove_global_attribute(attribute);
        }
    });
}

void QuillBaseLogging::applyConfigFile() noexcept {
    attempt([] { applyConfig(configFile()); });
}

/// An attribute of that name that somebody else has set stays theirs.
void QuillBaseLogging::addAttribute(const char* name, const logging::attribute& attribute) {
    attributes.reserve(attributeCount);
    const auto [position, added] = logging::core::get()->add_global_attribute(name, attribute);
    if (added) {
        attributes.push_back(position);
    }
}

void QuillBaseLogging::addClockAndIds() {
    namespace names = common2::logAttribute;
    addAttribute(names::timeStamp, logging::attributes::basic_clock<common2::LogClock>());
    addAttribute(names::processId, logging::attributes::current_process_id());
    addAttribute(names::threadId, logging::attributes::current_thread_id());
}

void QuillBaseLogging::addFilterAndSource(std::string_view sourceName) {
    LogChannelConfig startUp;
    startUp.global_severity = DBG_INFO;
    install(startUp);
    addAttribute(common2::logAttribute::source,
                 logging::attributes::constant<std::string>(std::string(sourceName)));
}

void QuillBaseLogging::addSink(std::string_view sourceName) {
    if (!sourceName.empty()) {
        sink = common2::makePlatformLogSink(std::string(sourceName));
        logging::core::get()->add_sink(sink);
    }
}
