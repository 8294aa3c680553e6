// C++, early bound: through the classes' own interfaces. To build it with mingw-w64 and the header
// of the package, in this folder:
//
//   g++ -std=c++20 -I../../include early_bound.cpp -static -lole32 -loleaut32 -luuid
//
// or with Visual C++:
//
//   cl /std:c++20 /EHsc /I..\..\include early_bound.cpp ole32.lib oleaut32.lib uuid.lib
//
// The program takes the registered component; with the path of a manifest, such as
// ..\..\x64\vqmath63.manifest, it needs no registration.
//
// Prints:
// > Simpson 2.666667
// > 800A000D Type mismatch: argument 'yVals' of Integral must be a one-dimensional array of Single
// > Error:Subscript out of range (No.9) In [ztAnalyse - Integration (Code) (Simpson)]
#include <initguid.h>  // before the header: so it has the identifiers themselves
#include <windows.h>
//
#include <vq140Analyse.h>

#include <cstdio>
#include <initializer_list>
#include <vqmath63/component/exports.hpp>

namespace {

// Elements 1 to 3; the component works on these themselves, without a copy.
SAFEARRAY* singles(float a, float b, float c) {
  SAFEARRAYBOUND bound{3, 1};
  SAFEARRAY* array = SafeArrayCreate(VT_R4, 1, &bound);
  const float values[] = {a, b, c};
  for (LONG i = 1; i <= 3; ++i) {
    float value = values[i - 1];
    SafeArrayPutElement(array, &i, &value);
  }
  return array;
}

// Until the context ends, this thread finds the classes of a manifest as if they were registered.
void use_manifest(const char* path) {
  ACTCTXA context{};
  context.cbSize = sizeof context;
  context.lpSource = path;
  ULONG_PTR cookie = 0;
  const HANDLE made = CreateActCtxA(&context);
  if (made == INVALID_HANDLE_VALUE || !ActivateActCtx(made, &cookie)) {
    std::printf("%s cannot be used\n", path);
  }
}

// What no member raises: lines of routines that went on with what they had.
void VQ_API show_line(const OLECHAR* line, BOOL, void*) {
  std::printf("%ls\n", line);
}

void use(_ztIntegrate* integrate) {
  SAFEARRAY* x = singles(0, 1, 2);
  SAFEARRAY* y = singles(0, 1, 4);
  LONG rule = 2;  // Simpson's
  float area = 0;
  integrate->put_IntegrationRule(&rule);
  if (SUCCEEDED(integrate->Integral(&x, &y, &area))) {
    std::printf("Simpson %.6f\n", static_cast<double>(area));
  }

  // A refusal is a failed result with a text.
  SAFEARRAYBOUND bound{3, 1};
  SAFEARRAY* doubles = SafeArrayCreate(VT_R8, 1, &bound);
  const HRESULT refused = integrate->Integral(&x, &doubles, &area);
  IErrorInfo* info = nullptr;
  BSTR text = nullptr;
  if (FAILED(refused) && GetErrorInfo(0, &info) == S_OK) {
    info->GetDescription(&text);
    std::printf("%08lX %ls\n", static_cast<unsigned long>(refused), text);
    SysFreeString(text);
    info->Release();
  }

  // Where there are fewer ordinates than abscissae the routine itself fails: a line, and a result
  // of 0.
  bound.cElements = 2;
  SAFEARRAY* shorter = SafeArrayCreate(VT_R4, 1, &bound);
  integrate->Integral(&x, &shorter, &area);
  for (SAFEARRAY* array : {x, y, doubles, shorter}) SafeArrayDestroy(array);
}

}  // namespace

int main(int count, char** words) {
  if (count > 1) use_manifest(words[1]);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  _ztIntegrate* integrate = nullptr;
  const HRESULT made = CoCreateInstance(CLSID_ztIntegrate, nullptr, CLSCTX_INPROC_SERVER,
                                        IID__ztIntegrate, reinterpret_cast<void**>(&integrate));
  if (FAILED(made)) {
    std::printf("no component: %08lX\n", static_cast<unsigned long>(made));
    return 1;
  }
  // The library is loaded by now, whichever way it was found.
  const auto set_callback =
      reinterpret_cast<decltype(&VqSetMessageCallback)>(reinterpret_cast<void*>(
          GetProcAddress(GetModuleHandleA("vqmath63.dll"), "VqSetMessageCallback")));
  set_callback(&show_line, nullptr);
  use(integrate);
  set_callback(nullptr, nullptr);
  integrate->Release();
  CoUninitialize();
  return 0;
}
