// Made by scripts/generate-contract from packaging/contract.

import type * as contract from "./contract.js";
import type { RunOptions } from "./run.js";

/** Every command as a function, which gives the reply or throws. */
export abstract class Commands {
  /** Runs a command with its arguments by name, options of the run among them. */
  abstract run<Reply>(command: string, given: Record<string, unknown>): Promise<Reply>;

  /**
   * Writes a picture of the application's windows. Writes a PNG file of the application's windows
   * within the scope as the user would see them, on the display that shows its main window.
   */
  capture(app: string, path: string, more: RunOptions = {}): Promise<contract.CaptureNotRunning | contract.CaptureNoWindow | contract.CapturePicture> {
    return this.run("capture", { app, path, ...more });
  }

  /**
   * Clicks in a window that stays where it is. Clicks once or, with count 2, twice at the point,
   * without moving the user's pointer or raising the window.
   */
  bgClick(app: string, x: number, y: number, more: { button?: "left" | "right"; count?: number } & RunOptions = {}): Promise<contract.BgClickSuccess> {
    return this.run("bg-click", { app, x, y, ...more });
  }

  /** Scrolls in a window that stays where it is. Scrolls by dx and dy lines at the point. */
  bgScroll(app: string, x: number, y: number, dx: number, dy: number, more: RunOptions = {}): Promise<contract.BgScrollSuccess> {
    return this.run("bg-scroll", { app, x, y, dx, dy, ...more });
  }

  /**
   * Lets a window see the pointer at a point. The application believes that the pointer is there;
   * the user's own does not move.
   */
  bgMove(app: string, x: number, y: number, more: RunOptions = {}): Promise<contract.BgMoveSuccess> {
    return this.run("bg-move", { app, x, y, ...more });
  }

  /**
   * Says whether screens can be captured. Takes a tiny picture of the first display and throws it
   * away. The argument is not used.
   */
  captureProbe(more: RunOptions = {}): Promise<contract.CaptureProbeSuccess> {
    return this.run("capture-probe", { ...more });
  }

  /**
   * Takes back focus that another process gave. For use after a capture service that held focus
   * was killed: process id and window are focusPid and focusWindow of the reply to bg-focus-hold.
   */
  focusRelease(pid: number, window: number, more: RunOptions = {}): Promise<contract.FocusReleaseSuccess> {
    return this.run("focus-release", { pid, window, ...more });
  }

  /**
   * Presses a key combination. A combination is written as cmd+shift+s. A combination with cmd
   * that is the shortcut of an enabled menu item presses that item.
   */
  bgKey(app: string, combo: string, more: RunOptions = {}): Promise<contract.BgKeySuccess> {
    return this.run("bg-key", { app, combo, ...more });
  }

  /** Types a text. A line break is typed as shift and return. */
  bgType(app: string, text: string, more: RunOptions = {}): Promise<contract.BgTypeSuccess> {
    return this.run("bg-type", { app, text, ...more });
  }

  /**
   * Pastes files, and puts the user's clipboard back. Works as if the files had been copied in the
   * file manager. Relative paths start at the current directory. A copy that somebody else makes
   * in the meantime is left alone. Any reply may also say "copyLost": true (a copy that somebody
   * made in the very instant of clearing the clipboard is lost) and "clipboardRestored": false
   * (the system did not take the old contents of the clipboard back, and it is empty).
   */
  bgPasteFiles(app: string, paths: string[], more: RunOptions = {}): Promise<contract.BgPasteFilesSuccess> {
    return this.run("bg-paste-files", { app, paths, ...more });
  }

  /** Says which permissions are granted; never prompts. */
  permissions(more: RunOptions = {}): Promise<contract.PermissionsSuccess> {
    return this.run("permissions", { ...more });
  }

  /**
   * Shows the application in front and the place of the pointer. Without an application in front
   * pid is 0 and bundleId empty.
   */
  scene(more: RunOptions = {}): Promise<contract.SceneSuccess> {
    return this.run("scene", { ...more });
  }

  /** Locks the screen. */
  lockNow(more: RunOptions = {}): Promise<contract.LockNowSuccess> {
    return this.run("lock-now", { ...more });
  }

  /** Says whether the screen is locked, or another user in front. */
  session(more: RunOptions = {}): Promise<contract.SessionSuccess> {
    return this.run("session", { ...more });
  }

  /**
   * Lists an application's windows on screen, front to back. It leaves out windows smaller than 40
   * by 40 points.
   */
  windows(app: string, more: RunOptions = {}): Promise<contract.WindowsNotRunning | contract.WindowsRunning> {
    return this.run("windows", { app, ...more });
  }

  /** Counts the elements that show texts. */
  axFindText(app: string, texts: string[], more: RunOptions = {}): Promise<contract.AxFindTextSuccess> {
    return this.run("ax-find-text", { app, texts, ...more });
  }

  /** Shows the texts at a point. */
  axTextsAt(app: string, x: number, y: number, more: RunOptions = {}): Promise<contract.AxTextsAtSuccess> {
    return this.run("ax-texts-at", { app, x, y, ...more });
  }

  /** Hovers a row and presses a control in it. */
  axPressChild(app: string, row: string, child: string, more: { role?: string } & RunOptions = {}): Promise<contract.AxPressChildSuccess> {
    return this.run("ax-press-child", { app, row, child, ...more });
  }

  /** Shows the element at a point. */
  axAt(app: string, x: number, y: number, more: RunOptions = {}): Promise<contract.AxAtSuccess> {
    return this.run("ax-at", { app, x, y, ...more });
  }

  /** Presses the control at a point. */
  axPress(app: string, x: number, y: number, more: RunOptions = {}): Promise<contract.AxPressSuccess> {
    return this.run("ax-press", { app, x, y, ...more });
  }

  /** Presses the one button of a label in the one document open. */
  axPressInDocument(app: string, document: string, button: string, more: RunOptions = {}): Promise<contract.AxPressInDocumentSuccess> {
    return this.run("ax-press-in-document", { app, document, button, ...more });
  }

  /**
   * Presses the control of exactly a label. It must be the only one; with last it is the lowest
   * one. With a container's label it is looked for only within that group.
   */
  axPressExact(app: string, label: string, more: { which?: "only" | "last"; container?: string } & RunOptions = {}): Promise<contract.AxPressExactSuccess> {
    return this.run("ax-press-exact", { app, label, ...more });
  }

  /** Shows the element that matches a label best. The point, or -1 -1, decides between several. */
  axMatch(app: string, label: string, more: { nearX?: number; nearY?: number } & RunOptions = {}): Promise<contract.AxMatchSuccess> {
    return this.run("ax-match", { app, label, ...more });
  }

  /** Presses the element that matches a label best. The point, or -1 -1, decides between several. */
  axPressMatch(app: string, label: string, more: { nearX?: number; nearY?: number } & RunOptions = {}): Promise<contract.AxPressMatchSuccess> {
    return this.run("ax-press-match", { app, label, ...more });
  }

  /** Lists the items of open pop-up menus. */
  axPopupItems(app: string, more: RunOptions = {}): Promise<contract.AxPopupItemsSuccess> {
    return this.run("ax-popup-items", { app, ...more });
  }

  /** Reads a slider, or moves it. */
  axSlider(app: string, label: string, more: { value?: number | "increment" | "decrement" } & RunOptions = {}): Promise<contract.AxSliderTold | contract.AxSliderStepped> {
    return this.run("ax-slider", { app, label, ...more });
  }

  /**
   * Writes into a field and reads it back. replace makes the text the whole content, but refuses
   * to destroy text that is not among the texts of the last argument, a JSON list of the texts
   * that the agent itself wrote. Fields of a single line in sheets, pop-overs and dialogs are
   * exempt. message does the same without that guard. end puts the text behind the contents of the
   * field, new_line on a new line there, caret in place of the selection. Any other word, a
   * misspelt one too, works as end. A value that equals the field's label or placeholder counts as
   * empty.
   */
  axInsert(app: string, label: string, mode: "replace" | "message" | "end" | "new_line" | "caret", text: string, more: { nearX?: number; nearY?: number; ownedTexts?: string[] } & RunOptions = {}): Promise<contract.AxInsertSuccess> {
    return this.run("ax-insert", { app, label, mode, text, ...more });
  }

  /** Gives a field the keyboard focus of its application. */
  axFocus(app: string, label: string, more: { nearX?: number; nearY?: number } & RunOptions = {}): Promise<contract.AxFocusSuccess> {
    return this.run("ax-focus", { app, label, ...more });
  }

  /** Shows a hidden application, or one with all windows minimised. */
  reveal(app: string, more: RunOptions = {}): Promise<contract.RevealSuccess> {
    return this.run("reveal", { app, ...more });
  }

  /** Presses a menu item by its path. */
  axMenu(app: string, titles: string[], more: RunOptions = {}): Promise<contract.AxMenuSuccess> {
    return this.run("ax-menu", { app, titles, ...more });
  }

  /** Lists the titles of the menu bar. */
  axMenubar(app: string, more: RunOptions = {}): Promise<contract.AxMenubarSuccess> {
    return this.run("ax-menubar", { app, ...more });
  }

  /** Lists up to 400 elements that can be acted on. */
  axList(app: string, more: RunOptions = {}): Promise<contract.AxListSuccess> {
    return this.run("ax-list", { app, ...more });
  }

  /** Lists all elements, up to 4,000. */
  axDump(app: string, more: RunOptions = {}): Promise<contract.AxDumpSuccess> {
    return this.run("ax-dump", { app, ...more });
  }

  /** Lists sheets and dialogs with their texts and buttons. */
  axModal(app: string, more: RunOptions = {}): Promise<contract.AxModalSuccess> {
    return this.run("ax-modal", { app, ...more });
  }

  /** Presses a button of the one dialog that reads exactly so. */
  axModalPress(app: string, text: string, button: string, more: RunOptions = {}): Promise<contract.AxModalPressSuccess> {
    return this.run("ax-modal-press", { app, text, button, ...more });
  }

  /** Shows the element that has the keyboard focus of its application. */
  axFocused(app: string, more: RunOptions = {}): Promise<contract.AxFocusedSuccess> {
    return this.run("ax-focused", { app, ...more });
  }

  /** Writes the value of the element at a point, without a guard. */
  axSetValue(app: string, x: number, y: number, text: string, more: RunOptions = {}): Promise<contract.AxSetValueSuccess> {
    return this.run("ax-set-value", { app, x, y, text, ...more });
  }

}

/** The commands on one application. */
export class App {
  constructor(readonly commands: Commands, readonly name: string) {}

  /**
   * Writes a picture of the application's windows. Writes a PNG file of the application's windows
   * within the scope as the user would see them, on the display that shows its main window.
   */
  capture(path: string, more: RunOptions = {}): Promise<contract.CaptureNotRunning | contract.CaptureNoWindow | contract.CapturePicture> {
    return this.commands.capture(this.name, path, more);
  }

  /**
   * Clicks in a window that stays where it is. Clicks once or, with count 2, twice at the point,
   * without moving the user's pointer or raising the window.
   */
  click(x: number, y: number, more: { button?: "left" | "right"; count?: number } & RunOptions = {}): Promise<contract.BgClickSuccess> {
    return this.commands.bgClick(this.name, x, y, more);
  }

  /** Scrolls in a window that stays where it is. Scrolls by dx and dy lines at the point. */
  scroll(x: number, y: number, dx: number, dy: number, more: RunOptions = {}): Promise<contract.BgScrollSuccess> {
    return this.commands.bgScroll(this.name, x, y, dx, dy, more);
  }

  /**
   * Lets a window see the pointer at a point. The application believes that the pointer is there;
   * the user's own does not move.
   */
  move(x: number, y: number, more: RunOptions = {}): Promise<contract.BgMoveSuccess> {
    return this.commands.bgMove(this.name, x, y, more);
  }

  /**
   * Presses a key combination. A combination is written as cmd+shift+s. A combination with cmd
   * that is the shortcut of an enabled menu item presses that item.
   */
  key(combo: string, more: RunOptions = {}): Promise<contract.BgKeySuccess> {
    return this.commands.bgKey(this.name, combo, more);
  }

  /** Types a text. A line break is typed as shift and return. */
  type(text: string, more: RunOptions = {}): Promise<contract.BgTypeSuccess> {
    return this.commands.bgType(this.name, text, more);
  }

  /**
   * Pastes files, and puts the user's clipboard back. Works as if the files had been copied in the
   * file manager. Relative paths start at the current directory. A copy that somebody else makes
   * in the meantime is left alone. Any reply may also say "copyLost": true (a copy that somebody
   * made in the very instant of clearing the clipboard is lost) and "clipboardRestored": false
   * (the system did not take the old contents of the clipboard back, and it is empty).
   */
  pasteFiles(paths: string[], more: RunOptions = {}): Promise<contract.BgPasteFilesSuccess> {
    return this.commands.bgPasteFiles(this.name, paths, more);
  }

  /**
   * Lists an application's windows on screen, front to back. It leaves out windows smaller than 40
   * by 40 points.
   */
  windows(more: RunOptions = {}): Promise<contract.WindowsNotRunning | contract.WindowsRunning> {
    return this.commands.windows(this.name, more);
  }

  /** Counts the elements that show texts. */
  findText(texts: string[], more: RunOptions = {}): Promise<contract.AxFindTextSuccess> {
    return this.commands.axFindText(this.name, texts, more);
  }

  /** Shows the texts at a point. */
  textsAt(x: number, y: number, more: RunOptions = {}): Promise<contract.AxTextsAtSuccess> {
    return this.commands.axTextsAt(this.name, x, y, more);
  }

  /** Hovers a row and presses a control in it. */
  pressChild(row: string, child: string, more: { role?: string } & RunOptions = {}): Promise<contract.AxPressChildSuccess> {
    return this.commands.axPressChild(this.name, row, child, more);
  }

  /** Shows the element at a point. */
  at(x: number, y: number, more: RunOptions = {}): Promise<contract.AxAtSuccess> {
    return this.commands.axAt(this.name, x, y, more);
  }

  /** Presses the control at a point. */
  pressAt(x: number, y: number, more: RunOptions = {}): Promise<contract.AxPressSuccess> {
    return this.commands.axPress(this.name, x, y, more);
  }

  /** Presses the one button of a label in the one document open. */
  pressInDocument(document: string, button: string, more: RunOptions = {}): Promise<contract.AxPressInDocumentSuccess> {
    return this.commands.axPressInDocument(this.name, document, button, more);
  }

  /**
   * Presses the control of exactly a label. It must be the only one; with last it is the lowest
   * one. With a container's label it is looked for only within that group.
   */
  press(label: string, more: { which?: "only" | "last"; container?: string } & RunOptions = {}): Promise<contract.AxPressExactSuccess> {
    return this.commands.axPressExact(this.name, label, more);
  }

  /** Shows the element that matches a label best. The point, or -1 -1, decides between several. */
  match(label: string, more: { nearX?: number; nearY?: number } & RunOptions = {}): Promise<contract.AxMatchSuccess> {
    return this.commands.axMatch(this.name, label, more);
  }

  /** Presses the element that matches a label best. The point, or -1 -1, decides between several. */
  pressMatch(label: string, more: { nearX?: number; nearY?: number } & RunOptions = {}): Promise<contract.AxPressMatchSuccess> {
    return this.commands.axPressMatch(this.name, label, more);
  }

  /** Lists the items of open pop-up menus. */
  popupItems(more: RunOptions = {}): Promise<contract.AxPopupItemsSuccess> {
    return this.commands.axPopupItems(this.name, more);
  }

  /** Reads a slider, or moves it. */
  slider(label: string, more: { value?: number | "increment" | "decrement" } & RunOptions = {}): Promise<contract.AxSliderTold | contract.AxSliderStepped> {
    return this.commands.axSlider(this.name, label, more);
  }

  /**
   * Writes into a field and reads it back. replace makes the text the whole content, but refuses
   * to destroy text that is not among the texts of the last argument, a JSON list of the texts
   * that the agent itself wrote. Fields of a single line in sheets, pop-overs and dialogs are
   * exempt. message does the same without that guard. end puts the text behind the contents of the
   * field, new_line on a new line there, caret in place of the selection. Any other word, a
   * misspelt one too, works as end. A value that equals the field's label or placeholder counts as
   * empty.
   */
  insert(label: string, mode: "replace" | "message" | "end" | "new_line" | "caret", text: string, more: { nearX?: number; nearY?: number; ownedTexts?: string[] } & RunOptions = {}): Promise<contract.AxInsertSuccess> {
    return this.commands.axInsert(this.name, label, mode, text, more);
  }

  /** Gives a field the keyboard focus of its application. */
  focus(label: string, more: { nearX?: number; nearY?: number } & RunOptions = {}): Promise<contract.AxFocusSuccess> {
    return this.commands.axFocus(this.name, label, more);
  }

  /** Shows a hidden application, or one with all windows minimised. */
  reveal(more: RunOptions = {}): Promise<contract.RevealSuccess> {
    return this.commands.reveal(this.name, more);
  }

  /** Presses a menu item by its path. */
  menu(titles: string[], more: RunOptions = {}): Promise<contract.AxMenuSuccess> {
    return this.commands.axMenu(this.name, titles, more);
  }

  /** Lists the titles of the menu bar. */
  menubar(more: RunOptions = {}): Promise<contract.AxMenubarSuccess> {
    return this.commands.axMenubar(this.name, more);
  }

  /** Lists up to 400 elements that can be acted on. */
  list(more: RunOptions = {}): Promise<contract.AxListSuccess> {
    return this.commands.axList(this.name, more);
  }

  /** Lists all elements, up to 4,000. */
  dump(more: RunOptions = {}): Promise<contract.AxDumpSuccess> {
    return this.commands.axDump(this.name, more);
  }

  /** Lists sheets and dialogs with their texts and buttons. */
  modals(more: RunOptions = {}): Promise<contract.AxModalSuccess> {
    return this.commands.axModal(this.name, more);
  }

  /** Presses a button of the one dialog that reads exactly so. */
  pressInModal(text: string, button: string, more: RunOptions = {}): Promise<contract.AxModalPressSuccess> {
    return this.commands.axModalPress(this.name, text, button, more);
  }

  /** Shows the element that has the keyboard focus of its application. */
  focused(more: RunOptions = {}): Promise<contract.AxFocusedSuccess> {
    return this.commands.axFocused(this.name, more);
  }

  /** Writes the value of the element at a point, without a guard. */
  setValue(x: number, y: number, text: string, more: RunOptions = {}): Promise<contract.AxSetValueSuccess> {
    return this.commands.axSetValue(this.name, x, y, text, more);
  }
}
