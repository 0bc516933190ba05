import { setTimeout as pause } from "node:timers/promises";

/** The time in which applications are waited for: this machine's, or that of a simulated Mac. */
export interface Clock {
  /** Milliseconds since any one moment. */
  now(): Promise<number>;
  sleep(milliseconds: number, signal?: AbortSignal): Promise<void>;
}

export const ordinaryClock: Clock = {
  now: () => Promise.resolve(performance.now()),
  sleep: (milliseconds, signal) => pause(milliseconds, undefined, signal ? { signal } : {}),
};
