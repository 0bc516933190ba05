import type { RequestHandlerExtra } from "@modelcontextprotocol/sdk/shared/protocol.js";
import type { ServerNotification, ServerRequest } from "@modelcontextprotocol/sdk/types.js";

export type Call = RequestHandlerExtra<ServerRequest, ServerNotification>;

const everyMilliseconds = 1000;

/** Does the work, and tells a host that asked for it once a second how long that has taken. */
export async function withProgress<Result>(
  call: Call,
  secondsMax: number | undefined,
  work: () => Promise<Result>
): Promise<Result> {
  const progressToken = call._meta?.progressToken;
  if (progressToken === undefined) return work();
  let seconds = 0;
  const tell = () => {
    const params = {
      progressToken,
      progress: ++seconds,
      ...(secondsMax === undefined ? {} : { total: secondsMax })
    };
    // A host that has gone hears nothing any more.
    call.sendNotification({ method: "notifications/progress", params }).catch(() => undefined);
  };
  const timer = setInterval(tell, everyMilliseconds);
  try {
    return await work();
  } finally {
    clearInterval(timer);
  }
}
