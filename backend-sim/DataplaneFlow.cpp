#include "backend-sim/DataplaneFlow.h"

namespace sim {

void DataplaneFlow::answer(const Request& request) {
    core.later(core.scenario().delays.dataplaneReply,
               [this, context = valueOf(request, "context_id"),
                cookie = valueOf(request, "authorization_cookie")] { judge(context, cookie); });
}

void DataplaneFlow::judge(const std::string& context, const std::string& cookie) {
    core.reach(moment::dataplaneReply);
    if (core.device().isDown()) {
        return;
    }
    if (core.logins().accepts(wrensim_dataplane_login, context, cookie)) {
        core.device().removeAuthRequest(context);
    }
    core.repeatDataplane();
}

} // namespace sim
