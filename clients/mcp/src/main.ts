#!/usr/bin/env node
import { readFileSync } from "node:fs";
import { StdioServerTransport } from "@modelcontextprotocol/sdk/server/stdio.js";
import { optionsIn, usage, UsageError, type Options } from "./options.js";
import { DriverServer } from "./server.js";

const signals: NodeJS.Signals[] = ["SIGTERM", "SIGINT", "SIGHUP"];

/** How long all that was begun may take to end. What has not ended then is told to by the exit. */
const endMillisecondsMax = 3000;

function version(): string {
  const text = readFileSync(new URL("../package.json", import.meta.url), "utf8");
  return (JSON.parse(text) as { version: string }).version;
}

async function serve(options: Options): Promise<void> {
  const server = new DriverServer(options, version());
  const end = async (signal?: NodeJS.Signals) => {
    setTimeout(() => process.exit(1), endMillisecondsMax).unref();
    await server.close();
    // Without standard input nothing keeps the process; what is still to be written is.
    process.stdin.destroy();
    if (signal === undefined) return;
    process.removeAllListeners(signal);
    process.kill(process.pid, signal);
  };
  for (const signal of signals) process.on(signal, () => void end(signal));
  // The other side goes by closing either pipe.
  process.stdin.once("end", () => void end());
  process.stdin.once("close", () => void end());
  process.stdout.on("error", () => void end());
  server.onclose = () => void end();
  await server.connect(new StdioServerTransport());
}

try {
  await serve(optionsIn(process.argv.slice(2)));
} catch (error) {
  if (!(error instanceof UsageError)) throw error;
  // Standard output is the protocol's alone.
  process.stderr.write(`${error.message}\n${usage}`);
  process.exitCode = 2;
}
