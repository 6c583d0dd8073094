#pragma once
#include <ca/Token.h>
#include <lexer/State.h>
