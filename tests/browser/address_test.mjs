// Who is let in under the address of a view, and who is not.
import assert from "node:assert/strict";
import http from "node:http";
import net from "node:net";
import { networkInterfaces } from "node:os";
import { before } from "node:test";
import { Needs, test } from "./needs.mjs";
import { within } from "./programs.mjs";

const needs = Needs.ofFile();
let mac;
let port;
let path;

before(async () => {
  mac = await needs.mac();
  ({ port, pathname: path } = new URL(mac.address));
});

/** The status and the text of an answer. */
function ask(options = {}, body = "") {
  return within("an answer of the view", new Promise((resolve, reject) => {
    const request = http.request({ host: "127.0.0.1", port, path, agent: false, ...options }, (answer) => {
      let text = "";
      answer.on("data", (data) => { text += data; });
      answer.on("end", () => resolve([answer.statusCode, text.trim(), answer.headers]));
    });
    request.on("error", reject);
    request.end(body);
  }));
}

const status = async (...words) => (await ask(...words)).slice(0, 2);
const session = JSON.stringify(["violations"]);

test("nobody is let in under another address", async () => {
  const refused = [404, "not the address that was printed"];
  const wrong = path.replace(/[0-9a-f]/, (digit) => (digit === "0" ? "1" : "0"));
  for (const other of ["/", "/x/", wrong, path.slice(0, -2) + "/", path.slice(0, -1), `/${path}`]) {
    assert.deepEqual(await status({ path: other }), refused, other);
  }
  assert.deepEqual(await status({ path: `${wrong}control`, method: "POST" }, session), refused);
});

test("nobody is let in by another name of this machine", async () => {
  const refused = [403, "not a name of this Mac"];
  for (const host of ["evil.example", `evil.example:${port}`, "127.0.0.1", `127.0.0.1:${Number(port) + 1}`]) {
    assert.deepEqual(await status({ headers: { Host: host } }), refused, host);
  }
  assert.equal((await ask({ headers: { Host: `localhost:${port}` } }))[0], 200);
});

test("no page of somebody else's is let in", async () => {
  const options = { path: `${path}control`, method: "POST" };
  for (const origin of ["http://evil.example", "null", `http://localhost:${port}`, `https://127.0.0.1:${port}`]) {
    assert.deepEqual(await status({ ...options, headers: { Origin: origin } }, session),
      [403, "not a page of this Mac"], origin);
  }
  const own = { ...options, headers: { Origin: `http://127.0.0.1:${port}` } };
  assert.deepEqual(await status(own, session), [200, '{"lines":["{\\"ok\\":true,\\"violations\\":[]}"],"ok":true}']);
});

test("no page may frame it, and it loads nothing of others", async () => {
  const [, , headers] = await ask();
  assert.match(headers["content-security-policy"], /^default-src 'none'; .*frame-ancestors 'none'$/);
  assert.equal(headers["referrer-policy"], "no-referrer");
  assert.equal(headers["x-content-type-options"], "nosniff");
});

test("what makes no sense is refused", async () => {
  const control = { path: `${path}control`, method: "POST" };
  assert.deepEqual(await status({ method: "PUT" }), [405, "neither GET nor POST"]);
  assert.deepEqual(await status({ path: `${path}live.html` }), [404, "there is nothing of this name"]);
  assert.deepEqual(await status({ path: `${path}screens/0` }), [404, "there is nothing of this name"]);
  for (const body of ["", "{}", "[]", "[1]", "[[\"lock\"]]", "nonsense"]) {
    assert.deepEqual(await status(control, body), [400, "not a list of words"], body);
  }
  assert.deepEqual(await status(control, JSON.stringify(["x".repeat(70_000)])), [413, "too long"]);
  assert.deepEqual(await mac.happenings(), []);
});

test("it listens on this machine alone", async () => {
  const others = Object.values(networkInterfaces()).flat().filter((each) => !each.internal && each.family === "IPv4");
  for (const { address } of others) {
    await assert.rejects(ask({ host: address }), /ECONNREFUSED/);
  }
});

test("so many connections and no more", async () => {
  const open = await Promise.all(Array.from({ length: 32 }, () => new Promise((resolve, reject) => {
    const socket = net.connect(port, "127.0.0.1", () => resolve(socket)).on("error", reject);
  })));
  let isAnswered = false;
  const next = ask().then(([code]) => { isAnswered = true; return code; });
  await mac.tell("state");
  assert.equal(isAnswered, false);
  open.forEach((socket) => socket.destroy());
  assert.equal(await next, 200);
});
