// SPDX-License-Identifier: MIT
#include "cli/program.h"

int main(int argc, char** argv) { return tavrin::cli::runProgram(argc, argv); }
