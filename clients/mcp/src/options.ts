import { parseArgs } from "node:util";

/** What one connection may do, and with what. */
export interface Options {
  /** The applications that may be seen and operated; all of them if there are none. */
  apps: string[];
  /** The window scope of every tool. */
  windows?: string | undefined;
  readOnly: boolean;
  noInput: boolean;
  driver: string;
  /** How many pixels the longer side of a picture has at most, where a call does not say. */
  longestSide: number;
}

export const usage = `usage: driver-mcp [--apps A,B…] [--windows TITLE] [--read-only] [--no-input]
                  [--driver PATH] [--longest-side PIXELS]

Serves driver's commands as tools, over the Model Context Protocol on standard input and output.

  --apps A,B…      only these applications: bundle identifiers or names; may be repeated
  --windows TITLE  only windows whose title, split at " — ", has this piece
  --read-only      only what changes nothing
  --no-input       nothing that posts input events
  --driver PATH    the driver that is run; without it the one in the PATH
  --longest-side PIXELS
                   how large pictures are at most, 1200 without it
`;

/** Words of the command line that make no sense. */
export class UsageError extends Error {}

const known = {
  apps: { type: "string", multiple: true },
  windows: { type: "string" },
  "read-only": { type: "boolean" },
  "no-input": { type: "boolean" },
  driver: { type: "string" },
  "longest-side": { type: "string" }
} as const;

function valuesIn(words: string[]) {
  try {
    return parseArgs({ args: words, options: known, strict: true, allowPositionals: false }).values;
  } catch (error) {
    throw new UsageError((error as Error).message);
  }
}

function pixelsIn(word: string): number {
  const pixels = Number(word);
  if (!Number.isInteger(pixels) || pixels < 16 || pixels > 8192) {
    throw new UsageError(`--longest-side is a whole number from 16 to 8192, not ${word}`);
  }
  return pixels;
}

export function optionsIn(words: string[]): Options {
  const values = valuesIn(words);
  const apps = (values.apps ?? []).flatMap((list) => list.split(",")).map((app) => app.trim());
  if (apps.includes("")) throw new UsageError("--apps names no application");
  if (values.windows === "") throw new UsageError("--windows is empty");
  return {
    apps,
    windows: values.windows,
    readOnly: values["read-only"] ?? false,
    noInput: values["no-input"] ?? false,
    driver: values.driver ?? "driver",
    longestSide: pixelsIn(values["longest-side"] ?? "1200")
  };
}
