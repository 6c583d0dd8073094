#include "ca/formatting/LegacyFormatter.h"
