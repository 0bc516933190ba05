// Macs for the agent's tests, and who uses them.
import { spawn } from "node:child_process";
import { once } from "node:events";
import { readFileSync } from "node:fs";
import { createInterface } from "node:readline";
import { fileURLToPath } from "node:url";
import { SimulatedMac } from "driver-client/testing";
import { environmentOf, executables, root } from "../macs.mjs";
import { clientDesk } from "./client_desk.mjs";
import { serverDesk } from "./server_desk.mjs";

export const file = "/Users/ada/minutes.pdf";

export const ways = {
  client: (simulated) =>
    clientDesk({
      ...executables,
      lock: simulated.path("lock"),
      environment: environmentOf(simulated)
    }),
  server: (simulated) => serverDesk({ ...executables, environment: environmentOf(simulated) })
};

export function startMac(world, options = {}) {
  return SimulatedMac.start(readFileSync(new URL(`demo/${world}.world`, root), "utf8"), {
    ...executables,
    ...options
  });
}

/** An agent in a process of its own: the processes by their roles, what it said, and its end. */
export async function startAgent(
  simulated,
  words,
  program = [process.execPath, fileURLToPath(new URL("main.mjs", import.meta.url))]
) {
  const environment = {
    ...environmentOf(simulated),
    DRIVER_EXECUTABLE: executables.driver,
    SIMULATED_MAC_EXECUTABLE: executables.simulatedMac,
    PYTHONPATH: fileURLToPath(new URL("clients/python", root))
  };
  const child = spawn(program[0], [...program.slice(1), ...words, file], {
    env: environment,
    stdio: ["ignore", "pipe", "ignore"]
  });
  const over = once(child, "close");
  const lines = createInterface({ input: child.stdout })[Symbol.asyncIterator]();
  const { value } = await lines.next();
  return { agent: child.pid, hands: Number(value), over, lines };
}
