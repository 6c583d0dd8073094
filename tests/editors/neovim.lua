-- Neovim with editors/neovim and editors/vim in its runtime path, and the real server. Started in an empty folder; prints
-- "# pass N", or what went wrong and exits with 1.
local sources = vim.env.OMBREL_SOURCES
vim.o.swapfile = false
vim.opt.runtimepath:prepend({ sources .. '/editors/neovim', sources .. '/editors/vim' })
vim.cmd('filetype off | filetype plugin on | syntax on') -- reads ftdetect again
require('ombrel').setup({
    cmd = { vim.env.OMBREL_PROGRAMS .. '/ombrel-lsp' },
    settings = { options = { line = { indentSize = 3 } } },
    format_on_save = true,
})

local passed = 0
local slanted = { 'if a', 'x=1; %  ä𝄞', ' if b', 'y', 'end', ' end' }

local function indent(size)
    local levels = { 0, 1, 1, 2, 1, 0 }
    local lines = {}
    for index, line in ipairs(slanted) do
        lines[index] = (' '):rep(levels[index] * size) .. vim.trim(line)
    end
    return lines
end

local function expect(wanted, found, what)
    if not vim.deep_equal(wanted, found) then
        error(('%s: expected %s, found %s'):format(what, vim.inspect(wanted), vim.inspect(found)), 2)
    end
    passed = passed + 1
end

local function wait_for(what, condition)
    if not vim.wait(20000, condition, 20) then
        error('waited for ' .. what, 2)
    end
    passed = passed + 1
end

local function lines()
    return vim.api.nvim_buf_get_lines(0, 0, -1, false)
end

local function open(name, text)
    vim.fn.writefile(text, name)
    vim.cmd('edit! ' .. name)
    wait_for('the server of ' .. name, function()
        local client = vim.tbl_values(vim.lsp.buf_get_clients(0))[1]
        return client and client.initialized
    end)
end

local function run()
    open('a.omb', slanted)
    require('ombrel').format(0)
    expect(indent(3), lines(), 'format with settings')

    open('b.omb', slanted)
    vim.cmd('normal! 2GgqG')
    expect(indent(3), lines(), 'gq')
    vim.cmd('silent undo')
    expect(slanted, lines(), 'undo')
    require('ombrel').format(0, 2, 3)
    expect({ 'if a', '   x=1; %  ä𝄞', '   if b', 'y', 'end', ' end' }, lines(), 'range')

    -- Typed text is synchronized: the server has to know of it before it formats.
    vim.cmd('normal! Goy = "𝄞";')
    vim.cmd('normal! 2G0i𝄞\u{301}% ')
    require('ombrel').format(0)
    local expected = indent(3)
    expected[2] = '   𝄞\u{301}%    x=1; %  ä𝄞'
    expected[7] = 'y = "𝄞";'
    expect(expected, lines(), 'after typing')

    for _, size in ipairs({ 2, 5 }) do
        vim.fn.writefile({ ('{"line": {"indentSize": %d}}'):format(size) }, '.ombrel-format.json')
        vim.cmd('write')
    end
    expect('     if b', lines()[3], 'saved with changed options')
    expect(lines(), vim.fn.readfile('b.omb'), 'the file')

    vim.cmd('OmbrelOptions')
    expect('string', type(table.concat(lines(), '\n'):match('line%.indentSize +5 +%S*%.ombrel%-format%.json')), 'options')
    vim.cmd('close')

    open('c.omb', vim.tbl_map(function(line)
        return line .. '\r'
    end, slanted))
    expect('dos', vim.bo.fileformat, 'line ends')
    vim.cmd('write')
    expect('     if b\r', vim.fn.readfile('c.omb', 'b')[3], 'line ends after saving')

    open('d.omb', { 'x = (1;', 'y = 2;' })
    wait_for('a diagnostic', function()
        return #vim.diagnostic.get(0) == 1
    end)
    local problem = vim.diagnostic.get(0)[1]
    expect({ 0, 6 }, { problem.lnum, problem.col }, 'place')
    vim.cmd('normal! gg$i)')
    wait_for('no diagnostic', function()
        return #vim.diagnostic.get(0) == 0
    end)

    open('.ombrel-format.json', { '{"line": {"indentSize": 2, "tabsize": 1}}' })
    wait_for('a diagnostic of the options file', function()
        local found = vim.diagnostic.get(0)[1]
        return found and found.message:find('tabSize')
    end)

    local client = vim.tbl_values(vim.lsp.buf_get_clients(0))[1]
    client.stop()
    wait_for('the end of the server', client.is_stopped)
end

local isFine, message = xpcall(run, debug.traceback)
io.stdout:write(isFine and ('# pass %d\n'):format(passed) or message .. '\n')
vim.cmd(isFine and 'quitall!' or 'cquit!')
