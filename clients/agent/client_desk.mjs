// The first of the two ways in which the agent gets at applications: the client.
import { spawn } from "node:child_process";
import { once } from "node:events";
import { Mac } from "driver-client";

const triesMax = 50;

/** Waiting on a simulated Mac whose time stands still otherwise. */
export function untilOn(program, environment) {
  return async (ask) => {
    for (let tries = 0; tries < triesMax; ++tries) {
      const told = await ask();
      if (told !== undefined && told !== null && told !== false) return told;
      await once(
        spawn(program, ["advance", "200ms"], { env: environment, stdio: "ignore" }),
        "exit"
      );
    }
    throw new Error("it was waited for in vain");
  };
}

/** Applications through the client, each marked by one capture service. */
export async function clientDesk({ driver, simulatedMac, lock, environment }) {
  const mac = new Mac({ driver, environment });
  const service = await mac.startCaptureService(lock);
  return {
    pid: process.pid,
    until: untilOn(simulatedMac, environment),
    open: async (name, scope) =>
      (await service.open(name, scope === undefined ? {} : { scope })).app,
    end: () => service.end()
  };
}
