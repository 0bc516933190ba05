// Takes the pictures of the pages that the documents show: pictures.mjs FOLDER.
import { join } from "node:path";
import { Needs } from "./needs.mjs";
import { desk, driver, run, simulatedMac } from "./programs.mjs";

const target = process.argv[2];
const script = '"$0" bg-click Notes 340 574; "$1" user click 620,256; "$0" ax-press-exact Chat Nowhere; true';
const needs = new Needs();
const browser = await needs.browser();
const file = needs.folder();

await run(simulatedMac, ["run", "--virtual", "--record", file("record"), desk, "--", "sh", "-c", script, driver,
  simulatedMac]);
await run(simulatedMac, ["report", file("record"), "-o", file("report.html")]);
const report = await needs.page(browser, `file://${file("report.html")}`, { viewport: { width: 1100, height: 860 } });
await report.locator(".item > summary").first().click();
await report.waitForFunction(() => [...document.querySelectorAll("canvas")].length === 2);
await report.locator("canvas").last().scrollIntoViewIfNeeded();
await report.screenshot({ path: join(target, "report.png"), fullPage: true });

const mac = await needs.mac();
const live = await needs.page(browser, mac.address, { viewport: { width: 1400, height: 900 } });
await mac.driver("bg-click", "Notes", "340", "574");
await mac.driver("ax-press-exact", "Chat", "Nowhere");
await live.locator("#items .item").nth(1).waitFor();
await live.locator("#tree > summary").click();
await live.getByRole("combobox", { name: "Of" }).selectOption("Notes");
await live.getByRole("button", { name: 'AXTextArea "Body"' }).hover();
await live.waitForFunction(() => document.getElementById("screen").naturalWidth > 0);
await live.screenshot({ path: join(target, "live.png") });
await needs.end();
