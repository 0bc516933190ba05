// The page that shows a running Mac.
import { byId, element, milliseconds, textOf } from "dom";
import { ItemList } from "items";
import { Journal, clicksOf } from "journal";
import { offerForms } from "live_forms";
import { tell, watch } from "live_mac";
import { showRules, showState, showTree } from "live_panels";
import { playUser, showScreens } from "live_screen";

const names = new Map();
const journal = new Journal();
/** The looks that were seen, with the latest entry then. */
const looks = [];
const list = new ItemList(names, screensOf);

/** The screens as they were seen last before an item, and first after it, or null. */
function screensOf(item) {
  const before = looks.findLast((each) => each.entry < item.first.number);
  const after = looks.find((each) => each.entry >= item.last.number) ?? looks.at(-1);
  if (before === undefined || after === undefined || before.look === after.look) return null;
  const clicked = clicksOf(item).length > 0 ? ", with where it clicked" : "";
  return element("div", { className: "screens" },
    picture(`before${clicked}`, before, clicksOf(item)), picture("after", after, []));
}

function picture(caption, seen, clicks) {
  const image = element("img", { src: `screens/${seen.look}`, alt: `The screens ${caption}` });
  image.addEventListener("error", () => {
    image.replaceWith(element("p", { textContent: "This picture is no more kept." }));
  });
  const marks = clicks.map(({ x, y }) => {
    const mark = element("span", { className: "mark" });
    mark.style.left = `${(x - seen.frame.x) / seen.frame.width * 100}%`;
    mark.style.top = `${(y - seen.frame.y) / seen.frame.height * 100}%`;
    return mark;
  });
  return element("figure", {}, element("div", { className: "marked" }, image, ...marks),
    element("figcaption", { textContent: caption }));
}

let acts = Promise.resolve();

/** Tells the Mac what its user does, one thing after the other, and says what is refused. */
function act(...words) {
  acts = acts.then(() => told(words));
  return acts;
}

/** Tells the Mac something, and says what has come of it. */
async function told(words) {
  try {
    await tell(...words);
    byId("told").value = words.join(" ");
    byId("told").className = "";
  } catch (error) {
    byId("told").value = `${words.join(" ")}: ${error.message}`;
    byId("told").className = "bad";
  }
}

function paceText(mac) {
  if (mac.time === "real") return "real time";
  if (mac.pace === null) return "virtual time";
  return mac.pace === 0 ? "virtual time, which stands" : `virtual time, ${mac.pace} times real`;
}

/** The choices of a list, kept as they are when there are no others. */
function offer(id, choices) {
  const select = byId(id);
  const isSame = choices.length === select.options.length && choices.every(([value, text], i) =>
    select.options[i].value === value && select.options[i].text === text);
  if (isSame) return;
  const chosen = select.value;
  select.replaceChildren(...choices.map(([value, text]) =>
    element("option", { value, textContent: text })));
  if (choices.some(([value]) => value === chosen)) select.value = chosen;
}

function showMac(mac) {
  const running = mac.applications.filter((each) => each.running);
  for (const each of mac.applications) names.set(each.pid, textOf(each.name));
  const applications = running.map((each) => [`pid:${each.pid}`, textOf(each.name)]);
  offer("applications", applications);
  offer("tree-application", applications);
  offer("displays", mac.displays.map((each) => [String(each.number),
    `${each.number}: ${each.frame.width}×${each.frame.height}`]));
  byId("time").hidden = mac.time === "real";
  byId("summary").textContent = `${milliseconds(mac.now)}, ${paceText(mac)}.`;
  showScreens(mac.look, mac.frame);
  if (mac.frame !== undefined && mac.look !== looks.at(-1)?.look) {
    looks.push({ look: mac.look, frame: mac.frame, entry: mac.entry });
  }
}

function showEntries(mac, entries) {
  const touched = new Set(entries.map((each) => journal.add(each)));
  for (const item of touched) list.show(item);
  if (byId("follow").checked && touched.size > 0) byId("items").scrollTop = 1e9;
  if (mac.skipped > 0) byId("told").value = `${mac.skipped} earlier entries are not shown`;
}

async function take(mac, entries) {
  showMac(mac);
  showEntries(mac, entries);
  await Promise.all([showRules(journal), showState(), showTree()]);
}

offerForms(act, told);
playUser(act);
for (const id of ["state", "tree"]) {
  byId(id).addEventListener("toggle", () => { showState(); showTree(); });
}
byId("tree-application").addEventListener("input", () => showTree());
watch(take).then((why) => {
  byId("told").value = `The Mac is no more to be seen: ${why}`;
  byId("told").className = "bad";
  document.body.classList.add("gone");
});
