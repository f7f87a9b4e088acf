// SPDX-License-Identifier: Apache-2.0
// Puts a file into the program as it is when the program is built: after LK_EMBEDDED_FILE(name, "path") the
// text lies from lk_file_NAME_begin to lk_file_NAME_end. For sources only, outside of any namespace.
#pragma once

#define LK_EMBEDDED_FILE(name, file)                                                         \
  asm(".pushsection .rodata\nlk_file_" #name "_begin:\n.incbin \"" file "\"\nlk_file_" #name \
      "_end:\n.popsection\n");                                                               \
  extern "C" const char lk_file_##name##_begin[];                                            \
  extern "C" const char lk_file_##name##_end[];
