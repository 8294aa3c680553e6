// The value types of automation: VARIANT, SAFEARRAY, and what a call by name carries.
#pragma once

#include "automation/system/base.hpp"

struct IUnknown;
struct IDispatch;
struct IRecordInfo;

/// What a VARIANT or an element holds.
enum VARENUM {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_DECIMAL = 14,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_VOID = 24,
  VT_HRESULT = 25,
  VT_PTR = 26,
  VT_SAFEARRAY = 27,
  VT_CARRAY = 28,
  VT_USERDEFINED = 29,
  VT_LPSTR = 30,
  VT_LPWSTR = 31,
  VT_RECORD = 36,
  VT_INT_PTR = 37,
  VT_UINT_PTR = 38,
  VT_FILETIME = 64,
  VT_BLOB = 65,
  VT_CLSID = 72,
  VT_VECTOR = 0x1000,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
  VT_RESERVED = 0x8000,
  VT_ILLEGAL = 0xFFFF,
  VT_ILLEGALMASKED = 0x0FFF,
  VT_TYPEMASK = 0x0FFF
};

/// One dimension of a safe array.
struct SAFEARRAYBOUND {
  ULONG cElements;
  LONG lLbound;
};

/// An array that describes itself. rgsabound holds the dimensions in REVERSE order, rgsabound[0] is
/// the last one; of the elements the first index moves fastest. With FADF_HAVEVARTYPE the element
/// type stands in the four bytes before the descriptor, with FADF_HAVEIID an interface id in
/// the 16.
struct SAFEARRAY {
  USHORT cDims;
  USHORT fFeatures;
  ULONG cbElements;
  ULONG cLocks;
  PVOID pvData;
  SAFEARRAYBOUND rgsabound[1];
};
using LPSAFEARRAY = SAFEARRAY*;

inline constexpr USHORT FADF_AUTO = 0x0001;
inline constexpr USHORT FADF_STATIC = 0x0002;
inline constexpr USHORT FADF_EMBEDDED = 0x0004;
inline constexpr USHORT FADF_FIXEDSIZE = 0x0010;
inline constexpr USHORT FADF_RECORD = 0x0020;
inline constexpr USHORT FADF_HAVEIID = 0x0040;
inline constexpr USHORT FADF_HAVEVARTYPE = 0x0080;
inline constexpr USHORT FADF_BSTR = 0x0100;
inline constexpr USHORT FADF_UNKNOWN = 0x0200;
inline constexpr USHORT FADF_DISPATCH = 0x0400;
inline constexpr USHORT FADF_VARIANT = 0x0800;
inline constexpr USHORT FADF_RESERVED = 0xF008;

// Unnamed structures are an extension, and part of these types as every host spells them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"

/// A value with its type in vt.
struct VARIANT {
  union {
    struct {
      VARTYPE vt;
      WORD wReserved1;
      WORD wReserved2;
      WORD wReserved3;
      union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        CY cyVal;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        BYTE* pbVal;
        SHORT* piVal;
        LONG* plVal;
        LONGLONG* pllVal;
        FLOAT* pfltVal;
        DOUBLE* pdblVal;
        VARIANT_BOOL* pboolVal;
        SCODE* pscode;
        CY* pcyVal;
        DATE* pdate;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        SAFEARRAY** pparray;
        VARIANT* pvarVal;
        PVOID byref;
        CHAR cVal;
        USHORT uiVal;
        ULONG ulVal;
        ULONGLONG ullVal;
        INT intVal;
        UINT uintVal;
        DECIMAL* pdecVal;
        CHAR* pcVal;
        USHORT* puiVal;
        ULONG* pulVal;
        ULONGLONG* pullVal;
        INT* pintVal;
        UINT* puintVal;
        struct {
          PVOID pvRecord;
          IRecordInfo* pRecInfo;
        };
      };
    };
    DECIMAL decVal;
  };
};
#pragma GCC diagnostic pop
using VARIANTARG = VARIANT;
using LPVARIANT = VARIANT*;
using LPVARIANTARG = VARIANT*;

/// The arguments of a call by name, LAST argument first; the named ones stand in front.
struct DISPPARAMS {
  VARIANTARG* rgvarg;
  DISPID* rgdispidNamedArgs;
  UINT cArgs;
  UINT cNamedArgs;
};

/// What went wrong in a call by name.
struct EXCEPINFO {
  WORD wCode;
  WORD wReserved;
  BSTR bstrSource;
  BSTR bstrDescription;
  BSTR bstrHelpFile;
  DWORD dwHelpContext;
  PVOID pvReserved;
  HRESULT(STDMETHODCALLTYPE* pfnDeferredFillIn)(EXCEPINFO*);
  SCODE scode;
};

inline constexpr WORD DISPATCH_METHOD = 0x1;
inline constexpr WORD DISPATCH_PROPERTYGET = 0x2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 0x4;
inline constexpr WORD DISPATCH_PROPERTYPUTREF = 0x8;

inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;
inline constexpr DISPID DISPID_NEWENUM = -4;
inline constexpr DISPID DISPID_EVALUATE = -5;
inline constexpr DISPID DISPID_CONSTRUCTOR = -6;
inline constexpr DISPID DISPID_DESTRUCTOR = -7;
inline constexpr DISPID DISPID_COLLECT = -8;

inline constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;
inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;

static_assert(sizeof(SAFEARRAYBOUND) == 8 && offsetof(SAFEARRAYBOUND, lLbound) == 4);
static_assert(offsetof(SAFEARRAY, fFeatures) == 2 && offsetof(SAFEARRAY, cbElements) == 4 &&
              offsetof(SAFEARRAY, cLocks) == 8);
static_assert(offsetof(VARIANT, vt) == 0 && offsetof(VARIANT, dblVal) == 8 &&
              offsetof(VARIANT, decVal) == 0);
static_assert(sizeof(void*) != 8 || (sizeof(VARIANT) == 24 && alignof(VARIANT) == 8 &&
                                     offsetof(VARIANT, pRecInfo) == 16));
static_assert(sizeof(void*) != 8 || (sizeof(SAFEARRAY) == 32 && offsetof(SAFEARRAY, pvData) == 16 &&
                                     offsetof(SAFEARRAY, rgsabound) == 24));
static_assert(sizeof(void*) != 8 ||
              (sizeof(DISPPARAMS) == 24 && offsetof(DISPPARAMS, cArgs) == 16));
static_assert(sizeof(void*) != 8 ||
              (sizeof(EXCEPINFO) == 64 && offsetof(EXCEPINFO, bstrSource) == 8 &&
               offsetof(EXCEPINFO, pfnDeferredFillIn) == 48 && offsetof(EXCEPINFO, scode) == 56));
