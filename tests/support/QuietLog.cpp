#include "tests/support/QuietLog.h"

#include "common2/logging/LogCore.h"

#include <boost/log/attributes/attribute_value_set.hpp>
#include <boost/log/attributes/value_extraction.hpp>

namespace test {

QuietLog::QuietLog(int lowest) {
    common2::installLogFilter(
        [lowest](const boost::log::attribute_value_set& record) {
            const auto severity =
                boost::log::extract<Common2LogSeverity>(common2::logAttribute::severity, record);
            return severity && severity.get() >= lowest;
        },
        static_cast<Common2LogSeverity>(lowest));
}

QuietLog::~QuietLog() { common2::removeLogFilter(); }

} // namespace test
