/// The state machine library under the name `sml`: boost::ext::sml where the build found it, else the engine
/// in this folder. The transition tables compile with either and behave alike. A source that reads tables
/// instead of running them takes the notation of this folder, by WREN_SML_NOTATION.
#pragma once

#if defined(WREN_SML_SYSTEM) && !defined(WREN_SML_NOTATION)
#include <boost/sml.hpp>
namespace sml = boost::ext::sml;
#else
#include "common/state_machine/SmlEngine.h"
#endif
