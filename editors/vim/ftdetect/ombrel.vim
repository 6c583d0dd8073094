autocmd BufRead,BufNewFile *.omb setfiletype ombrel
autocmd BufRead,BufNewFile .ombrel-format.json setfiletype jsonc
autocmd BufRead,BufNewFile .ombrel-format-ignore setfiletype gitignore
