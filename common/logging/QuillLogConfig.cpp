#include "common/logging/QuillLogConfig.h"

#include "common2/data/JsonLookup.h"
#include "common2/logging/LogCore.h"

#include <boost/log/attributes/value_extraction.hpp>

#include <algorithm>
#include <array>
#include <optional>

namespace {

namespace logging = boost::log;

/// Names of severities, by value.
constexpr std::array<std::string_view, 4> severityNames{"DBG_TRACE", "DBG_INFO", "DBG_WARN", "DBG_ERROR"};
static_assert(severityNames.size() == DBG_ERROR + 1 && !severityNames.back().empty());

std::optional<Common2LogSeverity> severityOf(std::string_view name) {
    const auto found = std::ranges::find(severityNames, name);
    if (found == severityNames.end()) {
        return std::nullopt;
    }
    return static_cast<Common2LogSeverity>(found - severityNames.begin());
}

/// Names resolved once: the filter runs for every statement.
struct AttributeNames {
    logging::attribute_name severity{common2::logAttribute::severity};
    logging::attribute_name channel{common2::logAttribute::channel};
    logging::attribute_name source{common2::logAttribute::source};
};

const AttributeNames& attributeNames() {
    static const AttributeNames names;
    return names;
}

} // namespace

bool LogChannelConfig::operator()(const logging::attribute_value_set& record) const {
    const auto severity = logging::extract<Common2LogSeverity>(attributeNames().severity, record);
    return severity && severity.get() >= thresholdFor(record);
}

Common2LogSeverity LogChannelConfig::thresholdFor(const logging::attribute_value_set& record) const {
    // An empty channel matches nothing; it isn't looked up, since the trie would log that from within the
    // core.
    if (channels) {
        const auto channel = logging::extract<std::string>(attributeNames().channel, record);
        const Entry* entry =
            channel && !channel.get().empty() ? channels->GetLongestPrefixMatch(channel.get()) : nullptr;
        if (entry) {
            return entry->severity;
        }
    }
    if (!sources.empty()) {
        const auto source = logging::extract<std::string>(attributeNames().source, record);
        const auto found = source ? sources.find(source.get()) : sources.end();
        if (found != sources.end()) {
            return found->second;
        }
    }
    return global_severity;
}

Common2LogSeverity LogChannelConfig::lowestSeverity() const {
    Common2LogSeverity lowest = global_severity;
    for (const auto& source : sources) {
        lowest = std::min(lowest, source.second);
    }
    if (channels) {
        channels->ForEach([&lowest](const Entry& entry) { lowest = std::min(lowest, entry.severity); });
    }
    return lowest;
}

QuillLogConfig::QuillLogConfig(std::string_view text, std::string& error) {
    const JsonLookup json(text, error);
    if (!error.empty()) {
        COMMON2_LOG(DBG_ERROR, "QuillLogConfig::QuillLogConfig") << "JsonLookup::JsonLookup error: " << error;
        return;
    }
    config.global_severity = severityOf(json.GetString("global")).value_or(config.global_severity);
    for (const auto& [source, name] : json.GetStringMap("sources")) {
        if (const auto severity = severityOf(name)) {
            config.sources.emplace(source, *severity);
        }
    }
    config.channels = std::make_shared<StringTrie<LogChannelConfig::Entry>>();
    for (const auto& [channel, name] : json.GetStringMap("channels")) {
        if (const auto severity = severityOf(name)) {
            config.channels->Insert(channel, {*severity}, true);
        }
    }
}
