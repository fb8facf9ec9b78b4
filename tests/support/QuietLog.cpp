#include "tests/support/QuietLog.h"

#include "common2/logging/LogCore.h"

#include <boost/log/attributes/attribute_value_set.hpp>

namespace test {

QuietLog::QuietLog() {
    constexpr int aboveAll = DBG_ERROR + 1;
    common2::installLogFilter([](const boost::log::attribute_value_set&) { return false; },
                              static_cast<Common2LogSeverity>(aboveAll));
}

QuietLog::~QuietLog() { common2::removeLogFilter(); }

} // namespace test
