/// The screen as JSON, for a page that draws it.
#pragma once

#include "host/serve/LiveScreen.h"

#include <boost/json/object.hpp>

namespace host::serve {

/// All of it, as docs/host-protocol.md describes it. Bytes that are not UTF-8 are replaced.
boost::json::object screenJson(const LiveScreen& screen);

} // namespace host::serve
