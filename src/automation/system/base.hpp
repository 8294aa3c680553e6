// The scalar automation types, with the sizes they have on 32- and 64-bit Windows alike, and GUIDs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

/// Marks what leaves the library by name.
#define VQ_EXPORT __attribute__((visibility("default")))

/// Empty: interfaces use the platform's own calling convention.
#define STDMETHODCALLTYPE

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

using BYTE = std::uint8_t;
using CHAR = char;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using WORD = std::uint16_t;
using INT = std::int32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using FLOAT = float;
using DOUBLE = double;
using BOOL = std::int32_t;
using PVOID = void*;
using LPVOID = void*;

using HRESULT = std::int32_t;
using SCODE = std::int32_t;
using LCID = DWORD;
using DISPID = LONG;
using MEMBERID = DISPID;

using OLECHAR = char16_t;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;
/// Text that carries its length: 32 bits with the number of bytes stand right before the first
/// character, a zero character after the last. Null is the same as empty text.
using BSTR = OLECHAR*;

/// Days since 1899-12-30. The fraction is the time of day and counts forward in negative dates too.
using DATE = double;
using VARIANT_BOOL = std::int16_t;
using VARTYPE = USHORT;

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// Unnamed structures are an extension, and part of these types as every host spells them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"

/// Currency: a whole number of ten-thousandths.
union CY {
  struct {
    ULONG Lo;
    LONG Hi;
  };
  LONGLONG int64;
};

/// A whole number of 96 bits, a sign and a decimal scale.
struct DECIMAL {
  USHORT wReserved;
  union {
    struct {
      BYTE scale;
      BYTE sign;
    };
    USHORT signscale;
  };
  ULONG Hi32;
  union {
    struct {
      ULONG Lo32;
      ULONG Mid32;
    };
    ULONGLONG Lo64;
  };
};

#pragma GCC diagnostic pop

/// A globally unique identifier.
struct GUID {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];
};

using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool operator==(const GUID& a, const GUID& b) {
  return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}
inline BOOL IsEqualGUID(REFGUID a, REFGUID b) {
  return a == b ? TRUE : FALSE;
}
inline BOOL IsEqualIID(REFIID a, REFIID b) {
  return a == b ? TRUE : FALSE;
}
inline BOOL IsEqualCLSID(REFCLSID a, REFCLSID b) {
  return a == b ? TRUE : FALSE;
}

inline constexpr GUID GUID_NULL{};
inline constexpr IID IID_NULL{};
inline constexpr CLSID CLSID_NULL{};

static_assert(sizeof(GUID) == 16 && alignof(GUID) == 4);
static_assert(sizeof(CY) == 8);
static_assert(sizeof(DECIMAL) == 16);
static_assert(offsetof(DECIMAL, Hi32) == 4 && offsetof(DECIMAL, Lo64) == 8);
