// The page of a report. What it shows stands in it: nothing is loaded.
import { byId, element, milliseconds, textOf } from "dom";
import { ItemList } from "items";
import { Journal, hasFailed, headingOf, isFailure } from "journal";
import { screensOf, takePictures } from "screens";

const record = JSON.parse(byId("record").textContent);
const names = new Map(record.header.applications.map((each) => [each.pid, textOf(each.name)]));
const journal = new Journal();
for (const entry of record.entries) journal.add(entry);
takePictures(record.pictures);
const list = new ItemList(names, screensOf);

function summarise() {
  const runs = new Set(journal.items.filter((item) => item.run !== null).map((item) => item.run));
  const failures = journal.items.filter(isFailure).length;
  const steps = journal.items.filter((item) => hasFailed(item) && !isFailure(item)).length;
  const failed = failures === 0 ? `Steps with failures: ${steps}`
    : `Failures: ${failures}. Other steps with failures: ${steps}`;
  const end = record.end === null ? "Made while the Mac still ran, or after it was killed"
    : `${milliseconds(record.end.at)} of ${record.header.time} time`;
  const seed = record.header.seed === undefined ? "" : ` Seed ${record.header.seed}.`;
  byId("summary").textContent = `Processes: ${runs.size}. ${failed}. ` +
    `${end}.${seed} ${record.header.program}.`;
  if (record.endWorld !== null) byId("summary").append(" ", wayToEnd());
}

/** The Mac goes on from its end when it is started with this world. */
function wayToEnd() {
  const href = `data:text/plain;charset=utf-8,${encodeURIComponent(textOf(record.endWorld))}`;
  return element("a", { textContent: "Its end as a world", download: "end.world", href });
}

/** Each failure of a test, or of the command of the run, with the way there and to the step before. */
function listFailures() {
  for (const item of journal.items.filter(isFailure)) {
    document.title = `Failed: ${document.title}`;
    const step = journal.items.slice(0, item.number).findLast((each) => each.kind !== "test");
    const line = element("li", {}, linkTo(item, headingOf(item)),
      ` at ${milliseconds(item.first.at)}`);
    if (step !== undefined) line.append(", after ", linkTo(step, headingOf(step)));
    byId("broken").append(line);
  }
}

/** Each broken rule, with the way to where it was broken. */
function listBroken() {
  const told = new Set();
  for (const item of journal.items) {
    for (const each of item.broken) {
      told.add(each.what);
      listWithWay(each.what, item);
    }
  }
  for (const each of record.end?.violations ?? []) {
    if (told.has(each)) continue;
    // What was left behind is told at the end: its process is named.
    const pid = Number(/process (\d+)/.exec(each)?.[1]);
    listWithWay(each, journal.items.findLast((item) => item.run?.pid === pid));
  }
}

/** A broken rule, with the way to the item that it is about, if there is one. */
function listWithWay(text, item) {
  byId("broken").append(element("li", {}, item === undefined ? text : linkTo(item, text)));
}

function linkTo(item, text) {
  const link = element("a", { href: `#item-${item.number}`, textContent: text });
  link.addEventListener("click", () => list.reveal(item));
  return link;
}

for (const item of journal.items) list.show(item);
summarise();
listFailures();
listBroken();
list.filter();
