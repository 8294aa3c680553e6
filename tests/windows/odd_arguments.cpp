// Null pointers for every argument by reference and for every result, and odd values for every
// argument by name: each call ends with a result code and words, and leaves the host as it was.
// Results that find no room say so. Argument: the table of the interfaces.
#include <xmmintrin.h>

#include <limits>

#include "member_call.hpp"

using namespace vqmath63::calls;

namespace {

int calls = 0;

// What a host can send at all: each number type at its ends, texts, no values, references that lead
// nowhere or round, arrays of every type, rank and state.
std::vector<Variable> odd_values() {
  std::vector<Variable> all;
  const auto add = [&](VARTYPE type, double number) {
    VARIANT from{};
    from.vt = VT_R8;
    from.dblVal = number;
    VariantChangeType(&all.emplace_back().v, &from, 0, type);
  };
  const auto raw = [&](VARTYPE type, void* pointer) {
    all.emplace_back().v.vt = type;
    all.back().v.byref = pointer;
  };
  const double inf = std::numeric_limits<double>::infinity();
  for (const double number :
       {0.0, -1.0, 1.5, 2147483647.0, 3e9, 1e300, -1e-310, inf, -inf, double{NAN}})
    add(VT_R8, number);
  for (const VARTYPE type : {VT_I1, VT_I2, VT_I4, VT_I8, VT_UI1, VT_UI2, VT_UI4, VT_UI8, VT_R4,
                             VT_CY, VT_DATE, VT_BOOL, VT_DECIMAL, VT_BSTR})
    add(type, 2);
  constexpr int kNowhere[] = {VT_NULL, VT_ERROR,  VT_DISPATCH,      VT_UNKNOWN,
                              VT_BSTR, VT_RECORD, VT_ARRAY | VT_R4, VT_ARRAY | VT_VARIANT,
                              VT_ARRAY};
  for (const int type : kNowhere) {
    raw(static_cast<VARTYPE>(type), nullptr);
    raw(static_cast<VARTYPE>(VT_BYREF | type), nullptr);
  }
  for (const VARTYPE type : {VT_VARIANT, VT_R8, VT_DECIMAL, VT_EMPTY}) {
    raw(static_cast<VARTYPE>(VT_BYREF | type), nullptr);
  }
  for (const wchar_t* words : {L"", L"oil", L" 2 ", L"1e999", L"2023-02-30"})
    raw(VT_BSTR, SysAllocString(words));
  const auto array = [&](VARTYPE type, UINT rank, ULONG count, LONG lower) -> SAFEARRAY* {
    SAFEARRAYBOUND bounds[3] = {{count, lower}, {2, 1}, {2, 1}};
    raw(static_cast<VARTYPE>(VT_ARRAY | type), SafeArrayCreate(type, rank, bounds));
    return all.back().v.parray;
  };
  for (const VARTYPE type :
       {VT_I1, VT_I2, VT_I4, VT_I8, VT_UI1, VT_UI2, VT_UI4, VT_UI8, VT_R4, VT_R8, VT_CY, VT_DATE,
        VT_BOOL, VT_DECIMAL, VT_BSTR, VT_ERROR, VT_UNKNOWN, VT_DISPATCH, VT_VARIANT})
    array(type, 1, 3, 1);
  for (const UINT rank : {1U, 2U, 3U}) array(VT_R4, rank, 3, 0);
  for (const ULONG count : {0U, 1U}) array(VT_R4, 1, count, 2147483600);
  array(VT_R8, 2, 0, 1);
  array(VT_R4, 1, 3, -2147483647 - 1);
  array(VT_R4, 1, 3, 1)->fFeatures |= FADF_STATIC | FADF_FIXEDSIZE;
  SafeArrayDestroyData(array(VT_VARIANT, 1, 3, 1));
  return all;
}

// Arguments that fit, of small numbers.
std::vector<Variable> fitting(const Member& member) {
  std::vector<Variable> sent(member.arguments.size());
  for (std::size_t i = 0; i < sent.size(); ++i) {
    const Type& type = member.arguments[i];
    set(sent[i],
        type.rank == 2       ? "[1 2; 2 4; 3 6]"
        : type.rank == 1     ? "[1 2 3]"
        : type.vt == VT_BOOL ? "True"
        : type.vt == VT_BSTR ? "\"day\""
                             : "2",
        type);
  }
  return sent;
}

void null_pointers(IUnknown* object, const std::string& what, const Member& member) {
  for (std::size_t i = 0; i <= member.arguments.size(); ++i) {
    const bool is_result = i == member.arguments.size();
    if (is_result ? member.result.vt == VT_EMPTY : !member.arguments[i].by_ref) continue;
    std::vector<Variable> sent = fitting(member);
    MemberCall call(member, sent, true);
    if (!is_result) call.words[i].byref = nullptr;
    Variable result;
    const HRESULT code = call.by_vtable(object, is_result ? nullptr : &result.v);
    const bool optional = !is_result && !member.fallbacks[i].empty();
    checks.result(code, optional ? S_OK : E_POINTER, what + ", null for " + std::to_string(i + 1));
    Holder<IErrorInfo> told;
    checks.that(GetErrorInfo(0, told.place()) == (optional ? S_FALSE : S_OK), what + ": words");
    ++calls;
  }
}

void odd_arguments(IDispatch* object, const std::string& what, const std::string& kind, DISPID id,
                   const Member& member) {
  for (std::size_t i = 0; i < member.arguments.size(); ++i) {
    for (const bool by_ref : {false, true}) {
      std::vector<Variable> odd = odd_values();
      for (std::size_t k = 0; k < odd.size(); ++k) {
        std::vector<Variable> sent = fitting(member);
        MemberCall call(member, sent, true);
        call.words[i] = odd[k].v;
        if (by_ref) {
          call.words[i].vt = VT_BYREF | VT_VARIANT;
          call.words[i].pvarVal = &odd[k].v;
        }
        Variable result;
        const std::string where =
            what + ", argument " + std::to_string(i + 1) + " odd value " + std::to_string(k);
        const HRESULT code = call.by_name(kind, &result.v, own_invoke(object, id));
        ++calls;
        const auto facility = static_cast<unsigned long>(code) & 0xFFFF0000U;
        checks.that(code == S_OK || facility == 0x800A0000U || facility == 0x80020000U,
                    where + ": " + std::to_string(code));
        checks.that((facility == 0x800A0000U) == !call.exception_words.empty(), where + ": words");
        checks.that(code == S_OK || result.v.vt == VT_EMPTY, where + ": a result of a failure");
        const VARIANT& left = odd[k].v;
        checks.that((left.vt & VT_ARRAY) == 0 || (left.vt & VT_BYREF) != 0 ||
                        left.parray == nullptr || left.parray->cLocks == 0,
                    where + ": locks");
        if ((left.vt & VT_ARRAY) != 0 && left.vt < VT_BYREF && left.parray != nullptr)
          left.parray->fFeatures &= static_cast<USHORT>(~(FADF_STATIC | FADF_FIXEDSIZE));
        checks.that((_mm_getcsr() & 0xFFC0) == 0x1F80, where + ": floating-point state");
      }
    }
  }
}

std::string last_line;
void STDMETHODCALLTYPE keep(const OLECHAR* line, BOOL, void*) {
  last_line.clear();
  for (; *line != 0; ++line) last_line += static_cast<char>(*line);
}

// Second derivatives that are no Decimals, or too many for the array that is there, or for any.
void results_without_room(const Interfaces& interfaces) {
  const struct {
    const char* what;
    ULONG samples;
    VARTYPE result;
    USHORT features;
    ULONG locks;
    const char* told;
  } rows[] = {
      {"as Decimals", 4, VT_DECIMAL, 0, 0, "Overflow: argument 'd2ydx2' of SecondDerivative"},
      {"fixed", 4, VT_VARIANT, FADF_FIXEDSIZE, 0, "This array is fixed or temporarily locked: arg"},
      {"locked", 4, VT_VARIANT, 0, 1,
       "This array is fixed or temporarily locked: argument 'd2ydx2'"},
      {"fixed, exact", 4, VT_R8, FADF_FIXEDSIZE, 0,
       "Error:This array is fixed or temporarily locked"},
      {"locked, exact", 4, VT_R8, 0, 1, "Error:This array is fixed or temporarily locked (No.10)"},
#ifdef _WIN64  // of 4 GiB and more: as variants, as Doubles
      {"in scripts", 178956971, VT_EMPTY, 0, 0, "Out of memory: argument 'd2ydx2'"},
      {"anywhere", 536870913, VT_R8, 0, 0, "Error:Out of memory (No.7)"},
#endif
  };
  Holder<IDispatch> object;
  create(CLSID_ztDifferentiate, object);
  Holder<IUnknown> dual;
  object->QueryInterface(IID__ztDifferentiate, dual.untyped());
  const DISPID id = id_of(object.get(), "SecondDerivative");
  const Member& member = interfaces.of("ztDifferentiate call SecondDerivative");
  for (const auto& row : rows) {
    // Zeros, of which nothing lies in memory until it is used, but for the first.
    void* const x = VirtualAlloc(nullptr, row.samples * sizeof(double), MEM_COMMIT | MEM_RESERVE,
                                 PAGE_READWRITE);
    if (!checks.that(x != nullptr, "memory for x")) continue;
    for (int i = 0; i < 4; ++i) static_cast<double*>(x)[i] = i * i * 1e-20;
    std::vector<Variable> sent = fitting(member);
    SAFEARRAY* const samples = sent[0].v.parray;
    void* const elements = std::exchange(samples->pvData, x);
    samples->rgsabound[0].cElements = row.samples;
    set(sent[1], "[0 1 9 36]", member.arguments[1]);
    VARIANT& result = sent[2].v;
    VariantClear(&result);
    if (row.result != VT_EMPTY) {
      SAFEARRAYBOUND bound{1, 1};
      result.vt = static_cast<VARTYPE>(VT_ARRAY | row.result);
      result.parray = SafeArrayCreate(row.result, 1, &bound);
      result.parray->fFeatures |= row.features;
      result.parray->cLocks = row.locks;
    }
    SAFEARRAY* const before = result.parray;
    for (const bool by_name : {true, false}) {
      if (!by_name && row.result != VT_R8) continue;  // the dual interface takes no others
      MemberCall call(member, sent, false);
      if (row.result == VT_EMPTY) {
        call.words[2].vt = VT_BYREF | VT_VARIANT;
        call.words[2].pvarVal = &result;
      }
      last_line.clear();
      const HRESULT code = by_name ? call.by_name("call", nullptr, own_invoke(object.get(), id))
                                   : call.by_vtable(dual.get(), nullptr);
      ++calls;
      const std::string told = FAILED(code) ? call.exception_words : last_line;
      checks.that(told.starts_with(row.told), "a result " + std::string(row.what) + ": " + told);
      checks.that(result.parray == before, "what it was for stays");
    }
    if (before != nullptr) before->cLocks = 0;
    samples->pvData = elements;
    samples->rgsabound[0].cElements = 3;
    VirtualFree(x, 0, MEM_RELEASE);
  }
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) return 2;
  CoInitialize(nullptr);
  {
    Interfaces interfaces(words[1]);
    for (const auto& [key, member] : interfaces.members()) {
      const auto of = parts(key, ' ');
      Holder<IDispatch> object;
      checks.result(create(class_row(of[0]).clsid, object), S_OK, of[0]);
      exported<HRESULT(STDMETHODCALLTYPE*)(void(STDMETHODCALLTYPE*)(const OLECHAR*, BOOL, void*),
                                           void*)>("VqSetMessageCallback")(&keep, nullptr);
      Holder<IUnknown> dual;
      object->QueryInterface(class_row(of[0]).iid, dual.untyped());
      null_pointers(dual.get(), key, member);
      odd_arguments(object.get(), key, of[1], id_of(object.get(), of[2]), member);
    }
    results_without_room(interfaces);
    checks.that(interfaces.members().size() > 150, "every member");
  }
  std::printf("calls %d\n", calls);
  CoUninitialize();
  return checks.close();
}
