// Objects of a script language: arrays, boxes with a value, and objects that misbehave.
#pragma once

#include "values.hpp"

namespace vqmath63::fuzz {

/// Runs whenever an object of the host, or its message callback, is called.
void host_moment();

/// How many script objects live.
int live_script_objects();

/// A new object, with one reference.
IDispatch* new_script_object(Bytes& bytes);

}  // namespace vqmath63::fuzz
