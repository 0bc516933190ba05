// A browser, Macs for it to look at, and what is asked of every page.
import assert from "node:assert/strict";
import { execFile, spawn } from "node:child_process";
import { once } from "node:events";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { promisify } from "node:util";
import { chromium } from "playwright-core";

const root = new URL("../../", import.meta.url).pathname;
export const driver = process.env.DRIVER_EXECUTABLE ?? join(root, "build/release/driver");
export const simulatedMac = process.env.SIMULATED_MAC_EXECUTABLE ??
  join(root, "build/release/simulated-mac");
export const desk = join(root, "demo/desk.world");
const chromiumPath = process.env.CHROMIUM ?? "/usr/bin/chromium";

/** Chromium. Its sandbox is not for root, as whom containers run. */
export function launch() {
  const args = process.getuid() === 0 ? ["--no-sandbox"] : [];
  return chromium.launch({ executablePath: chromiumPath, args });
}

/** A new page, of which no script may fail, at the size of a laptop's screen. */
export async function open(browser, address, options = {}) {
  const page = await browser.newPage({ viewport: { width: 1440, height: 900 }, ...options });
  page.errors = [];
  page.asked = [];
  page.on("pageerror", (error) => page.errors.push(error.message));
  page.on("console", (message) => {
    if (message.type() === "error") page.errors.push(message.text());
  });
  page.on("request", (request) => page.asked.push(request.url()));
  await page.goto(address);
  return page;
}

export function folder() {
  const path = mkdtempSync(join(tmpdir(), "browser-"));
  return { path: (name) => join(path, name), remove: () => rmSync(path, { recursive: true }) };
}

/** What a program prints, and its status. */
export async function run(program, words, environment = {}) {
  try {
    const { stdout } = await promisify(execFile)(program, words,
      { env: { PATH: process.env.PATH, ...environment } });
    return { status: 0, output: stdout };
  } catch (error) {
    return { status: error.code, output: error.stdout };
  }
}

/** A Mac that is served and can be looked at. */
export class Mac {
  static async start(world = desk, options = ["--virtual"]) {
    const mac = new Mac();
    mac.process = spawn(simulatedMac, ["serve", ...options, "--view", "--until-closed", world]);
    let socket = "";
    mac.process.stdout.on("data", (data) => { socket += data; });
    const told = new Promise((resolve) => { mac.process.stdout.on("end", resolve); });
    // The two streams come as they like.
    const [[line]] = await Promise.all([
      once(createInterface({ input: mac.process.stderr }), "line"), told]);
    mac.environment = { SIMULATED_MAC: socket.trim() };
    mac.address = JSON.parse(line).url;
    return mac;
  }

  driver(...words) { return run(driver, words, this.environment); }

  /** A run that goes on beside: `ended` gives its status, or the signal that ended it. */
  begin(...words) {
    const run = spawn(driver, words, { env: { PATH: process.env.PATH, ...this.environment } });
    const ended = new Promise((resolve) => {
      run.on("exit", (status, signal) => resolve(status ?? signal));
    });
    return { run, ended };
  }

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

  async stop() {
    if (this.process.exitCode !== null) return;
    const ended = new Promise((resolve) => { this.process.on("exit", resolve); });
    this.process.stdin.end();
    await ended;
  }
}

/** What every page owes to whoever cannot see it, or not well. Runs in the page. */
function faultsOfPage() {
  const faults = [];
  const all = [...document.querySelectorAll("body *")].filter((each) => each.checkVisibility());
  const nameOf = (each) => (each.getAttribute("aria-label") ?? [...each.labels ?? []]
    .map((label) => label.textContent).join(" ") ?? "").trim() || each.textContent.trim();
  for (const each of all.filter((one) => one.matches("button, input, select, summary, a"))) {
    if (nameOf(each) === "") faults.push(`${each.outerHTML.slice(0, 80)} has no name`);
    if (each.tabIndex < 0) faults.push(`${each.outerHTML.slice(0, 80)} is out of the keyboard's way`);
  }
  for (const each of all.filter((one) => one.matches("img, canvas"))) {
    if (!each.alt && !each.getAttribute("aria-label")) faults.push(`a picture has no text: ${each.id}`);
  }
  const ids = [...document.querySelectorAll("[id]")].map((each) => each.id);
  for (const id of ids) if (ids.filter((one) => one === id).length > 1) faults.push(`${id} twice`);
  for (const each of document.querySelectorAll("[aria-labelledby], [aria-describedby]")) {
    const named = each.getAttribute("aria-labelledby") ?? each.getAttribute("aria-describedby");
    if (document.getElementById(named) === null) faults.push(`${named} names nothing`);
  }
  const levels = all.filter((one) => /^H\d$/.test(one.tagName)).map((one) => Number(one.tagName[1]));
  levels.forEach((level, i) => {
    if (level > (levels[i - 1] ?? 0) + 1) faults.push(`a heading of level ${level} after ${levels[i - 1]}`);
  });
  if (document.documentElement.lang === "" || document.title === "") faults.push("no language, or no title");
  if (document.querySelectorAll("main").length !== 1) faults.push("not one main part");

  // Of each text the contrast with what is behind it: WCAG 2, at least 4.5 to 1.
  const channels = (colour) => colour.match(/[\d.]+/g).map(Number);
  const brightness = (colour) => channels(colour).slice(0, 3)
    .map((value) => (value / 255 <= 0.03928 ? value / 255 / 12.92 : ((value / 255 + 0.055) / 1.055) ** 2.4))
    .reduce((sum, value, i) => sum + value * [0.2126, 0.7152, 0.0722][i], 0);
  const groundOf = (each) => {
    const colour = getComputedStyle(each).backgroundColor;
    return (channels(colour)[3] ?? 1) === 0 && each.parentElement ? groundOf(each.parentElement) : colour;
  };
  for (const each of all) {
    const text = [...each.childNodes].filter((one) => one.nodeType === 3 && one.data.trim() !== "");
    if (text.length === 0) continue;
    const pair = [brightness(getComputedStyle(each).color), brightness(groundOf(each))].sort((a, b) => b - a);
    const contrast = (pair[0] + 0.05) / (pair[1] + 0.05);
    if (contrast < 4.5) faults.push(`"${text[0].data.trim().slice(0, 30)}" has a contrast of ${contrast.toFixed(1)}`);
  }
  return faults;
}

export async function assertIsForEverybody(page) {
  for (const colorScheme of ["light", "dark"]) {
    await page.emulateMedia({ colorScheme });
    assert.deepEqual(await page.evaluate(faultsOfPage), [], colorScheme);
  }
}
