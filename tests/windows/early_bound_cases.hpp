// The shared cases, run through the dual interfaces.
#pragma once

#include "check.hpp"

/// Calls every class through its vtable and compares with the expected numbers.
void run_early_bound_cases(const Expected& expected);
