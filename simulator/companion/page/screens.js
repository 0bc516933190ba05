// The screens of a record, as pictures of which each is what has changed since the one before.
import { element, milliseconds } from "dom";
import { clicksOf } from "journal";

let pictures = [];

/** Takes the pictures of a record, with what each is the look after. */
export function takePictures(taken) { pictures = taken; }

/** The number of the latest picture of which `holds` is true; -1 when there is none. */
function latestPicture(holds) { return pictures.findLastIndex(holds); }

/** The screens before an item and after it, or null. */
export function screensOf(item) {
  const before = latestPicture((each) => each.after < item.first.number);
  const after = latestPicture((each) => each.after <= item.last.number);
  if (after < 0) return null;
  const clicks = clicksOf(item);
  if (before === after || before < 0) {
    return element("div", { className: "screens" },
      screen("the screens, which did not change", after, [], clicks));
  }
  const regions = pictures.slice(before + 1, after + 1).flatMap((each) => each.regions);
  return element("div", { className: "screens" },
    screen(clicks.length > 0 ? "before, with where it clicked" : "before", before, [], clicks),
    screen("after, with what has changed", after, regions, []));
}

function screen(caption, number, regions, clicks) {
  const picture = pictures[number];
  const canvas = element("canvas", { width: picture.width, height: picture.height });
  canvas.setAttribute("role", "img");
  canvas.setAttribute("aria-label", `The screens at ${milliseconds(picture.at)}, ${caption}`);
  draw(number).then((drawn) => {
    const context = canvas.getContext("2d");
    context.drawImage(drawn, 0, 0);
    outline(context, regions);
    mark(context, picture, clicks);
  }).catch((error) => { canvas.replaceWith(element("p", { textContent: error.message })); });
  const size = element("button", { type: "button", textContent: "larger" });
  const figure = element("figure", {}, canvas,
    element("figcaption", {}, `${caption} (${milliseconds(picture.at)}) `, size));
  size.addEventListener("click", () => {
    size.textContent = figure.classList.toggle("large") ? "smaller" : "larger";
  });
  return figure;
}

function outline(context, regions) {
  context.strokeStyle = "#ff3b30";
  context.lineWidth = 3;
  for (const each of regions) {
    context.strokeRect(each.x - 2.5, each.y - 2.5, each.width + 5, each.height + 5);
  }
}

function mark(context, picture, clicks) {
  for (const each of clicks) {
    context.beginPath();
    context.arc(each.x - picture.x, each.y - picture.y, 14, 0, 2 * Math.PI);
    context.fillStyle = "rgba(255, 59, 48, .3)";
    context.fill();
    context.strokeStyle = "#ff3b30";
    context.lineWidth = 3;
    context.stroke();
  }
}

/** The picture at an address, once it is there. */
function loaded(address) {
  return new Promise((resolve, reject) => {
    const image = new Image();
    image.addEventListener("load", () => resolve(image));
    image.addEventListener("error", () => reject(new Error("This picture cannot be shown.")));
    image.src = address;
  });
}

const drawn = new Map();

/** A picture as a whole: the one before it, with what has changed since. */
function draw(number) {
  if (!drawn.has(number)) drawn.set(number, compose(number));
  return drawn.get(number);
}

async function compose(number) {
  const picture = pictures[number];
  if (picture.missing) throw new Error("This picture is missing in the record.");
  const canvas = element("canvas", { width: picture.width, height: picture.height });
  const context = canvas.getContext("2d");
  if (!picture.whole) context.drawImage(await draw(number - 1), 0, 0);
  for (const region of picture.regions) {
    context.drawImage(await loaded(`data:image/png;base64,${region.png}`), region.x, region.y);
  }
  return canvas;
}
