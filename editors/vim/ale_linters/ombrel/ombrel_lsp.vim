" ALE finds this by its name, and then shows what the language server reports:
"
"     let g:ale_ombrel_lsp_executable = 'ombrel-lsp'
"     let g:ale_ombrel_lsp_settings = {'engine': 'tree'}      " only where no options file says anything
call ale#Set('ombrel_lsp_executable', 'ombrel-lsp')
call ale#Set('ombrel_lsp_settings', {})

call ale#linter#Define('ombrel', {
    \ 'name': 'ombrel_lsp',
    \ 'lsp': 'stdio',
    \ 'executable': {buffer -> ale#Var(buffer, 'ombrel_lsp_executable')},
    \ 'command': '%e',
    \ 'project_root': function('ombrel#FindRoot'),
    \ 'initialization_options': {buffer -> ale#Var(buffer, 'ombrel_lsp_settings')},
    \ })
