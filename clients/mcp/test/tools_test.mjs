// What the tools are, what each of them says, and what options leave of them.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { Ajv2020 } from "ajv/dist/2020.js";
import { PNG } from "pngjs";
import { groups, toolRows } from "../dist/tools.js";
import { onServer, root } from "./support.mjs";

const accept = { frame: { height: 26, width: 80, x: 1024, y: 668 }, label: "Accept", role: "AXButton" };
const body = { frame: { height: 380, width: 360, x: 300, y: 166 }, label: "Body", role: "AXTextArea" };
const notes = { active: false, bundleId: "com.example.notes", name: "Notes", ok: true, pid: 41, running: true,
  windows: [{ height: 560, id: 7, layer: 0, title: "Inbox", width: 620, x: 60, y: 80 }] };
const clicked = { changed: true, ok: true, via: "background", window: 7 };
const typed = { ok: true, pid: 41, via: "background", window: 7 };

/** What every tool says on the Mac of demo/desk.world, in this order. */
const table = [
  ["see_scene", {}, { bundleId: "com.example.browser", ok: true, pid: 40, x: 980, y: 420 }],
  ["see_session", {}, { locked: false, ok: true, onConsole: true }],
  ["see_permissions", {}, { accessibility: true, ok: true, screenRecording: true }],
  ["see_capturing", {}, { ok: true }],
  ["see_user", { app: "Browser" }, { idleMs: 0, ok: true, targetPid: 40, touchesTarget: true, watching: true }],
  ["see_user", {}, { idleMs: 0, ok: true, watching: true }],
  ["see_windows", { app: "Notes" }, notes],
  ["see_windows", { app: "Nobody" }, { ok: true, running: false, windows: [] }],
  ["see_picture", { app: "Nobody" }, { ok: true, running: false }],
  ["see_list", { app: "Input" }, { elements: [], ok: true }],
  ["see_tree", { app: "Input" }, { ok: true, elements: [
    { depth: 0, frame: { height: 40, width: 120, x: 320, y: 300 }, label: "", role: "AXWindow", subrole: "AXStandardWindow" },
    { depth: 1, frame: { height: 22, width: 100, x: 330, y: 308 }, label: "", role: "AXStaticText", value: "é è ê ë" }] }],
  ["see_at", { app: "Chat", x: 1040, y: 680 }, { element: accept, ok: true }],
  ["see_texts_at", { app: "Chat", x: 1030, y: 650 },
    { ok: true, texts: ["Ada — Chat", "Conversation with Ada", "Ada: I have sent you an invitation."] }],
  ["see_focused", { app: "Browser" }, { ok: true, element: { caret: 19, frame: { height: 26, width: 520, x: 700, y: 104 },
    label: "Address", length: 19, role: "AXTextField", selected: 0, tail: "weather.example.com", value: "weather.example.com" } }],
  ["see_menubar", { app: "Notes" }, { menus: ["Note"], ok: true }],
  ["see_popup", { app: "Notes" }, { items: [], ok: true }],
  ["see_dialogs", { app: "Notes" }, { modals: [], ok: true }],
  ["find_text", { app: "Chat", texts: ["invitation", "nowhere"] }, { ok: true, counts: { invitation: 1, nowhere: 0 },
    frames: { invitation: { height: 22, width: 340, x: 1024, y: 642 } } }],
  ["find_wait", { app: "Chat", texts: ["invitation"] }, { ok: true, counts: { invitation: 1 },
    frames: { invitation: { height: 22, width: 340, x: 1024, y: 642 } } }],
  ["find_element", { app: "Chat", label: "accept" }, { element: accept, matchedBy: "label", ok: true }],
  ["press_label", { app: "Chat", label: "Accept" }, { axError: 0, element: accept, matches: 1, ok: true }],
  ["press_match", { app: "Chat", label: "accept" }, { axError: 0, element: accept, matchedBy: "label", ok: true }],
  ["press_at", { app: "Chat", x: 1040, y: 680 }, { axError: 0, element: accept, ok: true }],
  ["press_in_row", { app: "Chat", row: "Grace", child: "Archive" }, { axError: 0, ok: true, pressed: "Archive",
    row: { frame: { height: 30, width: 138, x: 856, y: 570 }, label: "Grace", role: "AXRow" } }],
  ["press_in_document", { app: "Chat", document: "Conversation with Ada", button: "Accept" },
    { axError: 0, document: "Conversation with Ada", ok: true, pressed: "Accept" }],
  ["press_menu", { app: "Notes", titles: ["note", "archive"] }, { axError: 0, ok: true, pressed: "Note > Archive…" }],
  ["press_slider", { app: "Notes", label: "Text size", value: 20.5 }, { max: 32, min: 8, ok: true, value: 20.5 }],
  ["press_slider", { app: "Notes", label: "Text size" }, { max: 32, min: 8, ok: true, value: 20.5 }],
  ["press_reveal", { app: "Notes" }, { did: [], ok: true, windows: 2 }],
  ["press_label", { app: "Notes", label: "Delete…" }, { axError: 0, matches: 1, ok: true,
    element: { frame: { height: 28, width: 90, x: 390, y: 560 }, label: "Delete…", role: "AXButton" } }],
  ["press_in_dialog", { app: "Notes", text: "Delete this note?", button: "OK" }, { axError: 0, ok: true, pressed: "OK" }],
  ["write_text", { app: "Notes", label: "Body", mode: "end", text: "Thanks 🙂." },
    { before: "Dear reader, ", element: { ...body, value: "Dear reader, Thanks 🙂." }, method: "selected", ok: true }],
  ["write_text", { app: "Notes", label: "Body", mode: "replace", text: "new", ownedTexts: ["Dear reader, Thanks 🙂."] },
    { before: "Dear reader, Thanks 🙂.", element: { ...body, value: "new" }, method: "value", ok: true }],
  ["write_value", { app: "Notes", x: 320, y: 200, text: "text" }, { axError: 0, element: { ...body, value: "text" }, ok: true }],
  ["write_focus", { app: "Notes", label: "Body" }, { element: { ...body, value: "text" }, matchedBy: "label", ok: true }],
  ["point_click", { app: "Notes", x: 120, y: 180 }, clicked],
  ["point_click", { app: "Notes", x: 340, y: 574, button: "right", count: 2 }, { ...clicked, changed: false }],
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
  ["guard_lock_now", {}, { ok: true }],
];

test("every tool says what driver replies, as text and as structure", async () => {
  assert.deepEqual(new Set(table.map(([name]) => name)), new Set(toolRows.map((row) => row.name)));
  await onServer(async ({ client, call }) => {
    // The client holds every structure against the schema that the list has.
    await client.listTools();
    for (const [name, given, expected] of table) {
      const told = await call(name, given);
      assert.deepEqual(told.structuredContent, expected, name);
      assert.deepEqual(told.content.map((one) => [one.type, JSON.parse(one.text)]), [["text", expected]]);
    }
  }, { settles: true });
});

test("every function of driver is a tool, and every tool is in a group", () => {
  const described = JSON.parse(readFileSync(new URL("packaging/contract/tools.json", root), "utf8"));
  assert.deepEqual(toolRows.map((row) => row.name), Object.keys(described.tools));
  for (const { name } of toolRows) assert.ok(name.split("_")[0] in groups, name);
});

test("schemas are strict, and annotations say what a tool may do", async () => {
  await onServer(async ({ client }) => {
    const { tools } = await client.listTools();
    const ajv = new Ajv2020({ strict: true });
    for (const tool of tools) {
      assert.equal(tool.title, tool.annotations.title);
      assert.ok(tool.description.length > 15, tool.name);
      assert.doesNotThrow(() => ajv.compile(tool.inputSchema), tool.name);
      assert.doesNotThrow(() => ajv.compile(tool.outputSchema), tool.name);
      assert.equal(tool.annotations.destructiveHint === undefined, tool.annotations.readOnlyHint, tool.name);
    }
    const reading = tools.filter((tool) => tool.annotations.readOnlyHint).map((tool) => tool.name);
    assert.deepEqual([...new Set(reading.map((name) => name.split("_")[0]))], ["see", "find"]);
    const harmless = tools.filter((tool) => tool.annotations.destructiveHint === false).map((tool) => tool.name);
    assert.deepEqual(harmless, ["press_reveal", "write_focus", "point_scroll", "point_move", "guard_cover", "guard_say",
      "guard_lock", "guard_awake", "guard_lock_now", "guard_release_focus"]);
  });
});

test("wrong arguments get the usage, whichever the tool", async () => {
  await onServer(async ({ call }) => {
    for (const { name, inputSchema } of toolRows) {
      for (const wrong of [{ surprise: 1 }, ...(inputSchema.required.length > 0 ? [{}, { [inputSchema.required[0]]: [] }] : [])]) {
        const told = await call(name, wrong);
        assert.equal(told.isError, true, name);
        assert.equal(told.structuredContent.id, "usage");
        assert.match(told.structuredContent.error, new RegExp(`^${name}: .*\\. Usage: ${name} \\{`));
      }
    }
    assert.equal((await call("point_click", { app: "Notes", x: "1", y: 2 })).structuredContent.error,
      "point_click: arguments/x must be number. Usage: point_click {\"app\": string, \"x\": number, \"y\": number, " +
      "\"button\"?: \"left\"|\"right\", \"count\"?: integer, \"scope\"?: string}");
    await assert.rejects(call("nonsense"), { code: -32602, message: /no tool nonsense here/ });
  });
});

test("a failure is an error with its remedy", async () => {
  await onServer(async ({ call }) => {
    const told = await call("press_label", { app: "Chat", label: "Like" });
    const failure = { ok: false, id: "several-elements-labelled", error: "ax-press-exact: 2 elements labelled \"Like\"",
      parts: { count: "2", label: "Like" }, remedy: "Name the container, or say last if the lowest one is meant.",
      reply: { error: "2 elements labelled \"Like\"", ok: false } };
    assert.equal(told.isError, true);
    assert.deepEqual(told.structuredContent, failure);
    assert.equal(told.content[0].text,
      "ax-press-exact: 2 elements labelled \"Like\"\nWhat to do: Name the container, or say last if the lowest one is meant.");
    assert.deepEqual(JSON.parse(told.content[1].text), failure);
    const unseen = await call("find_wait", { app: "Chat", texts: ["nowhere"], secondsMax: 0 });
    assert.equal(unseen.structuredContent.id, "not-shown");
    for (const [name, given] of [["guard_lock", {}], ["guard_say", { operating: true }]]) {
      assert.equal((await call(name, given)).structuredContent.id, "not-covered");
    }
  });
});

test("a picture is as small as was asked for, and its pixels can be told back to points", async () => {
  await onServer(async ({ call }) => {
    const told = await call("see_picture", { app: "Notes", longestSide: 310 });
    const { rect, picture } = told.structuredContent;
    assert.deepEqual(rect, { x: 60, y: 80, width: 620, height: 560 });
    assert.deepEqual(picture, { width: 310, height: 280, pointsPerPixelX: 2, pointsPerPixelY: 2 });
    const [image, text] = told.content;
    assert.deepEqual([image.type, image.mimeType, text.type], ["image", "image/png", "text"]);
    const { width, height } = PNG.sync.read(Buffer.from(image.data, "base64"));
    assert.deepEqual([width, height], [310, 280]);
    const whole = (await call("see_picture", { app: "Notes", longestSide: 8192 })).structuredContent.picture;
    assert.deepEqual(whole, { width: 1240, height: 1120, pointsPerPixelX: 0.5, pointsPerPixelY: 0.5 });
  });
  await onServer(async ({ call }) => {
    const { picture } = (await call("see_picture", { app: "Notes" })).structuredContent;
    assert.deepEqual([picture.width, picture.height], [62, 56]);
  }, { words: ["--longest-side", "62"] });
});

const names = async (client) => (await client.listTools()).tools.map((tool) => tool.name);

test("with --read-only nothing is offered that changes anything", async () => {
  await onServer(async ({ client, call }) => {
    assert.deepEqual(await names(client), toolRows.filter((row) => row.annotations.readOnlyHint).map((row) => row.name));
    await assert.rejects(call("press_label", { app: "Chat", label: "Accept" }), { code: -32602 });
  }, { words: ["--read-only"] });
});

test("with --no-input nothing is offered that posts events", async () => {
  await onServer(async ({ client, call, simulated }) => {
    const offered = await names(client);
    const missing = toolRows.map((row) => row.name).filter((name) => !offered.includes(name));
    assert.deepEqual(missing, ["press_in_row", "point_click", "point_scroll", "point_move", "keys_press", "keys_type", "files_paste"]);
    for (const [name, given] of table) {
      if (offered.includes(name) && !name.startsWith("guard_")) await call(name, given);
    }
    const calls = (await simulated.tell("trace")).map((one) => one.call);
    assert.deepEqual(calls.filter((one) => /^(private\.post|private\.post-record|quartz\.post)$/.test(one)), []);
  }, { words: ["--no-input"] });
});

test("with --apps no other application is seen or operated, whatever it is called", async () => {
  await onServer(async ({ client, call }) => {
    for (const app of ["Notes", "com.example.notes", "pid:41"]) {
      assert.deepEqual((await call("see_windows", { app })).structuredContent, notes);
    }
    for (const app of ["Chat", "pid:44", "com.example.chat", "Nobody"]) {
      const told = await call("press_label", { app, label: "Accept" });
      assert.deepEqual([told.isError, told.structuredContent.id], [true, "app-not-allowed"]);
      assert.equal((await call("see_tree", { app })).structuredContent.id, "app-not-allowed");
      assert.equal((await call("see_user", { app })).structuredContent.id, "app-not-allowed");
      await assert.rejects(client.readResource({ uri: `driver://tree/${encodeURIComponent(app)}` }), /not among the applications/);
    }
    assert.equal((await call("guard_release_focus", { pid: 44, window: 14 })).structuredContent.id, "app-not-allowed");
    assert.deepEqual((await client.listResources()).resources.map((one) => one.uri),
      ["driver://screen", "driver://windows/com.example.notes", "driver://tree/com.example.notes",
        "driver://windows/Browser", "driver://tree/Browser"]);
  }, { words: ["--apps", "com.example.notes,Browser"] });
});

test("with --windows no other window is seen or operated", async () => {
  await onServer(async ({ client, call }) => {
    const { tools } = await client.listTools();
    assert.deepEqual(tools.filter((tool) => "scope" in tool.inputSchema.properties), []);
    assert.equal((await call("see_windows", { app: "Chat", scope: "Ada" })).structuredContent.id, "usage");
    assert.deepEqual((await call("see_list", { app: "Chat" })).structuredContent, { elements: [], ok: true });
    assert.equal((await call("press_label", { app: "Chat", label: "Accept" })).structuredContent.id, "no-element-labelled");
    assert.deepEqual((await call("see_windows", { app: "Notes" })).structuredContent, notes);
    const tree = await client.readResource({ uri: "driver://tree/Chat" });
    assert.deepEqual(JSON.parse(tree.contents[0].text), { elements: [], ok: true });
  }, { words: ["--windows", "Inbox"] });
});

test("a call's own scope narrows what is seen and operated", async () => {
  await onServer(async ({ call }) => {
    assert.deepEqual((await call("see_list", { app: "Chat", scope: "Inbox" })).structuredContent, { elements: [], ok: true });
    assert.equal((await call("press_label", { app: "Chat", label: "Accept", scope: "Ada" })).structuredContent.ok, true);
  });
});

test("resources tell of the screen, of windows and of trees", async () => {
  await onServer(async ({ client }) => {
    const read = async (uri) => JSON.parse((await client.readResource({ uri })).contents[0].text);
    assert.deepEqual(await read("driver://screen"), {
      scene: { bundleId: "com.example.browser", ok: true, pid: 40, x: 980, y: 420 },
      session: { locked: false, ok: true, onConsole: true },
      permissions: { accessibility: true, ok: true, screenRecording: true } });
    assert.deepEqual(await read("driver://windows/Notes"), notes);
    assert.equal((await read("driver://tree/com.example.input")).elements.length, 2);
    assert.deepEqual((await client.listResources()).resources.map((one) => one.uri), ["driver://screen"]);
    assert.deepEqual((await client.listResourceTemplates()).resourceTemplates.map((one) => one.uriTemplate),
      ["driver://windows/{app}", "driver://tree/{app}"]);
    for (const uri of ["driver://nothing", "driver://windows/", "driver://tree/%ff", "file:///etc/passwd"]) {
      await assert.rejects(client.readResource({ uri }), { code: -32602 }, uri);
    }
    await assert.rejects(client.readResource({ uri: "driver://tree/Nobody" }),
      { code: -32603, message: /app not running: Nobody\. What to do: See with windows whether it runs\./ });
  });
});
