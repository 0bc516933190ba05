import type {
  ReadResourceResult,
  Resource,
  ResourceTemplate
} from "@modelcontextprotocol/sdk/types.js";
import type { Calls } from "./calls.js";
import { failureOf, NotThere, NotTold } from "./failures.js";

const mimeType = "application/json";
const screen = "driver://screen";
const kinds = {
  windows: "the application's windows on screen, front to back",
  tree: "all elements of the application's windows"
} as const;
type Kind = keyof typeof kinds;

export function resources(apps: readonly string[]): Resource[] {
  const ofApps = apps.flatMap((app) =>
    (Object.keys(kinds) as Kind[]).map((kind) => ({
      uri: `driver://${kind}/${encodeURIComponent(app)}`,
      name: `${kind} of ${app}`,
      description: kinds[kind],
      mimeType
    }))
  );
  return [
    {
      uri: screen,
      name: "screen",
      mimeType,
      description:
        "who is in front, where the pointer is, whether the Mac is locked, and what is permitted"
    },
    ...ofApps
  ];
}

export const templates: ResourceTemplate[] = (Object.keys(kinds) as Kind[]).map((kind) => ({
  uriTemplate: `driver://${kind}/{app}`,
  name: kind,
  description: kinds[kind],
  mimeType
}));

async function toldOf(calls: Calls, uri: string, signal: AbortSignal): Promise<object> {
  const mac = await calls.sharing.beside();
  if (uri === screen) {
    return {
      scene: await mac.scene({ signal }),
      session: await mac.session({ signal }),
      permissions: await mac.permissions({ signal })
    };
  }
  const [, kind, name] = /^driver:\/\/(windows|tree)\/([^/]+)$/.exec(uri) ?? [];
  if (kind === undefined || name === undefined) throw new NotThere(`no resource ${uri}`);
  const app = await calls.applications.admitted(calls.mac, decodeURIComponent(name), signal);
  return kind === "windows" ? mac.windows(app, { signal }) : mac.axDump(app, { signal });
}

/** What stands in a resource. A failure is thrown with its remedy. */
export async function contentOf(
  calls: Calls,
  uri: string,
  signal: AbortSignal
): Promise<ReadResourceResult> {
  try {
    return {
      contents: [{ uri, mimeType, text: JSON.stringify(await toldOf(calls, uri, signal)) }]
    };
  } catch (error) {
    if (error instanceof NotThere || signal.aborted) throw error;
    if (error instanceof URIError) throw new NotThere(`no resource ${uri}`);
    throw new NotTold(failureOf(error));
  }
}
