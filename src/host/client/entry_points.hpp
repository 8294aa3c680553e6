// What the host uses of the component, which it finds by name.
#pragma once

#include "component/exports.hpp"

namespace vqmath63::host {

struct EntryPoints {
  decltype(&VqDescribe) describe;
  decltype(&VqSetMessageCallback) set_message_callback;
  decltype(&VqCallMany) call_many;
  /// The class identifier of a programmatic id; a failure when there is none.
  HRESULT (*class_id)(LPCOLESTR programmatic_id, CLSID* clsid);
  /// The class factory of a class.
  HRESULT(VQ_API* class_object)(REFCLSID clsid, REFIID iid, void** out);
};

/// Those of the component; AutomationError when there is none. On Windows it is the library beside
/// the program, or, where none lies there, the registered one; elsewhere the program is linked to
/// it.
const EntryPoints& entry_points();

}  // namespace vqmath63::host
