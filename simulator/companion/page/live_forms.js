// What a person can tell the Mac by forms and buttons.
import { byId } from "dom";

/** The words of a text, parted by blanks; what stands in double quotes is one. */
export function wordsOf(text) {
  return [...text.matchAll(/"((?:[^"\\]|\\.)*)"|(\S+)/g)]
    .map(([, quoted, plain]) => plain ?? quoted.replace(/\\(.)/g, "$1"));
}

const characterNames = { "\n": "return", "\t": "tab" };

/** What each form tells, of its fields and of the button that was pressed: lists of words. */
const forms = {
  advance: ({ time }) => [["advance", time]],
  type: ({ text }, button) => button === "copy" ? [["user", "copy", text]]
    : [...text].map((each) => ["user", "key", characterNames[each] ?? each]),
  press: ({ keys }) => [["user", "key", ...wordsOf(keys)]],
  click: ({ point }, button) => [["user", ...(button === "move" ? ["move", point]
    : button === "right" ? ["click", point, "right"] : ["click", point])]],
  scroll: ({ lines }) => [["user", "scroll", lines]],
  application: ({ pid }, button) => [[...button.split(" "), pid]],
  plug: ({ display }) => [["connect", "display", ...wordsOf(display)]],
  unplug: ({ number }) => [["disconnect", "display", number]],
  fault: ({ fault }) => [["fault", ...wordsOf(fault)]],
  tell: ({ command }) => [wordsOf(command)],
};

/** `act` takes what the user does, in order; `tell` what need not wait for that. */
export function offerForms(act, tell) {
  for (const form of document.querySelectorAll("[data-form]")) {
    form.addEventListener("submit", (event) => {
      event.preventDefault();
      const fields = Object.fromEntries(new FormData(form));
      const button = event.submitter?.value ?? "";
      for (const words of forms[form.dataset.form](fields, button)) act(...words);
    });
  }
  for (const button of document.querySelectorAll("[data-tell]")) {
    button.addEventListener("click", () => tell(button.dataset.tell.split(" ")));
  }
  byId("speed").addEventListener("input", () => {
    const speed = byId("speed").value;
    tell(["clock", "run", ...(speed === "" ? [] : [speed])]);
  });
}
