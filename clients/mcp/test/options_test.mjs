// What options leave of the tools, what a scope leaves of the windows, and what resources tell.
import assert from "node:assert/strict";
import { test } from "node:test";
import { toolRows } from "../dist/tools.js";
import { onServer } from "./support.mjs";
import { notes, table } from "./table.mjs";

const names = async (client) => (await client.listTools()).tools.map((tool) => tool.name);

test("with --read-only nothing is offered that changes anything", async () => {
  await onServer(
    async ({ client, call }) => {
      assert.deepEqual(
        await names(client),
        toolRows.filter((row) => row.annotations.readOnlyHint).map((row) => row.name)
      );
      await assert.rejects(call("press_label", { app: "Chat", label: "Accept" }), { code: -32602 });
    },
    { words: ["--read-only"] }
  );
});

test("with --no-input nothing is offered that posts events", async () => {
  await onServer(
    async ({ client, call, simulated }) => {
      const offered = await names(client);
      const missing = toolRows.map((row) => row.name).filter((name) => !offered.includes(name));
      assert.deepEqual(missing, [
        "press_in_row",
        "point_click",
        "point_scroll",
        "point_move",
        "keys_press",
        "keys_type",
        "files_paste"
      ]);
      for (const [name, given] of table) {
        if (offered.includes(name) && !name.startsWith("guard_")) await call(name, given);
      }
      const calls = (await simulated.tell("trace")).map((one) => one.call);
      assert.deepEqual(
        calls.filter((one) => /^(private\.post|private\.post-record|quartz\.post)$/.test(one)),
        []
      );
    },
    { words: ["--no-input"] }
  );
});

test("with --apps no other application is seen or operated, whatever it is called", async () => {
  await onServer(
    async ({ client, call }) => {
      for (const app of ["Notes", "com.example.notes", "pid:41"]) {
        assert.deepEqual((await call("see_windows", { app })).structuredContent, notes);
      }
      for (const app of ["Chat", "pid:44", "com.example.chat", "Nobody"]) {
        const told = await call("press_label", { app, label: "Accept" });
        assert.deepEqual([told.isError, told.structuredContent.id], [true, "app-not-allowed"]);
        assert.equal((await call("see_tree", { app })).structuredContent.id, "app-not-allowed");
        assert.equal((await call("see_user", { app })).structuredContent.id, "app-not-allowed");
        await assert.rejects(
          client.readResource({ uri: `driver://tree/${encodeURIComponent(app)}` }),
          /not among the applications/
        );
      }
      assert.equal(
        (await call("guard_release_focus", { pid: 44, window: 14 })).structuredContent.id,
        "app-not-allowed"
      );
      assert.deepEqual(
        (await client.listResources()).resources.map((one) => one.uri),
        [
          "driver://screen",
          "driver://windows/com.example.notes",
          "driver://tree/com.example.notes",
          "driver://windows/Browser",
          "driver://tree/Browser"
        ]
      );
    },
    { words: ["--apps", "com.example.notes,Browser"] }
  );
});

test("with --windows no other window is seen or operated", async () => {
  await onServer(
    async ({ client, call }) => {
      const { tools } = await client.listTools();
      assert.deepEqual(
        tools.filter((tool) => "scope" in tool.inputSchema.properties),
        []
      );
      assert.equal(
        (await call("see_windows", { app: "Chat", scope: "Ada" })).structuredContent.id,
        "usage"
      );
      assert.deepEqual((await call("see_list", { app: "Chat" })).structuredContent, {
        elements: [],
        ok: true
      });
      assert.equal(
        (await call("press_label", { app: "Chat", label: "Accept" })).structuredContent.id,
        "no-element-labelled"
      );
      assert.deepEqual((await call("see_windows", { app: "Notes" })).structuredContent, notes);
      const tree = await client.readResource({ uri: "driver://tree/Chat" });
      assert.deepEqual(JSON.parse(tree.contents[0].text), { elements: [], ok: true });
    },
    { words: ["--windows", "Inbox"] }
  );
});

test("a call's own scope narrows what is seen and operated", async () => {
  await onServer(async ({ call }) => {
    assert.deepEqual((await call("see_list", { app: "Chat", scope: "Inbox" })).structuredContent, {
      elements: [],
      ok: true
    });
    assert.equal(
      (await call("press_label", { app: "Chat", label: "Accept", scope: "Ada" })).structuredContent
        .ok,
      true
    );
  });
});

test("resources tell of the screen, of windows and of trees", async () => {
  await onServer(async ({ client }) => {
    const read = async (uri) => JSON.parse((await client.readResource({ uri })).contents[0].text);
    assert.deepEqual(await read("driver://screen"), {
      scene: { bundleId: "com.example.browser", ok: true, pid: 40, x: 980, y: 420 },
      session: { locked: false, ok: true, onConsole: true },
      permissions: { accessibility: true, ok: true, screenRecording: true }
    });
    assert.deepEqual(await read("driver://windows/Notes"), notes);
    assert.equal((await read("driver://tree/com.example.input")).elements.length, 2);
    assert.deepEqual(
      (await client.listResources()).resources.map((one) => one.uri),
      ["driver://screen"]
    );
    assert.deepEqual(
      (await client.listResourceTemplates()).resourceTemplates.map((one) => one.uriTemplate),
      ["driver://windows/{app}", "driver://tree/{app}"]
    );
    for (const uri of [
      "driver://nothing",
      "driver://windows/",
      "driver://tree/%ff",
      "file:///etc/passwd"
    ]) {
      await assert.rejects(client.readResource({ uri }), { code: -32602 }, uri);
    }
    await assert.rejects(client.readResource({ uri: "driver://tree/Nobody" }), {
      code: -32603,
      message: /app not running: Nobody\. What to do: Use windows to check whether it runs\./
    });
  });
});
