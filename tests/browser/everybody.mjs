// What is asked of every page, so that everybody can read and use it.
import assert from "node:assert/strict";

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
