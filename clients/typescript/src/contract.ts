// Made by scripts/generate-contract from packaging/contract.

/** Global screen points, the origin at the top left of the main display. */
export interface Frame {
  x: number;
  y: number;
  width: number;
  height: number;
}

/** An element of an application. Its value is cut to 2,000 characters. */
export interface Element {
  role: string;
  label: string;
  value?: string;
  textValue?: string;
  textValueComplete?: boolean;
  frame?: Frame;
}

/** An element that can be acted on. */
export interface ListedElement {
  role: string;
  label: string;
  value?: string;
  textValue?: string;
  textValueComplete?: boolean;
  frame: Frame;
  disabled?: true;
}

/** Any element; depth counts from the window. */
export interface DumpedElement {
  role: string;
  label: string;
  value?: string;
  textValue?: string;
  textValueComplete?: boolean;
  frame?: Frame;
  depth: number;
  subrole?: string;
}

/** The element that has its application's keyboard focus. caret and selected count UTF-16 units. */
export interface FocusedElement {
  role: string;
  label: string;
  value?: string;
  textValue?: string;
  textValueComplete?: boolean;
  frame?: Frame;
  length?: number;
  tail?: string;
  caret?: number;
  selected?: number;
}

/** A sheet or dialog: its text in reading order, and the labels of its buttons. */
export interface Modal {
  role: string;
  label: string;
  value?: string;
  textValue?: string;
  textValueComplete?: boolean;
  frame: Frame;
  subrole: string;
  text: string;
  buttons: string[];
}

/** An item of an open pop-up menu. */
export interface MenuItem {
  role: string;
  label: string;
  value?: string;
  textValue?: string;
  textValueComplete?: boolean;
  frame?: Frame;
  texts: string[];
}

/** First line. */
export interface CaptureServiceStarted {
  ok: true;
  pid: number;
}

/** Reply to open and to a refresh. */
export interface CaptureServiceShared {
  ok: true;
  pid: number;
  sharing: true;
  targetPid: number;
  windowId: number;
}

/** Reply to close. */
export interface CaptureServiceClosed {
  ok: true;
}

/** Reply to command. */
export interface CaptureServiceAnswered {
  ok: true;
  reply: { ok: boolean };
}

/** The application does not run. */
export interface CaptureNotRunning {
  ok: true;
  running: false;
}

/** No window qualifies. */
export interface CaptureNoWindow {
  ok: true;
  running: true;
  rect: null;
  windows: never[];
}

/** The picture has been written. */
export interface CapturePicture {
  ok: true;
  running: true;
  name: string;
  active: boolean;
  rect: Frame;
  anchor: { id: number; x: number; y: number; width: number; height: number };
  windows: ({ title: string; owner: string; layer: number; bundle: string; x: number; y: number; width: number; height: number })[];
  otherDisplayWindows: string[];
}

/** Clicked. */
export interface BgClickSuccess {
  ok: true;
  via: "background";
  changed: boolean;
  window: number;
}

/** Clicked. */
export interface BgScrollSuccess {
  ok: true;
  via: "background";
  changed: boolean;
  window: number;
}

/** Clicked. */
export interface BgMoveSuccess {
  ok: true;
  via: "background";
  changed: boolean;
  window: number;
}

/** Screens can be captured. */
export interface CaptureProbeSuccess {
  ok: true;
}

/** Done. */
export interface FocusReleaseSuccess {
  ok: true;
}

/** Delivered. */
export interface BgKeySuccess {
  ok: true;
  via: "background";
  window: number;
  pid: number;
}

/** Delivered. */
export interface BgTypeSuccess {
  ok: true;
  via: "background";
  window: number;
  pid: number;
}

/** Delivered. */
export interface BgPasteFilesSuccess {
  ok: true;
  via: "background";
  window: number;
  pid: number;
  copyLost?: true;
  clipboardRestored?: false;
}

/** First line. */
export interface WatchInputWatching {
  ok: true;
  watching: true;
  idleMs: number;
}

/** First line, with an application. */
export interface WatchInputWatchingApp {
  ok: true;
  watching: true;
  idleMs: number;
  targetPid: number;
  touchesTarget: boolean;
}

/** An input; without "ok". */
export interface WatchInputInput {
  input: "key" | "pointer" | "scroll";
  at: number;
  touchesTarget?: boolean;
  submit?: string;
}

/** Permissions. */
export interface PermissionsSuccess {
  ok: true;
  accessibility: boolean;
  screenRecording: boolean;
}

/** Scene. */
export interface SceneSuccess {
  ok: true;
  pid: number;
  bundleId: string;
  x: number;
  y: number;
}

/** Locked. */
export interface LockNowSuccess {
  ok: true;
}

/** First line: how many displays are covered. */
export interface LockGuardCovered {
  ok: true;
  covers: number;
  keepAwake: boolean;
}

/** Last line: the reason of its end, and whether the screen was locked. */
export interface LockGuardEnded {
  ok: true;
  relocked: boolean;
  by: "user" | "run" | "signal" | "quit" | "loop";
}

/** Last line: the user came back in time. */
export interface LockGuardLeftUnlocked {
  ok: true;
  by: "grace";
}

/** Held; status 1 otherwise. */
export interface KeepAwakeSuccess {
  ok: true;
  keepAwake: boolean;
}

/** Session. */
export interface SessionSuccess {
  ok: true;
  locked: boolean;
  onConsole: boolean;
}

/** The application does not run. */
export interface WindowsNotRunning {
  ok: true;
  running: false;
  windows: never[];
}

/** The application runs. */
export interface WindowsRunning {
  ok: true;
  running: true;
  pid: number;
  name: string;
  bundleId: string;
  active: boolean;
  windows: ({ id: number; layer: number; title: string; x: number; y: number; width: number; height: number })[];
}

/** Counts. */
export interface AxFindTextSuccess {
  ok: true;
  counts: Record<string, number>;
  frames: Record<string, Frame>;
}

/** Texts. */
export interface AxTextsAtSuccess {
  ok: true;
  texts: string[];
}

/** Pressed. */
export interface AxPressChildSuccess {
  ok: true;
  axError: 0;
  row: Element;
  pressed: string;
}

/** Element, or null. */
export interface AxAtSuccess {
  ok: true;
  element: null | Element;
}

/** Pressed. */
export interface AxPressSuccess {
  ok: true;
  axError: 0;
  element: Element;
}

/** Pressed. */
export interface AxPressInDocumentSuccess {
  ok: true;
  axError: 0;
  document: string;
  pressed: string;
}

/** Pressed. */
export interface AxPressExactSuccess {
  ok: true;
  axError: 0;
  element: Element;
  matches: number;
}

/** Match. */
export interface AxMatchSuccess {
  ok: true;
  element: Element;
  matchedBy: "label" | "label~" | "role" | "hit";
}

/** Pressed. */
export interface AxPressMatchSuccess {
  ok: true;
  axError: 0;
  element: Element;
  matchedBy: "label" | "label~" | "role" | "hit";
}

/** Items. */
export interface AxPopupItemsSuccess {
  ok: true;
  items: MenuItem[];
}

/** Read or written. */
export interface AxSliderTold {
  ok: true;
  value?: number;
  min?: number;
  max?: number;
}

/** Stepped. */
export interface AxSliderStepped {
  ok: true;
  axError: 0;
  value?: number;
  min?: number;
  max?: number;
}

/** The text is in the field. */
export interface AxInsertSuccess {
  ok: true;
  method: "selected" | "value" | "none";
  element: Element;
  before: string;
}

/** Focused. */
export interface AxFocusSuccess {
  ok: true;
  element: Element;
  matchedBy: "label" | "label~" | "role" | "hit";
}

/** What was done. */
export interface RevealSuccess {
  ok: true;
  did: string[];
  windows: number;
}

/** Pressed. */
export interface AxMenuSuccess {
  ok: true;
  axError: 0;
  pressed: string;
}

/** Menus. */
export interface AxMenubarSuccess {
  ok: true;
  menus: string[];
}

/** Elements. */
export interface AxListSuccess {
  ok: true;
  elements: ListedElement[];
}

/** Elements. */
export interface AxDumpSuccess {
  ok: true;
  elements: DumpedElement[];
}

/** Dialogs. */
export interface AxModalSuccess {
  ok: true;
  modals: Modal[];
}

/** Pressed. */
export interface AxModalPressSuccess {
  ok: true;
  axError: 0;
  pressed: string;
}

/** Element, or null. */
export interface AxFocusedSuccess {
  ok: true;
  element: null | FocusedElement;
}

/** Written. */
export interface AxSetValueSuccess {
  ok: true;
  axError: 0;
  element: Element;
}

/** Focus is held. */
export interface HeldFocusSuccess {
  ok: true;
  focusPid: number;
  focusWindow: number;
}

/** One argument: whether a caller must give it, and a command line must have it; the words, if there
 * is a list of them, and whether it may be a number too. */
export interface ArgumentRow { name: string; required: boolean; always: boolean; repeats: boolean; json: boolean; words?: string[]; number?: boolean; default?: unknown }

/** What is known of a command: its words, how long it may take, whether it acts. */
export interface CommandRow { arguments: ArgumentRow[]; secondsMax: number; acts: boolean }

export const commandRows: Record<string, CommandRow> = {
  "capture": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "path", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "bg-click": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "x", "required": true, "always": true, "repeats": false, "json": false}, {"name": "y", "required": true, "always": true, "repeats": false, "json": false}, {"name": "button", "required": false, "always": false, "repeats": false, "json": false, "words": ["left", "right"], "number": false, "default": "left"}, {"name": "count", "required": false, "always": false, "repeats": false, "json": false, "default": 1}], "secondsMax": 60, "acts": true},
  "bg-scroll": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "x", "required": true, "always": true, "repeats": false, "json": false}, {"name": "y", "required": true, "always": true, "repeats": false, "json": false}, {"name": "dx", "required": true, "always": true, "repeats": false, "json": false}, {"name": "dy", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 60, "acts": true},
  "bg-move": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "x", "required": true, "always": true, "repeats": false, "json": false}, {"name": "y", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 60, "acts": true},
  "capture-probe": {"arguments": [], "secondsMax": 30, "acts": false},
  "focus-release": {"arguments": [{"name": "pid", "required": true, "always": true, "repeats": false, "json": false}, {"name": "window", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "bg-key": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "combo", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": true},
  "bg-type": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "text", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": true},
  "bg-paste-files": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "paths", "required": true, "always": true, "repeats": true, "json": false}], "secondsMax": 30, "acts": true},
  "permissions": {"arguments": [], "secondsMax": 30, "acts": false},
  "scene": {"arguments": [], "secondsMax": 30, "acts": false},
  "lock-now": {"arguments": [], "secondsMax": 30, "acts": false},
  "session": {"arguments": [], "secondsMax": 30, "acts": false},
  "windows": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "ax-find-text": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "texts", "required": true, "always": true, "repeats": true, "json": false}], "secondsMax": 30, "acts": false},
  "ax-texts-at": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "x", "required": true, "always": true, "repeats": false, "json": false}, {"name": "y", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "ax-press-child": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "row", "required": true, "always": true, "repeats": false, "json": false}, {"name": "child", "required": true, "always": true, "repeats": false, "json": false}, {"name": "role", "required": false, "always": false, "repeats": false, "json": false}], "secondsMax": 30, "acts": true},
  "ax-at": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "x", "required": true, "always": true, "repeats": false, "json": false}, {"name": "y", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "ax-press": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "x", "required": true, "always": true, "repeats": false, "json": false}, {"name": "y", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": true},
  "ax-press-in-document": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "document", "required": true, "always": true, "repeats": false, "json": false}, {"name": "button", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": true},
  "ax-press-exact": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "label", "required": true, "always": true, "repeats": false, "json": false}, {"name": "which", "required": false, "always": false, "repeats": false, "json": false, "words": ["only", "last"], "number": false, "default": "only"}, {"name": "container", "required": false, "always": false, "repeats": false, "json": false}], "secondsMax": 30, "acts": true},
  "ax-match": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "label", "required": true, "always": true, "repeats": false, "json": false}, {"name": "nearX", "required": false, "always": true, "repeats": false, "json": false, "default": -1}, {"name": "nearY", "required": false, "always": true, "repeats": false, "json": false, "default": -1}], "secondsMax": 30, "acts": false},
  "ax-press-match": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "label", "required": true, "always": true, "repeats": false, "json": false}, {"name": "nearX", "required": false, "always": true, "repeats": false, "json": false, "default": -1}, {"name": "nearY", "required": false, "always": true, "repeats": false, "json": false, "default": -1}], "secondsMax": 30, "acts": true},
  "ax-popup-items": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "ax-slider": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "label", "required": true, "always": true, "repeats": false, "json": false}, {"name": "value", "required": false, "always": false, "repeats": false, "json": false, "words": ["increment", "decrement"], "number": true}], "secondsMax": 30, "acts": true},
  "ax-insert": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "label", "required": true, "always": true, "repeats": false, "json": false}, {"name": "nearX", "required": false, "always": true, "repeats": false, "json": false, "default": -1}, {"name": "nearY", "required": false, "always": true, "repeats": false, "json": false, "default": -1}, {"name": "mode", "required": true, "always": true, "repeats": false, "json": false, "words": ["replace", "message", "end", "new_line", "caret"], "number": false}, {"name": "text", "required": true, "always": true, "repeats": false, "json": false}, {"name": "ownedTexts", "required": false, "always": false, "repeats": false, "json": true, "default": []}], "secondsMax": 30, "acts": true},
  "ax-focus": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "label", "required": true, "always": true, "repeats": false, "json": false}, {"name": "nearX", "required": false, "always": true, "repeats": false, "json": false, "default": -1}, {"name": "nearY", "required": false, "always": true, "repeats": false, "json": false, "default": -1}], "secondsMax": 30, "acts": true},
  "reveal": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": true},
  "ax-menu": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "titles", "required": true, "always": true, "repeats": true, "json": false}], "secondsMax": 30, "acts": true},
  "ax-menubar": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "ax-list": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "ax-dump": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "ax-modal": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "ax-modal-press": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "text", "required": true, "always": true, "repeats": false, "json": false}, {"name": "button", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": true},
  "ax-focused": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": false},
  "ax-set-value": {"arguments": [{"name": "app", "required": true, "always": true, "repeats": false, "json": false}, {"name": "x", "required": true, "always": true, "repeats": false, "json": false}, {"name": "y", "required": true, "always": true, "repeats": false, "json": false}, {"name": "text", "required": true, "always": true, "repeats": false, "json": false}], "secondsMax": 30, "acts": true},
};

/** A failure: of several whose pattern matches, the first counts. */
export interface FailureRow { id: string; pattern: string; parts: string[]; commands: string[] | null; remedy: string }

export const failureRows: FailureRow[] = [
  {"id": "no-simulated-mac-set", "pattern": "^no simulated Mac to join: set SIMULATED_MAC to the socket that \"simulated-mac serve WORLD\" prints, or run this command under \"simulated-mac run WORLD -- COMMAND\"$", "parts": [], "commands": null, "remedy": "Do what the message says."},
  {"id": "no-simulated-mac-there", "pattern": "^no simulated Mac at ([\\s\\S]*); \"simulated-mac serve WORLD\" starts one and prints its socket, and \"simulated-mac run WORLD -- COMMAND\" runs a command with one$", "parts": ["socket"], "commands": null, "remedy": "Do what the message says. The name is the whole line that serve prints, with its \"@\"."},
  {"id": "unlock-removed", "pattern": "^locked-use unlock was removed: SecurityAgent-plugin unlock is blocked by macOS Library Validation\\. Use lock-guard / keep-awake instead\\.$", "parts": [], "commands": ["lock-serve", "lock-arm", "lock-disarm", "lock-status", "lock-query", "lock-unlock"], "remedy": "Keep the Mac unlocked under lock-guard."},
  {"id": "user-in-other-window", "pattern": "^another window of the target app currently owns the user's keyboard; background input will not switch it$", "parts": [], "commands": ["bg-click", "bg-scroll", "bg-move", "bg-drag", "bg-focus-hold", "bg-key", "bg-type", "bg-paste-files", "ax-press-child", "ax-press", "ax-press-in-document", "ax-press-exact", "ax-press-match", "ax-slider", "ax-insert", "ax-focus", "reveal", "ax-menu", "ax-modal-press", "ax-set-value", "capture-service"], "remedy": "Wait until the user has left that window or the application, or ask the user."},
  {"id": "keyboard-taken-by-user", "pattern": "^the user's keyboard is in another window of the target app by now; the rest of the input was withheld$", "parts": [], "commands": ["bg-key", "bg-type", "bg-paste-files"], "remedy": "Wait until the user has left that window or the application; look at the target, then type the rest."},
  {"id": "sharing-focus-failed", "pattern": "^native screen sharing unavailable: InputFailure\\(message: \"background key-window selection failed\"\\)$", "parts": [], "commands": ["capture-service"], "remedy": "Start a service again. If it persists, work without holding focus."},
  {"id": "sharing-mac-locked", "pattern": "^native screen sharing unavailable: InputFailure\\(message: \"the Mac is locked or not on console\"\\)$", "parts": [], "commands": ["capture-service"], "remedy": "Start the service again after unlocking."},
  {"id": "sharing-window-gone", "pattern": "^native screen sharing unavailable: InputFailure\\(message: \"capture target window disappeared\"\\)$", "parts": [], "commands": ["capture-service"], "remedy": "Start a service again when a window is open."},
  {"id": "sharing-target-not-running", "pattern": "^native screen sharing unavailable: InputFailure\\(message: \"capture target is not running: ([\\s\\S]*)\"\\)$", "parts": ["app"], "commands": ["capture-service"], "remedy": "Start the application, then a service again."},
  {"id": "foreign-text-in-field", "pattern": "^the field already holds content that was not written in this run; replace would destroy it$", "parts": [], "commands": ["ax-insert"], "remedy": "Ask the user, or insert with end, new_line or caret. Pass the texts that the agent itself wrote as the last argument."},
  {"id": "chromium-drag-unsupported", "pattern": "^Chromium background drag is unsupported: the renderer requires global mouse-button state$", "parts": [], "commands": ["bg-drag"], "remedy": "Reach the goal in another way: move sliders with ax-slider, files with bg-paste-files, items with menus."},
  {"id": "sharing-not-yet", "pattern": "^native screen sharing unavailable: InputFailure\\(message: \"no shared window for input\"\\)$", "parts": [], "commands": ["capture-service"], "remedy": "Refresh the session first."},
  {"id": "sharing-target-exited", "pattern": "^native screen sharing unavailable: InputFailure\\(message: \"capture target has exited\"\\)$", "parts": [], "commands": ["capture-service"], "remedy": "Start the application, then a service again."},
  {"id": "sharing-no-window", "pattern": "^native screen sharing unavailable: InputFailure\\(message: \"no scoped window to share\"\\)$", "parts": [], "commands": ["capture-service"], "remedy": "Open the window, or correct the scope."},
  {"id": "drag-unsupported", "pattern": "^AppKit background drag is unsupported: native delivery raises the target window$", "parts": [], "commands": ["bg-drag"], "remedy": "Reach the goal in another way: move sliders with ax-slider, files with bg-paste-files, items with menus."},
  {"id": "target-left-by-user", "pattern": "^the target app is no longer in front; the rest of the input was withheld$", "parts": [], "commands": ["bg-key", "bg-type", "bg-paste-files"], "remedy": "Look at the target, then type the rest."},
  {"id": "guard-not-permitted", "pattern": "^cannot watch for the user's return: accessibility permission is missing$", "parts": [], "commands": ["lock-guard"], "remedy": "Grant Accessibility in System Settings; scripts/doctor says where."},
  {"id": "mac-locked", "pattern": "^the Mac is locked or not on console; background input is unavailable$", "parts": [], "commands": ["bg-click", "bg-scroll", "bg-move", "bg-drag", "bg-focus-hold", "bg-key", "bg-type", "bg-paste-files", "ax-press-child", "ax-press", "ax-press-in-document", "ax-press-exact", "ax-press-match", "ax-slider", "ax-insert", "ax-focus", "reveal", "ax-menu", "ax-modal-press", "ax-set-value", "capture-service"], "remedy": "Wait until session replies \"locked\":false and \"onConsole\":true."},
  {"id": "key-window-changed", "pattern": "^another window of the target app has become key; nothing was pressed$", "parts": [], "commands": ["bg-key", "bg-paste-files"], "remedy": "Look at the target, then try again."},
  {"id": "no-button-in-document", "pattern": "^the expected conversation has no unique button with that exact label$", "parts": [], "commands": ["ax-press-in-document"], "remedy": "Look again with ax-dump."},
  {"id": "keyboard-owned-by-user", "pattern": "^another window of the target app currently owns the user's keyboard$", "parts": [], "commands": ["bg-key", "bg-type", "bg-paste-files"], "remedy": "Wait until the user has left that window or the application."},
  {"id": "text-did-not-land", "pattern": "^text did not land in the field \\(value after write does not match\\)$", "parts": [], "commands": ["ax-insert"], "remedy": "Read its contents in \"element\". Do not repeat blindly: part of the text may be there."},
  {"id": "pointer-functions-missing", "pattern": "^private background pointer functions are missing on this macOS$", "parts": [], "commands": ["bg-scroll", "bg-move", "bg-drag"], "remedy": "Use the ax- commands."},
  {"id": "watching-ended", "pattern": "^watching has ended: the system no longer serves the event tap$", "parts": [], "commands": ["watch-input"], "remedy": "Run watch-input again. If that fails, grant Accessibility in System Settings."},
  {"id": "capture-service-gone", "pattern": "^native screen sharing stopped; background input is disabled$", "parts": [], "commands": null, "remedy": "Start a capture service again, open its sessions, look at the target anew, and pass the new process id. Until then, run focus-release and lock-now without CU_CAPTURE_PID in their environment."},
  {"id": "clipboard-in-use", "pattern": "^somebody else has just copied something; nothing was pasted$", "parts": [], "commands": ["bg-paste-files"], "remedy": "Try again."},
  {"id": "locked-meanwhile", "pattern": "^the screen locked; input was withheld from the lock screen$", "parts": [], "commands": ["bg-click", "bg-scroll", "bg-move", "bg-drag", "bg-key", "bg-type", "bg-paste-files", "ax-press-child", "ax-insert", "capture-service"], "remedy": "After unlocking, look at the target before doing anything again. Do not simply repeat the input."},
  {"id": "watching-not-permitted", "pattern": "^cannot watch input: accessibility permission is missing$", "parts": [], "commands": ["watch-input"], "remedy": "Grant Accessibility in System Settings; scripts/doctor says where."},
  {"id": "document-not-unique", "pattern": "^the expected conversation document is not uniquely open$", "parts": [], "commands": ["ax-press-in-document"], "remedy": "Open just this document in the window, or narrow the scope with CU_WINDOW."},
  {"id": "keyboard-focus-unavailable", "pattern": "^background keyboard focus is unavailable on this macOS$", "parts": [], "commands": ["bg-key", "bg-type", "bg-paste-files"], "remedy": "Try again; otherwise write text with ax-insert."},
  {"id": "click-functions-missing", "pattern": "^private input functions are missing on this macOS$", "parts": [], "commands": ["bg-click"], "remedy": "Use the ax- commands."},
  {"id": "container-not-unique", "pattern": "^the requested navigation container is not unique$", "parts": [], "commands": ["ax-press-exact"], "remedy": "Use ax-dump to see the labels of the groups."},
  {"id": "focus-needs-session", "pattern": "^input focus must be held by a capture session$", "parts": [], "commands": ["bg-focus-hold"], "remedy": "Send bg-focus-hold as a command request of an open session."},
  {"id": "foreground-unknown", "pattern": "^current foreground process is unavailable$", "parts": [], "commands": ["bg-click", "bg-scroll", "bg-move", "bg-drag", "bg-focus-hold", "bg-key", "bg-type", "bg-paste-files", "capture-service"], "remedy": "Try again. If it persists, this macOS lacks a private function that driver needs: background input does not work on it."},
  {"id": "simulated-mac-of-another-user", "pattern": "^the simulated Mac at ([\\s\\S]*) is another user's$", "parts": ["socket"], "commands": null, "remedy": "Start a simulated Mac of your own."},
  {"id": "dialogs-of-text", "pattern": "^([\\s\\S]*) dialogs read exactly the approved text$", "parts": ["count"], "commands": ["ax-modal-press"], "remedy": "Read the dialogs with ax-modal, and decide again."},
  {"id": "target-not-running-or-hidden", "pattern": "^target app is not running or is hidden$", "parts": [], "commands": ["bg-click", "bg-scroll", "bg-move", "bg-drag", "bg-key", "bg-type", "bg-paste-files"], "remedy": "Use windows to check whether it runs. Use reveal to show a hidden one."},
  {"id": "pointer-focus-unavailable", "pattern": "^background target focus is unavailable$", "parts": [], "commands": ["bg-click", "bg-scroll", "bg-move", "bg-drag"], "remedy": "Try again; otherwise use the ax- commands, which need no input focus."},
  {"id": "key-window-failed", "pattern": "^background key-window selection failed$", "parts": [], "commands": ["bg-key", "bg-type", "bg-paste-files"], "remedy": "Try again; otherwise write text with ax-insert."},
  {"id": "keyboard-window-ambiguous", "pattern": "^no unambiguous target keyboard window$", "parts": [], "commands": ["bg-key", "bg-type", "bg-paste-files"], "remedy": "Set CU_WINDOW to the title of the right window, or close the other one."},
  {"id": "no-window-at-point", "pattern": "^no window of the app under the point$", "parts": [], "commands": ["bg-click", "bg-scroll", "bg-move", "bg-drag"], "remedy": "The window has moved or closed: read the windows' frames again with windows or capture."},
  {"id": "told-to-end", "pattern": "^the run was told to end by a signal$", "parts": [], "commands": ["capture", "bg-click", "bg-scroll", "bg-move", "bg-drag", "bg-focus-hold", "capture-probe", "focus-release", "bg-key", "bg-type", "bg-paste-files", "permissions", "scene", "lock-now", "lock-serve", "lock-arm", "lock-disarm", "lock-status", "lock-query", "lock-unlock", "session", "windows", "ax-find-text", "ax-texts-at", "ax-press-child", "ax-at", "ax-press", "ax-press-in-document", "ax-press-exact", "ax-match", "ax-press-match", "ax-popup-items", "ax-slider", "ax-insert", "ax-focus", "reveal", "ax-menu", "ax-menubar", "ax-list", "ax-dump", "ax-modal", "ax-modal-press", "ax-focused", "ax-set-value"], "remedy": "Look at the target before doing anything again. If the time-out was too short, see docs/WORST_CASE.md."},
  {"id": "mac-locked-by-now", "pattern": "^the Mac is locked or not on console$", "parts": [], "commands": ["bg-click", "bg-scroll", "bg-move", "bg-drag", "bg-key", "bg-type", "bg-paste-files"], "remedy": "Wait until session replies \"locked\":false and \"onConsole\":true."},
  {"id": "no-menu-item", "pattern": "^no menu item \"([\\s\\S]*)\" under ([\\s\\S]*); available: ([\\s\\S]*)$", "parts": ["title", "path", "titles"], "commands": ["ax-menu"], "remedy": "Use one of the titles that the message lists."},
  {"id": "buttons-in-dialog", "pattern": "^([\\s\\S]*) buttons labelled \"([\\s\\S]*)\" in that dialog$", "parts": ["count", "label"], "commands": ["ax-modal-press"], "remedy": "Use one of \"buttons\" of ax-modal."},
  {"id": "sharing-unavailable", "pattern": "^native screen sharing unavailable: ([\\s\\S]*)$", "parts": ["description"], "commands": ["capture-service"], "remedy": "The descriptions below are driver's own. Others are the system's: run scripts/doctor."},
  {"id": "clipboard-unwritable", "pattern": "^the clipboard could not be written$", "parts": [], "commands": ["bg-paste-files"], "remedy": "Try again."},
  {"id": "texts-not-distinct", "pattern": "^the texts to find must be distinct$", "parts": [], "commands": ["ax-find-text"], "remedy": "Name each text once."},
  {"id": "system-timed-out", "pattern": "^the system did not answer in time$", "parts": [], "commands": ["capture", "capture-probe"], "remedy": "Try again; if it persists, log out and in."},
  {"id": "clipboard-unreadable", "pattern": "^the clipboard could not be read$", "parts": [], "commands": ["bg-paste-files"], "remedy": "Allow pasting from other applications for the program that starts driver, if the system asks; otherwise wait until the user has copied something new."},
  {"id": "capture-service-running", "pattern": "^capture service already running$", "parts": [], "commands": ["capture-service"], "remedy": "Use the service that runs, or another path in a folder that exists."},
  {"id": "invalid-request", "pattern": "^invalid capture service request$", "parts": [], "commands": ["capture-service"], "remedy": "Correct the client; packaging/contract/schemas/capture-service-request.json describes requests."},
  {"id": "sharing-stopped", "pattern": "^native screen sharing stopped: ([\\s\\S]*)$", "parts": ["description"], "commands": ["capture-service"], "remedy": "Stop working, and ask the user before starting a service again: the stop may have been intended."},
  {"id": "simulated-mac-gone", "pattern": "^the simulated Mac at ([\\s\\S]*) has gone$", "parts": ["socket"], "commands": null, "remedy": "Read its standard error, and start it again."},
  {"id": "no-window-for-row", "pattern": "^no target window for row hover$", "parts": [], "commands": ["ax-press-child"], "remedy": "Scroll the row into view, and try again."},
  {"id": "no-text-input", "pattern": "^no text input matches \"([\\s\\S]*)\" there$", "parts": ["label"], "commands": ["ax-insert"], "remedy": "Look again with ax-list."},
  {"id": "invalid-shared-command", "pattern": "^invalid shared capture command$", "parts": [], "commands": ["capture-service"], "remedy": "Correct the client."},
  {"id": "scroll-out-of-range", "pattern": "^scroll amount is out of range$", "parts": [], "commands": ["bg-scroll", "capture-service"], "remedy": "Scroll by a few lines at a time."},
  {"id": "shortcut-failed", "pattern": "^target menu shortcut failed: ([\\s\\S]*)$", "parts": ["combo"], "commands": ["bg-key", "bg-paste-files"], "remedy": "Use ax-menubar and ax-modal to see the state of the application."},
  {"id": "window-number-out-of-range", "pattern": "^window number is out of range$", "parts": [], "commands": ["capture-service"], "remedy": "Open the session again."},
  {"id": "driver-usage", "pattern": "^usage: driver <command> \\.\\.\\.$", "parts": [], "commands": null, "remedy": "Name a command; docs/COMMANDS.md lists them."},
  {"id": "empty-container", "pattern": "^empty navigation container$", "parts": [], "commands": ["ax-press-exact"], "remedy": "Omit the argument, or name the container."},
  {"id": "no-current-directory", "pattern": "^no current directory for ([\\s\\S]*)$", "parts": ["path"], "commands": ["bg-paste-files"], "remedy": "Pass an absolute path."},
  {"id": "watched-app-not-running", "pattern": "^target app is not running$", "parts": [], "commands": ["watch-input"], "remedy": "Use windows to check whether it runs."},
  {"id": "system-gave-no-answer", "pattern": "^the system gave no answer$", "parts": [], "commands": ["capture", "capture-probe"], "remedy": "Try again."},
  {"id": "row-of-other-role", "pattern": "^row matching \"([\\s\\S]*)\" is not a ([\\s\\S]*)$", "parts": ["label", "role"], "commands": ["ax-press-child"], "remedy": "Correct the role, or use a label that no other element has."},
  {"id": "unsupported-click-count", "pattern": "^unsupported click count ([\\s\\S]*)$", "parts": ["count"], "commands": ["bg-click"], "remedy": "Click once or twice."},
  {"id": "unsupported-button", "pattern": "^unsupported mouse button$", "parts": [], "commands": ["bg-click", "capture-service"], "remedy": "Use left or right."},
  {"id": "no-window-on-display", "pattern": "^no window on the display$", "parts": [], "commands": ["capture", "capture-service"], "remedy": "Try again."},
  {"id": "invalid-session", "pattern": "^invalid capture session$", "parts": [], "commands": ["capture-service"], "remedy": "Correct the client."},
  {"id": "unknown-session", "pattern": "^unknown capture session$", "parts": [], "commands": ["capture-service"], "remedy": "Correct the client."},
  {"id": "no-element-labelled", "pattern": "^no element labelled \"([\\s\\S]*)\"$", "parts": ["label"], "commands": ["ax-press-exact"], "remedy": "Take the label from ax-list, character by character. If ax-list shows the text of an inner element as the label, use ax-press-match."},
  {"id": "menu-item-disabled", "pattern": "^menu item ([\\s\\S]*) is disabled$", "parts": ["path"], "commands": ["ax-menu"], "remedy": "Do what it needs first: select something, for example."},
  {"id": "invalid-focus-release", "pattern": "^invalid focus release$", "parts": [], "commands": ["focus-release"], "remedy": "Pass \"focusPid\" and \"focusWindow\" of the reply to bg-focus-hold."},
  {"id": "several-elements-labelled", "pattern": "^([\\s\\S]*) elements labelled \"([\\s\\S]*)\"$", "parts": ["count", "label"], "commands": ["ax-press-exact"], "remedy": "Name the container, or pass last for the lowest one."},
  {"id": "no-control-in-row", "pattern": "^row has no control \"([\\s\\S]*)\"$", "parts": ["name"], "commands": ["ax-press-child"], "remedy": "Use one of \"controls\"."},
  {"id": "not-a-number", "pattern": "^missing numeric arg ([\\s\\S]*)$", "parts": ["index"], "commands": ["bg-click", "bg-scroll", "bg-move", "bg-drag", "ax-texts-at", "ax-at", "ax-press", "ax-match", "ax-press-match", "ax-insert", "ax-focus", "ax-set-value", "capture-service"], "remedy": "Write the coordinate as a decimal number of screen points."},
  {"id": "sliders-labelled", "pattern": "^([\\s\\S]*) sliders labelled \"([\\s\\S]*)\"$", "parts": ["count", "label"], "commands": ["ax-slider"], "remedy": "Take the label from ax-list; narrow the scope with CU_WINDOW."},
  {"id": "no-row", "pattern": "^no row matching \"([\\s\\S]*)\"$", "parts": ["label"], "commands": ["ax-press-child"], "remedy": "Look again with ax-dump."},
  {"id": "unknown-command", "pattern": "^unknown command: ([\\s\\S]*)$", "parts": ["name"], "commands": null, "remedy": "Correct the name; docs/COMMANDS.md and the manual page driver(1) list all commands."},
  {"id": "no-key-in-combo", "pattern": "^no key in combo: ([\\s\\S]*)$", "parts": ["combo"], "commands": ["bg-key"], "remedy": "Add a key."},
  {"id": "app-not-running", "pattern": "^app not running: ([\\s\\S]*)$", "parts": ["app"], "commands": ["ax-find-text", "ax-texts-at", "ax-press-child", "ax-at", "ax-press", "ax-press-in-document", "ax-press-exact", "ax-match", "ax-press-match", "ax-popup-items", "ax-slider", "ax-insert", "ax-focus", "ax-menu", "ax-menubar", "ax-list", "ax-dump", "ax-modal", "ax-modal-press", "ax-focused", "ax-set-value"], "remedy": "Use windows to check whether it runs."},
  {"id": "reveal-app-not-running", "pattern": "^app not running$", "parts": [], "commands": ["reveal"], "remedy": "Use windows to check whether it runs."},
  {"id": "empty-menu-path", "pattern": "^empty menu path$", "parts": [], "commands": ["ax-menu"], "remedy": "Name the menu and the item."},
  {"id": "slider-value-not-a-number", "pattern": "^not a number: ([\\s\\S]*)$", "parts": ["word"], "commands": ["ax-slider"], "remedy": "Write a decimal number."},
  {"id": "unknown-key", "pattern": "^unknown key: ([\\s\\S]*)$", "parts": ["word"], "commands": ["bg-key"], "remedy": "Use the names in docs/COMMANDS.md; write characters with bg-type."},
  {"id": "path-not-utf8", "pattern": "^cannot paste ([\\s\\S]*)$", "parts": ["path"], "commands": ["bg-paste-files"], "remedy": "Rename the file, or pass a path in valid UTF-8."},
  {"id": "cannot-write", "pattern": "^cannot write ([\\s\\S]*)$", "parts": ["path"], "commands": ["capture", "capture-service"], "remedy": "Pass a path in a folder that exists and is writable; only a regular file is replaced."},
  {"id": "no-display", "pattern": "^no display$", "parts": [], "commands": ["capture", "capture-probe", "capture-service"], "remedy": "Connect or wake a display. Use windows to see where the window lies."},
  {"id": "no-element", "pattern": "^no element$", "parts": [], "commands": ["ax-press", "ax-match", "ax-press-match", "ax-focus", "ax-set-value"], "remedy": "Look again with ax-list or ax-dump."},
  {"id": "usage", "pattern": "^usage: ([\\s\\S]*)$", "parts": ["grammar"], "commands": null, "remedy": "Write the command as the message shows it."},
  {"id": "system-refused-capture", "pattern": "^([\\s\\S]*)$", "parts": ["description"], "commands": ["capture", "capture-probe"], "remedy": "Run scripts/doctor; grant Screen Recording, and try again."},
];

/** What to do about failures that are not known by a text, by their ids. */
export const remedies = {"not-accepted": "See with ax-list and ax-modal what state the application is in.", "not-done": "Look at the target again; where the system refused, run scripts/doctor.", "application-hung": "Wait until the application answers again; what the command had to do may be done in part.", "unknown-failure": "See docs/ERRORS.md of the driver that runs."};

/** What the guard's texts may be in. */
export const guardLanguages = ["zh", "en"] as const;
