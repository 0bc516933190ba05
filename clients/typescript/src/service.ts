import { App } from "./commands.js";
import { argumentsIn, commandLine } from "./run.js";
import type * as contract from "./contract.js";
import { failureOf, ServiceEndedError, type Reply } from "./errors.js";
import { Lines } from "./lines.js";
import type { Mac } from "./mac.js";
import { Turns } from "./turns.js";

/** The capture service: it marks for the user what is operated, and nothing is operated once it has gone. */
export class CaptureService {
  readonly #lines: Lines<Reply>;
  readonly #turns = new Turns();
  readonly #end = new AbortController();
  readonly #runs = new Set<Promise<unknown>>();
  #sessions = 0;

  private constructor(lines: Lines<Reply>, readonly pid: number, owner: Mac) {
    this.#lines = lines;
    this.mac = owner.with({ capturePid: pid, signal: this.#end.signal, runs: this.#runs });
    // A run that goes on finds out by itself that the service has gone.
    this.over = lines.over.then(() => this.#runsOver());
  }

  /** The Mac for runs beside the service: they end with it. */
  readonly mac: Mac;

  /** Settles when the service has ended, however that came, and what ran beside it. */
  readonly over: Promise<void>;

  /** Starts a service whose lock file is `lock`. */
  static async start(owner: Mac, lock: string): Promise<CaptureService> {
    const lines = owner.talk(Lines<Reply>, "capture-service", [lock]);
    const first = (await lines.line()) as unknown as contract.CaptureServiceStarted;
    return new CaptureService(lines, first.pid, owner);
  }

  /** Shares the main window of an application, within the scope. */
  async open(app: string, options: { scope?: string } = {}): Promise<CaptureSession> {
    const session = `session-${++this.#sessions}`;
    const window = options.scope === undefined ? {} : { window: options.scope };
    const shared = await this.ask({ op: "open", session, app, ...window });
    return new CaptureSession(this, session, app, options.scope, shared as unknown as contract.CaptureServiceShared);
  }

  /** One request; throws its failure, with which the service ends. */
  ask(request: Record<string, unknown>): Promise<Reply> {
    return this.#turns.take("", async () => {
      this.#lines.say(JSON.stringify(request));
      try {
        return await this.#lines.line();
      } catch (failure) {
        await this.over;
        throw failure;
      }
    });
  }

  /** Ends what runs beside the service, then the service: held focus is given back, the marks go. */
  async end(): Promise<void> {
    this.#end.abort(new ServiceEndedError());
    await this.#runsOver();
    await this.#lines.end();
    await this.over;
  }

  async #runsOver(): Promise<void> {
    await Promise.allSettled(this.#runs);
    this.#end.abort(new ServiceEndedError());
  }
}

/** One shared window, and the commands in it. */
export class CaptureSession {
  #focusPid: number | undefined;

  constructor(
    readonly service: CaptureService, readonly name: string, readonly appName: string,
    readonly scope: string | undefined, public shared: contract.CaptureServiceShared,
  ) {}

  /** The commands beside the service on the application that is shared, in its scope. */
  get app(): App {
    return new App(this.service.mac.with({ scope: this.scope, focusPid: this.#focusPid }),
      `pid:${this.shared.targetPid}`);
  }

  /** Lets the sharing follow the application's main window. */
  async refresh(): Promise<contract.CaptureServiceShared> {
    const reply = await this.service.ask({ op: "refresh", session: this.name });
    this.shared = reply as unknown as contract.CaptureServiceShared;
    return this.shared;
  }

  /** Gives the shared window input focus and holds it until `close`. */
  async hold(): Promise<contract.HeldFocusSuccess> {
    const held = await this.#command<contract.HeldFocusSuccess>(["bg-focus-hold", this.appName]);
    this.#focusPid = held.focusPid;
    return held;
  }

  /** Runs a shared command: capture, bg-click, bg-scroll or bg-move. */
  run<Success>(command: string, given: Record<string, unknown>): Promise<Success> {
    return this.#command<Success>(commandLine(command, { app: this.appName, ...argumentsIn(given) }));
  }

  click(x: number, y: number, more: { button?: "left" | "right"; count?: number } = {}): Promise<contract.BgClickSuccess> {
    return this.run("bg-click", { x, y, ...more });
  }

  scroll(x: number, y: number, dx: number, dy: number): Promise<contract.BgScrollSuccess> {
    return this.run("bg-scroll", { x, y, dx, dy });
  }

  move(x: number, y: number): Promise<contract.BgMoveSuccess> {
    return this.run("bg-move", { x, y });
  }

  capture(path: string): Promise<contract.CapturePicture | contract.CaptureNoWindow | contract.CaptureNotRunning> {
    return this.run("capture", { path });
  }

  /** Ends the sharing, and gives focus back. */
  async close(): Promise<void> {
    await this.service.ask({ op: "close", session: this.name });
    this.#focusPid = undefined;
  }

  async #command<Success>(words: string[]): Promise<Success> {
    const answer = await this.service.mac.inTurn(words[0] ?? "", `pid:${this.shared.targetPid}`, () =>
      this.service.ask({ op: "command", session: this.name, args: words }));
    const reply = answer["reply"] as Reply;
    if (reply.ok !== true) throw failureOf(words[0] ?? "", reply);
    return reply as Success;
  }
}

