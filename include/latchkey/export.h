// Marks the classes and functions that the shared library exports. All other symbols are hidden.
#pragma once

#if defined(__GNUC__) && !defined(_WIN32)
#define LATCHKEY_API __attribute__((visibility("default")))
#else
#define LATCHKEY_API
#endif
