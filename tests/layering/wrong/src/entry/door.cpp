#include "legacy/Levels.h"
#include "lexer/State.h"
#include <ca/formatting/door.h>
