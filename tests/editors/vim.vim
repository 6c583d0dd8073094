" Vim with editors/vim in its runtime path: gq, =, :OmbrelFormat, saving, options files, failures, colors. Started in an
" empty folder; prints "# pass N", or what went wrong and exits with 1.
set nocompatible noswapfile encoding=utf-8 fileencodings=ucs-bom,utf-8 viminfo=
execute 'set runtimepath=' . $OMBREL_SOURCES . '/editors/vim,$VIMRUNTIME'
let g:ombrel_format_program = $OMBREL_PROGRAMS . '/ombrel-format'
filetype plugin on
syntax on

let s:passed = 0
let s:slanted = ['if a', 'x=1; %  ä𝄞', ' if b', 'y', 'end', ' end']
let s:straight = ['if a', '    x=1; %  ä𝄞', '    if b', '        y', '    end', 'end']

function s:Open(name, lines) abort
    call writefile(a:lines, a:name)
    execute 'edit! ' . a:name
    call assert_equal('ombrel', &filetype)
endfunction

function s:Pass() abort
    let s:passed += 1
endfunction

function s:Check(lines) abort
    call assert_equal(a:lines, getline(1, '$'))
    call s:Pass()
endfunction

call s:Open('a.omb', s:slanted)
normal gggqG
call s:Check(s:straight)

" Lines in the middle get the indentation of their place.
call s:Open('b.omb', s:slanted)
2
normal gqj
call s:Check(s:straight[0:2] + s:slanted[3:5])
4normal ==
call s:Check(s:straight[0:3] + s:slanted[4:5])
normal Vj=
call s:Check(s:straight[0:4] + s:slanted[5:5])
let &undolevels = &undolevels " starts a change of its own
normal =G
call s:Check(s:straight)
undo
call s:Check(s:straight[0:4] + s:slanted[5:5])

" Marks after lines that don't change stay, and line ends too.
call s:Open('c.omb', map(copy(s:slanted), 'v:val . "\r"'))
call assert_equal('dos', &fileformat)
4mark m
OmbrelFormat
call assert_equal(4, line("'m"))
write
call assert_equal(map(copy(s:straight), 'v:val . "\r"'), readfile('c.omb', 'b')[:-2])
call s:Check(s:straight)

" On save, with an options file that changes meanwhile.
let g:ombrel_format_on_save = 1
for s:size in [1, 7]
    call writefile([printf('{"line": {"indentSize": %d}}', s:size)], '.ombrel-format.json')
    call s:Open('d.omb', ['if a', 'x', 'end'])
    write
    call assert_equal(['if a', repeat(' ', s:size) . 'x', 'end'], readfile('d.omb'))
    call s:Pass()
endfor

" Joined and new lines, and what can't be formatted.
call writefile(['{"engine": "tree", "formatting": {"lineBreakingEnabled": true, "lineBreakBehavior": "SeparateLines"}}'], '.ombrel-format.json')
call s:Open('e.omb', ['if a, b; end', 'z'])
write
call s:Check(['if a', '    b;', 'end', 'z'])
call s:Open('f.omb', ['x = (1;'])
redir => s:message
write
redir END
call assert_match('f.omb:1:7: .*unclosed-bracket', s:message)
call s:Check(['x = (1;'])

let g:ombrel_format_on_save = 0
call s:Open('g.omb', ["x = a' * 'b'; % c", '%{', "it's", '%}', 'if s.end, end'])
for [s:line, s:column, s:group] in [[1, 6, 'ombrelTranspose'], [1, 10, 'ombrelString'], [1, 15, 'ombrelComment'], [3, 3, 'ombrelBlockComment'],
    \ [5, 1, 'ombrelConditional'], [5, 6, ''], [5, 11, 'ombrelStatement']]
    call assert_equal(s:group, synIDattr(synID(s:line, s:column, 1), 'name'), s:line . ':' . s:column)
    call s:Pass()
endfor

set filetype=none
call assert_equal(['', '', ''], [&formatexpr, &l:formatprg, maparg('=', 'n')])
call s:Pass()

" The linter and the fixer for ALE.
let g:ale_linters = {'ombrel': ['ombrel_lsp']}
let g:ale_ombrel_lsp_executable = $OMBREL_PROGRAMS . '/ombrel-lsp'
let g:ale_fixers = {'ombrel': [function('ombrel#AleFix')]}
set runtimepath+=/usr/share/vim-ale
runtime! plugin/ale.vim

function s:WaitFor(condition) abort
    for _ in range(200)
        if eval(a:condition)
            return s:Pass()
        endif
        sleep 50m
    endfor
    call add(v:errors, 'waited for ' . a:condition)
endfunction

call delete('.ombrel-format.json')
call s:Open('h.omb', ['if a', 'x = (1;', 'end'])
ALELint
call s:WaitFor('!empty(ale#engine#GetLoclist(bufnr("")))')
let s:problem = get(ale#engine#GetLoclist(bufnr('')), 0, {})
call assert_equal([2, 7], [get(s:problem, 'lnum'), get(s:problem, 'col')])
call setline(2, 'x = 1;')
ALEFix
call s:WaitFor('getline(2) ==# "    x = 1;"')

enew!
call setline(1, empty(v:errors) ? '# pass ' . s:passed : v:errors)
%print
execute empty(v:errors) ? 'quitall!' : 'cquit!'
