// Calls by name: name look-up and the binding of DISPPARAMS to a member's arguments.
#pragma once

#include "automation/class_info.hpp"

namespace vqmath63::automation {

/// IDispatch::GetIDsOfNames for a class: names[0] is a member, the rest its arguments, in any
/// letter case. Every id is filled, DISPID_UNKNOWN for an unknown name (DISP_E_UNKNOWNNAME).
HRESULT ids_of_names(const ClassInfo& info, LPOLESTR* names, UINT count, DISPID* ids) noexcept;

/// The member of that id which the flags of an Invoke (DISPATCH_METHOD, ...) ask for, and its place
/// in the table; null when there is none.
const MemberInfo* find_member(const ClassInfo& info, DISPID dispid, WORD flags,
                              std::size_t* place) noexcept;

/// IDispatch::Invoke for a class: finds the member, binds positional and named arguments, converts
/// them, calls the member's vtable function and hands results and by-reference values back.
HRESULT invoke(const ClassInfo& info, void* self, DISPID dispid, LCID locale, WORD flags,
               DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
               UINT* bad_argument) noexcept;

}  // namespace vqmath63::automation
