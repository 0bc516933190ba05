// Macs for the agent's tests, and who uses them.
import { spawn } from "node:child_process";
import { once } from "node:events";
import { readdirSync, readFileSync } from "node:fs";
import { createInterface } from "node:readline";
import { fileURLToPath } from "node:url";
import { Mac } from "driver-client";
import { SimulatedMac } from "driver-client/testing";
import { clientDesk, serverDesk } from "./desks.mjs";

export const root = new URL("../../", import.meta.url);
const build = `${process.env["BUILD_FOLDER"] ?? fileURLToPath(new URL("build/release", root))}`;
export const executables = {
  driver: process.env["DRIVER_EXECUTABLE"] ?? `${build}/driver`,
  simulatedMac: process.env["SIMULATED_MAC_EXECUTABLE"] ?? `${build}/simulated-mac`
};
export const file = "/Users/ada/minutes.pdf";
const real = new Mac();

export const ways = {
  client: (simulated) =>
    clientDesk({
      ...executables,
      lock: simulated.path("lock"),
      environment: environmentOf(simulated)
    }),
  server: (simulated) => serverDesk({ ...executables, environment: environmentOf(simulated) })
};

export function environmentOf(simulated) {
  return { ...process.env, SIMULATED_MAC: simulated.socket };
}

export function startMac(world, options = {}) {
  return SimulatedMac.start(readFileSync(new URL(`demo/${world}.world`, root), "utf8"), {
    ...executables,
    ...options
  });
}

/** The processes that use a Mac, this one and the Mac itself apart. */
export function processesOn(simulated) {
  return readdirSync("/proc")
    .filter((name) => /^\d+$/.test(name) && Number(name) !== process.pid)
    .filter((pid) => {
      try {
        return readFileSync(`/proc/${pid}/environ`, "utf8")
          .split("\0")
          .includes(`SIMULATED_MAC=${simulated.socket}`);
      } catch {
        return false;
      }
    });
}

/** Waits until nobody uses the Mac any more. */
export function left(simulated) {
  return real.until(async () => processesOn(simulated).length === 0, { everyMs: 10 });
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
