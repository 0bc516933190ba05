// The agent at its three tasks, through the client and through the server for models: undisturbed,
// under faults, and with a user who comes in between. Whatever happens, the user's state is what it
// was.
import assert from "node:assert/strict";
import { test } from "node:test";
import { tasks } from "./agent.mjs";
import { left } from "../macs.mjs";
import { file, startMac, ways } from "./support.mjs";

const applications = { mail: "Mail", chat: "Chat", settings: "Settings" };

/**
 * Runs a test on a Mac; checks that nothing is left, that no rule was broken, and the user's state.
 */
async function onMac(world, way, run, { after = {}, ...options } = {}) {
  const simulated = await startMac(world, options);
  try {
    const before = await simulated.state();
    const desk = await ways[way](simulated);
    try {
      await run(desk, simulated);
    } finally {
      await desk.end();
    }
    await left(simulated);
    assert.deepEqual(await simulated.violations(), []);
    assert.deepEqual(await simulated.state(), { ...before, ...after });
  } finally {
    await simulated.end();
  }
}

/** Texts that are shown when a task is done, and how often. */
const outcomes = {
  mail: { window: "Inbox", counts: { "Sent to grace@example.com": 1 } },
  chat: {
    window: "Grace",
    counts: { "You have accepted.": 1, "See you on Tuesday.": 2, "Sent a moment ago": 1 }
  },
  settings: { window: "Displays", counts: { Dark: 1, "Settings of your own": 1 } }
};

for (const way of Object.keys(ways)) {
  for (const [world, task] of Object.entries(tasks)) {
    const application = applications[world];

    test(`${world} through the ${way} is done`, () =>
      onMac(world, way, async (desk) => {
        await task(desk, file);
        const { window, counts } = outcomes[world];
        const shown = await (await desk.open(application, window)).findText(Object.keys(counts));
        assert.deepEqual(shown.counts, counts);
      }));

    test(`${world} through the ${way} stops when the Mac is locked in the middle`, () =>
      onMac(
        world,
        way,
        async (desk, simulated) => {
          await simulated.tell("fault", "private.post", "3", "before", "lock");
          await assert.rejects(task(desk, file), { id: "locked-meanwhile" });
          // The client's agent opens a sharing anew; the server knows that it cannot.
          await assert.rejects(task(desk, file), {
            id: way === "client" ? "sharing-mac-locked" : "mac-locked"
          });
        },
        { after: { locked: true } }
      ));

    test(`${world} through the ${way} stops when the user stops the sharing`, () =>
      onMac(world, way, async (desk, simulated) => {
        await simulated.tell(
          "fault",
          "private.post",
          "3",
          "before",
          "stop",
          "sharing",
          application
        );
        await assert.rejects(
          task(desk, file),
          way === "client"
            ? { id: "capture-service-gone" }
            : { id: "service-ended", message: /The user stopped the stream/ }
        );
        await assert.rejects(
          desk.open(application).then((app) => app.list()),
          way === "client"
            ? { name: "CommandError", id: "sharing-stopped" }
            : { id: "service-ended" }
        );
      }));
  }
}

test("mail says that the application hangs, whichever way", () =>
  Promise.all(
    Object.keys(ways).map((way) =>
      onMac(
        "mail",
        way,
        async (desk, simulated) => {
          await simulated.tell("fault", "ax.perform", "1", "before", "hang", "Mail");
          await assert.rejects(tasks.mail(desk, file), { id: "application-hung" });
        },
        { realTime: true }
      )
    )
  ));

/**
 * A desk at which the user comes as soon as something is to be pasted, and leaves when that was
 * looked for twice.
 */
function interrupted(desk, simulated, happened) {
  const open = async (name, scope) => {
    const app = await desk.open(name, scope);
    const { pasteFiles, windows } = app;
    app.pasteFiles = async (paths) => {
      happened.push("paste");
      if (happened.length === 1) await simulated.tell("user", "click", "120,137");
      return pasteFiles.call(app, paths);
    };
    app.windows = async () => {
      if (happened.length > 0) happened.push("look");
      if (happened.length === 3) await simulated.tell("front", "Browser");
      return windows.call(app);
    };
    return app;
  };
  return { ...desk, open };
}

for (const way of Object.keys(ways)) {
  test(`mail through the ${way} waits while the user is in another window of the application`, () =>
    onMac(
      "mail",
      way,
      async (desk, simulated) => {
        const happened = [];
        await tasks.mail(interrupted(desk, simulated, happened), file);
        assert.deepEqual(happened, ["paste", "look", "look", "paste"]);
        const images = (await (await desk.open("Mail")).dump()).elements.filter(
          (one) => one.role === "AXImage"
        );
        assert.equal(images.length, 1);
      },
      { after: { pointer: { x: 120, y: 137 } } }
    ));
}
