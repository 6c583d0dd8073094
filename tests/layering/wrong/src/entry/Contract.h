#pragma once
#include "legacy/Levels.h"
