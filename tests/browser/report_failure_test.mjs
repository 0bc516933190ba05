// The page of a report about a run that has failed.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { before } from "node:test";
import { assertIsForEverybody } from "./everybody.mjs";
import { Needs, test } from "./needs.mjs";
import { desk, driver, run, simulatedMac } from "./programs.mjs";

const script = `
for i in 1 2 3; do "$0" ax-find-text Chat Never; "$1" wait 200ms; done
"$0" ax-press-exact Chat Accept
"$0" ax-find-text Chat Never
"$1" fault ax.perform 1 error -25204
"$1" wait until Chat shows Never within 1s
"$1" failed "no answer (test.sh:7)
expected one"
"$0" ax-focused Chat
exit 3`;

const needs = Needs.ofFile();
const file = needs.folder();
let page;

before(async () => {
  const words = ["run", "--virtual", "--record", file("record"), desk, "--", "sh", "-c", script, driver, simulatedMac];
  assert.equal((await run(simulatedMac, words)).status, 3);
  await run(simulatedMac, ["report", file("record"), "-o", file("report.html")]);
  page = await needs.page(await needs.browser(), `file://${file("report.html")}`);
});

/** The lines that are shown: what was done, what came of it, and its marks. */
function shown() {
  return page.locator(".item:visible > summary").evaluateAll((lines) => lines.map((line) =>
    [line.querySelector(".line").textContent.slice(0, 50), line.querySelector(".reason")?.textContent ?? "",
      ...[...line.querySelectorAll(".tag")].map((tag) => tag.textContent)].join(" | ")));
}

const ask = "driver ax-find-text Chat Never";
const saw = 'counts: {"Never":0}, frames: {}';
const inVain = 'waited 1000.0 ms in vain; at last it showed "Ada — Chat", "Conversations", "Ada", "Grace", ' +
  '"Conversation with Ada", "Ada: Shall we meet on Tuesday?", "Like", "You: At ten, in room 4.", ' +
  '"Ada: I have sent you an invitation.", "Accept", "You have accepted.", "Answer", "Message", "Send"';
const rest = [
  "driver ax-press-exact Chat Accept |  | ok",
  `${ask} | ${saw} | ok`,
  "fault armed: ax.perform 1 error -25204 |  | fault",
  `wait until Chat shows Never | ${inVain} | in vain`,
  "failed: no answer (test.sh:7) |  | failed",
  "driver ax-focused Chat | element: null | ok",
  "failed: the command ended with status 3: sh -c ' |  | failed",
];

test("begins with what has failed, and after which step", async () => {
  assert.match(await page.title(), /^Failed: /);
  const failures = page.getByRole("list", { name: "Failures and broken rules" }).getByRole("listitem");
  const texts = await failures.allTextContents();
  assert.deepEqual(texts, [`failed: no answer (test.sh:7) at 1600 ms, after ${ask}`,
    "failed: the command ended with status 3: sh -c ' at 1600 ms, after driver ax-focused Chat"]);
  const colour = (one) => one.evaluate((each) => getComputedStyle(each).color);
  const red = await colour(failures.first());
  assert.match(red, /^rgb\((\d+), \d+, \d+\)$/);
  assert.ok(Number(/\d+/.exec(red)[0]) > 150, red);
  assert.match(await page.locator("#summary").textContent(), /^Processes: 6\. Failures: 2\. Other steps with failures: 1\. /);
});

test("leads to what has failed, and to the step before", async () => {
  const links = page.getByRole("list", { name: "Failures and broken rules" }).getByRole("link");
  await links.nth(1).click();
  await page.locator(".item[open] .line", { hasText: ask }).first().waitFor();
  await links.nth(0).click();
  await page.locator(".item[open] td.line", { hasText: "failed: no answer (test.sh:7)\nexpected one" }).waitFor();
  await page.getByRole("button", { name: "Close all" }).click();
});

test("folds equal looks in a row to one line that opens", async () => {
  assert.deepEqual(await shown(), [`${ask} | ${saw} | 3 times | ok`, ...rest]);
  await page.locator(".item:visible > summary").first().click();
  await page.locator("#item-1").waitFor();
  assert.deepEqual(await shown(), [`${ask} | ${saw} | 3 times | ok`, `${ask} | ${saw} | ok`, `${ask} | ${saw} | ok`,
    ...rest]);
  await page.locator(".item:visible > summary").first().click();
  await page.locator("#item-1").waitFor({ state: "hidden" });
});

test("shows a folded look that is chosen by its process", async () => {
  const by = page.getByRole("combobox", { name: "By" });
  await by.selectOption({ label: `5000001 ${ask}` });
  assert.deepEqual(await shown(), [`${ask} | ${saw} | ok`]);
  assert.equal(await page.locator("#count").textContent(), "1 of 10");
  await by.selectOption("anybody");
});

test("shows what has failed alone", async () => {
  const show = page.getByRole("combobox", { name: "Show" });
  await show.selectOption("what failed or was lost");
  assert.deepEqual(await shown(), [rest[3], rest[4], rest[6]]);
  await show.selectOption("everything");
});

test("gives the end of the Mac as a world", async () => {
  const link = page.getByRole("link", { name: "Its end as a world" });
  assert.equal(await link.getAttribute("download"), "end.world");
  const [download] = await Promise.all([page.waitForEvent("download"), link.click()]);
  assert.equal(download.suggestedFilename(), "end.world");
  assert.equal(readFileSync(await download.path(), "utf8"), readFileSync(file("record/end.world"), "utf8"));
});

test("is for everybody, in light and dark", async () => {
  await page.getByRole("button", { name: "Open all" }).click();
  await assertIsForEverybody(page);
});
