// The page that shows a running Mac, and lets its user be played.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { before, beforeEach } from "node:test";
import { assertIsForEverybody } from "./everybody.mjs";
import { Needs, test } from "./needs.mjs";
import { patience, until } from "./programs.mjs";

const needsOfAll = Needs.ofFile();
const needs = Needs.ofEachTest();
let browser;
let mac;
let page;

before(async () => {
  browser = await needsOfAll.browser();
});
beforeEach(async () => {
  mac = await needs.mac();
  page = await needs.page(browser, mac.address);
  await page.locator("#screen[src]").waitFor();
});

const button = (name) => page.getByRole("button", { name, exact: true });
const field = (name) => page.getByRole("textbox", { name, exact: true });

/** Where a global point of the desk is on the page: its displays begin at -1280,0, 2720 by 900. */
async function placeOf(x, y) {
  await page.waitForFunction(() => document.getElementById("screen").naturalWidth > 0);
  await page.locator("#stage").scrollIntoViewIfNeeded();
  const box = await page.locator("#screen").boundingBox();
  return [box.x + (x + 1280) / 2720 * box.width, box.y + y / 900 * box.height];
}

/** Until the Mac has been told as much by its user, and what that was. */
async function happened(count) {
  const begin = Date.now();
  for (;;) {
    const told = await mac.happenings();
    if (told.length >= count || Date.now() - begin > patience) return told;
  }
}

/** The line of a run in the journal. */
const lineOf = (command) => page.locator("#items .line", { hasText: command }).first();

/** What an event of the user was, roughly where: a pixel is more than a point. */
function near(what, wanted) {
  const points = (text) => [...text.matchAll(/-?\d+(?=,)|(?<=,)-?\d+/g)].map(Number);
  const words = (text) => text.replace(/-?\d+,-?\d+/g, "X,Y");
  assert.equal(words(what), words(wanted));
  points(wanted).forEach((value, i) => assert.ok(Math.abs(points(what)[i] - value) <= 4, `${what}: ${wanted}`));
}

test("shows a run as it happens", async () => {
  const look = await page.locator("#screen").getAttribute("src");
  assert.equal((await mac.driver("bg-click", "Notes", "340", "574")).status, 0);

  await lineOf("driver bg-click Notes 340 574").waitFor();
  await page.getByText("584 ms, virtual time.", { exact: true }).waitFor();
  await page.waitForFunction((before) => document.getElementById("screen").getAttribute("src") !== before, look);
  const item = page.locator(".item").first();
  await item.locator("summary").first().click();
  await item.getByText("pressed AXButton").first().waitFor();
  assert.deepEqual(await item.locator("img").evaluateAll((all) => all.map((each) => each.alt)),
    ["The screens before, with where it clicked", "The screens after"]);
});

test("leaves the screens where they are, whatever it says", async () => {
  const before = await page.locator("#stage").boundingBox();
  await field("Anything else").fill(`quit "${"x".repeat(500)}"`);
  await button("Tell the Mac").click();
  await page.locator("#told.bad").waitFor();
  await page.evaluate(() => window.scrollTo(0, 0));
  assert.deepEqual(await page.locator("#stage").boundingBox(), before);
});

test("lets the user click, drag, scroll and type on the screens", async () => {
  await page.mouse.click(...await placeOf(600, 150));
  await page.mouse.click(...await placeOf(480, 350), { button: "right" });
  await page.mouse.move(...await placeOf(300, 300));
  await page.mouse.down();
  await page.mouse.move(...await placeOf(420, 320));
  await page.mouse.up();
  await page.mouse.wheel(0, 80);
  await page.keyboard.press("Shift+ArrowLeft");
  await page.keyboard.type("Hi!");
  await page.keyboard.press("Control+C");

  const told = await happened(10);
  const wanted = ["user click 600,150", "user click 480,350 right", "user drag 300,300 to 420,320",
    "user move 420,320", "user scroll 0,-2", "user key shift left", "user key H", "user key i", "user key !",
    "user key control c"];
  told.forEach((what, i) => near(what, wanted[i]));
  assert.equal(told.length, wanted.length);
  assert.equal((await mac.tell("state"))[0].front.name, "Notes");
});

test("types where the user has clicked", async () => {
  await page.mouse.click(...await placeOf(180, 137));
  await page.keyboard.type("bread");
  await happened(6);

  assert.equal((await mac.tell("value", "Notes", "Search"))[0].value, "bread");
});

test("is left by the keyboard, and is all there without a pointer", async () => {
  await page.locator("#stage").focus();
  await page.keyboard.press("Tab");
  assert.equal(await page.evaluate(() => document.activeElement.textContent), "Stop");
  await field("Point").fill("180,137");
  await page.keyboard.press("Enter");
  await field("Text").fill("two\\");
  await page.keyboard.press("Enter");
  await field("Keys").fill("cmd shift a");
  await page.keyboard.press("Enter");

  assert.deepEqual(await happened(6), ["user click 180,137", "user key t", "user key w", "user key o",
    "user key \\", "user key cmd shift a"]);
});

test("lets the user copy, switch, lock, unlock, plug and unplug", async () => {
  await field("Text").fill("a \"quoted\" text");
  await button("Copy").click();
  await page.getByRole("combobox", { name: "Application" }).selectOption("Notes");
  await button("Bring to front").click();
  await button("Lock").click();
  await page.getByRole("textbox", { name: "Display" }).fill("3 800x600 at 1440,0 scale 1");
  await button("Plug in").click();
  await page.getByRole("combobox", { name: "Display" }).selectOption("3: 800×600");
  await button("Unplug").click();
  await button("Unlock").click();

  assert.deepEqual((await happened(6)).sort(), ["connect display 3 800x600 at 1440,0 scale 1", "disconnect display 3",
    "front Notes", "lock", "unlock", "user copy \"a \\\"quoted\\\" text\""]);
});

test("lets the user stop a sharing", async () => {
  const service = mac.begin("capture-service", needs.folder()("lock"));
  service.write('{"op":"open","session":"s","app":"Notes"}\n');
  await until("a sharing", async () => (await mac.tell("state"))[0].sharing.length > 0);
  await page.getByRole("combobox", { name: "Application" }).selectOption("Notes");
  await button("Stop sharing").click();

  assert.equal(await service.ended(), 1);
});

test("arms a fault, and says what the Mac refuses", async () => {
  await field("Fault").fill("windowserver.session 1 absent");
  await button("Arm").click();
  await page.locator("#told", { hasText: /^fault windowserver.session 1 absent$/ }).waitFor();
  assert.equal((await mac.tell("state"))[0].faults[0].fault, "windowserver.session 1 absent");
  await field("Anything else").fill("quit \"No such\"");
  await button("Tell the Mac").click();
  await page.locator("#told.bad", { hasText: "quit No such: no application 'No such' is running" }).waitFor();
});

test("stops time, steps, advances and lets it go", async () => {
  await button("Stop").click();
  await page.getByText("0 ms, virtual time, which stands.").waitFor();
  const run = mac.begin("bg-click", "Notes", "340", "574");
  await lineOf("driver bg-click Notes 340 574").waitFor();
  await until("40 ms of virtual time", async () => {
    if ((await mac.tell("clock"))[0].now >= 40) return true;
    const answer = page.waitForResponse((each) => each.request().postData() === '["clock","step"]');
    await button("Step").click();
    await answer;
    return false;
  });
  await page.getByText("40 ms, virtual time, which stands.", { exact: true }).waitFor();
  await button("Advance").click();
  await page.getByText("140 ms, virtual time, which stands.").waitFor();
  await page.getByRole("combobox", { name: "Speed" }).selectOption("10 times real time");
  assert.equal(await run.ended(), 0);
  await page.getByText("584 ms, virtual time, 10 times real.").waitFor();
});

test("frames the element that is pointed at, and shows its attributes", async () => {
  await page.locator("#tree > summary").click();
  await page.getByRole("combobox", { name: "Of" }).selectOption("Notes");
  const body = button('AXTextArea "Body"');
  await body.hover();
  const corner = await placeOf(300, 166);
  const frame = await page.locator("#outline").boundingBox();
  assert.ok(Math.abs(frame.x - corner[0]) < 1 && Math.abs(frame.y - corner[1]) < 1);
  assert.match(await page.locator("#node").textContent(), /AXValue": "Dear reader, "/);
  await button('AXButton "Sign"').focus();
  assert.match(await page.locator("#node").textContent(), /"AXPress"/);
  await page.locator("#tree > summary").click();
  await page.locator("#outline").waitFor({ state: "hidden" });
});

test("shows the state as it changes", async () => {
  await page.locator("#state > summary").click();
  const row = page.getByRole("row", { name: "front" });
  await row.getByText("Browser").waitFor();
  await mac.tell("front", "Notes");
  await row.getByText("Notes").waitFor();
});

test("tells of a rule that is broken", async () => {
  await page.getByText("No rule is broken.").waitFor();
  await mac.tell("clock", "stop");
  const run = mac.begin("bg-click", "Notes", "340", "574");
  await lineOf("driver bg-click Notes 340 574").waitFor();
  await until("100 ms of virtual time", async () => (await mac.tell("clock", "step"))[0].now >= 100);
  run.kill();
  assert.equal(await run.ended(), "SIGKILL");
  await page.getByRole("list", { name: "Broken rules" }).getByText(/^I27: /).first().waitFor();
});

test("is for everybody, in light and dark", async () => {
  await mac.driver("bg-click", "Notes", "340", "574");
  await lineOf("driver bg-click Notes 340 574").click();
  await page.locator("#state > summary").click();
  await page.locator("#tree > summary").click();
  await button('AXWindow "Weather — Browser"').waitFor();
  await assertIsForEverybody(page);
});

test("says so when the Mac has gone", async () => {
  page.admits = /ERR_|503/;
  await mac.tell("stop");
  await page.locator("#told.bad", { hasText: "The Mac is no more to be seen" }).waitFor();
});

test("asks the Mac for nothing while nobody looks", async () => {
  const other = await needs.mac();
  const [view] = readFileSync(`/proc/${other.program.pid}/task/${other.program.pid}/children`, "utf8").split(" ");
  const status = () => readFileSync(`/proc/${view}/status`, "utf8");
  const turns = () => /\nvoluntary_ctxt_switches:\s*(\d+)/.exec(status())[1];
  await until("a view that waits", async () => /^State:\s*S/m.test(status()));
  const before = turns();
  await other.driver("bg-click", "Notes", "340", "574");
  assert.equal(turns(), before);
});
