// What tests need: a browser, pages, Macs to look at. All of it is started here, and stopped here.
import assert from "node:assert/strict";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, afterEach, test as testOf } from "node:test";
import { chromium } from "playwright-core";
import { Program, desk, driver, patience, run, simulatedMac, within } from "./programs.mjs";

/** A test, which fails when it hangs. */
export const test = (name, body) => testOf(name, { timeout: 2 * patience }, body);

/** A Mac that is served and can be looked at. */
class Mac {
  #needs;

  constructor(needs, program) {
    this.#needs = needs;
    this.program = program;
  }

  async settle() {
    const [line, socket] = await Promise.all([this.program.line("stderr"), this.program.line("stdout")]);
    this.address = JSON.parse(line).url;
    this.environment = { SIMULATED_MAC: socket };
    return this;
  }

  driver(...words) { return run(driver, words, this.environment); }

  /** A run that goes on beside. */
  begin(...words) { return this.#needs.program(driver, words, this.environment); }

  /** What the Mac answers, line by line. */
  async tell(...words) {
    const { output } = await run(simulatedMac, words, this.environment);
    return output.split("\n").filter((line) => line !== "").map((line) => JSON.parse(line));
  }

  /** What has happened that no process did. */
  async happenings() {
    const lines = await this.tell("journal");
    return lines.filter((line) => line.kind === "happening").map((line) => line.what);
  }
}

export class Needs {
  #stops = [];

  /** Those of all tests of a file. */
  static ofFile() {
    const needs = new Needs();
    after(() => needs.end());
    return needs;
  }

  /** Those of each test of a file for itself. */
  static ofEachTest() {
    const needs = new Needs();
    afterEach(() => needs.end());
    return needs;
  }

  /** Stops what was started, the latest first, and all of it whatever fails. */
  async end() {
    const failures = [];
    for (const stop of this.#stops.splice(0).reverse()) {
      await stop().catch((error) => failures.push(error));
    }
    if (failures.length === 1) throw failures[0];
    if (failures.length > 1) throw new Error(failures.map((each) => each.message).join("\n"));
  }

  /** Chromium without its own windows. Its sandbox is not for root, as whom containers run. */
  async browser() {
    const executablePath = process.env.CHROMIUM ?? "/usr/bin/chromium-headless-shell";
    const args = process.getuid() === 0 ? ["--no-sandbox"] : [];
    // It is killed when it is not there after this time, or does not go, and when this process ends.
    const browser = await chromium.launch({ executablePath, args, timeout: patience });
    this.#stops.push(() => within("the end of Chromium", browser.close(), 2 * patience));
    return browser;
  }

  /**
   * A new page, at the size of a laptop's screen, of which no script may fail: it tells of no errors
   * but those that `page.admits` fits.
   */
  async page(browser, address, options = {}) {
    const page = await within("a page", browser.newPage({ viewport: { width: 1440, height: 900 }, ...options }));
    page.errors = [];
    page.asked = [];
    page.on("pageerror", (error) => page.errors.push(error.message));
    page.on("console", (message) => {
      if (message.type() === "error") page.errors.push(message.text());
    });
    page.on("request", (request) => page.asked.push(request.url()));
    page.setDefaultTimeout(patience);
    this.#stops.push(async () => {
      await within("the end of a page", page.close());
      assert.deepEqual(page.errors.filter((each) => !page.admits?.test(each)), []);
    });
    await page.goto(address);
    return page;
  }

  /** A Mac in virtual time, which ends with its standard input. */
  mac(world = desk) {
    const program = new Program(simulatedMac, ["serve", "--virtual", "--view", "--until-closed", world]);
    this.#stops.push(() => program.finish());
    return new Mac(this, program).settle();
  }

  /** A program that is killed when nobody needs it any more. */
  program(path, words, environment) {
    const program = new Program(path, words, environment);
    this.#stops.push(async () => {
      program.kill();
      await program.ended();
    });
    return program;
  }

  /** Where the files of a new folder are. */
  folder() {
    const path = mkdtempSync(join(tmpdir(), "browser-"));
    this.#stops.push(async () => rmSync(path, { recursive: true }));
    return (name) => join(path, name);
  }
}
