// What all automation objects share: the count of live ones, QueryInterface, class descriptions.
#pragma once

#include <atomic>
#include <cstdint>

#include "automation/class_info.hpp"

namespace vqmath63::automation {

/// Live objects of the whole component.
std::atomic<std::int32_t>& live_count() noexcept;

/// Adds a server lock, or takes one away; one unlock too many is disregarded.
void lock_component(bool lock) noexcept;

/// True when there is neither a live object nor a server lock: the component may be unloaded.
bool may_unload() noexcept;

/// Member of whatever keeps the component loaded.
struct LiveObject {
  LiveObject() noexcept { ++live_count(); }
  ~LiveObject() { --live_count(); }
  LiveObject(const LiveObject&) = delete;
  LiveObject& operator=(const LiveObject&) = delete;
};

/// Whether an interface of a class's objects is the object itself: IUnknown, IDispatch, the dual
/// one.
bool is_own_interface(const ClassInfo& info, REFIID iid) noexcept;

/// QueryInterface of an object: IUnknown, IDispatch and the class's dual interface are the object
/// itself; ISupportErrorInfo and IProvideClassInfo are small objects of their own that answer to
/// the same identity.
HRESULT query_interface(const ClassInfo& info, void* self, REFIID iid, void** out) noexcept;

/// Type information: from the embedded type library on Windows, none elsewhere.
HRESULT type_info_count(UINT* count) noexcept;
HRESULT type_info(const ClassInfo& info, UINT index, ITypeInfo** out) noexcept;
/// Type information of the creatable class, or of its interface.
HRESULT load_type_info(REFIID id, ITypeInfo** out) noexcept;
/// Lets go of the type library, which is held once it was asked for; not to be called while the
/// system unloads the component, when other libraries may be gone.
void release_type_library() noexcept;

}  // namespace vqmath63::automation
