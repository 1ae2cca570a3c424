// Storage of the identifiers of the type library, its interfaces and its classes.
#include "com/windows/automation_prelude.h"

// Turns the declarations of latchkey.h into definitions. The system's own identifiers, declared
// above, remain in its libraries.
#include <initguid.h>

#include "com/windows/latchkey.h"
