// The protocol's Inspector, from its command line, gets along with the server.
import assert from "node:assert/strict";
import { execFile } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, symlinkSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { test } from "node:test";
import { fileURLToPath } from "node:url";
import { promisify } from "node:util";
import { toolRows } from "../dist/tools.js";
import { environmentOf, executables, left, root } from "../../macs.mjs";
import { desk, server, startMac } from "./support.mjs";

const inspector = join(
  dirname(
    createRequire(import.meta.url).resolve("@modelcontextprotocol/inspector-cli/package.json")
  ),
  "build/cli.js"
);

async function inspected(simulated, ...words) {
  const { stdout } = await promisify(execFile)(
    process.execPath,
    [inspector, "--cli", process.execPath, server, "--driver", executables.driver, ...words],
    { env: environmentOf(simulated) }
  );
  return JSON.parse(stdout);
}

test("the Inspector lists, calls and reads", async () => {
  const simulated = await startMac(desk);
  try {
    const { tools } = await inspected(simulated, "--method", "tools/list");
    assert.deepEqual(
      tools.map((tool) => tool.name),
      toolRows.map((row) => row.name)
    );
    const clicked = await inspected(
      simulated,
      "--method",
      "tools/call",
      "--tool-name",
      "point_click",
      "--tool-arg",
      "app=Notes",
      "x=340",
      "y=574"
    );
    assert.deepEqual(clicked.structuredContent, {
      changed: true,
      ok: true,
      via: "background",
      window: 7
    });
    const wrong = await inspected(
      simulated,
      "--method",
      "tools/call",
      "--tool-name",
      "press_label",
      "--tool-arg",
      "app=Chat"
    );
    assert.match(wrong.content[0].text, /Usage: press_label \{"app": string, "label": string/);
    const read = await inspected(
      simulated,
      "--method",
      "resources/read",
      "--uri",
      "driver://windows/Notes"
    );
    assert.equal(JSON.parse(read.contents[0].text).pid, 41);
    await left(simulated);
    await simulated.check();
  } finally {
    await simulated.end();
  }
});

test("the example of the page does what the page says", async () => {
  const page = readFileSync(new URL("clients/mcp/README.md", root), "utf8");
  const [, example] = page.match(/^```sh title=try.sh\n(.*?)^```$/ms);
  // By the names that an installation gives them.
  const installed = mkdtempSync(join(tmpdir(), "driver-mcp-"));
  symlinkSync(server, join(installed, "driver-mcp"));
  const path = [
    dirname(executables.driver),
    dirname(executables.simulatedMac),
    installed,
    fileURLToPath(new URL("clients/node_modules/.bin", root)),
    process.env.PATH
  ].join(":");
  const { stdout } = await promisify(execFile)("sh", ["-c", example], {
    cwd: fileURLToPath(new URL("clients/mcp", root)),
    env: { ...process.env, PATH: path }
  });
  rmSync(installed, { recursive: true });
  assert.equal(JSON.parse(stdout).structuredContent.element.label, "Reply");
});
