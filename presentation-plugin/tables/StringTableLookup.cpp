#include "presentation-plugin/tables/StringTableLookup.h"

#include "common2/logging/Common2Loggers.h"

void logUnexpectedStringTableId(std::uint8_t id, std::string_view function) {
    COMMON2_LOG(DBG_WARN, function) << "Unexpected string table lookup with id=" << id;
}
