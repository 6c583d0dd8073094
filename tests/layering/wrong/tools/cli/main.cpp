#include "tree/Node.h"
#include <ca/Token.h>
#include <ca/formatting/door.h>
