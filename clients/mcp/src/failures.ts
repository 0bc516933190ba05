import { ErrorCode, type CallToolResult } from "@modelcontextprotocol/sdk/types.js";
import {
  CommandError,
  DriverError,
  NoReplyError,
  ServiceEndedError,
  TimedOutError
} from "driver-client";

/** What a tool says that has not done, or not wholly done, what it was to do. */
export interface Failure {
  [key: string]: unknown;
  ok: false;
  /** The failure's stable name: driver's, or one of this server's own. */
  id: string;
  error: string;
  parts: Record<string, string>;
  remedy: string;
  /** The whole reply of driver, if it is driver that refused. */
  reply?: object;
}

/** A refusal of this server's own. */
export class Refusal extends DriverError {
  constructor(
    readonly id: string,
    message: string,
    readonly remedy: string,
    readonly parts: Record<string, string> = {}
  ) {
    super(message);
  }
}

/** An error of the protocol: what was asked for does not exist. */
export class NotThere extends Error {
  readonly code = ErrorCode.InvalidParams;
}

/** An error of the protocol, for what is no tool: a failure with its remedy. */
export class NotTold extends Error {
  readonly code = ErrorCode.InternalError;

  constructor(readonly data: Failure) {
    super(`${data.error}. What to do: ${data.remedy}`);
  }
}

function failure(
  id: string,
  error: string,
  remedy: string,
  parts: Record<string, string> = {}
): Failure {
  return { ok: false, id, error, parts, remedy };
}

/** The failure that an error tells; throws what is none, a mistake in this program. */
export function failureOf(error: unknown): Failure {
  if (error instanceof CommandError) {
    return { ...failure(error.id, error.text, error.remedy, error.parts), reply: error.reply };
  }
  if (error instanceof Refusal) return failure(error.id, error.message, error.remedy, error.parts);
  if (error instanceof TimedOutError) {
    return failure(
      "timed-out",
      error.message,
      "Look at the target before doing it again: a part may be done."
    );
  }
  if (error instanceof ServiceEndedError) {
    return failure(
      "service-ended",
      error.message,
      "Look at the target before doing it again: a part may be done."
    );
  }
  if (error instanceof NoReplyError) {
    return failure(
      "no-reply",
      error.message,
      "Install driver so that it is in the PATH, or name it with --driver."
    );
  }
  throw error;
}

/** A failure as a tool's result: for a model in words, for a program as the schema has it. */
export function failed(told: Failure): CallToolResult {
  return {
    isError: true,
    structuredContent: told,
    content: [
      { type: "text", text: `${told.error}\nWhat to do: ${told.remedy}` },
      { type: "text", text: JSON.stringify(told) }
    ]
  };
}
