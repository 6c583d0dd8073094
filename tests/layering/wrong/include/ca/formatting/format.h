#pragma once
#include "config/Options.h"
#include <ca/Token.h>
