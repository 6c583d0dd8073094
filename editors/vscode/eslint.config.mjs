import tseslint from 'typescript-eslint';

export default tseslint.config(
    { ignores: ['dist/', 'eslint.config.mjs'] },
    tseslint.configs.strictTypeChecked,
    {
        languageOptions: { parserOptions: { projectService: true, tsconfigRootDir: import.meta.dirname } },
        rules: { '@typescript-eslint/restrict-template-expressions': ['error', { allowNumber: true }] },
    },
);
