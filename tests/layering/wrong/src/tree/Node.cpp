#include "tree/Node.h"
#include "pass/FormatPass.h"
#include <ca/Token.h>
