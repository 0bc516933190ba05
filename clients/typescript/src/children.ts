import { spawn, type ChildProcess } from "node:child_process";

/** How long a child that was told to end may take: driver itself needs 550 ms at most. */
const endMillisecondsMax = 3000;

const signals: NodeJS.Signals[] = ["SIGTERM", "SIGINT", "SIGHUP"];
const children = new Set<ChildProcess>();
const told = new WeakSet<ChildProcess>();

function ended(child: ChildProcess): Promise<void> {
  if (child.exitCode !== null || child.signalCode !== null) return Promise.resolve();
  return new Promise((resolve) => child.once("exit", () => resolve()));
}

/** Once, whoever asks: at a second signal driver ends at once, and gives nothing back. */
function tellToEnd(child: ChildProcess): void {
  if (told.has(child)) return;
  told.add(child);
  child.kill("SIGTERM");
}

/** Ends a child so that it gives back what it has borrowed, and returns when it has ended. */
export async function endChild(child: ChildProcess): Promise<void> {
  if (child.pid === undefined) return;
  tellToEnd(child);
  const patience = setTimeout(() => child.kill("SIGKILL"), endMillisecondsMax);
  await ended(child);
  clearTimeout(patience);
}

function tellAll(): void {
  for (const child of children) tellToEnd(child);
}

// A caller that is told to end first lets its children end; then the signal has its ordinary effect,
// unless the caller handles it by itself.
async function endWithSignal(signal: NodeJS.Signals): Promise<void> {
  const isOurs = process.listenerCount(signal) === 1;
  await Promise.all([...children].map(endChild));
  if (!isOurs) return;
  stopListening();
  process.kill(process.pid, signal);
}

const handlers = new Map(signals.map((signal) => [signal, () => void endWithSignal(signal)]));

function listen(): void {
  process.on("exit", tellAll);
  for (const [signal, handler] of handlers) process.on(signal, handler);
}

function stopListening(): void {
  process.off("exit", tellAll);
  for (const [signal, handler] of handlers) process.off(signal, handler);
}

/** Starts a child that ends with this process, however that ends but by SIGKILL. */
export function startChild(file: string, words: string[], environment: NodeJS.ProcessEnv,
  cwd?: string): ChildProcess {
  const child = spawn(file, words, { cwd, env: environment, stdio: ["pipe", "pipe", "pipe"] });
  if (children.size === 0) listen();
  children.add(child);
  const forget = () => {
    if (children.delete(child) && children.size === 0) stopListening();
  };
  child.once("exit", forget);
  child.once("error", forget);
  // A child that has gone takes no lines any more; what it said last is read.
  child.stdin?.on("error", () => undefined);
  return child;
}
