"""The component that LibreOffice loads: an object with a method for each function."""

import unohelper
from com.sun.star.lang import XLocalizable, XServiceInfo
from com.sun.star.sheet import XAddIn  # noqa: F401  (has to be known before ours)
from org.vqmath63 import XFunctions
from vqmath63_sheet import addin

IMPLEMENTATION = addin.SERVICE


class _Base(unohelper.Base, XFunctions, XServiceInfo, XLocalizable):
    def getImplementationName(self):  # noqa: N802
        return IMPLEMENTATION

    def supportsService(self, name):  # noqa: N802
        return name in self.getSupportedServiceNames()

    def getSupportedServiceNames(self):  # noqa: N802
        return (addin.SERVICE, "com.sun.star.sheet.AddIn")

    def setLocale(self, locale):  # noqa: N802
        self._locale = locale

    def getLocale(self):  # noqa: N802
        return self._locale


AddIn = type("AddIn", (_Base,), addin.methods())


def create(context):
    return AddIn()


g_ImplementationHelper = unohelper.ImplementationHelper()
g_ImplementationHelper.addImplementation(
    lambda context, *arguments: AddIn(), IMPLEMENTATION, (addin.SERVICE, "com.sun.star.sheet.AddIn"))
