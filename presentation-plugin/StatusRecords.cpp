#include "presentation-plugin/StatusRecords.h"

std::shared_ptr<StatusNotification_t> StatusRecords::take() {
    for (std::shared_ptr<StatusNotification_t>& record : records) {
        if (!record) {
            record = std::make_shared<StatusNotification_t>();
        }
        if (record.use_count() == 1) {
            return record;
        }
    }
    return std::make_shared<StatusNotification_t>();
}
