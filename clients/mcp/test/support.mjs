import { readdirSync, readFileSync } from "node:fs";
import { fileURLToPath } from "node:url";
import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StdioClientTransport } from "@modelcontextprotocol/sdk/client/stdio.js";
import { Mac } from "driver-client";
import { SimulatedMac } from "driver-client/testing";

export const root = new URL("../../../", import.meta.url);
const build = `${process.env["BUILD_FOLDER"] ?? fileURLToPath(new URL("build/release", root))}`;
export const executables = {
  driver: process.env["DRIVER_EXECUTABLE"] ?? `${build}/driver`,
  simulatedMac: process.env["SIMULATED_MAC_EXECUTABLE"] ?? `${build}/simulated-mac`,
};
export const server = fileURLToPath(new URL("../bin/driver-mcp.js", import.meta.url));
export const desk = readFileSync(new URL("demo/desk.world", root), "utf8");
export const real = new Mac();

export function startMac(world, options = {}) {
  return SimulatedMac.start(world, { ...executables, ...options });
}

export function environmentOf(simulated) {
  return { ...process.env, SIMULATED_MAC: simulated.socket };
}

/** A client of the protocol's own, connected to a server with these options. */
export async function connected(simulated, words = []) {
  const transport = new StdioClientTransport({ command: process.execPath,
    args: [server, "--driver", executables.driver, ...words], env: environmentOf(simulated), stderr: "pipe" });
  const client = new Client({ name: "test", version: "1" });
  await client.connect(transport);
  return { client, pid: transport.pid, call: (name, given = {}, options) =>
    client.callTool({ name, arguments: given }, undefined, options) };
}

/** Runs a test with a server on a Mac of its own; nothing is left, no rule broken, and the user has noticed nothing. */
export async function onServer(run, { world = desk, words = [], settles = false, ...options } = {}) {
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

/** The processes that use a Mac, but for this one. */
export function processesOn(simulated) {
  return readdirSync("/proc").filter((name) => /^\d+$/.test(name) && Number(name) !== process.pid).filter((pid) => {
    try {
      return readFileSync(`/proc/${pid}/environ`, "utf8").split("\0").includes(`SIMULATED_MAC=${simulated.socket}`);
    } catch {
      return false;
    }
  });
}

export function left(simulated) {
  return real.until(async () => processesOn(simulated).length === 0, { everyMs: 10 });
}
