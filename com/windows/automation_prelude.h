// The C++ counterpart of automation_prelude.idl, included by the header that the IDL compiler makes
// from latchkey.idl.
#pragma once

#include <windows.h>

#include <ole2.h>

#include <ocidl.h>
#include <oleauto.h>
