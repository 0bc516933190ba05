import { AsyncLocalStorage } from "node:async_hooks";
import { ordinaryClock, type Clock } from "./clock.js";
import { App, Commands } from "./commands.js";
import { commandRows } from "./contract.js";
import { failureOf, HungError, WaitedInVainError, type AskedRun, type Reply } from "./errors.js";
import { endedWithInput, guardEnvironment, InputWatch, KeepAwake, LockGuard, type GuardOptions } from "./guard.js";
import { argumentsIn, commandLine, millisecondsMax, runOnce, type RunOptions } from "./run.js";
import { CaptureService } from "./service.js";
import { Turns } from "./turns.js";

/** The last run of driver that the present `until` has asked for. */
const asking = new AsyncLocalStorage<{ lastRun?: AskedRun }>();

/** What pastes go in turn under: no application has this name. */
const clipboard = "";

/** Two messages that a hung application does not answer: docs/WORST_CASE.md. */
const hungMilliseconds = 12_000;

/** Those that put right what a capture service has left: they run also when it has gone. */
const puttingRight = new Set(["focus-release", "lock-now"]);

export interface MacOptions {
  /** The executable; "driver", looked for in the PATH, without it. */
  driver?: string | undefined;
  /** The environment of runs; this process's without it. */
  environment?: NodeJS.ProcessEnv | undefined;
  clock?: Clock | undefined;
  /** The window scope of all runs. */
  scope?: string | undefined;
  /** The capture service without which nothing goes on, and the process whose focus it holds. */
  capturePid?: number | undefined;
  focusPid?: number | undefined;
  /** Ends all runs. */
  signal?: AbortSignal | undefined;
  /** Holds the runs that go on. */
  runs?: Set<Promise<unknown>> | undefined;
}

/** Whether a reply tells of nothing: no elements, no texts, no counts above 0, no element. */
function isEmpty(reply: Reply): boolean {
  const values = Object.entries(reply).filter(([key]) => key !== "ok").map(([, value]) => value);
  return values.every((value) => value === null || (Array.isArray(value) && value.length === 0) ||
    (typeof value === "object" && Object.values(value as object).every((each) => each === 0)));
}

/** A Mac that is operated: every command as a function, and what keeps going. */
export class Mac extends Commands {
  readonly #options: MacOptions;
  readonly #turns: Turns;
  readonly #names: Map<string, string>;

  constructor(options: MacOptions = {}, parent?: Mac) {
    super();
    this.#options = options;
    this.#turns = parent === undefined ? new Turns() : parent.#turns;
    this.#names = parent === undefined ? new Map() : parent.#names;
  }

  /** The same Mac with other options; acts on one application go in turn across both. */
  with(options: MacOptions): Mac { return new Mac({ ...this.#options, ...options }, this); }

  /** The commands on one application: `pid:` and a process id, a bundle identifier, or a name. */
  app(name: string, options: { scope?: string } = {}): App {
    return new App(options.scope === undefined ? this : this.with(options), name);
  }

  override async run<Success>(command: string, given: Record<string, unknown>): Promise<Success> {
    const options = given as RunOptions;
    const values = argumentsIn(given);
    const words = commandLine(command, values);
    const app = typeof values["app"] === "string" ? values["app"] : undefined;
    const reply = await this.inTurn(command, app, () => this.#timed(command, words, values, options));
    return reply as Success;
  }

  /** Does what acts on an application when nothing else acts on it, and pastes when nothing else does. */
  async inTurn<Result>(command: string, app: string | undefined, work: () => Promise<Result>): Promise<Result> {
    if (app === undefined || commandRows[command]?.acts === false) return await work();
    // All pastes share the user's clipboard, which each of two at once would take for the other's files.
    const whole = command === "bg-paste-files" ? () => this.#turns.take(clipboard, work) : work;
    return await this.#turns.take(await this.#identityOf(app), whole);
  }

  /**
   * Waits until what is asked for is so: asks at once, then again and again, and gives what is told. When it
   * waits in vain, the error says for `what`, and what the last run of driver replied.
   */
  async until<Result>(ask: () => Promise<Result | undefined | null | false>,
    options: { timeoutMs?: number; everyMs?: number; signal?: AbortSignal; what?: string } = {}): Promise<Result> {
    const { timeoutMs = 10_000, everyMs = 200, signal, what } = options;
    const clock = this.#clock;
    const end = (await clock.now()) + timeoutMs;
    const asked: { lastRun?: AskedRun } = {};
    for (let times = 1; ; times += 1) {
      signal?.throwIfAborted();
      const told = await asking.run(asked, ask);
      if (![undefined, null, false, 0].includes(told as undefined)) return told as Result;
      if ((await clock.now()) + everyMs > end) {
        throw new WaitedInVainError(what, timeoutMs, times, told, asked.lastRun);
      }
      await clock.sleep(everyMs, signal);
    }
  }

  /** Starts a capture service with a lock file of the caller's own. */
  startCaptureService(lock: string): Promise<CaptureService> { return CaptureService.start(this, lock); }

  /** Covers the unlocked Mac until somebody comes back; the first line says on how many displays. */
  lockGuard(options: GuardOptions = {}): LockGuard {
    return this.talk(LockGuard, "lock-guard", [], guardEnvironment(options));
  }

  /** Keeps the display awake until its end, which comes with this process at the latest. */
  keepAwake(): KeepAwake {
    return new KeepAwake("keep-awake", "/bin/sh", ["-c", endedWithInput, this.#driver, "keep-awake"],
      this.#environment({}, "keep-awake"));
  }

  /** The user's own input, and with an application whether it touches that. */
  watchInput(app?: string): InputWatch {
    return this.talk(InputWatch, "watch-input", app === undefined ? [] : [app]);
  }

  /** Starts a command that keeps going. */
  talk<Kind>(kind: new (command: string, file: string, words: string[], environment: NodeJS.ProcessEnv) => Kind,
    command: string, words: string[], environment: NodeJS.ProcessEnv = {}): Kind {
    return new kind(command, this.#driver, [command, ...words],
      { ...this.#environment({}, command), ...environment });
  }

  get #driver(): string { return this.#options.driver ?? "driver"; }

  get #clock(): Clock { return this.#options.clock ?? ordinaryClock; }

  #environment(options: RunOptions, command: string): NodeJS.ProcessEnv {
    const { environment = process.env, capturePid, focusPid } = this.#options;
    const scope = options.scope ?? this.#options.scope;
    const pid = puttingRight.has(command) ? undefined : capturePid;
    const own = { CU_WINDOW: scope, CU_CAPTURE_PID: pid?.toString(), CU_FOCUS_PID: focusPid?.toString() };
    const given = Object.fromEntries(Object.entries(own).filter(([, value]) => value !== undefined));
    const rest = Object.fromEntries(Object.entries(environment).filter(([name]) => !(name in own)));
    return { ...rest, ...given };
  }

  async #timed(command: string, words: string[], values: Record<string, unknown>, options: RunOptions): Promise<Reply> {
    const before = await this.#clock.now();
    const signals = [this.#options.signal, options.signal].filter((one) => one !== undefined) as AbortSignal[];
    const run = runOnce(this.#driver, words, this.#environment(options, command),
      options.timeoutMs ?? millisecondsMax(command, values), signals);
    this.#options.runs?.add(run);
    const reply = await run.finally(() => this.#options.runs?.delete(run));
    const asked = asking.getStore();
    if (asked !== undefined) asked.lastRun = { words, reply };
    const isSilent = reply.ok !== true || isEmpty(reply);
    const asks = command.startsWith("ax-") || command === "reveal" || /^bg-(key|type|paste-files)$/.test(command);
    if (isSilent && asks && (await this.#clock.now()) - before >= hungMilliseconds) throw new HungError(command, reply);
    if (reply.ok !== true) throw failureOf(command, reply);
    return reply;
  }

  // An application has several names; acts wait for each other under its bundle identifier.
  async #identityOf(app: string): Promise<string> {
    const known = this.#names.get(app);
    if (known !== undefined) return known;
    const reply = await runOnce(this.#driver, ["windows", app], this.#environment({}, "focus-release"),
      millisecondsMax("windows", {}), []);
    if (reply["running"] !== true) return app;
    const identity = String(reply["bundleId"] || reply["name"] || app);
    this.#names.set(app, identity);
    return identity;
  }
}
