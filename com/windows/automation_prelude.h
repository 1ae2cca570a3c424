// What automation_prelude.idl stands for in C++. The header that the IDL compiler makes from
// latchkey.idl includes this one.
#pragma once

#include <windows.h>

#include <ole2.h>

#include <ocidl.h>
#include <oleauto.h>
