// What is shared while a connection lasts, and what becomes of it when it, or anything that it
// needs, is cut off.
import assert from "node:assert/strict";
import { test } from "node:test";
import { setTimeout as moment } from "node:timers/promises";
import { environmentOf, left, processesOn, real } from "../../macs.mjs";
import {
  callsOf,
  desk,
  initialize,
  onServer,
  request,
  runsOf,
  startMac,
  started
} from "./support.mjs";

test("one service marks what is operated, and none what is only read", async () => {
  await onServer(async ({ call, simulated }) => {
    await call("see_list", { app: "Notes" });
    await call("see_picture", { app: "Notes" });
    assert.deepEqual(
      [runsOf(simulated, "capture-service").length, await callsOf(simulated, "share.start-stream")],
      [0, 0]
    );
    await Promise.all([
      call("press_label", { app: "Notes", label: "Sign" }),
      call("point_click", { app: "Browser", x: 620, y: 256 }),
      call("keys_press", { app: "pid:41", combo: "a" })
    ]);
    assert.deepEqual(
      [runsOf(simulated, "capture-service").length, await callsOf(simulated, "share.start-stream")],
      [1, 2]
    );
  });
});

test("only so many sharings go on at once, whatever scopes are asked for", async () => {
  await onServer(async ({ call, simulated }) => {
    const press = (given) => call("press_label", { app: "Notes", label: "Sign", ...given });
    // A scope is the same in whatever case, and another one to the server.
    const scopes = Array.from({ length: 20 }, (_, bits) =>
      [..."inbox"].map((one, place) => ((bits >> place) & 1 ? one.toUpperCase() : one)).join("")
    );
    for (const scope of [...scopes, undefined, "inbox", "Inbox"])
      assert.equal((await press({ scope })).isError, undefined);
    const going = async () =>
      (await callsOf(simulated, "share.start-stream")) -
      (await callsOf(simulated, "share.stop-stream"));
    assert.equal(await going(), 16);
    await call("press_label", { app: "Chat", label: "Accept" });
    assert.equal((await press({ scope: "inbox" })).isError, undefined);
    assert.equal(await going(), 16);
  });
});

test("what cannot be shared is refused, and the next act starts another service", async () => {
  await onServer(async ({ call, simulated }) => {
    await simulated.tell("fault", "share.start-stream", "1", "thrown");
    const told = await call("press_label", { app: "Notes", label: "Sign" });
    assert.deepEqual([told.isError, told.structuredContent.id], [true, "sharing-unavailable"]);
    assert.equal(
      (await call("press_label", { app: "Notes", label: "Sign" })).structuredContent.ok,
      true
    );
  });
});

test("an application without a window, and a locked Mac, get driver's own refusal", async () => {
  await onServer(async ({ call, simulated }) => {
    const id = async (given) =>
      (await call("press_label", { label: "Sign", ...given })).structuredContent.id;
    assert.equal(await id({ app: "Nobody" }), "app-not-running");
    assert.equal(await id({ app: "Notes", scope: "elsewhere" }), "no-element-labelled");
    assert.equal(await id({ app: "Notes" }), undefined);
    await simulated.tell("lock");
    assert.equal(await id({ app: "Notes" }), "mac-locked");
    await simulated.tell("unlock");
    assert.equal(await id({ app: "Notes" }), undefined);
    await simulated.tell("quit", "Notes");
    assert.equal(await id({ app: "Notes" }), "app-not-running");
    assert.equal(
      (await call("press_label", { app: "Chat", label: "Accept" })).structuredContent.ok,
      true
    );
  });
});

test("when the user stops the sharing everything has ended, but for what puts things right", async () => {
  await onServer(async ({ client, call, simulated }) => {
    await call("guard_awake", { awake: true });
    await call("press_label", { app: "Notes", label: "Sign" });
    await simulated.tell("stop", "sharing", "Notes");
    await real.until(async () => runsOf(simulated, "keep-awake").length === 0);
    for (const [name, given] of [
      ["press_label", { app: "Notes", label: "Sign" }],
      ["see_list", { app: "Notes" }],
      ["see_scene", {}],
      ["see_user", {}],
      ["guard_awake", { awake: true }]
    ]) {
      const { structuredContent } = await call(name, given);
      assert.deepEqual(structuredContent, {
        ok: false,
        id: "service-ended",
        parts: {},
        error:
          "the capture service has ended: native screen sharing stopped: Error " +
          'Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3817 "The user stopped the stream"',
        remedy:
          "Stop working, and ask the user: nothing is done any more before the host connects anew."
      });
    }
    await assert.rejects(
      client.readResource({ uri: "driver://screen" }),
      /the capture service has ended/
    );
    assert.deepEqual(runsOf(simulated, "capture-service"), []);
    assert.equal(
      (await call("guard_release_focus", { pid: 41, window: 7 })).structuredContent.ok,
      true
    );
  });
});

test("a service that is killed ends everything, and its cover locks", async () => {
  await onServer(
    async ({ call, simulated }) => {
      await call("press_label", { app: "Notes", label: "Sign" });
      await call("guard_cover");
      process.kill(Number(runsOf(simulated, "capture-service")[0]), "SIGKILL");
      await real.until(async () => runsOf(simulated, "lock-guard").length === 0);
      assert.match(
        (await call("see_scene")).structuredContent.error,
        /has ended: it was ended from outside/
      );
      assert.equal((await simulated.state()).locked, true);
    },
    { settles: true }
  );
});

test("a cover that is killed leaves a locked Mac, and says so", async () => {
  await onServer(
    async ({ call, simulated }) => {
      await call("guard_cover");
      assert.equal((await call("guard_cover")).structuredContent.id, "already-covered");
      process.kill(Number(runsOf(simulated, "lock-guard")[0]), "SIGKILL");
      // The login window shows some time after the lock.
      await simulated.mac.until(async () => (await simulated.state()).locked);
      assert.equal((await call("guard_lock")).structuredContent.id, "guard-gone");
    },
    { settles: true }
  );
});

test("a cover that has ended by itself tells how", async () => {
  await onServer(
    async ({ call, simulated }) => {
      await call("guard_cover", { graceSeconds: 30, language: "en" });
      await real.until(async () => runsOf(simulated, "lock-guard").length === 0);
      assert.deepEqual((await call("guard_lock")).structuredContent, { by: "grace", ok: true });
    },
    { world: `${desk}at 5s user key a\n`, settles: true }
  );
});

test("a call that is cancelled ends its run, which gives back what it had borrowed", async () => {
  await onServer(
    async ({ call, simulated }) => {
      const cancel = new AbortController();
      const click = call(
        "point_click",
        { app: "Notes", x: 340, y: 574 },
        { signal: cancel.signal }
      );
      await real.until(async () => (await callsOf(simulated, "private.post")) > 0, { everyMs: 5 });
      cancel.abort(new Error("enough"));
      await assert.rejects(click, /enough/);
      await real.until(async () => runsOf(simulated, "bg-click").length === 0, { everyMs: 5 });
      // It has died of the signal that told it to end.
      assert.equal(await callsOf(simulated, "process.die"), 1);
      assert.equal((await call("see_scene")).structuredContent.ok, true);
    },
    { realTime: true }
  );
});

test("a call that takes long tells how long, and that an application hangs", async () => {
  await onServer(
    async ({ call, simulated }) => {
      const waited = [];
      const wait = call(
        "find_wait",
        { app: "Notes", texts: ["nowhere"], secondsMax: 2.5 },
        { onprogress: (told) => waited.push(told) }
      );
      await simulated.tell("hang", "Chat");
      const hung = [];
      const list = call("see_list", { app: "Chat" }, { onprogress: (told) => hung.push(told) });
      assert.equal((await wait).structuredContent.id, "not-shown");
      const seconds = (count) => Array.from({ length: count }, (_, place) => place + 1);
      assert.deepEqual(
        waited,
        seconds(Math.max(2, waited.length)).map((progress) => ({ progress, total: 2.5 }))
      );
      assert.equal((await list).structuredContent.id, "application-hung");
      assert.deepEqual(
        hung,
        seconds(Math.max(11, hung.length)).map((progress) => ({ progress }))
      );
    },
    { realTime: true }
  );
});

test("a wait ends as soon as the text is shown", async () => {
  await onServer(
    async ({ call, simulated }) => {
      const wait = call("find_wait", {
        app: "Browser",
        texts: ["Tomorrow — Browser", "Monday: rain"],
        secondsMax: 60
      });
      await simulated.tell("user", "click", "655,299");
      assert.deepEqual((await wait).structuredContent.counts, {
        "Tomorrow — Browser": 1,
        "Monday: rain": 1
      });
    },
    { settles: true }
  );
});

for (const signal of ["SIGTERM", "SIGINT", "SIGHUP"]) {
  test(`a server that gets ${signal} ends all that it has begun, and dies of it`, async () => {
    const simulated = await startMac(desk, { realTime: true });
    try {
      const { say, line, over, child } = started([], environmentOf(simulated));
      say(initialize);
      await line();
      say(request(1, "tools/call", { name: "guard_awake", arguments: { awake: true } }));
      await line();
      say(
        request(2, "tools/call", {
          name: "point_click",
          arguments: { app: "Notes", x: 340, y: 574 }
        })
      );
      await real.until(async () => (await callsOf(simulated, "private.post")) > 0, { everyMs: 5 });
      child.kill(signal);
      assert.equal((await over).signal, signal);
      assert.deepEqual(processesOn(simulated), []);
      await simulated.check();
    } finally {
      await simulated.end();
    }
  });
}

for (const [name, given] of [
  ["press_label", { app: "Chat", label: "Accept" }],
  ["guard_cover", {}]
]) {
  test(`a host that goes as soon as it has asked for ${name} leaves nothing behind`, async () => {
    const simulated = await startMac(desk, { realTime: true });
    try {
      for (const milliseconds of [0, 20, 40, 60, 80]) {
        await simulated.tell("unlock");
        const { say, line, over, child } = started([], environmentOf(simulated));
        say(initialize);
        await line();
        say(request(1, "tools/call", { name, arguments: given }));
        await moment(milliseconds);
        child.stdin.end();
        assert.equal((await over).status, 0);
        assert.deepEqual(processesOn(simulated), []);
      }
      assert.deepEqual(await simulated.violations(), []);
    } finally {
      await simulated.end();
    }
  });
}

test("a host that goes while an application hangs is not waited for", async () => {
  const simulated = await startMac(desk, { realTime: true });
  try {
    await simulated.tell("hang", "Chat");
    const { say, line, over, child } = started([], environmentOf(simulated));
    say(initialize);
    await line();
    say(request(1, "tools/call", { name: "see_list", arguments: { app: "Chat" } }));
    await real.until(async () => runsOf(simulated, "ax-list").length > 0, { everyMs: 5 });
    child.stdin.end();
    assert.deepEqual([(await over).status, processesOn(simulated)], [0, []]);
  } finally {
    await simulated.end();
  }
});

test("a host that goes while a click is on its way leaves nothing behind", async () => {
  const simulated = await startMac(desk, { realTime: true });
  try {
    const { say, line, over, child } = started([], environmentOf(simulated));
    say(initialize);
    await line();
    say(
      request(1, "tools/call", { name: "point_click", arguments: { app: "Notes", x: 340, y: 574 } })
    );
    await real.until(async () => (await callsOf(simulated, "private.post")) > 0, { everyMs: 5 });
    child.stdout.destroy();
    child.stdin.end();
    assert.equal((await over).status, 0);
    assert.deepEqual(processesOn(simulated), []);
    await simulated.check();
  } finally {
    await simulated.end();
  }
});
