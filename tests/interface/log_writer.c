/* Reports faults, each with a line number of its own, into the log of the current folder: kx_log_writer FIRST COUNT
 * SPDX-License-Identifier: MIT */
#include <stdlib.h>

#include "kxgraphic/kxgraphic.h"

int main(int argc, char** argv) {
  int first;
  int count;
  int i;
  if (argc != 3) return 2;
  first = (int)strtol(argv[1], NULL, 10);
  count = (int)strtol(argv[2], NULL, 10);
  for (i = 0; i < count; ++i)
    if (KX_reportError(0x2000, first + i, "log_writer.c") != 0x2000) return 1;
  return 0;
}
