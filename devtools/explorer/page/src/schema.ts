// The JSON Schema of options files, as far as it describes single options.

export interface ConstructTree {
  name: string;
  members: ConstructTree[]; // none: a construct, and otherwise a group
}

interface OptionBase {
  section: string; // empty for the top level
  key: string;
  name: string; // "line.indentSize"
  description: string;
  factory: OptionValue;
}

export interface WordOption extends OptionBase {
  type: "word";
  words: string[];
}

export interface ConstructOption extends OptionBase {
  type: "construct";
  words: string[];
  constructs: ConstructTree;
}

export interface NumberOption extends OptionBase {
  type: "number";
  low: number;
  high: number;
}

export interface BooleanOption extends OptionBase {
  type: "boolean";
}

export type Option = WordOption | ConstructOption | NumberOption | BooleanOption;

export interface WordTree {
  [name: string]: string | WordTree;
}

export type OptionValue = string | number | boolean | WordTree;

export interface Section {
  name: string;
  description: string;
  options: Option[];
}

type Schema = Record<string, unknown>;

function isSchema(value: unknown): value is Schema {
  return typeof value === "object" && value !== null && !Array.isArray(value);
}

function getSchema(value: unknown): Schema {
  if (!isSchema(value)) {
    throw new Error("the schema of the options isn't as expected");
  }
  return value;
}

function getWords(schema: Schema): string[] {
  return Array.isArray(schema.enum) ? schema.enum.filter((word) => typeof word === "string") : [];
}

/** The words, and the tree of constructs, of a schema that is a word for all or an object with one for each. */
function getAlternatives(schema: Schema): { words: string[]; group: Schema | null } {
  const alternatives = Array.isArray(schema.anyOf) ? schema.anyOf.filter(isSchema) : [schema];
  const words = alternatives.flatMap(getWords);
  return { words, group: alternatives.find((alternative) => alternative.type === "object") ?? null };
}

function makeConstructs(name: string, schema: Schema): ConstructTree {
  const { group } = getAlternatives(schema);
  const members = group === null ? [] : Object.entries(getSchema(group.properties));
  return { name, members: members.map(([member, inner]) => makeConstructs(member, getSchema(inner))) };
}

function makeOption(section: string, key: string, schema: Schema): Option {
  const base = {
    section,
    key,
    name: section === "" ? key : `${section}.${key}`,
    description: String(schema.description),
    factory: schema.default as OptionValue,
  };
  if (schema.type === "boolean") {
    return { ...base, type: "boolean" };
  }
  if (schema.type === "integer") {
    return { ...base, type: "number", low: Number(schema.minimum), high: Number(schema.maximum) };
  }
  const { words, group } = getAlternatives(schema);
  return group === null
    ? { ...base, type: "word", words }
    : { ...base, type: "construct", words, constructs: makeConstructs("", schema) };
}

/** The sections of options, the one without a name for the options of the top level. */
export function readSections(json: unknown): Section[] {
  const definitions = getSchema(getSchema(json).$defs);
  const sections: Section[] = [{ name: "", description: "", options: [] }];
  for (const [name, definition] of Object.entries(definitions)) {
    const schema = getSchema(definition);
    if (schema.type === "object") {
      const options = Object.entries(getSchema(schema.properties)).map(([key, value]) =>
        makeOption(name, key, getSchema(value)),
      );
      sections.push({ name, description: String(schema.description), options });
    } else {
      sections[0]?.options.push(makeOption("", name, schema));
    }
  }
  return sections;
}
