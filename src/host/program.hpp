// vqhost: the command-line host of the component, apart from what starts it.
#pragma once

namespace vqmath63::host {

/// Does what the command line asks for; the words are UTF-8. Returns the exit status.
int run_program(int argc, char** argv);

}  // namespace vqmath63::host
