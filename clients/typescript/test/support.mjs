import { readFileSync } from "node:fs";
import { fileURLToPath } from "node:url";
import { SimulatedMac, withSimulatedMac } from "driver-client/testing";

export const root = new URL("../../../", import.meta.url);
const build = `${process.env["BUILD_FOLDER"] ?? fileURLToPath(new URL("build/release", root))}`;

/** The executables under test. */
export const executables = {
  driver: process.env["DRIVER_EXECUTABLE"] ?? `${build}/driver`,
  simulatedMac: process.env["SIMULATED_MAC_EXECUTABLE"] ?? `${build}/simulated-mac`,
};

export const desk = readFileSync(new URL("demo/desk.world", root), "utf8");

export function onMac(world, test, options = {}) {
  return withSimulatedMac(world, test, { ...executables, ...options });
}

export function startMac(world, options = {}) {
  return SimulatedMac.start(world, { ...executables, ...options });
}
