/**
 * The page of the reference host: the user's screen at one side, and at the other what goes on behind it. This module
 * only joins the parts; each of them shows one subject.
 */
import { Connection, RequestError } from "./core/connection.js";
import { setText } from "./core/dom.js";
import { useSplitter } from "./core/splitter.js";
import { useTabs } from "./core/tabs.js";
import { useTrace } from "./inspector/trace.js";
import { useMachine } from "./machine/machine.js";
import { useBrowsers } from "./screen/browsers.js";
import { useDialogs } from "./screen/dialogs.js";
import { keepTileFree } from "./screen/room.js";
import { useMessages } from "./screen/messages.js";
import { useSettings } from "./screen/settings.js";
import { useStatistics } from "./screen/statistics.js";
import { useTile, useTray } from "./screen/tile.js";
import { useToasts } from "./screen/toasts.js";
import { WindowState } from "./screen/window-state.js";
import { useConsole } from "./service/console.js";

const at = (id) => document.getElementById(id);

const connection = new Connection(liveAddress(), { take, tell: showPhase });
const request = (what, fields) => connection.request(what, fields);

/** @type {import("./core/protocol.js").Ask} */
async function ask(what, fields) {
    try {
        await request(what, fields);
        showProblem("");
        return true;
    } catch (error) {
        if (!(error instanceof RequestError)) {
            throw error;
        }
        showProblem(error.message);
        return false;
    }
}

const press = ({ id }) => ask("press", { control: id, event: "OnPress" });

const windows = new WindowState(showWindows);
const tray = useTray(at("tray"), () => windows.toggle());
const tile = useTile(at("main-window"), press);
const settings = useSettings(at("settings"), press);
const statistics = useStatistics(at("statistics"));
const messages = useMessages(at("messages"), () => ask("clear_history"));
const toasts = useToasts(at("toasts"), press);
const dialogs = useDialogs(document.body, { press, close: ({ id }) => ask("close", { popup: id }) });
const browsers = useBrowsers(at("popups"), ask);
const trace = useTrace(at("trace"));
const machine = useMachine(at("machine"));
const service = useConsole(at("service"), request, ask);

document.querySelectorAll("[role=tablist]").forEach((tablist) => useTabs(tablist));
useSplitter(at("splitter"), at("workbench"));
at("open-windows").addEventListener("click", () => {
    windows.toggle();
    at("screen-heading").focus();
});
keepTileFree(at("screen"), at("main-window"));
at("reconnect").addEventListener("click", () => connection.open());
connection.open();

function take(message) {
    const receivers = {
        hello: () => {
            showModule(message);
            toasts.startAnew();
            trace.startAnew(message.entries);
            machine.startAnew(message);
            service.startAnew(message);
        },
        entries: () => {
            windows.note(message.entries);
            trace.add(message.entries, message.missed);
            machine.add(message.entries);
        },
        screen: () => showScreen(message.screen),
        machine: () => machine.show(message),
        service: () => service.show(message.state),
        goodbye: () => {},
    };
    if (Object.hasOwn(receivers, message.type)) {
        receivers[message.type]();
    } else {
        console.warn(`a message of type ${message.type}`);
    }
}

/** @param {import("./core/protocol.js").Screen} screen */
function showScreen(screen) {
    windows.take(screen.window);
    tray.show(screen.tray);
    tile.show(screen);
    settings.show(screen);
    statistics.show(screen);
    messages.show(screen);
    toasts.show(screen);
    browsers.show(screen.popups.filter(({ type }) => type === "browser"));
    dialogs.show(screen.popups.filter(({ type }) => type !== "browser"));
}

function showWindows(isOpen) {
    at("windows").hidden = !isOpen;
    at("away").hidden = isOpen;
    tray.showOpen(isOpen);
}

function showModule({ module: { label, version, path, interface: kind }, stand_in: isStandIn }) {
    document.title = `${label} · Reference host`;
    at("module").title = path;
    setText(at("module"), [`${label} ${version}`, kind === "c" ? "C interface" : "C++ interface", isStandIn ? "stand-in service" : ""].filter(Boolean).join(" · "));
}

function showPhase({ name, reason }) {
    const words = {
        connecting: "Connecting",
        live: "Connected",
        lost: "Connection lost. Trying again",
        ended: `The host has ended. ${reason}`.trim(),
    };
    at("connection").dataset.phase = name;
    document.body.dataset.phase = name;
    setText(at("connection-text"), words[name]);
    at("reconnect").hidden = name !== "ended";
}

function showProblem(text) {
    at("problem").hidden = text === "";
    setText(at("problem"), text);
}

function liveAddress() {
    const address = new URL("live", document.baseURI);
    address.protocol = address.protocol === "https:" ? "wss:" : "ws:";
    return address.href;
}
