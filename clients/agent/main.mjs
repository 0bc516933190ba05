// Runs the agent: main.mjs client|server TASK FILE. Its first line is the process that operates the
// applications.
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { tasks } from "./agent.mjs";

const [way, task, file] = process.argv.slice(2);
const folder = mkdtempSync(join(tmpdir(), "agent-"));
const start =
  way === "client"
    ? (await import("./client_desk.mjs")).clientDesk
    : (await import("./server_desk.mjs")).serverDesk;
const desk = await start({
  driver: process.env["DRIVER_EXECUTABLE"],
  simulatedMac: process.env["SIMULATED_MAC_EXECUTABLE"],
  lock: join(folder, "lock"),
  environment: process.env
});
// The service holds its lock, whatever becomes of the file.
rmSync(folder, { recursive: true });
process.stdout.write(`${desk.pid}\n`);
try {
  await tasks[task](desk, file);
  process.stdout.write("done\n");
} finally {
  await desk.end();
}
