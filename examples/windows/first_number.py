"""Python with pywin32: py -m pip install pywin32, then py first_number.py

Where this file was made there is no Python for Windows to run it in: its calls are held to the type
library by their names and the number of their arguments.
"""

import pythoncom
from win32com.client import VARIANT, Dispatch

# Sample 1 is element 1: element 0, which a list's array has, is not read.
integrate = Dispatch("vq140Analyse.ztIntegrate")
print("area", integrate.Integral([0, 0, 1, 2], [0, 0, 1, 4]))

# Results come back in variables: a VARIANT by reference is one.
kept = VARIANT(pythoncom.VT_BYREF | pythoncom.VT_VARIANT, None)
count = VARIANT(pythoncom.VT_BYREF | pythoncom.VT_I4, 0)
ok = VARIANT(pythoncom.VT_BYREF | pythoncom.VT_BOOL, False)
statistics = Dispatch("vq140Analyse.ztStatistics")
statistics.RemoveNulls(-999.25, [0, 10, -999.25, 20, 30], kept, count, ok)
statistics.BasicStatistics(kept.value, ok)
print(count.value, "values, mean", statistics.xBar)

# What a member refuses is an exception with a text.
try:
    integrate.Integral(7, [0, 0, 1, 4])
except pythoncom.com_error as failure:
    print(failure.excepinfo[2])
