export type * from "./contract.js";
export { App, Commands } from "./commands.js";
export { ordinaryClock, type Clock } from "./clock.js";
export { CommandError, DriverError, HungError, NoReplyError, ServiceEndedError, TimedOutError, WaitedInVainError, type Reply } from "./errors.js";
export { InputWatch, KeepAwake, LockGuard, type GuardOptions } from "./guard.js";
export { Mac, type MacOptions } from "./mac.js";
export type { RunOptions } from "./run.js";
export { CaptureService, CaptureSession } from "./service.js";
