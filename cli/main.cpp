#include <iostream>

#include "cli/App.h"
#include "cli/Progress.h"

int main(int argc, char** argv) {
  return morvane::cli::RunMorvane(argc, argv, std::cout, std::cerr, morvane::cli::IsTerminal(2));
}
