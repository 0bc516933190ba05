import type { GuardOptions, InputWatch, KeepAwake, LockGuard, Mac } from "driver-client";
import { Refusal } from "./failures.js";

/** A line of driver's, as a tool gives it. */
type Told = Record<string, unknown>;

/** A cover that was put up: its last line comes when it has ended, also by itself. */
class Cover {
  #asked: Promise<Told | undefined> | undefined;
  readonly #told: Promise<Told | undefined>;
  isOver = false;

  constructor(readonly guard: LockGuard) {
    this.#told = guard.over.then(() => {
      this.isOver = true;
      return this.#lastLine();
    });
  }

  /** Ends it, and gives its last line; none of a guard that was killed. */
  async end(): Promise<Told | undefined> {
    await this.#lastLine();
    return this.#told;
  }

  get told(): Promise<Told | undefined> {
    return this.#told;
  }

  #lastLine(): Promise<Told | undefined> {
    return (this.#asked ??= this.guard.lock() as Promise<Told | undefined>);
  }
}

/**
 * What keeps going for one connection beside its tools' runs: the cover, and the hold on the
 * display.
 */
export class Guarding {
  readonly #mac: Mac;
  #cover: Cover | undefined;
  #beginning: Promise<Told> | undefined;
  #awake: KeepAwake | undefined;

  constructor(mac: Mac) {
    this.#mac = mac;
  }

  async cover(options: GuardOptions): Promise<Told> {
    if (this.#beginning !== undefined || this.#cover?.isOver === false) {
      throw new Refusal("already-covered", "the Mac is covered", "Go on: it is.");
    }
    this.#beginning = this.#begin(options).finally(() => (this.#beginning = undefined));
    return this.#beginning;
  }

  say(isOperating: boolean): Told {
    const { guard } = this.#covered();
    if (isOperating) guard.operating();
    else guard.minding();
    return { ok: true, operating: isOperating };
  }

  /** Ends the cover, which locks. */
  async lock(): Promise<Told> {
    const cover = this.#cover;
    if (cover === undefined) throw this.#uncovered();
    this.#cover = undefined;
    const last = await cover.end();
    if (last !== undefined) return last;
    await this.#mac.lockNow();
    throw new Refusal(
      "guard-gone",
      "the cover has gone without a word, and the Mac was locked by lock-now",
      "Tell the user: the Mac may have been open for a while."
    );
  }

  async awake(isAwake: boolean): Promise<Told> {
    const before = this.#awake;
    if (isAwake && before === undefined) {
      const hold = this.#mac.keepAwake();
      this.#awake = hold;
      void hold.over.then(() => {
        if (this.#awake === hold) this.#awake = undefined;
      });
      await hold.line();
    }
    if (!isAwake && before !== undefined) await before.end();
    return { ok: true, keepAwake: isAwake };
  }

  /** How long the user has not touched the Mac, or the application. */
  async user(app: string | undefined): Promise<Told> {
    const watch: InputWatch = this.#mac.watchInput(app);
    try {
      return (await watch.line()) as unknown as Told;
    } finally {
      await watch.end();
    }
  }

  /** Ends all of it; a cover locks. */
  async end(): Promise<void> {
    await this.#beginning?.catch(() => undefined);
    await Promise.allSettled([this.#cover?.end(), this.#awake?.end()]);
  }

  async #begin(options: GuardOptions): Promise<Told> {
    const guard = this.#mac.lockGuard(options);
    const covered = await guard.line();
    this.#cover = new Cover(guard);
    this.#lockIfKilled(this.#cover);
    return covered as unknown as Told;
  }

  // A guard that was killed leaves the screens bare and the Mac unlocked.
  #lockIfKilled(cover: Cover): void {
    const lock = (last: Told | undefined) => (last === undefined ? this.#mac.lockNow() : undefined);
    void cover.told.then(lock).catch(() => undefined);
  }

  #covered(): Cover {
    if (this.#cover === undefined || this.#cover.isOver) throw this.#uncovered();
    return this.#cover;
  }

  #uncovered(): Refusal {
    return new Refusal("not-covered", "the Mac is not covered", "Cover it with guard_cover.");
  }
}
