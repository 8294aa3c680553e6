// The automation types under their usual names, whatever the platform: include this file only.
#pragma once

#ifdef _WIN32

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <objbase.h>
#include <ocidl.h>
#include <ole2.h>
#include <oleauto.h>

/// Marks what leaves the library by name: here the module-definition file lists it, so that 32-bit
/// names are not decorated.
#define VQ_EXPORT
/// A literal of automation text (OLECHAR).
#define VQ_OLESTR(x) L##x

#else

#include "automation/system/types.hpp"

/// A literal of automation text (OLECHAR).
#define VQ_OLESTR(x) u##x

#endif

/// The calling convention of everything that crosses the boundary.
#define VQ_API STDMETHODCALLTYPE
