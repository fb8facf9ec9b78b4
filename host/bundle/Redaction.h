/// Taking secrets out of all that a bundle holds.
#pragma once

#include "host/bundle/Scrubber.h"
#include "host/bundle/SystemFacts.h"

#include <boost/json/object.hpp>

#include <functional>
#include <string>
#include <vector>

namespace host::bundle {

/// Replaces in the texts of all objects, at any depth, what sessions are recorded without and what a bundle
/// must not tell beyond that. One secret has one name in all of them.
/// @param facts know the names of user and machine, and the variables that hold secrets
/// @return what was replaced, in words
std::string redactAll(const std::vector<boost::json::object*>& objects, const SystemFacts& facts);

} // namespace host::bundle
