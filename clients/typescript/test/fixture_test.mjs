// The fixture: Macs of a test's own, from worlds, and what is said when a world or a test is wrong.
import assert from "node:assert/strict";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, test } from "node:test";
import { fileURLToPath, pathToFileURL } from "node:url";
import { DriverError } from "driver-client";
import { desk, onMac, startMac } from "./support.mjs";

const folder = mkdtempSync(join(tmpdir(), "worlds-"));
after(() => rmSync(folder, { recursive: true }));

/** The URL of a file in a folder that goes with the tests. */
function fileOf(name, text) {
  writeFileSync(join(folder, name), text);
  return pathToFileURL(join(folder, name));
}

test("the fixture shows what is wrong with a world", async () => {
  const two = fileOf("two.world", "app A pid 41\nap B\n");
  for (const [world, file] of [["app A pid 41\nap B\n", "world"], [two, fileURLToPath(two)]]) {
    await assert.rejects(startMac(world), { name: "DriverError", message: new RegExp(
      `^no simulated Mac: ${file}:2:1: error: unknown word 'ap'; expected .*; did you mean 'app'\\?\nap B\n\\^~$`) });
  }
  await assert.rejects(startMac(pathToFileURL("/nowhere/some.world")),
    { name: "DriverError", message: /^no simulated Mac: .*\/nowhere\/some.world.*: No such file or directory$/ });
  await assert.rejects(startMac(desk, { simulatedMac: "/nowhere/simulated-mac" }),
    { name: "DriverError", message: /^no simulated Mac: .*\/nowhere\/simulated-mac/ });
});

test("the fixture takes a file with what it includes", () => {
  fileOf("part.world", "app Part pid 77\n");
  const whole = fileOf("whole.world", 'include "part.world"\napp A pid 41 frontmost\n');
  return onMac(whole, async ({ mac }) => assert.equal((await mac.windows("Part")).running, true));
});

test("the fixture says what a world is", async () => {
  const path = fileURLToPath(fileOf("some.world", desk));
  await assert.rejects(startMac(path), new TypeError(
    `"${path}" is taken for the text of a world; for the file say pathToFileURL("${path}")`));
  await assert.rejects(startMac(1), new TypeError("a world is its text, or the URL of its file, not number"));
});

test("the fixture takes a text that cannot be a file's name", async () => {
  await onMac(`app "${"N".repeat(5000)}" pid 41 frontmost`, async ({ mac }) =>
    assert.equal((await mac.windows("N".repeat(5000))).running, true));
  await assert.rejects(startMac("\0"),
    { name: "DriverError", message: /^no simulated Mac: world:1:1: error: unknown word '\0'/ });
});

/** The warnings of Node during some work. */
async function warningsOf(work) {
  const warnings = [];
  const take = (warning) => warnings.push([warning.name, warning.message]);
  process.on("warning", take);
  await work();
  await new Promise((resolve) => setImmediate(resolve));
  process.off("warning", take);
  return warnings;
}

test("the fixture warns of what is hardly meant", async () => {
  const world = 'app A pid 41 frontmost\n    window 7 "A" at 0,0 size 9x9\n        AXButon "B"\n';
  assert.deepEqual(await warningsOf(() => onMac(world, () => undefined)), [["SimulatedMacWarning",
    "world:3:9: warning: macOS knows no role 'AXButon'; did you mean 'AXButton'?\n" +
      '        AXButon "B"\n        ^~~~~~~']]);
});

test("the fixture hands on what the Mac hints at", async () => {
  const warnings = await warningsOf(() => onMac(desk, async (simulated) => {
    for (let times = 0; times < 50; times += 1) await simulated.state();
  }));
  assert.equal(warnings.length, 1);
  assert.match(warnings[0][1], /virtual time hardly passed while the same was asked 25 times/);
});

test("the fixture fails a test in which the user's state has changed or a rule was broken", async () => {
  await assert.rejects(onMac(desk, async (simulated) => {
    await simulated.tell("lock");
    await simulated.tell("user", "move", "10,20");
  }), { message: "the user's state is not as before: locked was false and is true; pointer.x was 980 and is " +
    "10; pointer.y was 420 and is 20\nWhat to do: if the test or its world changes it, call settle() after that." });
  await assert.rejects(startMac("nonsense"), DriverError);
  await assert.rejects(onMac(desk, (simulated) => simulated.tell("nonsense")), DriverError);
});

test("the fixture says in the journal why the test has failed", async () => {
  const folder = mkdtempSync(join(tmpdir(), "report-"));
  const page = join(folder, "report.html");
  let line;
  await assert.rejects(onMac(desk, () => {
    const error = new RangeError("no answer\nexpected one");
    line = /fixture_test\.mjs:(\d+)/.exec(error.stack)[1];
    throw error;
  }, { report: page }), RangeError);
  const text = `"text":"RangeError: no answer (fixture_test.mjs:${line})\\nexpected one"`;
  assert.ok(readFileSync(page, "utf8").includes(text), text);
  rmSync(folder, { recursive: true });
});

test("the fixture says in the journal on which line a command has failed", async () => {
  const page = join(folder, "failed.html");
  const failed = onMac(desk, async ({ mac }) => {
    await mac.app("Chat").list();
    await mac.app("Chat").press("Nowhere");
  }, { report: page });
  const [, line] = /fixture_test\.mjs:(\d+)/.exec(new Error().stack);
  await assert.rejects(failed, { name: "CommandError" });
  const text = `no element labelled \\"Nowhere\\" (fixture_test.mjs:${line - 2})\\nWhat to do: `;
  assert.ok(readFileSync(page, "utf8").includes(text), text);
});

test("a wait in vain says what was there instead", () => onMac(desk, async (simulated) => {
  await simulated.tell("wait", "until", "Chat", "window", "Ada", "gone");
  await assert.rejects(simulated.tell("wait", "until", "Chat", "window", "Grace", "within", "1s"), { message:
    "simulated-mac wait until Chat window Grace within 1s: waited 1000.0 ms in vain: Chat window Grace; at last it " +
    'had the windows "Ada — Chat"' });
}));

test("an until in vain says for what, and what was there instead", () => onMac(desk, async ({ mac }) => {
  const ask = async () => (await mac.app("Chat").findText(["Never"])).counts["Never"];
  await assert.rejects(mac.until(ask, { timeoutMs: 1000, what: "the answer" }), { name: "WaitedInVainError",
    message: "waited 1000 ms in vain for the answer, and asked 6 times; at last driver ax-find-text Chat Never " +
      'replied {"counts":{"Never":0},"frames":{},"ok":true}' });
  await assert.rejects(mac.until(async () => null, { timeoutMs: 0 }),
    { message: "waited 0 ms in vain, and asked once; the last answer was null" });
}));

test("the fixture writes a report of what happened when the test fails", async () => {
  const folder = mkdtempSync(join(tmpdir(), "report-"));
  const page = join(folder, "report.html");
  await assert.rejects(onMac(desk, ({ mac }) => mac.app("Chat").press("Nowhere"), { report: page }), DriverError);
  assert.match(readFileSync(page, "utf8"), /no element labelled/);
  await onMac(desk, (simulated) =>
    assert.rejects(simulated.report(join(folder, "nowhere", "report.html")), /no report: /));
  rmSync(folder, { recursive: true });
});
