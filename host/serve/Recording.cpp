#include "host/serve/Recording.h"

#include "host/HostError.h"
#include "host/OutputLines.h"
#include "host/SessionInput.h"
#include "host/TimeZone.h"
#include "host/recording/Redactor.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <limits>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace host::serve {
namespace {

namespace json = boost::json;

bool isSessionInput(const json::object& line) {
    try {
        [[maybe_unused]] const SessionInput input(line, 0);
        return true;
    } catch (const HostError&) {
        return false;
    }
}

bool isSessionOutput(const json::object& line) {
    const std::string_view word = line.at("out").as_string();
    const json::value* function = line.if_contains("function");
    return word != "violation" && word != "info" &&
           (function == nullptr || !function->is_string() || !tellsOfTheMachine(function->get_string()));
}

/// The lines of a session on their way into its file.
class SessionText {
public:
    SessionText(const JournalSlice& slice, Secrets secrets)
        : isRedacted(secrets == Secrets::BlankedOut) {
        for (const JournalEntryPointer& entry : slice.entries) {
            if (isRedacted) {
                redactor.learn(entry->line);
            }
        }
    }

    void comment(std::string_view words) { text.append("# ").append(words).append("\n"); }
    /// @return whether session files know such an input
    bool input(json::object line) {
        redact(line);
        if (!isSessionInput(line)) {
            comment(json::serialize(line));
            return false;
        }
        ++number;
        text += json::serialize(line) + "\n";
        return true;
    }
    void output(json::object line) {
        redact(line);
        json::object numbered{{"n", number}};
        numbered.insert(line.begin(), line.end());
        text += json::serialize(numbered) + "\n";
    }

    std::string text;

private:
    void redact(json::object& line) {
        if (isRedacted) {
            redactor.redact(line);
        }
    }

    const bool isRedacted;
    Redactor redactor;
    unsigned number = 0;
};

HostError cannotWrite(const std::filesystem::path& file) {
    return HostError("cannot write the recording " + file.string());
}

} // namespace

std::string sessionText(const JournalSlice& slice, Secrets secrets, const std::string& timeZone) {
    std::map<std::uint64_t, std::vector<const json::object*>> outputs; // by the input's sequence
    for (const JournalEntryPointer& entry : slice.entries) {
        if (!entry->isInput() && isSessionOutput(entry->line)) {
            outputs[entry->input].push_back(&entry->line);
        }
    }
    SessionText session(slice, secrets);
    if (!timeZone.empty()) {
        session.input({{"do", "session"}, {"format", 1}, {"time_zone", timeZone}});
    }
    if (slice.missed > 0) {
        session.comment("the first " + std::to_string(slice.missed) + " entries are no longer there");
    }
    for (const JournalEntryPointer& entry : slice.entries) {
        if (entry->isInput() && session.input(entry->line)) {
            for (const json::object* output : outputs[entry->sequence]) {
                session.output(*output);
            }
        }
    }
    return std::move(session.text);
}

RecordingFile::RecordingFile(std::filesystem::path file, Secrets usedSecrets)
    : name(std::move(file))
    , secrets(usedSecrets) {
    if (!name.empty()) {
        stream.open(name, std::ios::binary | std::ios::trunc);
        if (!stream) {
            throw cannotWrite(name);
        }
    }
}

Journal::Limits RecordingFile::limits() const {
    constexpr std::size_t all = std::numeric_limits<std::size_t>::max();
    return name.empty() ? Journal::Limits{} : Journal::Limits{all, all};
}

void RecordingFile::write(const Journal& journal) {
    if (name.empty()) {
        return;
    }
    stream << sessionText(journal.after(0, std::numeric_limits<std::size_t>::max()), secrets, timeZone());
    stream.close();
    if (!stream) {
        throw cannotWrite(name);
    }
}

} // namespace host::serve
