// What every tool says on the Mac of demo/desk.world, and what is said of its windows.
const accept = {
  frame: { height: 26, width: 80, x: 1024, y: 668 },
  label: "Accept",
  role: "AXButton"
};
const body = {
  frame: { height: 380, width: 360, x: 300, y: 166 },
  label: "Body",
  role: "AXTextArea"
};
export const notes = {
  active: false,
  bundleId: "com.example.notes",
  name: "Notes",
  ok: true,
  pid: 41,
  running: true,
  windows: [{ height: 560, id: 7, layer: 0, title: "Inbox", width: 620, x: 60, y: 80 }]
};
const clicked = { changed: true, ok: true, via: "background", window: 7 };
const typed = { ok: true, pid: 41, via: "background", window: 7 };

/** What every tool says on the Mac of demo/desk.world, in this order. */
export const table = [
  ["see_scene", {}, { bundleId: "com.example.browser", ok: true, pid: 40, x: 980, y: 420 }],
  ["see_session", {}, { locked: false, ok: true, onConsole: true }],
  ["see_permissions", {}, { accessibility: true, ok: true, screenRecording: true }],
  ["see_capturing", {}, { ok: true }],
  [
    "see_user",
    { app: "Browser" },
    { idleMs: 0, ok: true, targetPid: 40, touchesTarget: true, watching: true }
  ],
  ["see_user", {}, { idleMs: 0, ok: true, watching: true }],
  ["see_windows", { app: "Notes" }, notes],
  ["see_windows", { app: "Nobody" }, { ok: true, running: false, windows: [] }],
  ["see_picture", { app: "Nobody" }, { ok: true, running: false }],
  ["see_list", { app: "Input" }, { elements: [], ok: true }],
  [
    "see_tree",
    { app: "Input" },
    {
      ok: true,
      elements: [
        {
          depth: 0,
          frame: { height: 40, width: 120, x: 320, y: 300 },
          label: "",
          role: "AXWindow",
          subrole: "AXStandardWindow"
        },
        {
          depth: 1,
          frame: { height: 22, width: 100, x: 330, y: 308 },
          label: "",
          role: "AXStaticText",
          value: "é è ê ë"
        }
      ]
    }
  ],
  ["see_at", { app: "Chat", x: 1040, y: 680 }, { element: accept, ok: true }],
  [
    "see_texts_at",
    { app: "Chat", x: 1030, y: 650 },
    {
      ok: true,
      texts: ["Ada — Chat", "Conversation with Ada", "Ada: I have sent you an invitation."]
    }
  ],
  [
    "see_focused",
    { app: "Browser" },
    {
      ok: true,
      element: {
        caret: 19,
        frame: { height: 26, width: 520, x: 700, y: 104 },
        label: "Address",
        length: 19,
        role: "AXTextField",
        selected: 0,
        tail: "weather.example.com",
        value: "weather.example.com"
      }
    }
  ],
  ["see_menubar", { app: "Notes" }, { menus: ["Note"], ok: true }],
  ["see_popup", { app: "Notes" }, { items: [], ok: true }],
  ["see_dialogs", { app: "Notes" }, { modals: [], ok: true }],
  [
    "find_text",
    { app: "Chat", texts: ["invitation", "nowhere"] },
    {
      ok: true,
      counts: { invitation: 1, nowhere: 0 },
      frames: { invitation: { height: 22, width: 340, x: 1024, y: 642 } }
    }
  ],
  [
    "find_wait",
    { app: "Chat", texts: ["invitation"] },
    {
      ok: true,
      counts: { invitation: 1 },
      frames: { invitation: { height: 22, width: 340, x: 1024, y: 642 } }
    }
  ],
  [
    "find_element",
    { app: "Chat", label: "accept" },
    { element: accept, matchedBy: "label", ok: true }
  ],
  [
    "press_label",
    { app: "Chat", label: "Accept" },
    { axError: 0, element: accept, matches: 1, ok: true }
  ],
  [
    "press_match",
    { app: "Chat", label: "accept" },
    { axError: 0, element: accept, matchedBy: "label", ok: true }
  ],
  ["press_at", { app: "Chat", x: 1040, y: 680 }, { axError: 0, element: accept, ok: true }],
  [
    "press_in_row",
    { app: "Chat", row: "Grace", child: "Archive" },
    {
      axError: 0,
      ok: true,
      pressed: "Archive",
      row: { frame: { height: 30, width: 138, x: 856, y: 570 }, label: "Grace", role: "AXRow" }
    }
  ],
  [
    "press_in_document",
    { app: "Chat", document: "Conversation with Ada", button: "Accept" },
    { axError: 0, document: "Conversation with Ada", ok: true, pressed: "Accept" }
  ],
  [
    "press_menu",
    { app: "Notes", titles: ["note", "archive"] },
    { axError: 0, ok: true, pressed: "Note > Archive…" }
  ],
  [
    "press_slider",
    { app: "Notes", label: "Text size", value: 20.5 },
    { max: 32, min: 8, ok: true, value: 20.5 }
  ],
  [
    "press_slider",
    { app: "Notes", label: "Text size" },
    { max: 32, min: 8, ok: true, value: 20.5 }
  ],
  ["press_reveal", { app: "Notes" }, { did: [], ok: true, windows: 2 }],
  [
    "press_label",
    { app: "Notes", label: "Delete…" },
    {
      axError: 0,
      matches: 1,
      ok: true,
      element: {
        frame: { height: 28, width: 90, x: 390, y: 560 },
        label: "Delete…",
        role: "AXButton"
      }
    }
  ],
  [
    "press_in_dialog",
    { app: "Notes", text: "Delete this note?", button: "OK" },
    { axError: 0, ok: true, pressed: "OK" }
  ],
  [
    "write_text",
    { app: "Notes", label: "Body", mode: "end", text: "Thanks 🙂." },
    {
      before: "Dear reader, ",
      element: { ...body, value: "Dear reader, Thanks 🙂." },
      method: "selected",
      ok: true
    }
  ],
  [
    "write_text",
    {
      app: "Notes",
      label: "Body",
      mode: "replace",
      text: "new",
      ownedTexts: ["Dear reader, Thanks 🙂."]
    },
    {
      before: "Dear reader, Thanks 🙂.",
      element: { ...body, value: "new" },
      method: "value",
      ok: true
    }
  ],
  [
    "write_value",
    { app: "Notes", x: 320, y: 200, text: "text" },
    { axError: 0, element: { ...body, value: "text" }, ok: true }
  ],
  [
    "write_focus",
    { app: "Notes", label: "Body" },
    { element: { ...body, value: "text" }, matchedBy: "label", ok: true }
  ],
  ["point_click", { app: "Notes", x: 120, y: 180 }, clicked],
  [
    "point_click",
    { app: "Notes", x: 340, y: 574, button: "right", count: 2 },
    { ...clicked, changed: false }
  ],
  ["point_scroll", { app: "Notes", x: 480, y: 350, dx: 0, dy: -3 }, clicked],
  ["point_move", { app: "Notes", x: 340, y: 574 }, clicked],
  ["keys_press", { app: "Notes", combo: "cmd+shift+s" }, typed],
  ["keys_type", { app: "Notes", text: "two\nlines" }, typed],
  ["files_paste", { app: "Notes", paths: ["/Users/ada/a.txt", "/b c.txt"] }, typed],
  ["guard_awake", { awake: true }, { keepAwake: true, ok: true }],
  ["guard_awake", { awake: false }, { keepAwake: false, ok: true }],
  ["guard_release_focus", { pid: 41, window: 7 }, { ok: true }],
  ["guard_cover", { operating: true, name: "Ada" }, { covers: 2, keepAwake: true, ok: true }],
  ["guard_say", { operating: false }, { ok: true, operating: false }],
  ["guard_lock", {}, { by: "run", ok: true, relocked: true }],
  ["guard_lock_now", {}, { ok: true }]
];
