#include "bench/Documents.h"
#include "bench/LoadedPlugin.h"
#include "bench/Workload.h"

#include <boost/json/parse.hpp>
#include <rapidxml/rapidxml.hpp>
#include <rapidxml/rapidxml_print.hpp>

#include <utility>

namespace bench {
namespace {

/// The documents of a work, which come by turns: each differs from the one before.
using Documents = std::vector<std::string>;
using Callback = void (IQuillApiCallbacks::*)(const char*);

/// The module takes in document after document.
class ModuleTakesIn final : public Workload {
public:
    ModuleTakesIn(Callback callback_, Documents documents_)
        : callback(callback_)
        , documents(std::move(documents_)) {
        // Alerts are shown only where there is a status.
        loaded.callbacks().StatusNotification(statusDocument(false).c_str());
    }

    void step() override {
        (loaded.callbacks().*callback)(documents[next].c_str());
        next = (next + 1) % documents.size();
    }

private:
    LoadedPlugin loaded;
    Callback callback;
    Documents documents;
    std::size_t next = 0;
};

/// A document that says what the one before said, in other words.
class ModuleTakesInOtherText final : public Workload {
public:
    void step() override {
        constexpr std::size_t digitCount = 10;
        for (std::size_t digit = digits + digitCount; text[--digit]++ == '9' && digit > digits;) {
            text[digit] = '0';
        }
        loaded.callbacks().StatusNotification(text.c_str());
    }

private:
    LoadedPlugin loaded;
    std::size_t digits = 0;
    std::string text = statusDocumentWithDigits(digits);
};

/// What any reader of the documents does at the least.
class BareParse final : public Workload {
public:
    explicit BareParse(Documents documents_)
        : documents(std::move(documents_)) {}

    void step() override {
        boost::json::parse(documents[next]);
        next = (next + 1) % documents.size();
    }

private:
    Documents documents;
    std::size_t next = 0;
};

/// A notice that is known already: its elements are made anew, its texts are not, and it is printed.
class KeptNotice {
public:
    explicit KeptNotice(const std::string& xml)
        : text(xml.begin(), xml.end() + 1)
        , kept(std::make_unique<rapidxml::xml_document<char>>()) {
        text.back() = '\0';
        kept->parse<rapidxml::parse_default>(text.data());
        printed.resize(2 * xml.size());
    }

    void buildAndPrint(rapidxml::xml_document<char>& document) {
        document.clear();
        document.append_node(document.clone_node(kept->first_node()));
        *rapidxml::print(printed.data(), *document.first_node()) = '\0';
    }

private:
    std::vector<char> text; ///< what the kept document's texts stand in
    std::unique_ptr<rapidxml::xml_document<char>> kept;
    std::vector<char> printed;
};

/// The bare parse, and the notices that the module sends for the same documents from kept ones.
class BareParseAndNotices final : public Workload {
public:
    explicit BareParseAndNotices(Documents documents_)
        : documents(std::move(documents_))
        , notices(documents.size()) {
        LoadedPlugin loaded;
        loaded.callbacks().StatusNotification(documents.back().c_str());
        loaded.host().keepNotices(true);
        for (std::size_t i = 0; i < documents.size(); ++i) {
            loaded.callbacks().StatusNotification(documents[i].c_str());
            for (const std::string& notice : loaded.host().takeNotices()) {
                notices[i].emplace_back(notice);
            }
        }
    }

    void step() override {
        boost::json::parse(documents[next]);
        for (KeptNotice& notice : notices[next]) {
            notice.buildAndPrint(document);
        }
        next = (next + 1) % documents.size();
    }

private:
    Documents documents;
    std::vector<std::vector<KeptNotice>> notices;
    rapidxml::xml_document<char> document;
    std::size_t next = 0;
};

Documents changingStatus(std::size_t proxies = 4, std::size_t fingerprints = 3) {
    return {statusDocument(true, proxies, fingerprints), statusDocument(false, proxies, fingerprints)};
}

Documents changingAlerts(std::size_t alerts, Change change) {
    return {dataplaneDocument(alerts, change), dataplaneDocument(alerts)};
}

/// The steps of a count, for documents of usual size and for those that take long.
constexpr unsigned usualSteps = 20;
constexpr unsigned fewSteps = 2;

/// The module's work and, as NAME/D, the bare parse of the same documents.
template <class MakeDocuments>
void add(std::vector<WorkloadEntry>& entries, const std::string& name, unsigned steps, Callback callback,
         MakeDocuments documents) {
    entries.push_back({name, steps, [=] { return std::make_unique<ModuleTakesIn>(callback, documents()); }});
    entries.push_back({name + "/D", steps, [=] { return std::make_unique<BareParse>(documents()); }});
}

/// @param documents makes them of as many alerts as it is given
template <class MakeDocuments>
void addAlerts(std::vector<WorkloadEntry>& entries, const std::string& word, MakeDocuments documents) {
    for (const auto& [alerts, steps] : {std::pair(100, usualSteps), std::pair(10'000, fewSteps)}) {
        add(entries, "alerts-" + word + "-" + std::to_string(alerts), steps,
            &IQuillApiCallbacks::DataplaneNotification,
            [=, count = static_cast<std::size_t>(alerts)] { return documents(count); });
    }
}

void addAlerts(std::vector<WorkloadEntry>& entries, const std::string& word, Change change) {
    addAlerts(entries, word, [change](std::size_t alerts) { return changingAlerts(alerts, change); });
}

} // namespace

std::vector<WorkloadEntry> documentWorkloads() {
    constexpr Callback status = &IQuillApiCallbacks::StatusNotification;
    std::vector<WorkloadEntry> entries;
    entries.push_back(
        {"status-equal", usualSteps, [] { return std::make_unique<ModuleTakesInOtherText>(); }});
    entries.push_back({"status-equal/D", usualSteps, [] {
                           std::size_t digits = 0;
                           return std::make_unique<BareParse>(Documents{statusDocumentWithDigits(digits)});
                       }});
    add(entries, "status-same", usualSteps, status, [] { return Documents{statusDocument(false)}; });
    add(entries, "status-changed", usualSteps, status, [] { return changingStatus(); });
    entries.push_back({"status-changed/S", usualSteps,
                       [] { return std::make_unique<BareParseAndNotices>(changingStatus()); }});
    add(entries, "status-changed-large", fewSteps, status, [] { return changingStatus(1'000, 1'000); });
    addAlerts(entries, "one", Change::OneAlert);
    addAlerts(entries, "every", Change::EveryAlert);
    addAlerts(entries, "order", Change::Order);
    addAlerts(entries, "alike", [](std::size_t alerts) {
        return Documents{alertsOfOneHash(alerts, true), alertsOfOneHash(alerts, false)};
    });
    return entries;
}

} // namespace bench
