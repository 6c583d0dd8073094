-- Ombrel in Neovim 0.7 and newer, by the language server ombrel-lsp:
--
--     require('ombrel').setup({ format_on_save = true })
local M = {}

local options = {
    cmd = { 'ombrel-lsp' },
    -- What the server gets: `engine` and `options`, which apply only where no options file says anything.
    settings = {},
    format_on_save = false,
    -- Milliseconds that saving waits for the server.
    timeout = 5000,
}

local function find_root(file)
    local folder = vim.fn.fnamemodify(file, ':p:h')
    local config = vim.fn.findfile('.ombrel-format.json', folder .. ';')
    if config ~= '' then
        return vim.fn.fnamemodify(config, ':p:h')
    end
    local repository = vim.fn.finddir('.git', folder .. ';')
    return repository == '' and folder or vim.fn.fnamemodify(repository, ':p:h:h')
end

-- Before Neovim 0.8 nothing remembers which server belongs to a folder.
local servers = {}

local function start_old(config, buffer)
    local root = config.root_dir
    config.on_exit = function()
        servers[root] = nil
    end
    servers[root] = servers[root] or vim.lsp.start_client(config)
    vim.lsp.buf_attach_client(buffer, servers[root])
    vim.bo[buffer].omnifunc = 'v:lua.vim.lsp.omnifunc'
end

local function start(config, buffer)
    if vim.lsp.start then
        vim.lsp.start(config, { bufnr = buffer })
    else
        start_old(config, buffer)
    end
end

--- Formats a buffer and waits for it. Lines from `first` to `last` if they are given, counted from 1.
function M.format(buffer, first, last)
    local params = vim.lsp.util.make_formatting_params()
    params.textDocument = { uri = vim.uri_from_bufnr(buffer) }
    local method = 'textDocument/formatting'
    if first then
        local text = vim.api.nvim_buf_get_lines(buffer, last - 1, last, false)[1]
        method = 'textDocument/rangeFormatting'
        params.range = {
            start = { line = first - 1, character = 0 },
            -- At least the end of the line, whatever a character is measured in.
            ['end'] = { line = last - 1, character = #text },
        }
    end
    local answers, problem = vim.lsp.buf_request_sync(buffer, method, params, options.timeout)
    if not answers then
        vim.notify('ombrel-lsp: ' .. problem, vim.log.levels.WARN)
        return
    end
    for id, answer in pairs(answers) do
        local server = vim.lsp.get_client_by_id(id)
        if answer.result and server and server.name == 'ombrel' then
            vim.lsp.util.apply_text_edits(answer.result, buffer, server.offset_encoding)
        elseif answer.error or answer.err then
            vim.notify('ombrel-lsp: ' .. (answer.error or answer.err).message, vim.log.levels.WARN)
        end
    end
end

--- Shows the options that apply to a buffer, and where each comes from, in a window of its own.
function M.show_options(buffer)
    local params = vim.lsp.util.make_formatting_params()
    params.textDocument = { uri = vim.uri_from_bufnr(buffer) }
    local answers, problem = vim.lsp.buf_request_sync(buffer, 'ombrel/options', params, options.timeout)
    local _, answer = next(answers or {})
    if not answer or not answer.result then
        vim.notify('ombrel-lsp: ' .. (problem or 'no answer'), vim.log.levels.WARN)
        return
    end
    vim.cmd('new')
    vim.bo.buftype, vim.bo.bufhidden, vim.bo.swapfile = 'nofile', 'wipe', false
    vim.api.nvim_buf_set_lines(0, 0, -1, false, vim.split(answer.result.text, '\n', { trimempty = true }))
end

--- For 'formatexpr', so that gq formats the lines of a motion or a selection.
function M.formatexpr()
    if vim.tbl_contains({ 'i', 'R', 'ic', 'ix' }, vim.fn.mode()) then
        return 1
    end
    M.format(0, vim.v.lnum, vim.v.lnum + vim.v.count - 1)
    return 0
end

--- Connects a buffer with the server of its folder, which is started if there is none.
function M.attach(buffer)
    if vim.fn.executable(options.cmd[1]) == 0 then
        vim.notify_once(
            options.cmd[1] .. " isn't a program on the PATH: install ombrel-format, or set `cmd` in ombrel.setup",
            vim.log.levels.ERROR
        )
        return
    end
    local root = find_root(vim.api.nvim_buf_get_name(buffer))
    start({
        name = 'ombrel',
        cmd = options.cmd,
        root_dir = root,
        workspace_folders = { { uri = vim.uri_from_fname(root), name = root } },
        init_options = options.settings,
        settings = { ombrel = options.settings },
    }, buffer)
    if vim.bo[buffer].filetype == 'ombrel' then
        vim.bo[buffer].formatexpr = "v:lua.require'ombrel'.formatexpr()"
        vim.api.nvim_buf_create_user_command(buffer, 'OmbrelOptions', function()
            M.show_options(buffer)
        end, { desc = 'Show the options that apply to this file' })
    end
end

function M.setup(wanted)
    options = vim.tbl_deep_extend('force', options, wanted or {})
    local group = vim.api.nvim_create_augroup('ombrel', {})
    vim.api.nvim_create_autocmd('FileType', {
        group = group,
        pattern = 'ombrel',
        callback = function(event)
            M.attach(event.buf)
        end,
    })
    vim.api.nvim_create_autocmd({ 'BufRead', 'BufNewFile' }, {
        group = group,
        pattern = '.ombrel-format.json',
        callback = function(event)
            M.attach(event.buf)
        end,
    })
    vim.api.nvim_create_autocmd('BufWritePre', {
        group = group,
        pattern = '*.omb',
        callback = function(event)
            if options.format_on_save then
                M.format(event.buf)
            end
        end,
    })
end

return M
