#include "host/validate/Step.h"

#include "host/HostError.h"
#include "host/validate/ScreenLine.h"

#include <algorithm>

namespace host::validate {
namespace {

Lines without(Lines lines, std::string_view begin) {
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [&](const std::string& line) { return line.starts_with(begin); }),
                lines.end());
    return lines;
}

} // namespace

Lines Step::screens() const {
    Lines lines;
    for (const Arrival& arrival : arrivals) {
        if (arrival.kind == Arrival::Kind::Notice) {
            try {
                lines.push_back(screenLine(parseNotice(arrival.text)));
            } catch (const HostError&) {
                lines.emplace_back("unreadable");
            }
        }
    }
    return lines;
}

Lines Step::shown() const { return without(screens(), "apilog "); }

Lines Step::changed() const { return without(shown(), "stats-"); }

std::vector<NoticeElement> Step::notices() const {
    std::vector<NoticeElement> read;
    for (const Arrival& arrival : arrivals) {
        if (arrival.kind == Arrival::Kind::Notice) {
            try {
                read.push_back(parseNotice(arrival.text));
            } catch (const HostError&) {
                // Whether notices can be read is a check of its own.
            }
        }
    }
    return read;
}

NoticeElement Step::notice(std::string_view line) const {
    for (NoticeElement& notice : notices()) {
        if (screenLine(notice).starts_with(line)) {
            return std::move(notice);
        }
    }
    throw CheckFailure(joined({"no notice \"", line, "\" came"}));
}

Lines Step::requests() const {
    Lines lines;
    for (const Arrival& arrival : arrivals) {
        if (arrival.kind == Arrival::Kind::Request) {
            lines.push_back(arrival.text);
        }
    }
    return lines;
}

Lines Step::logged(int severity) const {
    Lines lines;
    for (const Arrival& arrival : arrivals) {
        if (arrival.kind == Arrival::Kind::Log && arrival.record.severity >= severity) {
            lines.push_back(joined({std::to_string(arrival.record.severity), " ", arrival.record.function,
                                    ": ", arrival.record.message}));
        }
    }
    return lines;
}

Lines Step::order() const {
    Lines lines;
    for (const Arrival& arrival : arrivals) {
        switch (arrival.kind) {
        case Arrival::Kind::Notice:
            lines.emplace_back("notice");
            break;
        case Arrival::Kind::StopDone:
            lines.emplace_back("stop done");
            break;
        case Arrival::Kind::Request:
            lines.push_back(joined({"request ", arrival.text.substr(0, arrival.text.find(' '))}));
            break;
        case Arrival::Kind::Log:
            break;
        }
    }
    return lines;
}

std::size_t Step::stopsDone() const {
    return static_cast<std::size_t>(
        std::count_if(arrivals.begin(), arrivals.end(),
                      [](const Arrival& arrival) { return arrival.kind == Arrival::Kind::StopDone; }));
}

} // namespace host::validate
