#include "lexer/State.h"
#include "ca/Token.h"
#include "config/Options.h"
