// SPDX-License-Identifier: Apache-2.0
#include "lkbench/App.h"

int main(int argc, char** argv) { return lkbench::RunApp(argc, argv); }
