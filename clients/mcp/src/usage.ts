import { AjvJsonSchemaValidator } from "@modelcontextprotocol/sdk/validation/ajv";
import type { JsonSchemaType } from "@modelcontextprotocol/sdk/validation";
import { Refusal } from "./failures.js";
import type { ToolRow } from "./tools.js";

type Schema = Record<string, unknown>;
type Arguments = Record<string, unknown>;

const validators = new Map<string, (given: unknown) => string | undefined>();
const provider = new AjvJsonSchemaValidator();

function typeOf(schema: Schema): string {
  if (Array.isArray(schema["enum"]))
    return schema["enum"].map((one) => JSON.stringify(one)).join("|");
  if (Array.isArray(schema["anyOf"])) return (schema["anyOf"] as Schema[]).map(typeOf).join("|");
  if (schema["type"] === "array") return `[${typeOf(schema["items"] as Schema)}…]`;
  return String(schema["type"]);
}

/**
 * How a tool is called: `point_move {"app": string, "x": number, "y": number, "scope"?: string}`.
 */
export function usageOf(row: ToolRow): string {
  const required = row.inputSchema.required ?? [];
  const members = Object.entries(row.inputSchema.properties ?? {}).map(
    ([name, schema]) =>
      `"${name}"${required.includes(name) ? "" : "?"}: ${typeOf(schema as Schema)}`
  );
  return `${row.name} {${members.join(", ")}}`;
}

function validatorOf(row: ToolRow): (given: unknown) => string | undefined {
  const known = validators.get(row.name);
  if (known !== undefined) return known;
  const validate = provider.getValidator<Arguments>(row.inputSchema as JsonSchemaType);
  const made = (given: unknown) => validate(given).errorMessage;
  validators.set(row.name, made);
  return made;
}

/** Throws the usage when the tool cannot be called so. */
export function checkArguments(row: ToolRow, given: Arguments): void {
  const wrong = validatorOf(row)(given);
  if (wrong === undefined) return;
  throw new Refusal(
    "usage",
    `${row.name}: ${wrong.replace(/\bdata(?=[ /])/g, "arguments")}. Usage: ${usageOf(row)}`,
    "Call it as the usage says."
  );
}
