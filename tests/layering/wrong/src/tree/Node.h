#pragma once
#include "config/Options.h"
#include "pass/FormatPass.h"
#include <vector>
