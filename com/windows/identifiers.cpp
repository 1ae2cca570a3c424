// The one place where the identifiers of the type library, its interfaces and its classes have
// their storage.
#include "com/windows/automation_prelude.h"

// Turns the declarations of latchkey.h into definitions; the system's own identifiers, declared
// above, stay in its libraries.
#include <initguid.h>

#include "com/windows/latchkey.h"
