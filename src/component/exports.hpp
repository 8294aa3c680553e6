// The functions that the component exports beside the usual entry points.
#pragma once

#include "automation/types.hpp"

extern "C" {

/// Takes one line of the error sink: an error, the start-up line (`is_close_down` false) or the
/// close-down line. `line` is the callee's to read until it returns.
typedef void(VQ_API* VqMessageCallback)(const OLECHAR* line, BOOL is_close_down, void* context);

/// Has this thread's built-in error sink hand its lines to `callback` instead of the log file or
/// the standard error stream; null takes it away again. Lasts beyond CloseDown.
VQ_EXPORT HRESULT VQ_API VqSetMessageCallback(VqMessageCallback callback, void* context);

/// Describes the component as text, to be freed with SysFreeString. Lines end with a line feed,
/// their fields are separated by tabs.
///
/// With an empty or null programmatic id, a line per class: programmatic id, name, help.
/// With one of a class, a line per member in interface order: kind ("method", "get", "let"), name,
/// dispatch id, result type (empty for none), help, and then per argument four fields: name, type,
/// "in" or "in,out", and "required", or "optional=" and the default. Types are Single, Double,
/// Long, Boolean, Date, String, and for arrays "Single()" or "Single(,)".
/// With one of a class, a dot and the name of a member, a line per word that an argument of the
/// member must be one of: argument and word; nothing where it takes any text, or no text.
/// CO_E_CLASSSTRING for an unknown programmatic id or member.
VQ_EXPORT HRESULT VQ_API VqDescribe(const OLECHAR* programmatic_id, BSTR* text);

#ifndef _WIN32  // where the system's own headers declare them

/// The class identifier of a programmatic id; CO_E_CLASSSTRING when there is none.
VQ_EXPORT HRESULT CLSIDFromProgID(LPCOLESTR programmatic_id, CLSID* clsid);

/// The class factory of a class.
VQ_EXPORT HRESULT VQ_API DllGetClassObject(REFCLSID clsid, REFIID iid, void** out);

#endif

}  // extern "C"
