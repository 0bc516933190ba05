// Programs that a test starts. Whatever is waited for has its time, and who waits in vain says for what.
import { spawn } from "node:child_process";
import { basename, join } from "node:path";

const root = new URL("../../", import.meta.url).pathname;
export const driver = process.env.DRIVER_EXECUTABLE ?? join(root, "build/release/driver");
export const simulatedMac = process.env.SIMULATED_MAC_EXECUTABLE ??
  join(root, "build/release/simulated-mac");
export const desk = join(root, "demo/desk.world");

/** How long anything is waited for, unless more is said; milliseconds. */
export const patience = 30_000;

/** What comes of a promise. */
export async function within(what, promise, limit = patience) {
  let timer;
  const late = new Promise((_, reject) => {
    const error = new Error(`waited ${limit / 1000} s in vain for ${what}`);
    timer = setTimeout(() => reject(error), limit);
  });
  try {
    return await Promise.race([promise, late]);
  } finally {
    clearTimeout(timer);
  }
}

/** Asks until the answer is true of something, and gives it. */
export async function until(what, ask) {
  const begin = Date.now();
  while (Date.now() - begin < patience) {
    const answer = await ask();
    if (answer) return answer;
  }
  throw new Error(`asked for ${patience / 1000} s in vain for ${what}`);
}

/** Those that may still run. */
const running = new Set();

/** A program, in a process group of its own. It has PATH and the variables that it is given. */
export class Program {
  #process;
  #printed = { stdout: "", stderr: "" };
  #ended;

  constructor(path, words, environment = {}) {
    this.name = [basename(path), ...words].join(" ");
    this.#process = spawn(path, words, { detached: true, env: { PATH: process.env.PATH, ...environment } });
    running.add(this);
    for (const stream of ["stdout", "stderr"]) {
      this.#process[stream].setEncoding("utf8").on("data", (text) => { this.#printed[stream] += text; });
    }
    this.#process.stdin.on("error", () => {});  // it reads no more
    this.#ended = new Promise((resolve, reject) => {
      this.#process.on("error", reject);
      this.#process.on("close", (status, signal) => resolve(status ?? signal));
    });
    this.#ended.catch(() => {}).finally(() => running.delete(this));
  }

  get pid() { return this.#process.pid; }
  get output() { return this.#printed.stdout; }

  /** The first line of "stdout" or "stderr". */
  line(stream) {
    return within(`a line of ${this.name}`, new Promise((resolve, reject) => {
      const look = () => {
        const end = this.#printed[stream].indexOf("\n");
        if (end >= 0) resolve(this.#printed[stream].slice(0, end));
      };
      look();
      this.#process[stream].on("data", look);
      this.#ended.then((status) => reject(new Error(`${this.name} ended with ${status}: ${this.#printed.stderr}`)),
        reject);
    }));
  }

  write(text) { this.#process.stdin.write(text); }

  /** Its status, or the signal that ended it. */
  ended() { return within(`the end of ${this.name}`, this.#ended); }

  /** The same, once it has no more to read. Whoever does not end then is killed. */
  async finish() {
    this.#process.stdin.end();
    try {
      return await this.ended();
    } finally {
      this.kill();
    }
  }

  /** Kills it, with all that it has started. */
  kill() {
    if (this.pid === undefined || !running.has(this)) return;
    try {
      process.kill(-this.pid, "SIGKILL");
    } catch (error) {
      if (error.code !== "ESRCH") throw error;
    }
  }
}

/** What a program prints, and its status. */
export async function run(path, words, environment = {}) {
  const program = new Program(path, words, environment);
  const status = await program.finish();
  return { status, output: program.output };
}

// Whatever else there is that could wait for ever: the tests of a file end.
const fileLimit = 240_000;  // milliseconds
setTimeout(() => {
  const programs = [...running].map((each) => each.name);
  const left = [...programs, ...process.getActiveResourcesInfo()].join(", ");
  console.error(`did not end in ${fileLimit / 1000} s: ${left}`);
  process.exit(1);
}, fileLimit).unref();
process.on("exit", () => { for (const each of running) each.kill(); });
