// The usual entry points of an in-process component, which a host finds by their names.
#pragma once

#include "automation/types.hpp"

extern "C" {

/// The class identifier of a programmatic id; CO_E_CLASSSTRING when there is none.
HRESULT CLSIDFromProgID(LPCOLESTR programmatic_id, CLSID* clsid);

/// The class factory of a class.
HRESULT VQ_API DllGetClassObject(REFCLSID clsid, REFIID iid, void** out);

}  // extern "C"
