// The first place: how the connection, the radios, the devices and the firmware are doing, each with
// a link to where it is set.
import { make } from "./dom.js";
import { amount, duration, number, t } from "./text.js";
import { isDone, read } from "./api.js";
import { hrefOf } from "./places.js";
import { line } from "./show.js";

const MODES = { open: "None (open)", wpa2: "WPA2", "wpa2-wpa3": "WPA2 and WPA3", wpa3: "WPA3" };
const BANDS = { "2.4GHz": "2.4 GHz", "5GHz": "5 GHz" };

function state(isGood, text) {
  return make("span", { className: isGood ? "state good" : "state" }, text);
}

function card(title, href, ...inside) {
  return make(
    "section",
    { className: "tile" },
    make("h2", {}, make("a", { href }, title)),
    ...inside,
  );
}

function wan(network) {
  const one = network.wans.find((each) => each.enabled) || network.wans[0];
  const isUp = one.ipv4.state === "up" || one.ipv6.state === "up";
  return card(
    t("Internet"),
    hrefOf("network", ["wans"]),
    make(
      "dl",
      {},
      line(one.name, state(isUp, isUp ? t("Connected") : t("Not connected"))),
      line("IPv4", one.ipv4.address || "–"),
      line("IPv6", one.ipv6.address || "–"),
      line(t("Connected for"), isUp ? duration(one.uptimeSeconds) : "–"),
      line(t("Received"), amount(one.statistics.received.bytes)),
      line(t("Sent"), amount(one.statistics.sent.bytes)),
    ),
  );
}

function radios(wifi) {
  return card(
    t("Radios"),
    hrefOf("wifi", ["radios"]),
    make(
      "ul",
      { className: "plain" },
      ...wifi.radios.map((radio, index) =>
        make(
          "li",
          {},
          make("a", { href: hrefOf("wifi", ["radios", index]) }, BANDS[radio.band] || radio.band),
          " ",
          state(radio.enabled, radio.enabled ? t("on") : t("off")),
          make(
            "span",
            { className: "about" },
            t(
              "Channel {0}, {1} wide, power {2} %",
              radio.channel,
              radio.bandwidth.replace("MHz", " MHz"),
              radio.txPower,
            ),
          ),
        ),
      ),
    ),
  );
}

// A network has one name on all radios; who is on it is counted over all.
function networks(wifi) {
  const byName = new Map();
  wifi.radios.forEach((radio, r) =>
    radio.networks.forEach((network, n) => {
      const one = byName.get(network.ssid) || {
        ...network,
        bands: [],
        count: 0,
        at: ["radios", r, "networks", n],
      };
      one.bands.push(BANDS[radio.band] || radio.band);
      one.count += network.clients.length;
      byName.set(network.ssid, one);
    }),
  );
  return card(
    t("Networks"),
    hrefOf("wifi", ["radios"]),
    make(
      "ul",
      { className: "plain" },
      ...[...byName.values()].map((one) =>
        make(
          "li",
          {},
          make("a", { href: hrefOf("wifi", one.at) }, one.ssid),
          " ",
          state(one.enabled, one.enabled ? t("on") : t("off")),
          make(
            "span",
            { className: "about" },
            `${one.bands.join(", ")} · ${t(MODES[one.security.mode])} · `,
            one.count === 1 ? t("1 device") : t("{0} devices", one.count),
          ),
        ),
      ),
    ),
  );
}

// Devices by Wi-Fi first, with their signal; then those that the gateway knows by cable.
function connected(wifi, gateway) {
  const rows = wifi.radios.flatMap((radio) =>
    radio.networks.flatMap((network) =>
      network.clients.map((client) => ({
        name: client.name || client.mac,
        address: client.ipv4,
        where: `${network.ssid}, ${BANDS[radio.band]}`,
        how: `${client.signal.quality} %`,
        mac: client.mac,
      })),
    ),
  );
  const known = new Set(rows.map((row) => row.mac));
  const others = gateway.devices
    .filter((one) => one.online && !known.has(one.mac))
    .map((one) => ({
      name: one.name,
      address: one.connection.ipv4,
      where: one.connection.interface,
      how: "–",
    }));
  const heads = ["Name", "Address", "Where", "Signal"];
  const title = t("Connected devices");
  return make(
    "section",
    { className: "tile wide" },
    make(
      "h2",
      {},
      make("a", { href: hrefOf("gateway", ["devices"]) }, title),
      ` (${number(rows.length + others.length)})`,
    ),
    make(
      "div",
      { className: "scroll", tabIndex: 0, role: "region", "aria-label": title },
      make(
        "table",
        {},
        make(
          "thead",
          {},
          make("tr", {}, ...heads.map((head) => make("th", { scope: "col" }, t(head)))),
        ),
        make(
          "tbody",
          {},
          ...[...rows, ...others].map((row) =>
            make(
              "tr",
              {},
              ...[row.name, row.address, row.where, row.how].map((text) => make("td", {}, text)),
            ),
          ),
        ),
      ),
    ),
  );
}

function firmware(gateway) {
  const { running, available, autoUpdate } = gateway.firmware;
  const { cpu, memory } = gateway.monitor;
  return card(
    t("Gateway"),
    hrefOf("gateway", ["firmware"]),
    make(
      "dl",
      {},
      line(t("Model"), gateway.system.model),
      line(t("Firmware"), running.version),
      line(t("Newer version"), available ? available.version : t("none")),
      line(t("Automatic updates"), autoUpdate.enabled ? t("on") : t("off")),
      line(t("Temperature"), `${number(cpu.temperature.celsius)} °C`),
      line(t("Free memory"), amount(memory.freeKiB * 1024)),
    ),
  );
}

// The tiles; an answer that is no success where one of the areas cannot be read.
export async function overview() {
  const answers = await Promise.all(["network", "wifi", "gateway"].map(read));
  const bad = answers.find((answer) => !isDone(answer));
  if (bad) {
    return { problem: bad };
  }
  const [network, wifi, gateway] = answers.map((answer) => answer.value);
  return {
    tiles: make(
      "div",
      { className: "tiles" },
      wan(network),
      networks(wifi),
      radios(wifi),
      firmware(gateway),
      connected(wifi, gateway),
    ),
  };
}
