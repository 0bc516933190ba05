// The agent, or the server that it works through, is killed at moments that lie evenly over its
// tasks. Each time everything that it had begun ends by itself, and gives back what it had
// borrowed.
import assert from "node:assert/strict";
import { test } from "node:test";
import { setTimeout as moment } from "node:timers/promises";
import { fileURLToPath } from "node:url";
import { tasks } from "./agent.mjs";
import { left } from "../macs.mjs";
import { file, startAgent, startMac, ways } from "./support.mjs";

const worlds = Object.keys(tasks);

// Of each kind of run. A server with a host takes longest to start.
const moments = Number(process.env["KILL_MOMENTS"] ?? "20");
const momentsOfHosts = Math.ceil(moments / 2);

const python = [
  process.env["CLIENTS_PYTHON"] ?? "python3",
  fileURLToPath(new URL("agent.py", import.meta.url))
];

/** An agent in a process of its own: it is killed itself, and with it the host of its server. */
const inProcess = (way, program) => async (simulated, world) => {
  const { agent, over, lines } = await startAgent(simulated, [way, world], program);
  const ended = Promise.all([over, lines.next()]);
  return { pid: agent, isDone: async () => (await ended)[1].value === "done", ended };
};

/** An agent in this process, whose server is killed. */
const withServer = async (simulated, world) => {
  const desk = await ways.server(simulated);
  const task = tasks[world](desk, file).then(
    () => true,
    () => false
  );
  return { pid: desk.pid, isDone: () => task, ended: task.then(() => desk.end()) };
};

/**
 * Runs a task, and kills it after that many milliseconds, or never. Gives whether it was done, and
 * how long that took.
 */
async function run(start, world, milliseconds) {
  const simulated = await startMac(world);
  try {
    const { pid, isDone, ended } = await start(simulated, world);
    const begin = performance.now();
    if (milliseconds !== undefined) {
      const isKilled = await Promise.race([moment(milliseconds, true), ended.then(() => false)]);
      if (isKilled) process.kill(pid, "SIGKILL");
    }
    await ended;
    const duration = performance.now() - begin;
    await left(simulated);
    await simulated.check();
    return { isDone: await isDone(), duration };
  } finally {
    await simulated.end();
  }
}

/**
 * Kills at that many moments. One that comes too late, since the machine has become faster, is
 * tried again.
 */
async function killAtMoments(start, momentsCount) {
  const durations = new Map();
  for (const world of worlds) {
    const { isDone, duration } = await run(start, world);
    assert.ok(isDone);
    durations.set(world, duration);
  }
  const triesMax = 3 * momentsCount;
  let count = 0;
  for (let tries = 0; count < momentsCount && tries < triesMax; ++tries) {
    const world = worlds[count % worlds.length];
    const { isDone, duration } = await run(
      start,
      world,
      (durations.get(world) * count) / momentsCount
    );
    if (isDone) durations.set(world, duration);
    else ++count;
  }
  assert.equal(count, momentsCount);
}

test("a client that is killed leaves nothing behind", () =>
  killAtMoments(inProcess("client"), moments));
test("a client in Python that is killed leaves nothing behind", () =>
  killAtMoments(inProcess("client", python), moments));
test("a server that is killed leaves nothing behind", () => killAtMoments(withServer, moments));
test("a server whose host is killed leaves nothing behind", () =>
  killAtMoments(inProcess("server"), momentsOfHosts));
