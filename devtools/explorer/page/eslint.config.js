import tseslint from "typescript-eslint";

// Whatever a text says, it reaches the page as text. So nothing here may make elements of strings.
const sinks = ["innerHTML", "outerHTML", "srcdoc", "insertAdjacentHTML", "createContextualFragment", "parseFromString",
  "setHTML", "setHTMLUnsafe", "write", "writeln", "setAttributeNS"];

const rules = sinks.flatMap((name) => [
  { selector: `MemberExpression[property.name='${name}']:not([object.property.name='clipboard'])`, message: `${name} makes elements of text` },
  { selector: `MemberExpression[computed=true][property.value='${name}']`, message: `${name} makes elements of text` },
]);

export default tseslint.config(...tseslint.configs.recommendedTypeChecked, {
  languageOptions: { parserOptions: { projectService: true, tsconfigRootDir: import.meta.dirname } },
  rules: {
    "no-eval": "error",
    "no-implied-eval": "off",
    "@typescript-eslint/no-implied-eval": "error",
    "no-new-func": "error",
    "no-script-url": "error",
    "@typescript-eslint/no-floating-promises": ["error", { ignoreVoid: true }],
    "no-restricted-syntax": ["error", ...rules],
  },
});
