#include <latchkey/export.h>

// A macro: it can only mark.
LATCHKEY_API bool Use_export();

bool Use_export() { return true; }
