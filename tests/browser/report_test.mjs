// The page of a report, opened from disk.
import assert from "node:assert/strict";
import { before } from "node:test";
import { assertIsForEverybody } from "./everybody.mjs";
import { Needs, test } from "./needs.mjs";
import { desk, driver, run, simulatedMac } from "./programs.mjs";

const script = `
"$0" bg-click Notes 340 574
"$1" user click 620,256
"$0" ax-press-exact Chat Nowhere
"$1" fault private.post 5 before lock
"$0" bg-click Notes 340 574
"$1" unlock
true`;

const needs = Needs.ofFile();
const file = needs.folder();
let page;

before(async () => {
  const words = ["run", "--virtual", "--seed", "7", "--record", file("record"), desk, "--", "sh", "-c", script,
    driver, simulatedMac];
  assert.equal((await run(simulatedMac, words)).status, 0);
  const made = await run(simulatedMac, ["report", file("record"), "-o", file("report.html")]);
  assert.equal(made.status, 0);
  page = await needs.page(await needs.browser(), `file://${file("report.html")}`);
});

/** The lines that are shown: what was done, and its marks. */
function shown() {
  return page.locator(".item:visible > summary").evaluateAll((lines) => lines.map((line) =>
    [line.querySelector(".line").textContent, ...[...line.querySelectorAll(".tag")].map((tag) => tag.textContent)]
      .join(" | ")));
}

const all = [
  "driver bg-click Notes 340 574 | ok",
  "user click 620,256",
  "driver ax-press-exact Chat Nowhere | not ok",
  "fault armed: private.post 5 before lock | fault",
  "driver bg-click Notes 340 574 | not ok | status 1 | 1 lost | fault",
  "lock",
  "unlock",
];

test("opens from disk, and asks for nothing", async () => {
  assert.deepEqual(await shown(), all);
  assert.deepEqual(page.asked.filter((url) => !url.startsWith("data:")), [`file://${file("report.html")}`]);
  assert.deepEqual(page.errors, []);
  assert.match(await page.locator("#summary").textContent(),
    /^Processes: 3\. Steps with failures: 2\. [\d.]+ ms of virtual time\. Seed 7\. simulated-mac /);
});

test("says in a line why it failed, or what came of it", async () => {
  const reasons = await page.locator(".item > summary").evaluateAll((lines) =>
    lines.map((line) => line.querySelector(".reason")?.textContent ?? ""));
  assert.deepEqual(reasons, ["", 'Browser: pressed AXCheckBox "Show wind"', 'no element labelled "Nowhere"', "",
    "the screen locked; input was withheld from the lock screen", "", ""]);
});

test("finds what is searched for", async () => {
  const search = page.getByRole("searchbox", { name: "Search" });
  await page.keyboard.press("/");
  await page.keyboard.type("pressed axbutton");
  assert.deepEqual(await shown(), [all[0]]);
  assert.equal(await page.locator("#count").textContent(), "1 of 7");
  await search.fill("nothing of this kind");
  assert.deepEqual(await shown(), []);
  await search.fill("");
  assert.deepEqual(await shown(), all);
});

test("shows what is chosen", async () => {
  const show = page.getByRole("combobox", { name: "Show" });
  await show.selectOption("what failed or was lost");
  assert.deepEqual(await shown(), [all[2], all[4]]);
  await show.selectOption("faults");
  assert.deepEqual(await shown(), [all[3], all[4]]);
  await show.selectOption("the user and the system");
  assert.deepEqual(await shown(), [all[1], all[5], all[6]]);
  await show.selectOption("everything");
  const by = page.getByRole("combobox", { name: "By" });
  await by.selectOption({ label: "5000001 driver ax-press-exact Chat Nowhere" });
  assert.deepEqual(await shown(), [all[2]]);
  await by.selectOption("anybody");
});

test("is read by keys alone", async () => {
  const focused = () => page.evaluate(() => document.activeElement.querySelector(".line")?.textContent);
  await page.keyboard.press("Escape");
  await page.keyboard.press("j");
  assert.equal(await focused(), "driver bg-click Notes 340 574");
  await page.keyboard.press("n");
  assert.equal(await focused(), "driver ax-press-exact Chat Nowhere");
  await page.keyboard.press("k");
  assert.equal(await focused(), "user click 620,256");
  await page.keyboard.press("Enter");
  assert.equal(await page.locator(".item[open]").count(), 1);
  await page.keyboard.press("Enter");
  assert.equal(await page.locator(".item[open]").count(), 0);
});

test("shows the screens before and after, with what has changed in frames", async () => {
  await page.locator(".item > summary").first().click();
  const screens = page.locator(".item").first().getByRole("img");
  await screens.nth(1).waitFor();
  assert.equal(await screens.count(), 2);
  assert.match(await screens.nth(0).getAttribute("aria-label"), /before, with where it clicked$/);
  assert.match(await screens.nth(1).getAttribute("aria-label"), /after, with what has changed$/);
  // The mark, and the frame, are of one colour that is nowhere else.
  await page.waitForFunction(() => [...document.querySelectorAll(".item[open] canvas")].every((canvas) => {
    const { data } = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
    for (let i = 0; i < data.length; i += 4) {
      if (data[i] === 255 && data[i + 1] === 59 && data[i + 2] === 48) return true;
    }
    return false;
  }));
});

test("is for everybody, in light and dark", async () => {
  await page.getByRole("button", { name: "Open all" }).click();
  await assertIsForEverybody(page);
});

test("opens all that is shown for paper", async () => {
  await page.getByRole("button", { name: "Close all" }).click();
  await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
  await page.emulateMedia({ media: "print" });
  assert.equal(await page.locator(".item[open]").count(), 7);
  assert.equal(await page.locator("#filter").isVisible(), false);
});
