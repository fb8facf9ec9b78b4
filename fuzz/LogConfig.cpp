// The log's configuration file, as text and as the filter that comes of it.

#include "common/logging/QuillLogConfig.h"
#include "common2/logging/LogCore.h"
#include "fuzz/Require.h"
#include "tests/support/QuietLog.h"

#include <boost/log/attributes/attribute_value_impl.hpp>
#include <boost/log/attributes/attribute_value_set.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

namespace names = common2::logAttribute;

template <class Value>
void set(boost::log::attribute_value_set& record, const char* name, const Value& value) {
    record.insert(name, boost::log::attributes::make_attribute_value(value));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::QuietLog quiet;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string error;
    const LogChannelConfig config = QuillLogConfig(text, error).channelConfig();
    for (const std::string& channel :
         {std::string(), std::string("a"), std::string("net"), std::string(text)}) {
        bool passed = false;
        for (const auto severity : {DBG_TRACE, DBG_INFO, DBG_WARN, DBG_ERROR}) {
            boost::log::attribute_value_set record;
            set(record, names::severity, severity);
            set(record, names::channel, channel);
            set(record, names::source, channel);
            const bool passes = config(record);
            fuzz::require(!passes || severity >= config.lowestSeverity(), "nothing passes below the lowest");
            fuzz::require(passes || !passed, "what is graver passes too");
            passed = passes;
        }
        fuzz::require(passed, "an error passes whatever the rules say");
    }
    return 0;
}
