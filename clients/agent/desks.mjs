// The two ways in which the agent gets at applications: the client, and the server for models.
import { spawn } from "node:child_process";
import { once } from "node:events";
import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StdioClientTransport } from "@modelcontextprotocol/sdk/client/stdio.js";
import { App, Commands, Mac } from "driver-client";

const server = new URL("../mcp/bin/driver-mcp.js", import.meta.url).pathname;
const triesMax = 50;

/** Waiting on a simulated Mac whose time stands still otherwise. */
function untilOn(program, environment) {
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

/** Every command as a call of its tool. */
class Tools extends Commands {
  constructor(client, tools, scope) {
    super();
    Object.assign(this, { client, tools, scope });
  }

  async run(command, given) {
    const scope = this.scope === undefined ? {} : { scope: this.scope };
    const told = await this.client.callTool({
      name: this.tools.get(command),
      arguments: { ...given, ...scope }
    });
    if (told.isError)
      throw Object.assign(new Error(told.structuredContent.error), {
        id: told.structuredContent.id
      });
    return told.structuredContent;
  }
}

/** Applications through a server of the agent's own. */
export async function serverDesk({ driver, simulatedMac, environment }) {
  const transport = new StdioClientTransport({
    command: process.execPath,
    args: [server, "--driver", driver],
    env: environment
  });
  const client = new Client({ name: "agent", version: "1" });
  await client.connect(transport);
  const tools = new Map();
  for (const { name, _meta } of (await client.listTools()).tools) {
    if (!tools.has(_meta.command)) tools.set(_meta.command, name);
  }
  return {
    pid: transport.pid,
    until: untilOn(simulatedMac, environment),
    open: async (name, scope) => new App(new Tools(client, tools, scope), name),
    end: () => client.close()
  };
}
