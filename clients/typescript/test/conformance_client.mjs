// The client as a process that is told what to do by lines of JSON: for conformance_test.py.
import { createInterface } from "node:readline";
import { CommandError, Mac, NoReplyError } from "driver-client";

/** What the client gives, or the reply of the failure that it throws. */
async function replyOf(work) {
  try {
    return await work();
  } catch (error) {
    if (!(error instanceof CommandError)) throw error;
    return error.reply;
  }
}

let talking;

const deeds = {
  run: ({ command, given, environment, scope, capturePid }) =>
    replyOf(() => new Mac({ environment, scope, capturePid }).run(command, given)),

  async talk({ command, words, environment }) {
    const mac = new Mac({ environment });
    if (command === "capture-service") {
      talking = await mac.startCaptureService(...words);
      return { ok: true, pid: talking.pid };
    }
    const start = {
      "keep-awake": "keepAwake",
      "lock-guard": "lockGuard",
      "watch-input": "watchInput"
    };
    talking = mac[start[command]](...words);
    return replyOf(() => talking.line());
  },

  ask: ({ request }) => replyOf(() => talking.ask(request)),

  /** The lines that were left. */
  async end() {
    const rest = await talking.end();
    talking = undefined;
    return rest ?? [];
  }
};

for await (const line of createInterface({ input: process.stdin })) {
  const told = JSON.parse(line);
  const answer = await deeds[told.do](told).then(
    (gives) => ({ gives }),
    (error) => {
      if (!(error instanceof NoReplyError)) throw error;
      return { error: error.message };
    }
  );
  process.stdout.write(`${JSON.stringify(answer)}\n`);
}
