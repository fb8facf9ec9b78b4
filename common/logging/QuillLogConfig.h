/// How much is logged: the administrator's rules, and reading them from their file.
#pragma once

#include "common2/data/StringTrie.h"
#include "common2/logging/Common2Loggers.h"

#include <boost/log/attributes/attribute_value_set.hpp>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

/// The rules as a filter of the log core. A rule for a record's channel beats one for its source, and both
/// beat the global level, whether they ask for more or for less. Copies share the channels; once installed,
/// nothing changes any more.
struct LogChannelConfig {
    struct Entry {
        Common2LogSeverity severity = DBG_TRACE;
    };

    Common2LogSeverity global_severity = DBG_TRACE;
    std::map<std::string, Common2LogSeverity, std::less<>> sources;
    std::shared_ptr<StringTrie<Entry>> channels; ///< may be null

    /// Whether the record with these attributes is kept. One without a severity is not.
    bool operator()(const boost::log::attribute_value_set& record) const;

    /// The lowest severity that any of the rules could let pass.
    Common2LogSeverity lowestSeverity() const;

private:
    Common2LogSeverity thresholdFor(const boost::log::attribute_value_set& record) const;
};

/// The rules of a text: {"global": NAME, "channels": {PREFIX: NAME, ...}, "sources": {SOURCE: NAME, ...}},
/// all of it optional. A name that is none of the four severities is passed over with its rule.
class QuillLogConfig {
public:
    /// @param error takes what is wrong with a text that is no JSON, after one line in the log; else empty
    QuillLogConfig(std::string_view text, std::string& error);

    const LogChannelConfig& channelConfig() const noexcept { return config; }

private:
    LogChannelConfig config;
};
