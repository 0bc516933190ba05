// What becomes of runs that are cut off or wrong, and of two acts on one application.
import assert from "node:assert/strict";
import { spawn, spawnSync } from "node:child_process";
import { readdirSync, readFileSync } from "node:fs";
import { test } from "node:test";
import { createInterface } from "node:readline";
import { fileURLToPath } from "node:url";
import { Mac, NoReplyError, ordinaryClock, TimedOutError } from "driver-client";
import { endChild, startChild } from "../dist/children.js";
import { desk, executables, onMac, root, startMac } from "./support.mjs";

const caller = fileURLToPath(new URL("caller.mjs", import.meta.url));
const real = new Mac({ clock: ordinaryClock });

/** The processes of the driver on a Mac. */
function runsOn(socket) {
  return readdirSync("/proc").filter((name) => /^\d+$/.test(name)).filter((pid) => {
    try {
      return readFileSync(`/proc/${pid}/environ`, "utf8").split("\0").includes(`SIMULATED_MAC=${socket}`) &&
        readFileSync(`/proc/${pid}/cmdline`, "utf8").split("\0")[0].endsWith("/driver");
    } catch {
      return false;
    }
  });
}

const posted = async (simulated) => (await simulated.tell("trace")).filter((call) => call.call === "private.post");

async function begunCaller(simulated, what) {
  const child = spawn(process.execPath, [caller, what, executables.driver, simulated.path("lock")],
    { env: { ...process.env, SIMULATED_MAC: simulated.socket }, stdio: ["ignore", "pipe", "inherit"] });
  const over = new Promise((resolve) => child.once("exit", (status, signal) => resolve(signal ?? status)));
  await new Promise((resolve) => child.stdout.once("data", resolve));
  return { child, over };
}

test("a call that is aborted throws the reason when its run has given everything back", async () => {
  await onMac(desk, async (simulated) => {
    const stop = new AbortController();
    const click = simulated.mac.app("Notes").click(340, 574, { signal: stop.signal });
    await real.until(async () => (await posted(simulated)).length > 0, { everyMs: 5 });
    stop.abort(new Error("enough"));
    await assert.rejects(click, { message: "enough" });
    assert.deepEqual(runsOn(simulated.socket), []);
    await assert.rejects(simulated.mac.session({ signal: stop.signal }), { message: "enough" });
  }, { realTime: true });
});

test("a run that takes too long is told to end, and the call says so", async () => {
  await onMac(desk, async (simulated) => {
    await simulated.tell("hang", "Chat");
    const list = simulated.mac.app("Chat").list({ timeoutMs: 50 });
    await assert.rejects(list, (error) => error instanceof TimedOutError && error.milliseconds === 50);
    assert.deepEqual(runsOn(simulated.socket), []);
  }, { realTime: true });
});

test("a caller that is told to end lets its runs give focus back first", async () => {
  await onMac(desk, async (simulated) => {
    const { child, over } = await begunCaller(simulated, "click");
    await real.until(async () => (await posted(simulated)).length > 0, { everyMs: 5 });
    child.kill("SIGTERM");
    assert.equal(await over, "SIGTERM");
    assert.deepEqual(runsOn(simulated.socket), []);
  }, { realTime: true });
});

test("a child is told to end once, whoever asks", async () => {
  const child = startChild("/bin/sh",
    ["-c", "trap 'echo told' TERM; echo ready; until read -r line; do :; done"], process.env);
  const lines = createInterface({ input: child.stdout })[Symbol.asyncIterator]();
  assert.equal((await lines.next()).value, "ready");
  const over = endChild(child);
  assert.equal((await lines.next()).value, "told");
  const overToo = endChild(child);
  child.stdin.end("go on\n");
  await Promise.all([over, overToo]);
  assert.deepEqual(await lines.next(), { done: true, value: undefined });
});

test("a caller that is killed leaves no service, no guard and nothing else behind", async () => {
  const simulated = await startMac(desk, { realTime: true });
  try {
    const { child, over } = await begunCaller(simulated, "everything");
    assert.equal(runsOn(simulated.socket).length, 4);
    child.kill("SIGKILL");
    assert.equal(await over, "SIGKILL");
    await real.until(async () => runsOn(simulated.socket).length === 0);
    assert.deepEqual(await simulated.violations(), []);
    assert.equal((await simulated.state()).locked, true);
  } finally {
    await simulated.end();
  }
});

test("acts on one application go one after the other, whatever it is called", async () => {
  await onMac(desk, async (simulated) => {
    const { mac } = simulated;
    await Promise.all([
      mac.app("Notes").click(120, 180), mac.app("com.example.notes").key("a"),
      mac.with({ scope: "Inbox" }).app("pid:41").type("b"), mac.app("Notes").move(340, 574)]);
    const acts = (await simulated.tell("trace"))
      .filter((call) => /^(private\.post|quartz\.post|private\.post-record)$/.test(call.call)).map((call) => call.pid);
    const changes = acts.filter((pid, place) => pid !== acts[place - 1]);
    assert.equal(changes.length, 4);
    assert.equal(new Set(changes).size, 4);
  });
});

test("pastes go one after the other, whatever the application", async () => {
  await onMac(`${desk}pasteboard item "public.utf8-plain-text" "mine"\n`, async (simulated) => {
    const before = (await simulated.state()).clipboard;
    await Promise.all(["Notes", "Chat"].map((app) => simulated.mac.app(app).pasteFiles(["/a"])));
    assert.deepEqual((await simulated.state()).clipboard, before);
  });
});

test("an end of the service ends what runs beside it", async () => {
  await onMac(desk, async (simulated) => {
    const service = await simulated.mac.startCaptureService(simulated.path("lock"));
    const session = await service.open("Notes");
    const click = session.app.click(340, 574);
    await real.until(async () => (await posted(simulated)).length > 0, { everyMs: 5 });
    const [told] = await Promise.allSettled([click, service.end()]);
    assert.equal(told.reason.name, "ServiceEndedError");
    assert.deepEqual(runsOn(simulated.socket), []);
  }, { realTime: true });
});

test("a run beside a service that dies is refused by driver, and the next one by the client", async () => {
  await onMac(desk, async (simulated) => {
    const service = await simulated.mac.startCaptureService(simulated.path("lock"));
    const session = await service.open("Notes");
    await simulated.tell("fault", "private.post", "3", "before", "stop", "sharing", "Notes");
    await assert.rejects(session.app.click(340, 574), { id: "capture-service-gone" });
    await service.over;
    await assert.rejects(session.app.list(), { name: "ServiceEndedError" });
  });
});

test("iterating ends the watching where it breaks off", async () => {
  await onMac(desk, async (simulated) => {
    const lines = [];
    for await (const line of simulated.mac.watchInput()) {
      lines.push(line);
      if (lines.length === 2) break;
      await simulated.tell("user", "key", "a");
    }
    assert.deepEqual(lines.map((line) => line.watching ?? line.input), [true, "key"]);
    assert.deepEqual(runsOn(simulated.socket), []);
    await simulated.settle();
  });
});

test("a driver that is not there, or says nothing, is told apart from a failure", async () => {
  await assert.rejects(new Mac({ driver: "/nowhere/driver" }).session(), NoReplyError);
  await assert.rejects(new Mac({ driver: "/bin/true" }).session(), NoReplyError);
  await assert.rejects(new Mac({ driver: "/bin/true" }).keepAwake().line(), NoReplyError);
  await assert.rejects(new Mac({ driver: "/nowhere/driver" }).startCaptureService("lock"), NoReplyError);
});

test("arguments that a command does not have are refused", async () => {
  await assert.rejects(new Mac().bgClick("Notes", 1, 2, { buton: "right" }), TypeError);
});

test("a run without an argument that its command needs is refused", async () => {
  const notes = new Mac({ driver: "/nowhere/driver" }).app("Notes");
  await assert.rejects(async () => notes.type(undefined), new TypeError("bg-type needs text"));
  await assert.rejects(async () => notes.insert("Body", undefined, "text"), new TypeError("ax-insert needs mode"));
});

test("one text in the place of several is refused", async () => {
  const notes = new Mac().app("Notes");
  await assert.rejects(async () => notes.findText("Order"), new TypeError("texts is a list of texts, not one text"));
  await assert.rejects(async () => notes.insert("Body", "replace", "text", { ownedTexts: "before" }),
    new TypeError("ownedTexts is a list of texts, not one text"));
});

test("a failure of an application that hangs says so", () => onMac(desk, async (simulated) => {
  await simulated.tell("hang", "Chat");
  await assert.rejects(simulated.mac.app("Chat").press("Accept"), { name: "HungError",
    text: 'ax-press-exact: the application did not answer for twelve seconds: no element labelled "Accept"' });
}));

test("a word that is not in the list is refused", async () => {
  const mac = new Mac({ driver: "/nowhere/driver" });
  const notes = mac.app("Notes");
  for (const [call, text] of [
    [() => notes.insert("Body", "append", "text"),
      'mode is one of replace, message, end, new_line, caret, not "append"'],
    [() => notes.press("Send", { which: "first" }), 'which is one of only, last, not "first"'],
    [() => notes.click(1, 2, { button: "middle" }), 'button is one of left, right, not "middle"'],
    [() => notes.slider("Size", { value: "80" }), 'value is one of a number, increment, decrement, not "80"'],
    [async () => mac.lockGuard({ language: "de" }), 'language is one of zh, en, not "de"'],
  ]) await assert.rejects(call, new TypeError(text));
  await assert.rejects(notes.slider("Size", { value: 80.5 }), NoReplyError);
});

test("a failure says what to do", () => onMac(desk, ({ mac }) => assert.rejects(mac.app("Chat").press("Like"), {
  text: 'ax-press-exact: 2 elements labelled "Like"',
  message: 'ax-press-exact: 2 elements labelled "Like"\nWhat to do: Name the container, or pass last for the lowest one.',
})));

test("the example of the page does what the page says", () => {
  const page = readFileSync(new URL("clients/typescript/README.md", root), "utf8");
  const [, example] = page.match(/^```js title=agent.mjs\n(.*?)^```$/ms);
  const done = spawnSync(process.execPath, ["--input-type=module", "-e", example], {
    cwd: fileURLToPath(new URL("..", import.meta.url)), encoding: "utf8",
    env: { ...process.env, PATH: `${fileURLToPath(new URL(".", `file://${executables.driver}`))}:${process.env.PATH}`,
      WORLD: fileURLToPath(new URL("demo/desk.world", root)) } });
  assert.deepEqual([done.status, done.stdout, done.stderr], [0, "accepted\n", ""]);
});
