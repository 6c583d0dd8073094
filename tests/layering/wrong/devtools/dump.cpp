#include "Dump.h"
#include "lexer/State.h"
#include "tree/Node.cpp"
#include "tree/Node.h"
