// Marks what the shared library shows to its clients; everything else stays hidden.
#pragma once

#if defined(__GNUC__) && !defined(_WIN32)
#define LATCHKEY_API __attribute__((visibility("default")))
#else
#define LATCHKEY_API
#endif
