#include "host/validate/Story.h"

#include "host/validate/Documents.h"

#include <boost/json/serialize.hpp>

#include <string>

namespace host::validate {
namespace {

namespace json = boost::json;

class Teller {
public:
    Teller(PluginObject& usedPlugin, const BackendControls& usedBackend)
        : plugin(usedPlugin)
        , backend(usedBackend) {}

    void tell() {
        plugin.Start();
        deliver(wrensim_status_notification, initDocument());
        enroll();
        showAlerts();
        logIn();
        showErrors();
        unenroll();
        plugin.Stop(0);
    }

private:
    void deliver(WrenSimDocument document, const json::value& content) const {
        backend.deliverAndWait(WRENSIM_LATEST_API, document, json::serialize(content).c_str());
    }
    void send(const char* id) const {
        plugin.EventNotification(std::string("<vtguiEvent id=\"").append(id).append("\"/>").c_str());
    }

    void enroll() const {
        deliver(wrensim_status_notification, notEnrolledDocument());
        send("quill_toast_enroll_action_btn_OnPress");
        deliver(wrensim_enrollment_status_notification, progressDocument("started", ""));
        deliver(wrensim_enrollment_auth_request,
                with(loginDocument(), "/start_url", "https://login.example/?a=1&b=<2>"));
        send("quill_enrollment_browser_web_control_OnPress");
        deliver(wrensim_status_notification, enrolledDocument());
        deliver(wrensim_enrollment_status_notification, progressDocument("complete", "success"));
    }
    void showAlerts() const {
        deliver(wrensim_dataplane_notification,
                with(dataplaneDocument(1, 0), "/dataplane_alerts/0/tile_message", awkwardText));
        send("quill_tile_details_action_toast_btn_OnPress");
        send("quill_tile_details_action_btn_OnPress");
        deliver(wrensim_dataplane_notification, dataplaneDocument(3, 0));
        deliver(wrensim_dataplane_notification, dataplaneDocument(0, 0));
    }
    void logIn() const {
        deliver(wrensim_dataplane_notification, dataplaneDocument(0, 2));
        send("quill_tile_verify_action_toast_btn_OnPress");
        send("quill_dataplane_auth_browser_web_control_OnPress");
        send("quill_config_sync_btn_OnPress");
        deliver(wrensim_dataplane_notification, dataplaneDocument(0, 0));
    }
    void showErrors() const {
        deliver(wrensim_status_notification, notEnrolledDocument());
        for (const char* substatus : {"internal_error", "server_certificate_error"}) {
            send("quill_tile_enroll_action_btn_OnPress");
            deliver(wrensim_enrollment_status_notification, progressDocument("started", ""));
            deliver(wrensim_enrollment_status_notification, progressDocument("complete", substatus));
        }
        send("wren_client_error_close_btn_OnPress");
        deliver(wrensim_status_notification, errorDocument("no_service"));
    }
    void unenroll() const {
        deliver(wrensim_status_notification, enrolledDocument());
        send("quill_adv_unenroll_btn_OnPress");
        deliver(wrensim_unenrollment_status_notification, progressDocument("started", ""));
        deliver(wrensim_status_notification, notEnrolledDocument());
        deliver(wrensim_unenrollment_status_notification, progressDocument("complete", "success"));
    }

    PluginObject& plugin;
    const BackendControls& backend;
};

} // namespace

void tellStory(PluginObject& plugin, const BackendControls& backend) { Teller(plugin, backend).tell(); }

} // namespace host::validate
