#include "Options.h"
#include "../tree/Node.h"
