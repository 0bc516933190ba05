import * as contract from "./contract.js";
import { Lines } from "./lines.js";
import { checkWord } from "./run.js";

/** What the cover says and how long the user may come back without a lock. */
export interface GuardOptions {
  graceSeconds?: number;
  operating?: boolean;
  /** The persona's picture, a file, and the name by which the cover calls the user. */
  face?: string;
  name?: string;
  language?: (typeof contract.guardLanguages)[number];
}

export function guardEnvironment(options: GuardOptions): NodeJS.ProcessEnv {
  if (options.language !== undefined) checkWord("language", contract.guardLanguages, options.language);
  return {
    ...(options.graceSeconds === undefined ? {} : { ZENTROVE_COVER_GRACE: String(options.graceSeconds) }),
    ...(options.operating === true ? { ZENTROVE_COVER_OPERATING: "1" } : {}),
    ...(options.face === undefined ? {} : { ZENTROVE_COVER_FACE: options.face }),
    ...(options.name === undefined ? {} : { ZENTROVE_COVER_NAME: options.name }),
    ...(options.language === undefined ? {} : { ZENTROVE_DESK_LANG: options.language }),
  };
}

type GuardEnd = contract.LockGuardEnded | contract.LockGuardLeftUnlocked;

/** The covered Mac. Its lines come one by one; its end, and this process's, lock the screen. */
export class LockGuard extends Lines<contract.LockGuardCovered | GuardEnd> {
  operating(): void { this.say("operating"); }
  minding(): void { this.say("minding"); }

  /** Ends the guard, which locks. `relocked` false of the last line: the system would not. */
  async lock(): Promise<GuardEnd | undefined> {
    return (await this.end()).at(-1) as unknown as GuardEnd | undefined;
  }
}

/** A shell's program: runs its words until they end, or standard input does, and with it whoever holds
 * the other end of that. */
export const endedWithInput = [
  'exec 3<&0',
  '"$0" "$@" 3<&- & child=$!',
  '(read -r _ <&3; kill "$child") >/dev/null 2>&1 & reader=$!',
  'trap "kill $child" TERM INT HUP',
  'wait "$child"; wait "$child"; kill "$reader" 2>/dev/null',
].join("\n");

/** The display, kept awake until `end`. */
export class KeepAwake extends Lines<contract.KeepAwakeSuccess> {}

/** The user's own input: a first line, then one for each input. Breaking off ends the watching. */
export class InputWatch extends Lines<
  contract.WatchInputWatching | contract.WatchInputWatchingApp | contract.WatchInputInput> {}
