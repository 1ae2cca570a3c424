// Loads one library as it is named: load_library NAME
#include <windows.h>

#include <cstdlib>

int main(int count, char** arguments) {
  return count == 2 && LoadLibraryA(arguments[1]) != nullptr ? EXIT_SUCCESS : EXIT_FAILURE;
}
