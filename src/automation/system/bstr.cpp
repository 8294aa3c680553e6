// Texts of the automation boundary: one block with the byte count, the characters and a zero.
#include <cstdlib>
#include <string>

#include "automation/system/functions.hpp"

namespace {

// The count takes the last four of the bytes before the text; the others keep the text aligned.
constexpr std::size_t kPrefix = 8;
// A zero character, and one byte more for texts with an odd number of bytes.
constexpr std::size_t kSuffix = 3;
constexpr UINT kMaxBytes = 0x7FFFFFF0;

char* block_of(BSTR text) {
  return reinterpret_cast<char*>(text) - kPrefix;
}

/// A text of that many bytes: a copy of `source`, or zeros.
BSTR allocate(const void* source, std::size_t bytes) {
  if (bytes > kMaxBytes) return nullptr;
  const std::size_t size = kPrefix + bytes + kSuffix;
  char* block = static_cast<char*>(source != nullptr ? std::malloc(size) : std::calloc(1, size));
  if (block == nullptr) return nullptr;
  const auto count = static_cast<std::uint32_t>(bytes);
  std::memset(block, 0, kPrefix);
  std::memcpy(block + kPrefix - sizeof count, &count, sizeof count);
  if (source != nullptr) {
    std::memcpy(block + kPrefix, source, bytes);
    std::memset(block + kPrefix + bytes, 0, kSuffix);
  }
  return reinterpret_cast<BSTR>(block + kPrefix);
}

}  // namespace

BSTR STDMETHODCALLTYPE SysAllocString(const OLECHAR* psz) {
  if (psz == nullptr) return nullptr;
  return allocate(psz, std::char_traits<OLECHAR>::length(psz) * sizeof(OLECHAR));
}

BSTR STDMETHODCALLTYPE SysAllocStringLen(const OLECHAR* strIn, UINT ui) {
  return allocate(strIn, std::size_t{ui} * sizeof(OLECHAR));
}

BSTR STDMETHODCALLTYPE SysAllocStringByteLen(const char* psz, UINT len) {
  return allocate(psz, len);
}

INT STDMETHODCALLTYPE SysReAllocString(BSTR* pbstr, const OLECHAR* psz) {
  if (pbstr == nullptr) return FALSE;
  BSTR text = SysAllocString(psz);
  if (text == nullptr && psz != nullptr) return FALSE;
  SysFreeString(*pbstr);
  *pbstr = text;
  return TRUE;
}

INT STDMETHODCALLTYPE SysReAllocStringLen(BSTR* pbstr, const OLECHAR* psz, UINT len) {
  if (pbstr == nullptr) return FALSE;
  BSTR text = SysAllocStringLen(psz, len);
  if (text == nullptr) return FALSE;
  if (psz == nullptr && *pbstr != nullptr) {
    const std::size_t old = SysStringByteLen(*pbstr);
    const std::size_t bytes = std::size_t{len} * sizeof(OLECHAR);
    std::memcpy(text, *pbstr, old < bytes ? old : bytes);
  }
  SysFreeString(*pbstr);
  *pbstr = text;
  return TRUE;
}

UINT STDMETHODCALLTYPE SysStringLen(BSTR bstr) {
  return SysStringByteLen(bstr) / static_cast<UINT>(sizeof(OLECHAR));
}

UINT STDMETHODCALLTYPE SysStringByteLen(BSTR bstr) {
  if (bstr == nullptr) return 0;
  std::uint32_t count;
  std::memcpy(&count, reinterpret_cast<const char*>(bstr) - sizeof count, sizeof count);
  return count;
}

void STDMETHODCALLTYPE SysFreeString(BSTR bstr) {
  if (bstr != nullptr) std::free(block_of(bstr));
}
