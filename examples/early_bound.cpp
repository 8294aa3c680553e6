// Integrates a sampled curve through the dual interface's function table, as an early-bound host.
#include <cstdio>
#include <string>
#include <vqmath63/component/exports.hpp>

// The members of ztIntegrate in interface order. Not in an unnamed namespace: the compiler would
// take it for a class that nobody implements.
struct Integrate : IDispatch {
  virtual HRESULT get_IntegerationRule(LONG* result) = 0;
  virtual HRESULT put_IntegrationRule(LONG* rule) = 0;
  virtual HRESULT Integral(SAFEARRAY** xVals, SAFEARRAY** yVals, float* result) = 0;
};

namespace {

constexpr IID kIntegrate{
    0xAEDEC313, 0x167A, 0x4ACD, {0x95, 0x1E, 0xDA, 0xA8, 0xC5, 0xCD, 0x92, 0xC0}};

Integrate* create() {
  CLSID clsid;
  void* factory = nullptr;
  void* object = nullptr;
  if (FAILED(CLSIDFromProgID(u"vq140Analyse.ztIntegrate", &clsid)) ||
      FAILED(DllGetClassObject(clsid, IID_IClassFactory, &factory))) {
    return nullptr;
  }
  auto* maker = static_cast<IClassFactory*>(factory);
  maker->CreateInstance(nullptr, kIntegrate, &object);
  maker->Release();
  return static_cast<Integrate*>(object);
}

// An array of Single with indices from 1; the component works on these elements themselves.
SAFEARRAY* singles(const float (&values)[3]) {
  SAFEARRAYBOUND bound{3, 1};
  SAFEARRAY* array = SafeArrayCreate(VT_R4, 1, &bound);
  for (LONG i = 1; i <= 3; ++i) {
    float value = values[i - 1];
    SafeArrayPutElement(array, &i, &value);
  }
  return array;
}

// The words of the last failure on this thread.
std::string words() {
  IErrorInfo* info = nullptr;
  BSTR text = nullptr;
  if (GetErrorInfo(0, &info) != S_OK) return "no error information";
  info->GetDescription(&text);
  info->Release();
  std::string ascii(text, text + SysStringLen(text));
  SysFreeString(text);
  return ascii;
}

}  // namespace

int main() {
  Integrate* integrate = create();
  if (integrate == nullptr) return 1;
  SAFEARRAY* x = singles({0, 1, 2});
  SAFEARRAY* y = singles({0, 1, 4});
  const char* const names[] = {"trapezoidal", "Simpson", "forward", "backward"};
  for (LONG rule = 1; rule <= 4; ++rule) {
    float area = 0;
    integrate->put_IntegrationRule(&rule);
    if (FAILED(integrate->Integral(&x, &y, &area))) return 1;
    std::printf("%-12s %.6f\n", names[rule - 1], static_cast<double>(area));
  }

  SAFEARRAYBOUND bound{3, 1};
  SAFEARRAY* doubles = SafeArrayCreate(VT_R8, 1, &bound);
  float area = 0;
  const HRESULT failed = integrate->Integral(&x, &doubles, &area);
  std::printf("%08X %s\n", static_cast<unsigned>(failed), words().c_str());

  SafeArrayDestroy(doubles);
  SafeArrayDestroy(y);
  SafeArrayDestroy(x);
  integrate->Release();
  return 0;
}
