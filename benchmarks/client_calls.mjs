// What a call through the client for TypeScript adds to the plain start of a process that reads
// one reply, and how long the server for models takes from its start to its first list of tools.
import { execFile, spawn } from "node:child_process";
import { readFileSync } from "node:fs";
import { createInterface } from "node:readline";
import { promisify } from "node:util";
import { Mac } from "../clients/typescript/dist/index.js";
import { SimulatedMac } from "../clients/typescript/dist/testing.js";

const [driver, simulatedMac, world, server, rounds] = process.argv.slice(2);

/** Milliseconds that each of them takes, in turns, so that a busy machine is no one's fault. */
async function measured(...ways) {
  const times = ways.map(() => []);
  for (let round = 0; round < Number(rounds); ++round) {
    for (const [index, way] of ways.entries()) {
      const begin = performance.now();
      await way();
      times[index].push(performance.now() - begin);
    }
  }
  return times;
}

async function firstToolList() {
  const child = spawn(process.execPath, [server, "--driver", driver], { stdio: ["pipe", "pipe", "ignore"] });
  const say = (message) => child.stdin.write(`${JSON.stringify({ jsonrpc: "2.0", ...message })}\n`);
  const lines = createInterface({ input: child.stdout })[Symbol.asyncIterator]();
  const clientInfo = { name: "benchmark", version: "1" };
  const params = { protocolVersion: "2025-06-18", capabilities: {}, clientInfo };
  say({ id: 0, method: "initialize", params });
  await lines.next();
  say({ method: "notifications/initialized" });
  say({ id: 1, method: "tools/list" });
  await lines.next();
  child.kill("SIGKILL");
}

const simulated = await SimulatedMac.start(readFileSync(world, "utf8"), { driver, simulatedMac });
const env = { ...process.env, SIMULATED_MAC: simulated.socket };
const mac = new Mac({ driver, environment: env });
const plain = promisify(execFile);
const [alone, through] = await measured(
  async () => JSON.parse((await plain(driver, ["session"], { env })).stdout),
  () => mac.session()
);
await simulated.end();
const [tools] = await measured(firstToolList);
console.log(JSON.stringify({ alone, through, tools }));
