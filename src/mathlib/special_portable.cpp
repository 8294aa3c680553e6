// The special functions for every processor.
#include "mathlib/ways/error_function.hpp"
#include "mathlib/ways/gamma.hpp"
