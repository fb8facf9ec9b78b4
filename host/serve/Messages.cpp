#include "host/serve/Messages.h"

#include "host/SessionFormat.h"
#include "host/serve/ScreenJson.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <string_view>

namespace host::serve {
namespace {

namespace json = boost::json;

json::object entryJson(const JournalEntry& entry) {
    json::object object;
    object.reserve(entry.line.size() + 4);
    object.emplace("seq", entry.sequence);
    object.emplace("time", entry.time);
    object.emplace("thread", entry.thread);
    if (!entry.isInput()) {
        object.emplace("input", entry.input);
    }
    object.insert(entry.line.begin(), entry.line.end());
    return object;
}

std::string entryTexts(const std::vector<JournalEntryPointer>& entries) {
    std::string texts = "[";
    for (const JournalEntryPointer& entry : entries) {
        texts += texts.size() == 1 ? "" : ",";
        texts += json::serialize(entryJson(*entry));
    }
    return texts + "]";
}

json::array wordsOf(std::string_view input) {
    json::array words;
    for (const std::string_view word : lineRules(input).front().keys.front().words) {
        words.emplace_back(word);
    }
    return words;
}

const std::string& orNull(const std::string& text) {
    static const std::string null = "null";
    return text.empty() ? null : text;
}

} // namespace

std::string helloMessage(const Surroundings& surroundings, const PluginFacts& facts,
                         const std::vector<JournalEntryPointer>& entries) {
    const json::object module{{"identity", facts.identity},
                              {"label", facts.label},
                              {"version", facts.version},
                              {"path", surroundings.modulePath},
                              {"interface", "cpp"}};
    return R"({"type":"hello","module":)" + json::serialize(module) + R"(,"stand_in":)" +
           (surroundings.hasStandIn ? "true" : "false") + R"(,"schema":)" + orNull(surroundings.schema) +
           R"(,"machine":)" + orNull(surroundings.machine) + R"(,"operations":)" +
           json::serialize(wordsOf("backend")) + R"(,"documents":)" + json::serialize(wordsOf("deliver")) +
           R"(,"entries":)" + entryTexts(entries) + "}";
}

std::string entriesMessage(const JournalSlice& slice) {
    return R"({"type":"entries","entries":)" + entryTexts(slice.entries) +
           (slice.missed > 0 ? R"(,"missed":)" + std::to_string(slice.missed) : "") + "}";
}

std::string screenMessage(const LiveScreen& screen) {
    return json::serialize(json::object{{"type", "screen"}, {"screen", screenJson(screen)}});
}

std::string machineMessage(const MachineStates& states) {
    json::object regions;
    for (const auto& [region, state] : states.regions) {
        regions.emplace(region, state);
    }
    return json::serialize(
        json::object{{"type", "machine"}, {"root", states.root}, {"regions", std::move(regions)}});
}

std::string serviceMessage(const std::string& state) { return R"({"type":"service","state":)" + state + "}"; }

std::string replyMessage(std::optional<std::uint64_t> id, const std::string& error) {
    json::object reply{{"type", "reply"}, {"id", id ? json::value(*id) : json::value(nullptr)}};
    if (!error.empty()) {
        reply.emplace("error", error);
    }
    return json::serialize(reply);
}

std::string goodbyeMessage(const std::string& reason) {
    return json::serialize(json::object{{"type", "goodbye"}, {"reason", reason}});
}

} // namespace host::serve
