#include "host/Commands.h"
#include "host/Files.h"
#include "host/HostError.h"
#include "host/Interrupt.h"
#include "host/LogLevel.h"
#include "host/serve/Assets.h"
#include "host/serve/Journal.h"
#include "host/serve/LiveHost.h"
#include "host/serve/LiveView.h"
#include "host/serve/MachineTracker.h"
#include "host/serve/Recording.h"
#include "host/serve/ServerLoop.h"
#include "host/serve/WebServer.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include <iostream>
#include <string>

namespace host {
namespace {

/// A JSON file of the assets; empty where it is not there or no JSON.
std::string jsonAsset(const std::filesystem::path& file) {
    try {
        boost::json::error_code error;
        const boost::json::value value = boost::json::parse(readRegularFile(file), error);
        return error ? std::string() : boost::json::serialize(value);
    } catch (const HostError&) {
        return {};
    }
}

void loadScenario(serve::LiveHost& live, const std::filesystem::path& file) {
    try {
        live.loadScenario(readFile(file));
    } catch (const HostError& fault) {
        throw HostError(file.string() + ": " + fault.what());
    }
}

} // namespace

void serveScreen(const ServeOptions& options) {
    Interrupt interrupt;
    const std::filesystem::path folder = serve::defaultAssetFolder();
    const serve::Assets assets(folder);
    const serve::Secrets secrets = options.keepsSecrets ? serve::Secrets::Kept : serve::Secrets::BlankedOut;
    serve::RecordingFile recording(options.recording, secrets);
    serve::Journal journal(recording.limits());
    serve::MachineTracker tracker;
    serve::ServerLoop loop;
    journal.setSignal([&loop] { loop.rouse(); });
    serve::LiveHost live({options.module, severityOf(options.logLevel), options.slowness}, journal, tracker);
    serve::LiveView view(journal, tracker, live,
                         {options.module.string(), jsonAsset(folder / "scenario.schema.json"),
                          jsonAsset(folder / "app" / "machine.json"), live.standIn() != nullptr},
                         [&assets](std::string_view name) { return assets.find(name) != nullptr; });
    serve::WebServer server(loop, view, assets, {options.port, secrets});
    if (!options.scenario.empty()) {
        loadScenario(live, options.scenario);
    }
    server.start();
    live.begin();
    std::cout << server.address() << std::endl;
    interrupt.wait();
    live.close();
    server.stop("the host has ended");
    recording.write(journal);
}

} // namespace host
