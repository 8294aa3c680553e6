#include "values.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <set>

#include "component/class_list.hpp"
#include "script_object.hpp"

namespace vqmath63::fuzz {
namespace {

// The corpus refers to places of these lists: append only.
constexpr double kInfinity = std::numeric_limits<double>::infinity();
// clang-format off
constexpr double kNumbers[] = {
    0, -0.0, 1, -1, 2, 3, 4, 5, 7, 8, 10, 0.5, -0.5, 0.25, 1.5, 2.5, -2.5, 0.1, 100, 1000, 1e4,
    1e6, 1e-6, 1e-8, 1e-15, 1e-30, 1e-45, 1e-310, 5e-324, 1e10, 1e15, 1e19, 1e20, 1e38, 3e38,
    3.4028234663852886e38, 3.5e38, -3e38, 1e150, 1e154, 1e155, 1e300, 1e308, -1e308, 1.797e308,
    kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN(), 32767, 32768, 65536,
    16777217, 2147483647, 2147483648.0, 2147483646, -2147483648.0, -2147483649.0, 536870913, 1e9,
    4294967296.0, 3.14159265358979, 170.6, 171.624, -170.624, 700, 709.8, -745.2, 0.999999,
    1.000001, 36526, 45000.25, -1.25, 2958465.99, 2958466, -657434, -657435, 12, 25, 31, 365.25,
    0.3333333333333333, 20, 50, -3};

const OLECHAR* const kWords[] = {
    u"", u"+", u"-", u"*", u"/", u"x", u"1", u"-2.5e3", u" 7 ", u"1e400", u"True", u"False",
    u"&H1F", u"1,5", u"nan", u"inf", u"Linear", u"Exponential", u"poly", u"LOG.txt",
    u"2023-01-31", u"2023-01-31 12:30:15", u"31/01/2023", u"12:30", u"1899-12-30 00:00:00",
    u"0100-01-01", u"9999-12-31 23:59:59", u"10000-01-01", u"2023-02-30", u"12345678901234567890",
    u"0.00000000000000000001", u"\xD83D\xDE00", u"\xD800", u"\u00E4\u00F6",
    u"922337203685477.5807", u"1e-400", u".5."};
// clang-format on

// Behind those, the words that the members themselves take.
const std::vector<std::u16string>& words() {
  static const auto all = [] {
    std::vector<std::u16string> list(std::begin(kWords), std::end(kWords));
    for (const automation::ClassInfo* info : component::classes()) {
      const std::string id = component::programmatic_id(*info);
      list.emplace_back(id.begin(), id.end());
      for (const automation::MemberInfo& member : info->members) {
        for (const automation::ArgumentInfo& argument : member.arguments) {
          if (argument.words == nullptr) continue;
          list.emplace_back();
          for (const char c : argument.words()) {
            if (c == '\n') {
              list.emplace_back();
            } else {
              list.back() += static_cast<char16_t>(c);
            }
          }
        }
      }
    }
    return list;
  }();
  return all;
}

// clang-format off
constexpr VARTYPE kTypes[] = {
    VT_R8, VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R4, VT_CY, VT_DATE, VT_BSTR, VT_DISPATCH, VT_ERROR,
    VT_BOOL, VT_UNKNOWN, VT_DECIMAL, VT_I1, VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_UI8, VT_INT,
    VT_UINT, VT_VARIANT, VT_HRESULT, VT_RECORD, 0x0FFF, VT_CLSID};
// clang-format on

std::map<SAFEARRAY*, ULONG> locked;  // by the host itself
std::set<SAFEARRAY*> borrowed;       // whose memory SafeArrayDestroy leaves alone

template <class T>
T whole(double x) {
  constexpr auto kLow = static_cast<double>(std::numeric_limits<T>::min());
  constexpr auto kHigh = static_cast<double>(std::numeric_limits<T>::max() / 2);
  return x != x ? T{} : static_cast<T>(std::clamp(x, kLow, kHigh));
}

void make_scalar(Bytes& bytes, VARTYPE vt, VARIANT& out) {
  out.vt = vt;
  switch (vt) {
    case VT_EMPTY:
    case VT_NULL:
      return;
    case VT_BSTR:
      out.bstrVal = text(bytes);
      return;
    case VT_BOOL:
      out.boolVal = bytes.raw<VARIANT_BOOL>();
      return;
    case VT_ERROR:
      out.scode = (bytes.byte() & 1) != 0 ? DISP_E_PARAMNOTFOUND : bytes.raw<SCODE>();
      return;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      out.pdispVal = new_script_object(bytes);
      return;
    case VT_DECIMAL:
      out.decVal = bytes.raw<DECIMAL>();
      out.vt = VT_DECIMAL;
      return;
    case VT_R4:
      out.fltVal = static_cast<float>(number(bytes));
      return;
    case VT_R8:
    case VT_DATE:
      out.dblVal = number(bytes);
      return;
    case VT_VARIANT:
    case VT_RECORD:
      out.vt = VT_EMPTY;
      return;
    default:
      out.llVal = whole<LONGLONG>(number(bytes));
  }
}

/// An element of an array of variants.
void make_element(Bytes& bytes, HostVariables& variables, VARIANT& out) {
  const std::uint8_t kind = bytes.byte();
  if (kind >= 0xF0) {
    out.vt = VT_BYREF | VT_VARIANT;
    out.pvarVal = kind == 0xFF ? nullptr : &variables[kind % kVariables].v;
  } else if (kind >= 0xE8) {
    // Text and interfaces by reference would have to live on.
    HostVariable& to = variables[kind % kVariables];
    if (to.v.vt != VT_R8 && to.v.vt != VT_I4) return;
    out.vt = static_cast<VARTYPE>(VT_BYREF | to.v.vt);
    out.byref = &to.v.llVal;
    ++to.fixed_type;
  } else {
    make_scalar(bytes, kTypes[kind % std::size(kTypes)], out);
  }
}

/// Where the elements of an array come from.
class Elements {
 public:
  explicit Elements(Bytes& bytes) : bytes_(bytes), way_(bytes.byte() % 8) {
    if (way_ < 3) return;
    start_ = number(bytes);
    step_ = way_ > 3 ? number(bytes) : 0.0;
    if (way_ > 4) {
      odd_place_ = bytes.byte();
      odd_ = number(bytes);
    }
  }
  double next() {
    const std::size_t i = place_++;
    if (way_ == 0) return static_cast<double>(bytes_.raw<float>());
    if (way_ == 1) return number(bytes_);
    if (way_ == 2) return bytes_.raw<std::int8_t>();
    if (way_ > 4 && i == odd_place_) return odd_;
    if (way_ == 6) return start_ + static_cast<double>(i * i) * step_;
    if (way_ == 7) return i % 2 == 0 ? start_ : step_;
    return start_ + static_cast<double>(i) * step_;
  }

 private:
  Bytes& bytes_;
  std::size_t way_;
  std::size_t place_ = 0;
  std::size_t odd_place_ = 0;
  double start_ = 0, step_ = 0, odd_ = 0;
};

void make_array(Bytes& bytes, VARTYPE element, int rank, HostVariables& variables, VARIANT& out) {
  enum : std::uint8_t {
    kNone = 4,
    kFixed = 8,
    kStatic = 16,
    kLocked = 32,
    kOtherRank = 64,
    kFull = 128
  };
  const std::uint8_t form = bytes.byte();
  out.vt = static_cast<VARTYPE>(VT_ARRAY | element);
  out.parray = nullptr;
  if ((form & kNone) != 0) return;
  if ((form & kOtherRank) != 0) rank = 1 + static_cast<int>(bytes.below(4));
  SAFEARRAYBOUND bounds[4] = {};
  std::size_t count = 1;
  for (int d = 0; d < rank; ++d) {
    bounds[d].cElements = bytes.byte();
    if (rank > 2) bounds[d].cElements %= 8;
    constexpr LONG kLower[] = {1, 0};
    bounds[d].lLbound = (form & 3) < 2    ? kLower[form & 3]
                        : (form & 3) == 2 ? bytes.raw<std::int8_t>()
                                          : whole<LONG>(number(bytes));
    count *= bounds[d].cElements;
  }
  out.parray = SafeArrayCreate(element, static_cast<UINT>(rank), bounds);
  if (out.parray == nullptr) return;
  auto* place = static_cast<char*>(out.parray->pvData);
  Elements elements(bytes);
  for (std::size_t i = 0; i < count; ++i, place += out.parray->cbElements) {
    VARIANT made{};
    if (element == VT_VARIANT) {
      make_element(bytes, variables, made);
      std::memcpy(place, &made, sizeof made);
      continue;
    }
    if (element == VT_R4) {
      made.fltVal = static_cast<float>(elements.next());
    } else if (element == VT_R8 || element == VT_DATE) {
      made.dblVal = elements.next();
    } else if (element == VT_BOOL) {
      made.boolVal = whole<VARIANT_BOOL>(elements.next());
    } else if (element == VT_BSTR || element == VT_DISPATCH || element == VT_UNKNOWN) {
      make_scalar(bytes, element, made);
    } else {
      made.llVal = whole<LONGLONG>(elements.next());
    }
    std::memcpy(place, &made.llVal, std::min<std::size_t>(out.parray->cbElements, 8));
  }
  if ((form & kFixed) != 0) out.parray->fFeatures |= FADF_FIXEDSIZE;
  if ((form & kStatic) != 0) {
    out.parray->fFeatures |= FADF_STATIC;
    borrowed.insert(out.parray);
  }
  if ((form & kLocked) != 0) {
    locked[out.parray] = 1;
    SafeArrayLock(out.parray);
  }
  if ((form & kFull) != 0) {  // of locks
    locked[out.parray] = out.parray->cLocks = std::numeric_limits<ULONG>::max();
  }
}

}  // namespace

void fail(const char* what, const std::string& detail) {
  std::fprintf(stdout, "\nfuzz: %s %s\n", what, detail.c_str());
  std::fflush(stdout);
  std::abort();
}

HostVariable::~HostVariable() {
  clear(*this);
}

ULONG own_locks(SAFEARRAY* array) {
  const auto found = locked.find(array);
  return found == locked.end() ? 0 : found->second;
}

bool clear(HostVariable& variable) {
  if (variable.is_array() && variable.v.parray != nullptr) {
    SAFEARRAY* const array = variable.v.parray;
    if (array->cLocks != own_locks(array)) {
      require(SafeArrayDestroy(array) == DISP_E_ARRAYISLOCKED, "a held array could be destroyed");
      return false;
    }
    locked.erase(array);
    if (borrowed.erase(array) != 0) array->fFeatures &= static_cast<USHORT>(~FADF_STATIC);
    array->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
    array->cLocks = 0;
    variable.v = {};
    require(SafeArrayDestroy(array) == S_OK, "an array cannot be destroyed");
    return true;
  }
  VARIANT old = variable.v;
  variable.v = {};
  VariantClear(&old);
  return true;
}

void clear(VARIANT& value) {
  HostVariable last;
  std::swap(last.v, value);
}

void end_arrays() {
  for (SAFEARRAY* array : borrowed) {  // whose variable a call has given another value
    array->fFeatures &= static_cast<USHORT>(~FADF_STATIC);
    array->cLocks = 0;
    SafeArrayDestroy(array);
  }
  borrowed.clear();
  locked.clear();
}

double number(Bytes& bytes) {
  const std::uint8_t tag = bytes.byte();
  switch (tag) {
    case 0xFF:
      return static_cast<double>(bytes.raw<float>());
    case 0xFE:
      return bytes.raw<double>();
    case 0xFD:
      return bytes.raw<std::int8_t>();
    case 0xFC:
      return bytes.raw<std::int16_t>();
    case 0xFB:
      return bytes.raw<std::int32_t>();
    case 0xFA:
      return bytes.raw<std::int8_t>() / 16.0;
    case 0xF9:
      return bytes.raw<std::int16_t>() / 256.0;
    case 0xF8:
      return bytes.raw<std::uint16_t>() / 65536.0;
    default:
      return kNumbers[tag % std::size(kNumbers)];
  }
}

BSTR text(Bytes& bytes) {
  const std::uint8_t tag = bytes.byte();
  std::u16string characters;
  if (tag == 0xFF) {
    return nullptr;
  } else if (tag >= 0xFD) {
    for (const char c : bytes.take(bytes.byte())) {
      characters += static_cast<char16_t>(tag == 0xFE ? static_cast<unsigned char>(c) : c * 257);
    }
  } else {
    characters = words()[tag % words().size()];
  }
  // A log goes to a file of the working directory.
  if (characters.size() > 1 && tag >= 0xFD) {
    std::replace(characters.begin(), characters.end(), u'/', u'_');
  }
  return SysAllocStringLen(characters.data(), static_cast<UINT>(characters.size()));
}

VARTYPE type(Bytes& bytes) {
  const std::uint8_t tag = bytes.byte();
  const VARTYPE element = kTypes[(tag & 0x3F) % std::size(kTypes)];
  return static_cast<VARTYPE>(element | ((tag & 0x80) != 0 ? VT_ARRAY : 0) |
                              ((tag & 0x40) != 0 ? VT_BYREF : 0));
}

void make(Bytes& bytes, const ValueType& wanted, HostVariables& variables, VARIANT& out) {
  const std::uint8_t kind = bytes.byte();
  if (kind == 0 && wanted.rank > 0) {
    make_array(bytes, wanted.vt, wanted.rank, variables, out);
  } else if (kind == 0) {
    make_scalar(bytes, wanted.vt, out);
  } else if ((kind & 0x80) != 0) {
    VARTYPE element = kTypes[(kind & 0x3F) % std::size(kTypes)];
    if (element == VT_EMPTY || element == VT_NULL) element = VT_VARIANT;
    make_array(bytes, element, wanted.rank == 0 ? 1 : wanted.rank, variables, out);
  } else {
    make_scalar(bytes, kTypes[kind % std::size(kTypes)], out);
  }
}

}  // namespace vqmath63::fuzz
