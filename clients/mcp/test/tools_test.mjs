// What the tools are, and what each of them says.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { Ajv2020 } from "ajv/dist/2020.js";
import { PNG } from "pngjs";
import { groups, toolRows } from "../dist/tools.js";
import { root } from "../../macs.mjs";
import { onServer } from "./support.mjs";
import { table } from "./table.mjs";

test("every tool says what driver replies, as text and as structure", async () => {
  assert.deepEqual(new Set(table.map(([name]) => name)), new Set(toolRows.map((row) => row.name)));
  await onServer(
    async ({ client, call }) => {
      // The client holds every structure against the schema that the list has.
      await client.listTools();
      for (const [name, given, expected] of table) {
        const told = await call(name, given);
        assert.deepEqual(told.structuredContent, expected, name);
        assert.deepEqual(
          told.content.map((one) => [one.type, JSON.parse(one.text)]),
          [["text", expected]]
        );
      }
    },
    { settles: true }
  );
});

test("every function of driver is a tool, and every tool is in a group, and on the page", () => {
  const described = JSON.parse(
    readFileSync(new URL("packaging/contract/tools.json", root), "utf8")
  );
  assert.deepEqual(
    toolRows.map((row) => row.name),
    Object.keys(described.tools)
  );
  const page = readFileSync(new URL("clients/mcp/README.md", root), "utf8");
  for (const group of Object.keys(groups)) {
    const [, row] = page.match(new RegExp(`^\\| \`${group}_\` \\| (.*) \\|$`, "m"));
    const names = row.split(", ").map((one) => `${group}_${one.replaceAll("`", "")}`);
    assert.deepEqual(
      names,
      toolRows.map((one) => one.name).filter((name) => name.startsWith(`${group}_`))
    );
  }
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
      assert.equal(
        tool.annotations.destructiveHint === undefined,
        tool.annotations.readOnlyHint,
        tool.name
      );
    }
    const reading = tools.filter((tool) => tool.annotations.readOnlyHint).map((tool) => tool.name);
    assert.deepEqual([...new Set(reading.map((name) => name.split("_")[0]))], ["see", "find"]);
    const harmless = tools
      .filter((tool) => tool.annotations.destructiveHint === false)
      .map((tool) => tool.name);
    assert.deepEqual(harmless, [
      "press_reveal",
      "write_focus",
      "point_scroll",
      "point_move",
      "guard_cover",
      "guard_say",
      "guard_lock",
      "guard_awake",
      "guard_lock_now",
      "guard_release_focus"
    ]);
  });
});

test("wrong arguments get the usage, whichever the tool", async () => {
  await onServer(async ({ call }) => {
    for (const { name, inputSchema } of toolRows) {
      for (const wrong of [
        { surprise: 1 },
        ...(inputSchema.required.length > 0 ? [{}, { [inputSchema.required[0]]: [] }] : [])
      ]) {
        const told = await call(name, wrong);
        assert.equal(told.isError, true, name);
        assert.equal(told.structuredContent.id, "usage");
        assert.match(
          told.structuredContent.error,
          new RegExp(`^${name}: .*\\. Usage: ${name} \\{`)
        );
      }
    }
    assert.equal(
      (await call("point_click", { app: "Notes", x: "1", y: 2 })).structuredContent.error,
      'point_click: arguments/x must be number. Usage: point_click {"app": string, "x": number, "y": number, ' +
        '"button"?: "left"|"right", "count"?: integer, "scope"?: string}'
    );
    await assert.rejects(call("nonsense"), { code: -32602, message: /no tool nonsense here/ });
  });
});

test("a failure is an error with its remedy", async () => {
  await onServer(async ({ call }) => {
    const told = await call("press_label", { app: "Chat", label: "Like" });
    const failure = {
      ok: false,
      id: "several-elements-labelled",
      error: 'ax-press-exact: 2 elements labelled "Like"',
      parts: { count: "2", label: "Like" },
      remedy: "Name the container, or pass last for the lowest one.",
      reply: { error: '2 elements labelled "Like"', ok: false }
    };
    assert.equal(told.isError, true);
    assert.deepEqual(told.structuredContent, failure);
    assert.equal(
      told.content[0].text,
      'ax-press-exact: 2 elements labelled "Like"\nWhat to do: Name the container, or pass last for the lowest one.'
    );
    assert.deepEqual(JSON.parse(told.content[1].text), failure);
    const unseen = await call("find_wait", { app: "Chat", texts: ["invitation", "nowhere"], secondsMax: 0 });
    assert.equal(unseen.structuredContent.id, "not-shown");
    assert.deepEqual(unseen.structuredContent.parts, { seconds: "0", missing: '"nowhere"' });
    for (const [name, given] of [
      ["guard_lock", {}],
      ["guard_say", { operating: true }]
    ]) {
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
    const whole = (await call("see_picture", { app: "Notes", longestSide: 8192 })).structuredContent
      .picture;
    assert.deepEqual(whole, {
      width: 1240,
      height: 1120,
      pointsPerPixelX: 0.5,
      pointsPerPixelY: 0.5
    });
  });
  await onServer(
    async ({ call }) => {
      const { picture } = (await call("see_picture", { app: "Notes" })).structuredContent;
      assert.deepEqual([picture.width, picture.height], [62, 56]);
    },
    { words: ["--longest-side", "62"] }
  );
});
