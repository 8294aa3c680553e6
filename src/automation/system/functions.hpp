// The system functions of automation: text, safe arrays, variants and error information. Every
// function may be called from any thread; an object in the hands of two threads at once is theirs
// to guard. Bad arguments are answered with null or a failure code.
#pragma once

#include "automation/system/base.hpp"
#include "automation/system/variant.hpp"

struct IErrorInfo;
struct ICreateErrorInfo;

/// Leaves the default value of an object alone: an object source then does not convert.
inline constexpr USHORT VARIANT_NOVALUEPROP = 0x01;
/// Booleans become "True" and "False"; here they always do.
inline constexpr USHORT VARIANT_ALPHABOOL = 0x02;
inline constexpr USHORT VARIANT_NOUSEROVERRIDE = 0x04;
inline constexpr USHORT VARIANT_LOCALBOOL = 0x10;

extern "C" {

/// Copies a text that ends with a zero character; null for null and when memory is short.
VQ_EXPORT BSTR STDMETHODCALLTYPE SysAllocString(const OLECHAR* psz);
/// Copies ui characters, zero ones among them too; with a null source the text is all zero
/// characters. Null when the text would pass 2 GB or memory is short.
VQ_EXPORT BSTR STDMETHODCALLTYPE SysAllocStringLen(const OLECHAR* strIn, UINT ui);
/// Copies len bytes as they are.
VQ_EXPORT BSTR STDMETHODCALLTYPE SysAllocStringByteLen(const char* psz, UINT len);
/// Replaces *pbstr by a copy of psz, which may lie within the old text. FALSE leaves the old text.
VQ_EXPORT INT STDMETHODCALLTYPE SysReAllocString(BSTR* pbstr, const OLECHAR* psz);
/// The same with a length; a null psz keeps the old characters as far as they fit.
VQ_EXPORT INT STDMETHODCALLTYPE SysReAllocStringLen(BSTR* pbstr, const OLECHAR* psz, UINT len);
/// The number of characters; 0 for null.
VQ_EXPORT UINT STDMETHODCALLTYPE SysStringLen(BSTR bstr);
/// The number of bytes; 0 for null.
VQ_EXPORT UINT STDMETHODCALLTYPE SysStringByteLen(BSTR bstr);
/// Frees a text; null is allowed.
VQ_EXPORT void STDMETHODCALLTYPE SysFreeString(BSTR bstr);

/// Makes an array of cDims dimensions (1 to 64, rgsabound[0] the first), all elements zero. Null
/// for an unknown element type, for bounds or a size that cannot be, and when memory is short.
VQ_EXPORT SAFEARRAY* STDMETHODCALLTYPE SafeArrayCreate(VARTYPE vt, UINT cDims,
                                                       SAFEARRAYBOUND* rgsabound);
/// Makes an array of one dimension.
VQ_EXPORT SAFEARRAY* STDMETHODCALLTYPE SafeArrayCreateVector(VARTYPE vt, LONG lLbound,
                                                             ULONG cElements);
/// Frees an array and what its elements own; DISP_E_ARRAYISLOCKED while it is locked. Memory that
/// the array only borrows (FADF_AUTO, FADF_STATIC, FADF_EMBEDDED) is cleared and left in place.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayDestroy(SAFEARRAY* psa);
/// Frees the elements and keeps the descriptor, as SafeArrayDestroy does otherwise.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayDestroyData(SAFEARRAY* psa);
/// Gives the LAST dimension new bounds. Elements keep their values as far as they remain, new ones
/// are zero. DISP_E_ARRAYISLOCKED for locked, fixed and borrowed arrays; nothing changes on
/// failure.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayRedim(SAFEARRAY* psa, SAFEARRAYBOUND* psaboundNew);
VQ_EXPORT UINT STDMETHODCALLTYPE SafeArrayGetDim(SAFEARRAY* psa);
VQ_EXPORT UINT STDMETHODCALLTYPE SafeArrayGetElemsize(SAFEARRAY* psa);
/// The lower bound of dimension nDim, counted from 1; DISP_E_BADINDEX when there is no such one.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayGetLBound(SAFEARRAY* psa, UINT nDim, LONG* plLbound);
/// The upper bound of dimension nDim, counted from 1; one less than the lower in an empty one.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayGetUBound(SAFEARRAY* psa, UINT nDim, LONG* plUbound);
/// Locks the array and gives the address of its first element.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayAccessData(SAFEARRAY* psa, void** ppvData);
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayUnaccessData(SAFEARRAY* psa);
/// Adds a lock; E_UNEXPECTED beyond 65535 of them.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayLock(SAFEARRAY* psa);
/// Takes a lock away; E_UNEXPECTED when there is none.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayUnlock(SAFEARRAY* psa);
/// Copies an element to *pv, which is taken as unset. rgIndices[0] is the first dimension's index.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayGetElement(SAFEARRAY* psa, LONG* rgIndices, void* pv);
/// Copies a value into an element. pv is the text or the interface itself for arrays of these, a
/// pointer to the value for all others.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayPutElement(SAFEARRAY* psa, LONG* rgIndices, void* pv);
/// The address of an element; DISP_E_BADINDEX outside the bounds.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayPtrOfIndex(SAFEARRAY* psa, LONG* rgIndices,
                                                        void** ppvData);
/// Copies an array with what its elements own; the copy is neither locked, fixed nor borrowed.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayCopy(SAFEARRAY* psa, SAFEARRAY** ppsaOut);
/// The element type; E_INVALIDARG where the descriptor does not tell it.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SafeArrayGetVartype(SAFEARRAY* psa, VARTYPE* pvt);

/// Sets a variant that holds nothing yet to VT_EMPTY.
VQ_EXPORT void STDMETHODCALLTYPE VariantInit(VARIANTARG* pvarg);
/// Frees what a variant owns and sets it to VT_EMPTY. By-reference content belongs to others.
VQ_EXPORT HRESULT STDMETHODCALLTYPE VariantClear(VARIANTARG* pvarg);
/// Copies a variant with what it owns; a reference stays a reference.
VQ_EXPORT HRESULT STDMETHODCALLTYPE VariantCopy(VARIANTARG* pvargDest, const VARIANTARG* pvargSrc);
/// Copies the value, following a reference.
VQ_EXPORT HRESULT STDMETHODCALLTYPE VariantCopyInd(VARIANT* pvarDest, const VARIANTARG* pvargSrc);
/// Converts a variant to type vt. Reals are rounded half to even to whole numbers; what does not
/// fit is DISP_E_OVERFLOW, what has no conversion DISP_E_TYPEMISMATCH. Texts of numbers are the
/// shortest that read back the same, dates are "YYYY-MM-DD" or "YYYY-MM-DD hh:mm:ss", whatever the
/// locale. Source and destination may be the same; the destination is untouched on failure.
VQ_EXPORT HRESULT STDMETHODCALLTYPE VariantChangeType(VARIANTARG* pvargDest,
                                                      const VARIANTARG* pvarSrc, USHORT wFlags,
                                                      VARTYPE vt);
/// As VariantChangeType; lcid only reaches an object that is asked for its default value.
VQ_EXPORT HRESULT STDMETHODCALLTYPE VariantChangeTypeEx(VARIANTARG* pvargDest,
                                                        const VARIANTARG* pvarSrc, LCID lcid,
                                                        USHORT wFlags, VARTYPE vt);

/// Sets the calling thread's error object; null clears it.
VQ_EXPORT HRESULT STDMETHODCALLTYPE SetErrorInfo(ULONG dwReserved, IErrorInfo* perrinfo);
/// Hands over the calling thread's error object and clears it; S_FALSE when there is none.
VQ_EXPORT HRESULT STDMETHODCALLTYPE GetErrorInfo(ULONG dwReserved, IErrorInfo** pperrinfo);
/// Makes an empty error object.
VQ_EXPORT HRESULT STDMETHODCALLTYPE CreateErrorInfo(ICreateErrorInfo** pperrinfo);

}  // extern "C"
