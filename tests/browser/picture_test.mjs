// The moving picture of the README.
import assert from "node:assert/strict";
import { before } from "node:test";
import { Needs, test } from "./needs.mjs";

const address = new URL("../../docs/pictures/behind.svg", import.meta.url).href;
const needs = Needs.ofFile();
let browser;

before(async () => {
  browser = await needs.browser();
});

/** How many groups move, and whether what belongs to the beginning and to the end is seen. */
async function seen(reducedMotion) {
  const page = await needs.page(browser, address, { reducedMotion });
  return page.evaluate(() => {
    const isSeen = (text) => [...document.querySelectorAll("text")].some((each) =>
      each.textContent === text && getComputedStyle(each).visibility === "visible");
    return { moves: document.getAnimations().length > 0, beginning: isSeen("No letter is selected."),
      end: isSeen("presses Return") };
  });
}

test("moves, from its beginning on", async () => {
  assert.deepEqual(await seen("no-preference"), { moves: true, beginning: true, end: false });
});

test("stands still at its end for whoever has asked for that", async () => {
  assert.deepEqual(await seen("reduce"), { moves: false, beginning: false, end: true });
});
