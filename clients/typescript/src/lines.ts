import type { ChildProcess } from "node:child_process";
import { createInterface } from "node:readline";
import { endChild, startChild } from "./children.js";
import { failureOf, NoReplyError, type Reply } from "./errors.js";
import { replyIn } from "./run.js";

/** A run that keeps going: its lines as they come, and its standard input. Whoever stops to iterate ends it. */
export class Lines<Line extends object> implements AsyncIterableIterator<Line> {
  readonly #child: ChildProcess;
  readonly #lines: AsyncIterator<string>;
  readonly #isOver: Promise<void>;
  #errors = "";

  constructor(readonly command: string, file: string, words: string[], environment: NodeJS.ProcessEnv) {
    this.#child = startChild(file, words, environment);
    this.#child.stderr?.setEncoding("utf8").on("data", (piece: string) => (this.#errors += piece));
    const lines = createInterface({ input: this.#child.stdout! });
    this.#lines = lines[Symbol.asyncIterator]();
    this.#isOver = new Promise((resolve) => {
      this.#child.once("close", () => resolve());
      this.#child.once("error", (error) => { this.#errors += error.message; lines.close(); resolve(); });
    });
  }

  [Symbol.asyncIterator](): this { return this; }

  /** The next line, or the end. Throws a line that is a failure. */
  async next(): Promise<IteratorResult<Line>> {
    const { done, value } = await this.#lines.next();
    if (done === true) return { done: true, value: undefined };
    const line = replyIn(this.command, value, this.#errors);
    if (line.ok === false) throw failureOf(this.command, line);
    return { done: false, value: line as Line };
  }

  /** The next line, which has to come. */
  async line(): Promise<Line> {
    const { done, value } = await this.next();
    if (done === true) throw new NoReplyError(`${this.command} has ended. ${this.#errors}`.trim());
    return value;
  }

  say(line: string): void { this.#child.stdin?.write(line + "\n"); }

  /** Closes its standard input, reads what it still says, and returns that when it has ended. */
  async end(): Promise<Reply[]> {
    this.#child.stdin?.end();
    const rest: Reply[] = [];
    for (let each = await this.#lines.next(); each.done !== true; each = await this.#lines.next()) {
      rest.push(replyIn(this.command, each.value, this.#errors));
    }
    await this.#isOver;
    return rest;
  }

  /** Ends it by SIGTERM. */
  async tell(): Promise<void> {
    await endChild(this.#child);
    await this.#isOver;
  }

  async return(): Promise<IteratorResult<Line>> {
    await this.end();
    return { done: true, value: undefined };
  }

  /** Settles when it has ended, however that came. */
  get over(): Promise<void> { return this.#isOver; }
}
