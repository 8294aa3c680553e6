// An early-bound host: the dual interfaces through their vtables, with arrays and errors as such
// hosts see them. Argument: the component's manifest where it is to be used without registration.
#include <xmmintrin.h>

#include "check.hpp"

namespace {

constexpr HRESULT kTypeMismatch = static_cast<HRESULT>(0x800A000D);

// The words of the failed call, as error info has them; the info is taken away by reading it.
void error_words(const char* words, const char* source, REFIID iid) {
  Holder<IErrorInfo> info;
  if (!checks.that(GetErrorInfo(0, info.place()) == S_OK, "error info")) return;
  Text text, from;
  GUID interface_id{};
  info->GetDescription(&text.text);
  info->GetSource(&from.text);
  info->GetGUID(&interface_id);
  checks.that(text.ascii().find(words) != std::string::npos, "words '" + text.ascii() + "'");
  checks.that(from.ascii() == source, "source '" + from.ascii() + "'");
  checks.that(IsEqualGUID(interface_id, iid), "interface of the error");
}

void arrays_and_errors() {
  Holder<_ztIntegrate> integrate;
  create(CLSID_ztIntegrate, integrate);
  HostArray from_zero({1e30, 0, 1, 2}, 0), ordinates({1e30, 0, 1, 4}, 0), table({0, 1, 2, 3}, 1, 2),
      flags({1, 1, 1}, 1, 0, VT_BOOL);
  const struct {
    const char* what;
    HostArray *x, *y;
    HRESULT code;
    float area;
  } rows[] = {{"from 0", &from_zero, &ordinates, S_OK, 3},
              {"x twice", &from_zero, &from_zero, S_OK, 2},
              {"wrong elements", &from_zero, &flags, kTypeMismatch, 0},
              {"wrong rank", &table, &ordinates, kTypeMismatch, 0}};
  float area = NAN;
  for (const auto& row : rows) {
    checks.result(integrate->Integral(&row.x->array, &row.y->array, &area), row.code, row.what);
    checks.that(area == row.area, row.what);
  }
  error_words("argument 'xVals' of Integral", "vq140Analyse.ztIntegrate", IID__ztIntegrate);
  integrate->Integral(&table.array, &ordinates.array, &area);
  integrate->Integral(&from_zero.array, &ordinates.array, &area);
  Holder<IErrorInfo> stale;
  checks.result(GetErrorInfo(0, stale.place()), S_FALSE, "no stale error info");
  checks.that(from_zero.array->cLocks == 0 && table.array->cLocks == 0, "no lock is left");
}

// A host that has traps unmasked and another rounding mode.
void floating_point_state() {
  Holder<_ztIntegrate> integrate;
  create(CLSID_ztIntegrate, integrate);
  HostArray x({0, 3e38}, 1);
  float area = NAN;
  constexpr unsigned kInvalidZeroDivideOverflow = 0x0680, kTowardZero = 0x6000, kStatus = 0x003F;
  const unsigned usual = _mm_getcsr();
  const unsigned host = ((usual & ~kStatus) & ~kInvalidZeroDivideOverflow) | kTowardZero;
  _mm_setcsr(host);
  const HRESULT called = integrate->Integral(&x.array, &x.array, &area);
  const unsigned after = _mm_getcsr();
  _mm_setcsr(usual);
  checks.result(called, S_OK, "an overflow that is trapped inside");
  checks.that((after & ~kStatus) == host, "control state after a call");
}

void use_manifest(const char* path) {
  CLSID clsid{};
  checks.result(CLSIDFromProgID(L"vq140Analyse.ztIntegrate", &clsid), CO_E_CLASSSTRING,
                "not registered");
  ACTCTXA manifest{};
  manifest.cbSize = sizeof manifest;
  manifest.lpSource = path;
  const HANDLE context = CreateActCtxA(&manifest);
  ULONG_PTR cookie = 0;
  checks.that(context != INVALID_HANDLE_VALUE && ActivateActCtx(context, &cookie), "the manifest");
  checks.result(CLSIDFromProgID(L"vq140Analyse.ztIntegrate", &clsid), S_OK, "its programmatic id");
}

}  // namespace

int main(int count, char** words) {
  if (count == 2) use_manifest(words[1]);
  CoInitialize(nullptr);
  arrays_and_errors();
  floating_point_state();
  CoUninitialize();
  return checks.close();
}
