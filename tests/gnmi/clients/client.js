// A gNMI client of another language: what @grpc/grpc-js makes of the server's answers, one JSON line
// each, for clients_test.py.
//
//     client.js PROTOS HOST:PORT capabilities|get|once|stream [COUNT]
"use strict";

const path = require("node:path");
const grpc = require("@grpc/grpc-js");
const loader = require("@grpc/proto-loader");

const [protos, address, method, count] = process.argv.slice(2);
const definition = loader.loadSync("gnmi.proto", {
  includeDirs: [path.resolve(protos)],
  keepCase: true,
  longs: String,
  enums: String,
  arrays: true,
  objects: true,
});
const { gNMI } = grpc.loadPackageDefinition(definition).gnmi;
const client = new gNMI(address, grpc.credentials.createInsecure());

// /qos/queues/queue[name=voice]/config
function textOf({ elem }) {
  const keyText = ([name, value]) => `[${name}=${value.replace(/[\]\\]/g, "\\$&")}]`;
  const elemText = ({ name, key }) => `/${name}${Object.entries(key).sort().map(keyText).join("")}`;
  return elem.map(elemText).join("");
}

function fail(error) {
  console.error(`${grpc.status[error.code]}: ${error.details}`);
  process.exit(1);
}

function print(response) {
  if (response.sync_response) return console.log(JSON.stringify({ sync: true }));
  const notification = response.update;
  const update = {};
  for (const { path: at, val } of notification.update) {
    update[textOf(at)] = JSON.parse(val.json_ietf_val.toString());
  }
  console.log(
    JSON.stringify({ at: notification.timestamp, delete: notification.delete.map(textOf), update })
  );
}

const all = { subscription: [{ path: {} }], encoding: "JSON_IETF" };
if (method === "capabilities") {
  client.Capabilities({}, (error, response) => {
    if (error) fail(error);
    console.log(JSON.stringify(response));
  });
} else if (method === "get") {
  client.Get({ path: [{}], encoding: "JSON_IETF" }, (error, response) => {
    if (error) fail(error);
    console.log(response.notification[0].update[0].val.json_ietf_val.toString());
  });
} else {
  const call = client.Subscribe();
  let left = Number(count || 0);
  call.on("error", (error) => error.code === grpc.status.CANCELLED || fail(error));
  call.on("data", (response) => {
    print(response);
    if (method === "stream" && !response.sync_response && --left <= 0) call.cancel();
  });
  call.write({ subscribe: { ...all, mode: method === "once" ? "ONCE" : "STREAM" } });
  if (method === "once") call.end();
}
