import { mkdtemp, readFile, rm } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import type { CallToolResult } from "@modelcontextprotocol/sdk/types.js";
import { TimedOutError, type GuardOptions, type Mac } from "driver-client";
import type { Applications } from "./applications.js";
import { failed, failureOf, Refusal } from "./failures.js";
import type { Guarding } from "./guarding.js";
import { withProgress, type Call } from "./progress.js";
import type { Sharing } from "./sharing.js";
import type { ToolRow } from "./tools.js";
import { checkArguments } from "./usage.js";

type Arguments = Record<string, unknown>;
type Told = Record<string, unknown>;

/** Those that put things right: they run also when everything else has ended. */
const puttingRight = new Set(["lock-now", "focus-release"]);

/** One connection's Mac, and how its tools are done there. */
export class Calls {
  readonly #own: Record<
    string,
    (given: Arguments, signal: AbortSignal) => Promise<Told | CallToolResult>
  > = {
    see_user: (given) => this.guarding.user(given["app"] as string | undefined),
    see_picture: (given, signal) => this.#picture(given, signal),
    find_wait: (given, signal) => this.#wait(given, signal),
    guard_cover: (given) => this.guarding.cover(given as GuardOptions),
    guard_say: async (given) => this.guarding.say(given["operating"] === true),
    guard_lock: () => this.guarding.lock(),
    guard_awake: (given) => this.guarding.awake(given["awake"] === true)
  };

  constructor(
    readonly mac: Mac,
    readonly applications: Applications,
    readonly sharing: Sharing,
    readonly guarding: Guarding,
    readonly longestSide: number
  ) {}

  /** Does what a tool does. What goes wrong, wrong arguments too, is its result. */
  async done(row: ToolRow, given: Arguments, call: Call): Promise<CallToolResult> {
    try {
      checkArguments(row, given);
      const secondsMax = row.name === "find_wait" ? Number(given["secondsMax"] ?? 10) : undefined;
      const told = await withProgress(call, secondsMax, () => this.#told(row, given, call.signal));
      return "content" in told ? (told as CallToolResult) : resultOf(told);
    } catch (error) {
      call.signal.throwIfAborted();
      const told = failureOf(error);
      const isGone = ["service-ended", "capture-service-gone"].includes(told.id);
      return failed(failureOf((isGone ? await this.sharing.stopped() : undefined) ?? error));
    }
  }

  async #told(row: ToolRow, given: Arguments, signal: AbortSignal): Promise<Told | CallToolResult> {
    const admitted = await this.#admitted(row, given, signal);
    const own = this.#own[row.name];
    if (own !== undefined) {
      await this.sharing.beside();
      return own(admitted, signal);
    }
    const mac = await this.#macFor(row, admitted, signal);
    return mac.run<Told>(row.command, { ...admitted, signal });
  }

  /** The arguments with the application as driver is to be told of it. */
  async #admitted(row: ToolRow, given: Arguments, signal: AbortSignal): Promise<Arguments> {
    if (row.command === "focus-release")
      await this.applications.admitted(this.mac, `pid:${given["pid"]}`, signal);
    if (typeof given["app"] !== "string") return given;
    return { ...given, app: await this.applications.admitted(this.mac, given["app"], signal) };
  }

  #macFor(row: ToolRow, given: Arguments, signal: AbortSignal): Promise<Mac> {
    if (puttingRight.has(row.command)) return Promise.resolve(this.mac);
    if (!row.acts) return this.sharing.beside();
    return this.sharing.marked(String(given["app"]), given["scope"] as string | undefined, signal);
  }

  async #picture(given: Arguments, signal: AbortSignal): Promise<Told | CallToolResult> {
    const mac = await this.sharing.beside();
    const folder = await mkdtemp(join(tmpdir(), "driver-mcp-"));
    try {
      const path = join(folder, "picture.png");
      const told = await mac.capture(String(given["app"]), path, {
        signal,
        scope: given["scope"] as string | undefined
      });
      if (!("anchor" in told)) return { ...told };
      const { fitted } = await import("./pictures.js");
      const { png, width, height } = fitted(
        await readFile(path),
        Number(given["longestSide"] ?? this.longestSide)
      );
      const { rect } = told;
      const picture = {
        width,
        height,
        pointsPerPixelX: rect.width / width,
        pointsPerPixelY: rect.height / height
      };
      const result = resultOf({ ...told, picture });
      const image = { type: "image" as const, mimeType: "image/png", data: png.toString("base64") };
      return { ...result, content: [image, ...result.content] };
    } finally {
      await rm(folder, { recursive: true });
    }
  }

  async #wait(given: Arguments, signal: AbortSignal): Promise<Told> {
    const mac = await this.sharing.beside();
    const texts = given["texts"] as string[];
    const scope = given["scope"] as string | undefined;
    const seconds = Number(given["secondsMax"] ?? 10);
    let missing = texts;
    const shown = async () => {
      const told = await mac.axFindText(String(given["app"]), texts, { signal, scope });
      missing = texts.filter((text) => (told.counts[text] ?? 0) === 0);
      return missing.length === 0 ? told : undefined;
    };
    try {
      return { ...(await mac.until(shown, { timeoutMs: seconds * 1000, signal })) };
    } catch (error) {
      if (!(error instanceof TimedOutError) || error.command !== "until") throw error;
      throw new Refusal(
        "not-shown",
        `not all of the texts were shown within ${seconds} seconds`,
        "Look at what is shown, and decide anew.",
        { seconds: String(seconds), missing: missing.map((text) => JSON.stringify(text)).join(", ") }
      );
    }
  }
}

function resultOf(told: Told): CallToolResult {
  return { structuredContent: told, content: [{ type: "text", text: JSON.stringify(told) }] };
}
