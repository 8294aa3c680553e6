// The automation types and system functions for platforms whose system has none: names, layouts and
// meanings are those of the system that has them.
#pragma once

#include "automation/system/base.hpp"
#include "automation/system/codes.hpp"
#include "automation/system/functions.hpp"
#include "automation/system/interfaces.hpp"
#include "automation/system/variant.hpp"
