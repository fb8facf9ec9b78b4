/// The one place that includes the XML library, so that every file sees it with the same pool sizes. Only the
/// sources of this room include this header.
#pragma once

/// Bytes of the pool inside a document: what a typical notice needs, so that its nodes cost no allocation.
#define RAPIDXML_STATIC_POOL_SIZE (10 * 1024)

#include <rapidxml/rapidxml.hpp>
#include <rapidxml/rapidxml_print.hpp>
