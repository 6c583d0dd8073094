" Ombrel files are formatted by ombrel-format, whole lines in the context of their file:
"
"     gq{motion}  ={motion}  {Visual}gq  {Visual}=  :[range]OmbrelFormat
"
"     let g:ombrel_format_program = 'ombrel-format'    " where the program is
"     let g:ombrel_format_on_save = 1                  " format the whole file before it is written
"     let g:ombrel_no_mappings = 1                     " leave = alone
if exists('b:did_ftplugin')
    finish
endif
let b:did_ftplugin = 1

setlocal commentstring=%\ %s comments=:% suffixesadd=.omb iskeyword=@,48-57,_ fixendofline&
setlocal formatexpr=ombrel#FormatExpr()
" For plugins that send whole files through a program. gq and = don't use them: they would send the lines alone,
" and what a line's indentation depends on is before it.
let &l:formatprg = ombrel#GetCommand(bufnr(''), '')
let &l:equalprg = &l:formatprg
command! -buffer -range=% -bar OmbrelFormat call ombrel#Format(<line1>, <line2>)

let b:match_words = '\<\%(if\|for\|parfor\|while\|switch\|try\|spmd\|function\|classdef\|properties\|methods\|events\|enumeration\)\>'
    \ . ':\<\%(else\|elseif\|case\|otherwise\|catch\)\>:\<end\>'

if !get(g:, 'ombrel_no_mappings')
    nnoremap <buffer> <expr> = ombrel#StartOperator()
    nnoremap <buffer> <expr> == ombrel#StartOperator() . '_'
    xnoremap <buffer> <silent> = :OmbrelFormat<CR>
endif

augroup ombrel_format
    autocmd! * <buffer>
    autocmd BufWritePre <buffer> if get(g:, 'ombrel_format_on_save') | call ombrel#Format(1, line('$')) | endif
    autocmd BufFilePost <buffer> let &l:formatprg = ombrel#GetCommand(bufnr(''), '') | let &l:equalprg = &l:formatprg
augroup END

let b:undo_ftplugin = 'setlocal commentstring< comments< suffixesadd< iskeyword< formatexpr< formatprg< equalprg<'
    \ . ' | unlet! b:match_words | delcommand -buffer OmbrelFormat | execute "autocmd! ombrel_format * <buffer>"'
    \ . ' | silent! execute "nunmap <buffer> =" | silent! execute "nunmap <buffer> ==" | silent! execute "xunmap <buffer> ="'
