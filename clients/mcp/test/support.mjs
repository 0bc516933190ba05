import { spawn } from "node:child_process";
import { once } from "node:events";
import { readFileSync } from "node:fs";
import { createInterface } from "node:readline";
import { fileURLToPath } from "node:url";
import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StdioClientTransport } from "@modelcontextprotocol/sdk/client/stdio.js";
import { SimulatedMac } from "driver-client/testing";
import { environmentOf, executables, left, processesOn, root } from "../../macs.mjs";

export const server = fileURLToPath(new URL("../bin/driver-mcp.js", import.meta.url));
export const desk = readFileSync(new URL("demo/desk.world", root), "utf8");

export function startMac(world, options = {}) {
  return SimulatedMac.start(world, { ...executables, ...options });
}

/** A client of the protocol's own, connected to a server with these options. */
export async function connected(simulated, words = []) {
  const transport = new StdioClientTransport({
    command: process.execPath,
    args: [server, "--driver", executables.driver, ...words],
    env: environmentOf(simulated),
    stderr: "pipe"
  });
  const client = new Client({ name: "test", version: "1" });
  await client.connect(transport);
  return {
    client,
    pid: transport.pid,
    call: (name, given = {}, options) =>
      client.callTool({ name, arguments: given }, undefined, options)
  };
}

/**
 * Runs a test with a server on a Mac of its own; nothing is left, no rule broken, and the user has
 * noticed nothing.
 */
export async function onServer(
  run,
  { world = desk, words = [], settles = false, ...options } = {}
) {
  const simulated = await startMac(world, options);
  try {
    const connection = await connected(simulated, words);
    try {
      await run({ ...connection, simulated });
    } finally {
      await connection.client.close();
    }
    await left(simulated);
    if (settles) await simulated.settle();
    await simulated.check();
  } finally {
    await simulated.end();
  }
}

export const request = (id, method, params) =>
  `${JSON.stringify({ jsonrpc: "2.0", id, method, params })}\n`;
export const initialize =
  request(0, "initialize", {
    protocolVersion: "2025-06-18",
    capabilities: {},
    clientInfo: { name: "raw", version: "1" }
  }) + `${JSON.stringify({ jsonrpc: "2.0", method: "notifications/initialized" })}\n`;

/** A server without a client's library: its process and its lines. */
export function started(words = [], environment = process.env) {
  const child = spawn(process.execPath, [server, "--driver", executables.driver, ...words], {
    env: environment
  });
  const lines = createInterface({ input: child.stdout })[Symbol.asyncIterator]();
  let errors = "";
  child.stderr.setEncoding("utf8").on("data", (piece) => (errors += piece));
  const over = once(child, "close").then(([status, signal]) => ({ status, signal, errors }));
  return {
    child,
    over,
    say: (text) => child.stdin.write(text),
    line: async () => {
      const { value } = await lines.next();
      return value && JSON.parse(value);
    }
  };
}

/** How often the processes of a Mac have made this call. */
export const callsOf = async (simulated, name) =>
  (await simulated.tell("trace")).filter((one) => one.call === name).length;

/** The processes of driver on a Mac that run this command. */
export function runsOf(simulated, command) {
  return processesOn(simulated).filter((pid) => {
    try {
      const words = readFileSync(`/proc/${pid}/cmdline`, "utf8").split("\0");
      return words[0].endsWith("/driver") && words[1] === command;
    } catch {
      return false;
    }
  });
}
