// The backend's documents: which are taken, and what becomes of the others.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include <array>

namespace host::validate {
namespace {

namespace json = boost::json;

struct Kind {
    WrenSimDocument document;
    std::string_view element; ///< of its copy for the host's log
    json::value (*make)();
};
const std::array kinds{
    Kind{wrensim_status_notification, "statusnotification", &enrolledDocument},
    Kind{wrensim_enrollment_status_notification, "enrollmentstatusnotification",
         [] { return progressDocument("started", ""); }},
    Kind{wrensim_enrollment_auth_request, "enrollmentauthrequest", &loginDocument},
    Kind{wrensim_unenrollment_status_notification, "unenrollmentstatusnotification",
         [] { return progressDocument("started", ""); }},
    Kind{wrensim_dataplane_notification, "dataplanenotification", [] { return dataplaneDocument(1, 1); }},
};

void expectDropped(Trial& trial, WrenSimDocument document, const std::string& text) {
    expectEqual(joined({"what ", text.substr(0, 80), " causes"}), trial.deliver(document, text).order(), {});
}

void copiesEveryKind(Trial& trial) {
    trial.begin();
    for (const Kind& kind : kinds) {
        const Lines seen = trial.deliver(kind.document, json::serialize(kind.make())).screens();
        expect(!seen.empty(), joined({"nothing is told of ", kind.element}));
        expectEqual("the first notice", lineAt(seen, 0), joined({"apilog ", kind.element}));
    }
}

void dropsWhatIsNoJson(Trial& trial) {
    trial.begin();
    for (const Kind& kind : kinds) {
        const std::string sound = json::serialize(kind.make());
        for (const std::string& text :
             {std::string(), std::string("{no json"), sound + "x", sound.substr(0, sound.size() - 1),
              std::string("/* c */") + sound, std::string("{\"version\":\"1\",}"), std::string("\xff\xfe"),
              std::string("'")}) {
            expectDropped(trial, kind.document, text);
        }
    }
}

void dropsOtherShapes(Trial& trial) {
    trial.begin();
    for (const Kind& kind : kinds) {
        for (const char* text : {"[]", "{}", "1", "null", "\"x\"", "true", R"({"version":1})",
                                 R"({"version":"1"})", R"({"Version":"1"})"}) {
            expectDropped(trial, kind.document, text);
        }
    }
}

void dropsWhatNestsTooDeep(Trial& trial) {
    trial.begin();
    for (const std::size_t depth : {33U, 1000U, 100'000U}) {
        const std::string text = joined({std::string(depth, '['), std::string(depth, ']')});
        for (const Kind& kind : kinds) {
            expectDropped(trial, kind.document, text);
        }
    }
}

void expectMissing(Trial& trial, WrenSimDocument document, const json::value& sound,
                   std::initializer_list<std::string_view> places) {
    for (const std::string_view place : places) {
        expectDropped(trial, document, json::serialize(without(sound, place)));
    }
}

void dropsIncompleteStatuses(Trial& trial) {
    trial.begin();
    expectMissing(trial, wrensim_status_notification, enrolledDocument(),
                  {"/version", "/state", "/interceptor_connectivity", "/posture_connectivity",
                   "/hw_key_store_availability", "/enrollment_choices", "/enrollments",
                   "/enrollments/0/config_sync_status/server_connectivity",
                   "/enrollments/0/certificate_status/certificate_urns/user_name",
                   "/enrollments/0/dataplane_status/blocked_flow_cnt_tcp",
                   "/enrollments/0/dataplane_status/proxy_configs",
                   "/enrollments/0/network_status/fingerprints"});
}

void dropsIncompleteProgress(Trial& trial) {
    trial.begin();
    for (const WrenSimDocument document :
         {wrensim_enrollment_status_notification, wrensim_unenrollment_status_notification}) {
        expectMissing(trial, document, progressDocument("started", ""),
                      {"/version", "/status", "/substatus", "/enrollment_id"});
    }
    expectMissing(trial, wrensim_enrollment_auth_request, loginDocument(),
                  {"/version", "/enrollment_id", "/start_url", "/end_url", "/cookie_name"});
}

void dropsIncompleteDataplanes(Trial& trial) {
    trial.begin();
    expectMissing(trial, wrensim_dataplane_notification, dataplaneDocument(1, 1),
                  {"/version", "/dataplane_alerts", "/dataplane_auth_requests", "/dataplane_alerts/0/code",
                   "/dataplane_alerts/0/title", "/dataplane_alerts/0/destinations",
                   "/dataplane_auth_requests/0/context_id", "/dataplane_auth_requests/0/destination",
                   "/dataplane_auth_requests/0/destination/port"});
}

struct Wrong {
    std::string_view place;
    json::value content;
};

void dropsWrongKinds(Trial& trial) {
    trial.begin();
    const std::array faults{
        Wrong{"/state", 1},
        Wrong{"/substate", nullptr},
        Wrong{"/posture_connectivity", 7},
        Wrong{"/enrollments", json::object()},
        Wrong{"/enrollments/0", 1},
        Wrong{"/enrollments/0/label", false},
        Wrong{"/enrollments/0/unenroll_allowed", 1},
        Wrong{"/enrollments/0/config_sync_status", json::array()},
        Wrong{"/enrollments/0/config_sync_status/last_config_sync_success", 1.5},
        Wrong{"/enrollments/0/config_sync_status/config_sync_interval_min", -1},
        Wrong{"/enrollments/0/dataplane_status/flow_cnt_tcp", 4294967296},
        Wrong{"/enrollments/0/network_status/fingerprints/0/status", "matched"},
    };
    for (const Wrong& fault : faults) {
        expectDropped(trial, wrensim_status_notification,
                      json::serialize(with(enrolledDocument(), fault.place, fault.content)));
    }
}

void takesWhatMayBeLeftOut(Trial& trial) {
    trial.begin();
    const auto expectTaken = [&](const json::value& document) {
        expect(!trial.status(document).screens().empty(),
               joined({"dropped: ", json::serialize(document).substr(0, 120)}));
    };
    expectTaken(json::parse(R"({"version":"1","state":"error"})"));
    expectTaken(json::parse(R"({"version":"1","state":"error","enrollments":7})"));
    expectTaken(json::parse(R"({"version":"1","state":"x","enrollment_choices":[{}],"enrollments":[{}]})"));
    expectTaken(without(enrolledDocument(), "/substate"));
    expectTaken(without(enrolledDocument(), "/service_status"));
    expectTaken(
        with(enrolledDocument(), "/enrollments/0/config_sync_status/last_config_sync_success", 1700000000.0));
    expectTaken(with(enrolledDocument(), "/unknown_key", json::array({1, "x", nullptr})));
}

void takesAnOddSubstatus(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    trial.press("quill_tile_enroll_action_btn");
    json::value document = with(progressDocument("started", ""), "/substatus", 7);
    document = with(document, "/enrollment_context", 12);
    expectEqual("notices",
                trial.deliver(wrensim_enrollment_status_notification, json::serialize(document)).shown(),
                {"tile update Transition \"Enrolling...\" \"Enrolling\" [Cancel]"});
}

void dropsUnknownProgress(Trial& trial) {
    trial.begin();
    for (const WrenSimDocument document :
         {wrensim_enrollment_status_notification, wrensim_unenrollment_status_notification}) {
        for (const auto& [status, substatus] :
             {std::pair("Started", ""), std::pair("", ""), std::pair("started", "Success"),
              std::pair("started", "other")}) {
            expectDropped(trial, document, json::serialize(progressDocument(status, substatus)));
        }
    }
    expectDropped(trial, wrensim_unenrollment_status_notification,
                  json::serialize(progressDocument("complete", "cancelled")));
}

void keepsWhatItHas(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    trial.deliver(wrensim_status_notification, "{}");
    trial.deliver(wrensim_dataplane_notification, "[");
    expectEqual("requests afterwards", trial.press("quill_config_sync_btn").requests(),
                {R"(PerformConfigSync {"version":"1","enrollment_id":"enrollment-1"})"});
}

void takesRanges(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    json::value document = dataplaneDocument(1, 0);
    for (const auto& [place, content] :
         {std::pair("/dataplane_alerts/0/code", json::value(4294967295)),
          std::pair("/dataplane_alerts/0/category", json::value("other")),
          std::pair("/dataplane_alerts/0/destinations", json::value(json::array())),
          std::pair("/dataplane_alerts/0/destinations/0/port", json::value(65537)),
          std::pair("/dataplane_alerts/0/destinations/0/proto", json::value("other"))}) {
        const Step step = trial.dataplane(with(document, place, content));
        expect(!step.screens().empty(), joined({"dropped with another ", place}));
    }
    expectDropped(trial, wrensim_dataplane_notification,
                  json::serialize(with(document, "/dataplane_alerts/0/code", -1)));
}

constexpr Check documentTable[] = {
    {"documents.copies", "Each of the five documents goes to the host's log under its name.", Through::Both,
     &copiesEveryKind},
    {"documents.no-json", "A text that is no JSON causes nothing.", Through::Both, &dropsWhatIsNoJson},
    {"documents.shape", "JSON of another shape causes nothing.", Through::Both, &dropsOtherShapes},
    {"documents.depth", "JSON that nests deeper than 32 levels causes nothing.", Through::Both,
     &dropsWhatNestsTooDeep},
    {"documents.status-keys", "A status that lacks what it needs causes nothing.", Through::Both,
     &dropsIncompleteStatuses},
    {"documents.progress-keys", "A progress or login document that lacks a key causes nothing.",
     Through::Both, &dropsIncompleteProgress},
    {"documents.dataplane-keys", "A dataplane document that lacks a key causes nothing.", Through::Both,
     &dropsIncompleteDataplanes},
    {"documents.kinds", "A value of another kind or out of its range causes nothing.", Through::Both,
     &dropsWrongKinds},
    {"documents.optional", "What may be left out may be left out.", Through::Both, &takesWhatMayBeLeftOut},
    {"documents.odd-substatus", "A substatus or context of another kind is passed over.", Through::Both,
     &takesAnOddSubstatus},
    {"documents.unknown-progress", "A status or substatus without a name causes nothing.", Through::Both,
     &dropsUnknownProgress},
    {"documents.kept", "A document that is dropped leaves the last one in force.", Through::Both,
     &keepsWhatItHas},
    {"documents.ranges", "Numbers and words of a dataplane document have their ranges.", Through::Both,
     &takesRanges},
};

} // namespace

std::span<const Check> documentChecks() { return documentTable; }

} // namespace host::validate
