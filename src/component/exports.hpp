// The functions that the component exports beside the usual entry points.
#pragma once

#include <stdint.h>

#include "automation/types.hpp"

extern "C" {

/// Takes one line of the error sink: an error, the start-up line (`is_close_down` false) or the
/// close-down line. `line` is the callee's to read until it returns.
typedef void(VQ_API* VqMessageCallback)(const OLECHAR* line, BOOL is_close_down, void* context);

/// Has this thread's built-in error sink hand its lines to `callback` instead of the log file or
/// the standard error stream; null takes it away again. Lasts beyond CloseDown.
VQ_EXPORT HRESULT VQ_API VqSetMessageCallback(VqMessageCallback callback, void* context);

/// What one argument, or the result, is in each of the calls of VqCallMany: the value of call k
/// lies k times `stride` bytes behind `first`. Stride 0 is one value for all calls.
typedef struct VqColumn {
  void* first;
  int64_t stride;
} VqColumn;

/// How many of the calls of VqCallMany failed, and the number of the first of them, from 0; -1 for
/// none.
typedef struct VqFailures {
  int64_t count;
  int64_t first;
} VqFailures;

/// Makes `calls` calls of one member of an object, one after the other, at the cost of a native
/// loop: `flags` and `member` are those of an Invoke (DISPATCH_METHOD, the dispatch id), and there
/// is a column per argument of the member.
///
/// Numbers, dates (DATE) and Booleans (VARIANT_BOOL) lie in memory as they are, of the argument's
/// own type; one by reference that the member writes is written where it lies. A text (BSTR, in a
/// variable of the host) and an array (SAFEARRAY*, likewise) are one for all calls, stride 0. A
/// column without memory leaves an optional argument out. Results go to `results`, which a member
/// without one disregards; they may lie over arguments of the same stride.
///
/// A call that fails gives the member's zero, and the others are made all the same. Error lines
/// of several calls go to the error sink when all are made: each line once, however often it came.
/// Where a call would have failed by its result code, the code of the first is the result, with its
/// text as the thread's error info. `failures`, unless null, tells how many failed.
///
/// E_NOINTERFACE when the object is not one of this component in this apartment,
/// DISP_E_MEMBERNOTFOUND, DISP_E_BADPARAMCOUNT for a wrong number of columns, E_INVALIDARG for a
/// negative number of calls or a stride where one value has to be, E_POINTER; nothing is called
/// then.
VQ_EXPORT HRESULT VQ_API VqCallMany(void* object, DISPID member, WORD flags, int64_t calls,
                                    const VqColumn* arguments, UINT argument_count,
                                    const VqColumn* results, VqFailures* failures);

/// The same for all threads of the process that have no callback of their own, such as the
/// system's, in which an object lives whose host calls from another apartment. The callback runs in
/// the thread that the line is of, several at once if need be. After null has taken it away, a call
/// that another thread has begun may still be under way.
VQ_EXPORT HRESULT VQ_API VqSetProcessMessageCallback(VqMessageCallback callback, void* context);

/// The last line of this thread's built-in error sink, or with `of_process` that of all threads, to
/// be freed with SysFreeString; whoever took it. The line is forgotten then: an empty text says
/// that none has come since it was asked for.
VQ_EXPORT HRESULT VQ_API VqLastMessage(BOOL of_process, BSTR* line);

/// Describes the component as text, to be freed with SysFreeString. Lines end with a line feed,
/// their fields are separated by tabs.
///
/// With an empty or null programmatic id, a line per class: programmatic id, name, help, class id.
/// With one of a class, a line per member in interface order: kind ("method", "get", "let"), name,
/// dispatch id, result type (empty for none), help, and then per argument four fields: name, type,
/// direction, and "required", or "optional=" and the default. Directions are "in" for an argument
/// by value, and by reference "in,ref" for one that the member only reads, "in,lent" for one that
/// only a companion of the host's own could change, "out" for one that brings a result, whatever it
/// held before, and "in,out" for one that is read and changed. Types are Single, Double, Long,
/// Boolean, Date, String, and for arrays "Single()" or "Single(,)". With one of a class, a dot and
/// the name of a member, a line per word that an argument of the member must be one of: argument
/// and word; and a line per named number that it may be: argument, name, number, and the name and
/// the help of the enumeration; nothing where it takes any text or number. CO_E_CLASSSTRING for an
/// unknown programmatic id or member.
VQ_EXPORT HRESULT VQ_API VqDescribe(const OLECHAR* programmatic_id, BSTR* text);

#ifndef _WIN32  // where the system's own headers declare them

/// The class identifier of a programmatic id; CO_E_CLASSSTRING when there is none.
VQ_EXPORT HRESULT CLSIDFromProgID(LPCOLESTR programmatic_id, CLSID* clsid);

/// The class factory of a class.
VQ_EXPORT HRESULT VQ_API DllGetClassObject(REFCLSID clsid, REFIID iid, void** out);

#endif

}  // extern "C"
