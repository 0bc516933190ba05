import { mkdtemp, rm } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import {
  CommandError,
  NoReplyError,
  type CaptureService,
  type CaptureSession,
  type Mac
} from "driver-client";
import { Refusal } from "./failures.js";

/** A service that was started, and what is shared by it, by process and scope. */
class Running {
  readonly sessions = new Map<string, CaptureSession>();
  isOver = false;

  constructor(readonly service: CaptureService) {}
}

const goneRemedy =
  "Stop working, and ask the user: nothing is done any more before the host connects anew.";

/** How many sharings go on at once; then the one that was used least recently ends. */
const sessionsMax = 16;

/** The failure after which nobody but the user may let the work go on. */
function endsAll(reason: unknown): Refusal | undefined {
  const isStopped = reason instanceof CommandError && reason.id === "sharing-stopped";
  if (!isStopped && !(reason instanceof NoReplyError)) return undefined;
  const why = isStopped ? String(reason.reply["error"]) : "it was ended from outside";
  return new Refusal("service-ended", `the capture service has ended: ${why}`, goneRemedy);
}

/**
 * The one capture service of a connection. It is started when something is done for the first time;
 * each application that is operated is shared, which the user sees by its mark. When the user stops
 * the sharing, or somebody ends the service, nothing goes on. When it ends since what it was asked
 * for could not be done, the next act starts another.
 */
export class Sharing {
  readonly #mac: Mac;
  readonly #whenStopped: () => void;
  #running: Running | undefined;
  #stopped: Refusal | undefined;
  #last: Promise<unknown> = Promise.resolve();

  constructor(mac: Mac, whenStopped: () => void) {
    this.#mac = mac;
    this.#whenStopped = whenStopped;
  }

  /**
   * The Mac for what only reads: it ends with the service if there is one. Throws when all has
   * ended.
   */
  beside(): Promise<Mac> {
    return this.#inTurn(async () => (await this.#alive())?.service.mac ?? this.#mac);
  }

  /** The Mac for an act on an application, whose main window is marked if it has one. */
  marked(app: string, scope: string | undefined, signal: AbortSignal): Promise<Mac> {
    return this.#inTurn(async () => {
      signal.throwIfAborted();
      const running = (await this.#alive()) ?? (await this.#start());
      const { mac } = running.service;
      const [told, session] = await Promise.all([
        mac.windows(app, { scope, signal }),
        mac.session({ signal })
      ]);
      // What cannot be shared ends the service: driver's own refusal of the act says more.
      const isUsable = session.onConsole && !session.locked;
      const isShown = told.running && told.windows.some((window) => window.layer === 0);
      if (isUsable && isShown) await this.#share(running, told.pid, scope);
      return mac;
    });
  }

  /**
   * Why nothing goes on any more, if so; of a service that has gone, as a run beside it was told.
   */
  async stopped(): Promise<Refusal | undefined> {
    await this.#running?.service.over;
    await this.#inTurn(async () => this.#alive()).catch(() => undefined);
    return this.#stopped;
  }

  /** Ends what runs beside the service, then the service. */
  async end(): Promise<void> {
    this.#stopped ??= new Refusal("service-ended", "the connection is closed", goneRemedy);
    await this.#running?.service.end().catch(() => undefined);
    // One may just have been started.
    await this.#last;
    await this.#running?.service.end().catch(() => undefined);
  }

  #inTurn<Result>(work: () => Promise<Result>): Promise<Result> {
    const mine = this.#last.then(work);
    this.#last = mine.then(
      () => undefined,
      () => undefined
    );
    return mine;
  }

  async #alive(): Promise<Running | undefined> {
    const running = this.#running;
    // What it said last is the answer to one more question.
    if (running?.isOver) {
      this.#judge(
        running,
        await running.service.ask({ op: "refresh", session: "" }).catch((reason: unknown) => reason)
      );
    }
    if (this.#stopped !== undefined) throw this.#stopped;
    return this.#running;
  }

  async #start(): Promise<Running> {
    // The lock file is nobody else's, and needs no name once it is held: so nothing is left of it.
    const folder = await mkdtemp(join(tmpdir(), "driver-mcp-"));
    try {
      const running = new Running(await this.#mac.startCaptureService(join(folder, "lock")));
      this.#running = running;
      void running.service.over
        .then(() => {
          running.isOver = true;
        })
        .then(() => this.stopped());
      return running;
    } finally {
      await rm(folder, { recursive: true });
    }
  }

  async #share(running: Running, pid: number, scope: string | undefined): Promise<void> {
    const { sessions, service } = running;
    const name = JSON.stringify([pid, scope]);
    const known = sessions.get(name);
    const [oldest] = sessions;
    try {
      if (known === undefined && oldest !== undefined && sessions.size === sessionsMax) {
        sessions.delete(oldest[0]);
        await oldest[1].close();
      }
      const options = scope === undefined ? {} : { scope };
      const session = known ?? (await service.open(`pid:${pid}`, options));
      if (known !== undefined) await known.refresh();
      // The one that was used last stands last.
      sessions.delete(name);
      sessions.set(name, session);
    } catch (reason) {
      this.#judge(running, reason);
      throw this.#stopped ?? reason;
    }
  }

  #judge(running: Running, reason: unknown): void {
    if (this.#running !== running) return;
    this.#running = undefined;
    if (this.#stopped !== undefined) return;
    this.#stopped = endsAll(reason);
    if (this.#stopped !== undefined) this.#whenStopped();
  }
}
