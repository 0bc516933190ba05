import { Server } from "@modelcontextprotocol/sdk/server/index.js";
import type { Transport } from "@modelcontextprotocol/sdk/shared/transport.js";
import {
  CallToolRequestSchema,
  ListResourcesRequestSchema,
  ListResourceTemplatesRequestSchema,
  ListToolsRequestSchema,
  ReadResourceRequestSchema,
  type Tool
} from "@modelcontextprotocol/sdk/types.js";
import { Mac } from "driver-client";
import { Applications } from "./applications.js";
import { Calls } from "./calls.js";
import { NotThere } from "./failures.js";
import { Guarding } from "./guarding.js";
import type { Options } from "./options.js";
import { contentOf, resources, templates } from "./resources.js";
import { Sharing } from "./sharing.js";
import { groups, toolRows, type ToolRow } from "./tools.js";

const instructions = [
  "These tools operate applications of a Mac in the background: the user's foreground, keyboard",
  "and pointer stay the user's. An application is named by its bundle identifier, its exact name,",
  "or pid: and a process id. Look before you act, and look again after it. Points are screen",
  "points. A failure says what to do; do not repeat an act without looking.",
  ...Object.entries(groups).map(([group, about]) => `${group}_…: ${about}.`),
  "Remedies and descriptions name driver's commands; as tools they are:",
  `${toolRows.map((row) => `${row.command} ${row.name}`).join(", ")}.`
].join("\n");

/** The tools that these options leave. */
export function rowsFor(options: Options): ToolRow[] {
  const offered = toolRows.filter(
    (row) => !(options.readOnly && !row.annotations.readOnlyHint) && !(options.noInput && row.posts)
  );
  return options.windows === undefined ? offered : offered.map(withoutScope);
}

function withoutScope(row: ToolRow): ToolRow {
  const properties = Object.entries(row.inputSchema.properties ?? {}).filter(
    ([name]) => name !== "scope"
  );
  return {
    ...row,
    inputSchema: { ...row.inputSchema, properties: Object.fromEntries(properties) }
  };
}

function toolOf({
  name,
  command,
  description,
  inputSchema,
  outputSchema,
  annotations
}: ToolRow): Tool {
  return {
    name,
    title: annotations.title,
    description,
    inputSchema,
    outputSchema,
    annotations,
    _meta: { command }
  };
}

/** driver for one connection. When that closes, everything that it has begun ends. */
export class DriverServer {
  readonly #server: Server;
  readonly #rows: Map<string, ToolRow>;
  readonly #calls: Calls;
  readonly #end = new AbortController();
  readonly #open = new Set<Promise<unknown>>();
  #closed: Promise<void> | undefined;

  constructor(options: Options, version: string) {
    const mac = new Mac({
      driver: options.driver,
      scope: options.windows,
      signal: this.#end.signal
    });
    const guarding = new Guarding(new Mac({ driver: options.driver }));
    const sharing = new Sharing(mac, () => void guarding.end());
    this.#calls = new Calls(
      mac,
      new Applications(options.apps),
      sharing,
      guarding,
      options.longestSide
    );
    this.#rows = new Map(rowsFor(options).map((row) => [row.name, row]));
    this.#server = new Server(
      { name: "driver", version },
      { capabilities: { tools: {}, resources: {} }, instructions }
    );
    this.#answerTools();
    this.#answerResources(options);
  }

  async connect(transport: Transport): Promise<void> {
    await this.#server.connect(transport);
  }

  /** Ends the runs, the service and the cover, which locks; then it is closed. */
  close(): Promise<void> {
    return (this.#closed ??= this.#endAll());
  }

  /** What happens when the other side has gone. */
  set onclose(happens: () => void) {
    this.#server.onclose = happens;
  }

  async #endAll(): Promise<void> {
    this.#end.abort(new Error("the connection is closed"));
    await Promise.all([this.#calls.sharing.end(), this.#calls.guarding.end()]);
    await Promise.allSettled(this.#open);
    await this.#server.close();
  }

  async #keptOpen<Result>(work: Promise<Result>): Promise<Result> {
    this.#open.add(work);
    return work.finally(() => this.#open.delete(work));
  }

  #answerTools(): void {
    const tools = [...this.#rows.values()].map(toolOf);
    this.#server.setRequestHandler(ListToolsRequestSchema, () => ({ tools }));
    this.#server.setRequestHandler(CallToolRequestSchema, ({ params }, call) => {
      const row = this.#rows.get(params.name);
      if (row === undefined) throw new NotThere(`no tool ${params.name} here`);
      return this.#keptOpen(this.#calls.done(row, params.arguments ?? {}, call));
    });
  }

  #answerResources(options: Options): void {
    this.#server.setRequestHandler(ListResourcesRequestSchema, () => ({
      resources: resources(options.apps)
    }));
    this.#server.setRequestHandler(ListResourceTemplatesRequestSchema, () => ({
      resourceTemplates: templates
    }));
    this.#server.setRequestHandler(ReadResourceRequestSchema, ({ params }, call) =>
      this.#keptOpen(contentOf(this.#calls, params.uri, call.signal))
    );
  }
}
