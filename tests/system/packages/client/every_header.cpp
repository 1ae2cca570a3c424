// Uses every installed header: build_clients lists them in headers.inc as HEADER(name), and
// headers/name.cpp includes latchkey/name.h alone and calls something of it.
#include <cstdio>

#define HEADER(name) bool Use_##name();
#include "headers.inc"
#undef HEADER

namespace {

bool Report(bool worked, const char* header) {
  if (!worked) std::fprintf(stderr, "latchkey/%s.h does not work\n", header);
  return worked;
}

}  // namespace

int main() {
  bool worked = true;
#define HEADER(name) worked = Report(Use_##name(), #name) && worked;
#include "headers.inc"
  return worked ? 0 : 1;
}
