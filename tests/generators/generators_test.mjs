// Other people's validators and generators take the contract: ajv in strict mode, json-schema-to-typescript
// with the TypeScript compiler behind it, and quicktype.
import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { test } from "node:test";
import { Ajv2020 } from "ajv/dist/2020.js";
import { compile } from "json-schema-to-typescript";
import { InputData, JSONSchemaInput, quicktype } from "quicktype-core";
import ts from "typescript";

const contract = new URL("../../packaging/contract/", import.meta.url);
const longestName = 60;

function schemasIn(folder) {
  return readdirSync(new URL(folder, contract)).filter((name) => name.endsWith(".json")).sort()
    .map((name) => ({ name: `${folder}${name}`, text: readFileSync(new URL(folder + name, contract), "utf8") }));
}

const replies = schemasIn("schemas/");
const givenArguments = schemasIn("arguments/");
const all = [...replies, ...givenArguments];

// What may be followed by keys that are not told: a request's own, which the service ignores, and the
// reply to a command within a session.
const open = new Set(["OpenRequest", "CloseRequest", "CommandRequest", "RefreshRequest"]);

async function typesOf({ name, text }) {
  return compile(JSON.parse(text), name, { bannerComment: "", format: false });
}

// The exported declarations of a module, each by its name.
function declarationsOf(module) {
  const file = ts.createSourceFile("module.ts", module, ts.ScriptTarget.Latest, true);
  return new Map(file.statements.map((one) => [one.name.text, one.getText(file)]));
}

// What the compiler says of these modules, each by its name: name, line from 1 and words.
function faultsOf(modules) {
  const options = { noEmit: true, strict: true, types: [], lib: ["lib.es5.d.ts"],
    moduleDetection: ts.ModuleDetectionKind.Force };
  const host = ts.createCompilerHost(options);
  const read = host.getSourceFile;
  host.getSourceFile = (name, ...rest) => modules.has(name)
    ? ts.createSourceFile(name, modules.get(name), { languageVersion: ts.ScriptTarget.Latest })
    : read(name, ...rest);
  const program = ts.createProgram([...modules.keys()], options, host);
  return ts.getPreEmitDiagnostics(program).map((one) => {
    const line = one.file.getLineAndCharacterOfPosition(one.start).line;
    return `${one.file.text.split("\n")[line]}: ${ts.flattenDiagnosticMessageText(one.messageText, "\n")}`;
  });
}

test("ajv in strict mode takes every schema, and the schemas refuse what they should", () => {
  assert.ok(replies.length > 50 && givenArguments.length > 40);
  const ajv = new Ajv2020({ strict: true, allErrors: true });
  for (const { name, text } of all) assert.doesNotThrow(() => ajv.compile(JSON.parse(text)), name);
  const press = ajv.getSchema("urn:driver:ax-menu");
  assert.equal(press({ ok: true, axError: 0, pressed: "File" }), true);
  assert.equal(press({ ok: true, axError: -25204, pressed: "File" }), false);
  const click = ajv.getSchema("urn:driver:bg-click:arguments");
  assert.equal(click({ app: "Notes", x: 1, y: 2, button: "right" }), true);
  for (const wrong of [{}, { app: "Notes", x: 1 }, { app: "Notes", x: 1, y: 2, button: "middle" },
    { app: "Notes", x: 1, y: 2, count: 3 }, { app: "Notes", x: "1", y: 2 }, { app: "Notes", x: 1, y: 2, z: 3 }]) {
    assert.equal(click(wrong), false, JSON.stringify(wrong));
  }
});

test("a title stands for one schema, whichever file it is in, and is short", () => {
  const known = new Map();
  for (const { name, text } of all) {
    const schema = JSON.parse(text);
    for (const one of [schema, ...(schema.anyOf ?? [])]) {
      assert.match(one.title, /^[A-Z][A-Za-z0-9]*$/, name);
      assert.ok(one.title.length <= longestName, one.title);
      const written = JSON.stringify(one);
      assert.equal(known.get(one.title) ?? written, written, `${name}: ${one.title}`);
      known.set(one.title, written);
    }
  }
});

test("json-schema-to-typescript gives exact types that compile, all in one module", async () => {
  const declared = new Map();
  for (const schema of all) {
    for (const [name, text] of declarationsOf(await typesOf(schema))) {
      assert.ok(name.length <= longestName, name);
      assert.equal(declared.get(name) ?? text, text, `${schema.name}: ${name}`);
      declared.set(name, text);
      if (!open.has(name) && name !== "CaptureServiceAnswered") assert.doesNotMatch(text, /: unknown\b/, name);
    }
  }
  const uses = `
    declare const press: AxPressReply;
    export const label: string = press.ok ? press.element.label : "";
    export const code: 0 | undefined = press.ok ? press.axError : undefined;
    declare const listed: AxListSuccess;
    export const frame: number = listed.elements[0]!.frame.x;
    export const disabled: true | undefined = listed.elements[0]!.disabled;
    export const click: BgClickArguments = { app: "Notes", x: 1, y: 2, button: "right" };
    export const step: AxSliderArguments = { app: "Notes", label: "Size", value: "increment" };
    export const request: CommandRequest = { op: "command", session: "n", args: ["bg-move", "Notes", "1", "2"] };
`;
  const wrong = [
    "export const a: AxPressArguments = { app: 'Notes', x: 1 };",
    "export const b: BgClickArguments = { app: 'Notes', x: 1, y: 2, button: 'middle' };",
    "declare const r: AxPressReply; export const c = r.element;",
    "declare const e: Element; export const d = e.surprise;",
    "export const f: CommandRequest = { op: 'command', session: 'n', args: ['bg-move'] };"];
  const module = [...declared.values(), uses, ...wrong].join("\n");
  const faults = faultsOf(new Map([["module.ts", module]]));
  assert.deepEqual(faults.map((fault) => fault.slice(0, fault.indexOf(";: ") + 1)), wrong);
});

test("quicktype gives a type with every key of a reply", async () => {
  const modules = new Map();
  for (const { name, text } of replies) {
    const input = new JSONSchemaInput(undefined);
    await input.addSource({ name: "Reply", schema: text });
    const data = new InputData();
    data.addInput(input);
    const { lines } = await quicktype({ inputData: data, lang: "typescript", rendererOptions: { "just-types": true } });
    const schema = JSON.parse(text);
    const module = lines.join("\n");
    const keys = [...schema.anyOf, ...Object.values(schema.$defs ?? {})].flatMap((one) => Object.keys(one.properties ?? {}));
    for (const key of keys) assert.match(module, new RegExp(`^ +"?${key}"?\\??:`, "m"), `${name}: ${key}`);
    modules.set(`${name}.ts`, module);
  }
  assert.deepEqual(faultsOf(modules), []);
});
