" The command that formats a text of this buffer, options of ombrel-format included. The name decides which options files
" apply; a buffer without one has those of the current folder.
function! ombrel#GetCommand(buffer, arguments) abort
    let l:name = bufname(a:buffer) ==# '' ? getcwd() . '/untitled.omb' : fnamemodify(bufname(a:buffer), ':p')
    let l:words = [get(g:, 'ombrel_format_program', 'ombrel-format'), '--stdin-filename', l:name]
    return join(map(l:words, 'shellescape(v:val)')) . ' ' . a:arguments . ' -'
endfunction

" Formats lines of the current buffer. Only lines that differ are touched, so that marks and folds stay. After a failure the
" buffer is as it was. Gives whether it worked.
function! ombrel#Format(first, last) abort
    let l:errors = tempname()
    let l:before = getline(1, '$')
    let l:command = ombrel#GetCommand(bufnr(''), printf('--lines %d:%d', a:first, a:last))
    let l:after = split(system(l:command . ' 2>' . shellescape(l:errors), l:before), "\n", 1)
    let l:status = v:shell_error
    let l:message = filereadable(l:errors) ? get(readfile(l:errors), 0, '') : ''
    call delete(l:errors)
    if l:status != 0
        echohl ErrorMsg
        echomsg 'ombrel-format: ' . (l:message ==# '' ? 'status ' . l:status : l:message)
        echohl None
        return 0
    endif
    call s:ReplaceLines(l:before, l:after)
    return 1
endfunction

function! s:ReplaceLines(before, after) abort
    let l:start = 0
    let l:common = min([len(a:before), len(a:after)])
    while l:start < l:common && a:before[l:start] ==# a:after[l:start]
        let l:start += 1
    endwhile
    let l:tail = 0
    while l:tail < l:common - l:start && a:before[-1 - l:tail] ==# a:after[-1 - l:tail]
        let l:tail += 1
    endwhile
    let l:view = winsaveview()
    let l:old = len(a:before) - l:tail
    let l:new = len(a:after) - l:tail
    if l:new > l:old
        call append(l:old, a:after[l:old : l:new - 1])
    elseif l:new < l:old
        silent execute (l:new + 1) . ',' . l:old . 'delete _'
    endif
    for l:index in range(l:start, min([l:old, l:new]) - 1)
        if getline(l:index + 1) !=# a:after[l:index]
            call setline(l:index + 1, a:after[l:index])
        endif
    endfor
    call winrestview(l:view)
endfunction

" For 'formatexpr'. Lines that get too long while they are typed are left to Vim.
function! ombrel#FormatExpr() abort
    if mode() =~# '[iR]'
        return 1
    endif
    call ombrel#Format(v:lnum, v:lnum + v:count - 1)
    return 0
endfunction

" For mappings with <expr>: an operator like =.
function! ombrel#StartOperator() abort
    let &operatorfunc = 'ombrel#FormatMotion'
    return 'g@'
endfunction

function! ombrel#FormatMotion(type) abort
    call ombrel#Format(line("'["), line("']"))
endfunction

" The folder of the nearest options file or repository, or else that of the file.
function! ombrel#FindRoot(buffer) abort
    let l:folder = fnamemodify(bufname(a:buffer), ':p:h')
    let l:file = findfile('.ombrel-format.json', l:folder . ';')
    let l:repository = finddir('.git', l:folder . ';')
    let l:found = l:file !=# '' ? l:file : l:repository
    return l:found ==# '' ? l:folder : fnamemodify(l:found, ':p:h' . (l:file ==# '' ? ':h' : ''))
endfunction

" A fixer for ALE: let g:ale_fixers = {'ombrel': [function('ombrel#AleFix')]}
function! ombrel#AleFix(buffer) abort
    return {'command': ombrel#GetCommand(a:buffer, '')}
endfunction
