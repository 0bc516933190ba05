// The table of cases that the clients have in common.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { App, CommandError, Mac } from "driver-client";
import { commandRows } from "../dist/contract.js";
import { onMac, root } from "./support.mjs";

const cases = JSON.parse(readFileSync(new URL("clients/cases.json", root), "utf8"));

/** What a function of a command is called with: required arguments one by one, the rest by name. */
function parametersOf(command, given, isOnApp) {
  const required = commandRows[command].arguments.filter((row) => row.required && !(isOnApp && row.name === "app"));
  const more = Object.fromEntries(Object.entries(given).filter(([name]) => !required.some((row) => row.name === name)));
  return [...required.map((row) => given[row.name]), more];
}

const camel = (command) => command.replace(/-(.)/g, (_, letter) => letter.toUpperCase());
const starters = { "watch-input": "watchInput", "lock-guard": "lockGuard", "keep-awake": "keepAwake" };

class Player {
  sessions = new Map();

  constructor(simulated) {
    this.simulated = simulated;
    this.mac = simulated.mac;
  }

  call(mac, step) {
    const given = { ...step.given, ...(step.scope === undefined ? {} : { scope: step.scope }) };
    if (step.method === undefined) return mac[camel(step.command)](...parametersOf(step.command, given, false));
    const app = step.app === undefined ? this.sessions.get(step.session).app : mac.app(step.app);
    return app[step.method](...parametersOf(step.command, given, true));
  }

  async inService(step) {
    const session = this.sessions.get(step.session);
    switch (step.service) {
      case "start": this.service = await this.mac.startCaptureService(this.simulated.path("lock")); return undefined;
      case "open":
        this.sessions.set(step.session, await this.service.open(step.app, step.scope ? { scope: step.scope } : {}));
        return this.sessions.get(step.session).shared;
      case "beside": return this.call(this.service.mac, step);
      case "end": await this.service.end(); return undefined;
      default: return session[step.service](...Object.values(step.given ?? {}));
    }
  }

  async until(step) {
    const found = (reply) => step.key.reduce((value, key) => value[key], reply);
    return this.mac.until(async () => found(await this.call(this.mac, step.until)) === step.is,
      step.timeoutMs === undefined ? {} : { timeoutMs: step.timeoutMs });
  }

  async play(step) {
    if (step.tell) { await this.simulated.tell(...step.tell); return undefined; }
    if (step.service) return this.inService(step);
    if (step.until) return this.until(step);
    if (step.start) {
      const [given] = step.start === "watch-input" ? [step.given?.app] : [step.given];
      this.lines = this.mac[starters[step.start]](given);
      return undefined;
    }
    if (step.line) { const { done, value } = await this.lines.next(); return done ? "end" : value; }
    if (step.say) { this.lines[step.say](); return undefined; }
    if (step.end) return this.lines.end();
    return this.call(step.capturePid === undefined ? this.mac : this.mac.with({ capturePid: step.capturePid }), step);
  }

  /** What a step gives, or how it fails, as the table has it. */
  async told(step) {
    try {
      const gives = await this.play(step);
      return gives === undefined ? {} : { gives };
    } catch (error) {
      if (error.name === "AssertionError" || error instanceof TypeError) throw error;
      const own = error instanceof CommandError ? { id: error.id, parts: error.parts, reply: error.reply } : {};
      return { fails: { as: error.name, ...own } };
    }
  }
}

/** As it stands in the table: without what is undefined. */
function comparable(told) {
  return JSON.parse(JSON.stringify(told));
}

test("the table calls every function", () => {
  const steps = cases.flatMap((one) => one.steps.map((step) => step.until ?? step));
  const called = steps.filter((step) => step.command && step.fails?.id !== "usage").map((step) => step.command);
  assert.deepEqual([...new Set(called)].sort(), Object.keys(commandRows).sort());
  const methods = Object.getOwnPropertyNames(App.prototype).filter((name) => name !== "constructor");
  assert.deepEqual([...new Set(steps.map((step) => step.method).filter(Boolean))].sort(), methods.sort());
});

test("the functions have the names that the page of commands says", () => {
  const page = readFileSync(new URL("docs/COMMANDS.md", root), "utf8");
  const rows = page.split("begin: names in the clients")[1].split("<!-- end")[0].split("\n")
    .filter((line) => line.startsWith("| `")).map((line) => line.split("|").map((cell) => cell.replaceAll("`", "").trim()));
  for (const [, command, , name, method] of rows) {
    assert.equal(typeof Mac.prototype[name], "function", command);
    if (method !== "") assert.equal(typeof App.prototype[method.split(" / ").at(-1)], "function", command);
  }
  assert.ok(rows.length > Object.keys(commandRows).length);
});

for (const one of cases) {
  test(one.name, async () => {
    const world = (one.before ?? "") + readFileSync(new URL(one.world, root), "utf8") + (one.after ?? "");
    await onMac(world, async (simulated) => {
      const player = new Player(simulated);
      for (const [place, step] of one.steps.entries()) {
        const told = comparable(await player.told(step));
        const { gives, fails } = step;
        assert.deepEqual(told, comparable({ gives, fails }), `step ${place}: ${JSON.stringify(step)}`);
      }
      if (one.settles) await simulated.settle();
    });
  });
}
