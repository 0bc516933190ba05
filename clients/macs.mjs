// Simulated Macs for tests: what was built, and who uses a Mac.
import { readdirSync, readFileSync } from "node:fs";
import { fileURLToPath } from "node:url";
import { Mac } from "driver-client";

export const root = new URL("../", import.meta.url);
const build = `${process.env["BUILD_FOLDER"] ?? fileURLToPath(new URL("build/release", root))}`;
export const executables = {
  driver: process.env["DRIVER_EXECUTABLE"] ?? `${build}/driver`,
  simulatedMac: process.env["SIMULATED_MAC_EXECUTABLE"] ?? `${build}/simulated-mac`
};
export const real = new Mac();

export function environmentOf(simulated) {
  return { ...process.env, SIMULATED_MAC: simulated.socket };
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
