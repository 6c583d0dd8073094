#include "ca/formatting/ca_format.h"
