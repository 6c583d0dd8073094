use zed_extension_api::{self as zed, settings::LspSettings, LanguageServerId, Result};

/// Starts the language server that is on the PATH of the worktree's shell.
struct Ombrel;

impl zed::Extension for Ombrel {
    fn new() -> Self {
        Ombrel
    }

    fn language_server_command(&mut self, _: &LanguageServerId, worktree: &zed::Worktree) -> Result<zed::Command> {
        let command = worktree
            .which("ombrel-lsp")
            .ok_or("ombrel-lsp isn't on the PATH: install ombrel-format, which comes with it")?;
        Ok(zed::Command { command, args: vec![], env: worktree.shell_env() })
    }

    /// The user's `lsp.ombrel-lsp.initialization_options`.
    fn language_server_initialization_options(
        &mut self,
        server: &LanguageServerId,
        worktree: &zed::Worktree,
    ) -> Result<Option<zed::serde_json::Value>> {
        Ok(LspSettings::for_worktree(server.as_ref(), worktree)?.initialization_options)
    }
}

zed::register_extension!(Ombrel);
