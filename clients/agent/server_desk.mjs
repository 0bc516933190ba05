// The other way in which the agent gets at applications: the server for models. An agent that works
// by the client does not load this file, nor the protocol, which takes three times as long as all else.
import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StdioClientTransport } from "@modelcontextprotocol/sdk/client/stdio.js";
import { ListToolsResultSchema } from "@modelcontextprotocol/sdk/types.js";
import { App, Commands } from "driver-client";
import { untilOn } from "./client_desk.mjs";

const server = new URL("../mcp/bin/driver-mcp.js", import.meta.url).pathname;

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
  // `listTools` would make a check of each tool's reply ready, which takes longer than a task.
  const listed = await client.request({ method: "tools/list" }, ListToolsResultSchema);
  const tools = new Map();
  for (const { name, _meta } of listed.tools) {
    if (!tools.has(_meta.command)) tools.set(_meta.command, name);
  }
  return {
    pid: transport.pid,
    until: untilOn(simulatedMac, environment),
    open: async (name, scope) => new App(new Tools(client, tools, scope), name),
    end: () => client.close()
  };
}
