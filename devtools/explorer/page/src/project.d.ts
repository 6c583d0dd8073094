declare module "project:examples" {
  /** The project's example programs, the one to start with first. */
  const examples: { name: string; text: string }[];
  export default examples;
}

declare module "project:options" {
  /** The document that explains the options of the tree engine, in Markdown. */
  const text: string;
  export default text;
}

/** Of the program that serves this page. */
declare const VERSION: string;
