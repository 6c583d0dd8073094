" Comments, strings and keywords. The language server knows the rest, in editors that show its colors.
if exists('b:current_syntax')
    finish
endif

syntax case match
syntax sync minlines=200

" A quote right after an operand is a transpose.
syntax match ombrelString "\v%([A-Za-z0-9_)\]}'".])@1<!'%([^']|'')*'"
syntax match ombrelString "\v%(<%(if|elseif|while|switch|case)>)@8<='%([^']|'')*'"
syntax match ombrelString "\v\"%([^\"]|\"\")*\""
syntax match ombrelTranspose "\v%([A-Za-z0-9_)\]}'".])@1<='|\.'"
syntax match ombrelNumber "\v<%(0[xX]\x+|0[bB][01]+)%([us]%(8|16|32|64))?>|<\d+%(\.\d*)?%([eEdD][+-]?\d+)?[ijIJ]?>"
syntax match ombrelContinuation "\V..." nextgroup=ombrelTail
syntax match ombrelTail ".*$" contained
syntax match ombrelComment "%.*$" contains=ombrelTodo,ombrelDirective
syntax match ombrelDirective "ombrel-format\s\+\%(on\|off\%(\s\+next\)\=\)\ze\s*$" contained
syntax keyword ombrelTodo TODO FIXME contained
syntax region ombrelBlockComment start="^\s*%{\s*$" end="^\s*%}\s*$" contains=ombrelBlockComment,ombrelTodo fold
syntax match ombrelShell "^\s*!.*$"

" Not names of fields: s.end, s.if.
syntax match ombrelConditional "\v\.@1<!<%(if|elseif|else|switch|case|otherwise)>"
syntax match ombrelRepeat "\v\.@1<!<%(for|parfor|while|break|continue)>"
syntax match ombrelException "\v\.@1<!<%(try|catch)>"
syntax match ombrelStatement "\v\.@1<!<%(end|return|spmd|global|persistent|function|classdef)>"
syntax match ombrelStatement "\v^\s*%(properties|methods|events|enumeration|arguments)>\ze\s*%(\(.*\))?\s*%(\%.*)?$"
syntax match ombrelStatement "\v^\s*import>\ze\s+\a"

highlight default link ombrelString String
highlight default link ombrelNumber Number
highlight default link ombrelTranspose Operator
highlight default link ombrelContinuation Special
highlight default link ombrelTail Comment
highlight default link ombrelComment Comment
highlight default link ombrelBlockComment Comment
highlight default link ombrelDirective PreProc
highlight default link ombrelTodo Todo
highlight default link ombrelShell PreProc
highlight default link ombrelConditional Conditional
highlight default link ombrelRepeat Repeat
highlight default link ombrelException Exception
highlight default link ombrelStatement Statement

let b:current_syntax = 'ombrel'
