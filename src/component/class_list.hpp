// The creatable classes of the component.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "automation/class_info.hpp"
#include "info/version.hpp"

namespace vqmath63::component {

/// Identifier and version of the type library.
inline constexpr GUID kLibraryId{
    0xAA40CFD8, 0x6128, 0x4423, {0xB6, 0x11, 0x27, 0xD6, 0x40, 0xE1, 0xB2, 0x35}};
inline constexpr WORD kLibraryMajor = kMajorVersion;
inline constexpr WORD kLibraryMinor = kMinorVersion;

/// All classes.
std::span<const automation::ClassInfo* const> classes() noexcept;

/// The class of an identifier or of a programmatic id ("vq140Analyse.ztIntegrate", with or without
/// its version, in any letter case), or null.
const automation::ClassInfo* find_class(REFCLSID clsid) noexcept;
const automation::ClassInfo* find_class(std::string_view programmatic_id) noexcept;

/// The class of an object that this component has made; null for any other, be it a stand-in for
/// one in another apartment.
const automation::ClassInfo* class_of(const void* object) noexcept;

/// "vq140Analyse." and the class name; and the same with the version of the id, ".1".
std::string programmatic_id(const automation::ClassInfo& info);
std::string versioned_programmatic_id(const automation::ClassInfo& info);

}  // namespace vqmath63::component
