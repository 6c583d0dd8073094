// The whole of ca_format: only blanks at line edges change, lines outside the range stay, and twice is once.

#include "FuzzText.h"

#include "support/TokenContractChecker.h"
