// The gateway's own page: the player on one of the servers that the gateway allows. The address may name another one,
// and a camera: ?server=HOST:PORT&device=ID.

import "./orbelcast.js";

const wanted = new URLSearchParams(location.search);
const server = document.getElementById("server");
const main = document.querySelector("main");

/** "camera:8080" as the player takes it: a host, and a port where there is one. */
function hostAndPort(text) {
  const [, host, port] = /^(\[[^\]]*\]|[^:]*):?(.*)$/.exec(text);
  return { host, port: port === "*" ? "" : port };
}

function show() {
  const { host, port } = hostAndPort(server.value);
  const player = document.createElement("user-control-1");
  const attributes = {
    server: host,
    port,
    device: wanted.get("device"),
    username: document.getElementById("user").value,
    password: document.getElementById("password").value,
    extendedcontrols: "Yes",
  };
  for (const [name, value] of Object.entries(attributes)) if (value) player.setAttribute(name, value);
  if (!attributes.device) chooseFirstCamera(player);
  main.replaceChildren(player);
}

/** As a person would choose it, whenever the list of cameras has come and none is chosen. */
function chooseFirstCamera(player) {
  new MutationObserver(() => {
    const list = player.shadowRoot.querySelector('[data-child="CamList"]');
    if (!list?.options.length || list.selectedIndex >= 0) return;
    list.selectedIndex = 0;
    list.dispatchEvent(new Event("change"));
  }).observe(player.shadowRoot, { childList: true, subtree: true });
}

const { servers } = await (await fetch("gateway.json")).json();
server.append(...servers.map((each) => new Option(each)));
if (wanted.has("server")) server.value = wanted.get("server");
server.addEventListener("change", show);
document.getElementById("servers").addEventListener("submit", (event) => {
  event.preventDefault();
  show();
});
show();
