// Writes descriptions of the interface: kxinterface json|snapshot FILE
// SPDX-License-Identifier: MIT
#include <cstring>
#include <fstream>
#include <iostream>

#include "interface.h"

int main(int count, char** arguments) {
  const bool json = count == 3 && std::strcmp(arguments[1], "json") == 0;
  const bool snapshot = count == 3 && std::strcmp(arguments[1], "snapshot") == 0;
  if (!json && !snapshot) {
    std::cerr << "usage: kxinterface json|snapshot FILE\n";
    return 2;
  }
  // The same bytes on every system.
  std::ofstream file(arguments[2], std::ios::binary);
  if (json)
    kxinterface::writeJson(file);
  else
    kxinterface::writeSnapshot(file);
  file.close();
  if (file) return 0;
  std::cerr << arguments[2] << ": cannot be written\n";
  return 1;
}
