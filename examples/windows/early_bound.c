/* C, early bound, over the registered component. To build it with mingw-w64 and the header of the
 * package, in this folder:
 *
 *   gcc -I../../include early_bound.c -lole32 -loleaut32 -luuid
 *
 * Prints:
 * > e to the power 1 is 2.718282
 * > 3, 4 is 5.000000 away
 */
#define COBJMACROS
#include <initguid.h>
#include <windows.h>

#include <vq140Analyse.h>

#include <stdio.h>

int main(void) {
  _ztMathLib* maths = NULL;
  double result = 0, angle = 0;
  CoInitializeEx(NULL, COINIT_APARTMENTTHREADED);
  if (FAILED(CoCreateInstance(&CLSID_ztMathLib, NULL, CLSCTX_INPROC_SERVER, &IID__ztMathLib,
                              (void**)&maths))) {
    puts("vqmath63 is not registered for programs of this kind");
    return 1;
  }
  if (SUCCEEDED(_ztMathLib_aLog(maths, 1, &result))) {
    printf("e to the power 1 is %.6f\n", result);
  }
  if (SUCCEEDED(_ztMathLib_Rectangular_to_Polar(maths, 3, 4, &result, &angle))) {
    printf("3, 4 is %.6f away\n", result);
  }
  _ztMathLib_Release(maths);
  CoUninitialize();
  return 0;
}
