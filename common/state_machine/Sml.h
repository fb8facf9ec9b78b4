/// The state machine library under the name `sml`: boost::ext::sml where the build found it, else the engine
/// in this folder. The transition tables compile with either and behave alike.
#pragma once

#if defined(WREN_SML_SYSTEM)
#include <boost/sml.hpp>
namespace sml = boost::ext::sml;
#else
#include "common/state_machine/SmlEngine.h"
#endif
