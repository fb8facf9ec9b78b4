#include "common2/util/LocalTimeCache.h"

#include "common2/util/LocalTimeText.h"

namespace common2 {

LocalTimeCache::LocalTimeCache(Clock theClock)
    : clock(theClock) {}

std::string_view LocalTimeCache::now(const wchar_t* format) { return find(forgetOlderSeconds(), format); }

std::string_view LocalTimeCache::at(std::int64_t time, const wchar_t* format) {
    forgetOlderSeconds();
    return find(time, format);
}

std::int64_t LocalTimeCache::forgetOlderSeconds() {
    const std::int64_t present = clock();
    if (present != second) {
        followTimeZone(present);
        second = present;
        used = 0;
        oldest = 0;
    }
    return present;
}

std::string_view LocalTimeCache::find(std::int64_t time, const wchar_t* format) {
    for (std::size_t index = 0; index < used; ++index) {
        if (entries[index].time == time && entries[index].format == format) {
            return entries[index].text;
        }
    }
    Entry& entry = used < entries.size() ? entries[used++] : entries[oldest++ % entries.size()];
    entry.time = time;
    entry.format = format;
    entry.text = localTimeText(time, format);
    return entry.text;
}

} // namespace common2
