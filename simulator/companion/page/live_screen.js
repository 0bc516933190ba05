// The screens of the Mac, and what its user does on them.
import { byId } from "dom";

const names = { Enter: "return", Backspace: "backspace", Delete: "forwarddelete",
  Escape: "escape", Home: "home", End: "end", PageUp: "pageup", PageDown: "pagedown",
  ArrowLeft: "left", ArrowRight: "right", ArrowUp: "up", ArrowDown: "down", " ": "space" };

/** A press that is let go nearer than this, in points, is a click. */
const dragMin = 4;
const pixelsPerLine = 40;

let frame = null;
let look = null;
let outlined = null;

/** Shows a look of the screens, whose part of the global points is `place`. */
export function showScreens(name, place) {
  if (name === look) return;
  look = name;
  frame = place ?? null;
  const image = byId("screen");
  image.hidden = frame === null;
  if (frame === null) return;
  image.src = `screens/${name}`;
  image.alt = `Screens of ${frame.width} by ${frame.height} points`;
  outline(outlined);
}

/** Frames a part of the screens, or none. */
export function outline(place) {
  outlined = place;
  const box = byId("outline");
  box.hidden = place === null || frame === null;
  if (box.hidden) return;
  const share = (length, whole) => `${length / whole * 100}%`;
  box.style.left = share(place.x - frame.x, frame.width);
  box.style.top = share(place.y - frame.y, frame.height);
  box.style.width = share(place.width, frame.width);
  box.style.height = share(place.height, frame.height);
}

/** Where an event was, in global points. */
function pointOf(event) {
  const box = byId("screen").getBoundingClientRect();
  const x = frame.x + (event.clientX - box.left) / box.width * frame.width;
  const y = frame.y + (event.clientY - box.top) / box.height * frame.height;
  return [Math.round(x), Math.round(y)];
}

/** The words of a key as the user presses it; null for what is left to the browser. */
export function keyWords(event) {
  if (event.key === "Tab" || event.isComposing) return null;
  const name = names[event.key] ?? ([...event.key].length === 1 ? event.key : null);
  if (name === null) return null;
  const isCharacter = name === event.key;
  const held = [];
  if (event.metaKey) held.push("cmd");
  // Which of them makes a character is known already.
  if (event.shiftKey && (!isCharacter || event.metaKey || event.ctrlKey)) held.push("shift");
  if (event.altKey && !isCharacter) held.push("option");
  if (event.ctrlKey) held.push("control");
  const isCombined = isCharacter && (event.metaKey || event.ctrlKey);
  return ["user", "key", ...held, isCombined ? name.toLowerCase() : name];
}

/** Lets the user be played on the screens: `act` takes the words of what he does. */
export function playUser(act) {
  const stage = byId("stage");
  let pressed = null;
  stage.addEventListener("pointerdown", (event) => {
    if (frame === null) return;
    pressed = pointOf(event);
    stage.focus();
    stage.setPointerCapture(event.pointerId);
  });
  stage.addEventListener("pointerup", (event) => {
    if (pressed === null) return;
    const [from, to] = [pressed, pointOf(event)];
    pressed = null;
    const button = event.button === 2 ? ["right"] : event.button === 1 ? ["other"] : [];
    const isClick = Math.hypot(to[0] - from[0], to[1] - from[1]) < dragMin;
    if (isClick) act("user", "click", from.join(","), ...button);
    else act("user", "drag", from.join(","), "to", to.join(","), ...button);
  });
  stage.addEventListener("contextmenu", (event) => event.preventDefault());
  stage.addEventListener("keydown", (event) => {
    const words = keyWords(event);
    if (words === null) return;
    event.preventDefault();
    act(...words);
  });
  playWheel(stage, act);
}

function playWheel(stage, act) {
  let left = 0;
  stage.addEventListener("wheel", (event) => {
    if (frame === null) return;
    event.preventDefault();
    left += event.deltaMode === WheelEvent.DOM_DELTA_PIXEL ? event.deltaY / pixelsPerLine
      : event.deltaY;
    const lines = Math.trunc(left);
    if (lines === 0) return;
    left -= lines;
    act("user", "move", pointOf(event).join(","));
    act("user", "scroll", `0,${-lines}`);
  }, { passive: false });
}
