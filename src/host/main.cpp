// Where vqhost starts.
#include "host/program.hpp"

int main(int argc, char** argv) {
  return vqmath63::host::run_program(argc, argv);
}
