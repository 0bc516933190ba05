import type { Mac } from "driver-client";
import { Refusal } from "./failures.js";

/** The applications that one connection may see and operate. */
export class Applications {
  readonly #allowed: string[];

  /** Bundle identifiers or names; without any all are allowed. */
  constructor(allowed: string[]) {
    this.#allowed = allowed;
  }

  get names(): readonly string[] {
    return this.#allowed;
  }

  /**
   * What driver is to call the application: as it was called if it is allowed by just that name,
   * otherwise by the process that was found under it. Throws when it is not allowed.
   */
  async admitted(mac: Mac, app: string, signal: AbortSignal): Promise<string> {
    if (this.#allowed.length === 0 || this.#allowed.includes(app)) return app;
    const told = await mac.windows(app, { signal });
    if (told.running && [told.bundleId, told.name].some((one) => this.#allowed.includes(one))) {
      return `pid:${told.pid}`;
    }
    throw new Refusal(
      "app-not-allowed",
      `${app} is not among the applications of this connection`,
      `Use one of these: ${this.#allowed.join(", ")}. Others are the user's to allow, with --apps.`,
      { app }
    );
  }
}
