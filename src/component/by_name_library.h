/* Part of by_name.h: the library, opened, and what it tells of itself. */
#ifndef VQMATH63_BY_NAME_LIBRARY_H
#define VQMATH63_BY_NAME_LIBRARY_H

#include <stdio.h>
#include <stdlib.h>

#include "component/by_name_values.h"

#ifdef _WIN32
#include <windows.h>
#define VQ_CALL __stdcall
#else
#include <dlfcn.h>
#define VQ_CALL
#endif

/* Takes an error line, the start-up line or the close-down line. */
typedef void (*VqTakeLine)(const char* line, void* context);

/* One argument, or the result, of many calls: the value of call k lies k times `step` bytes behind
 * `first`, as the member's own type has it (float, double, int32_t; int16_t for a Boolean). Step 0
 * is one value for all calls, no memory an argument left out. */
typedef struct VqStride {
  void* first;
  int64_t step;
} VqStride;

/* The component, opened; to be kept where it is while anything of it is used. */
typedef struct VqLibrary {
  char error[512];
  void* handle;
  VqTakeLine take_line;
  void* context;
  int32_t(VQ_CALL* describe)(const uint16_t*, uint16_t**);
  int32_t(VQ_CALL* call_many)(void*, int32_t, uint16_t, int64_t, const VqStride*, uint32_t,
                              const VqStride*, int64_t*);
  int32_t(VQ_CALL* set_callback)(void(VQ_CALL*)(const uint16_t*, int32_t, void*), void*);
  int32_t(VQ_CALL* last_message)(int32_t, uint16_t**);
  int32_t(VQ_CALL* class_object)(const void*, const void*, void**);
  uint16_t*(VQ_CALL* new_text)(const uint16_t*, uint32_t);
  uint32_t(VQ_CALL* text_length)(uint16_t*);
  void(VQ_CALL* free_text)(uint16_t*);
  void*(VQ_CALL* new_array)(uint16_t, uint32_t, const void*);
  int32_t(VQ_CALL* free_array)(void*);
  int32_t(VQ_CALL* error_info)(uint32_t, void**);
} VqLibrary;

static inline int vq_fail_(VqLibrary* vq, const char* words, const char* name) {
  snprintf(vq->error, sizeof vq->error, words, name);
  return 0;
}

/* A text of the component as UTF-8, for free(); null without memory. Half a surrogate pair becomes
 * U+FFFD. */
static inline char* vq_utf8_(const uint16_t* text, size_t length) {
  char* utf8 = (char*)malloc(length * 3 + 1);
  size_t to = 0, i;
  if (utf8 == NULL) return NULL;
  for (i = 0; i < length; ++i) {
    uint32_t c = text[i];
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < length && (text[i + 1] & 0xFC00) == 0xDC00) {
      c = 0x10000 + ((c & 0x3FF) << 10) + (text[++i] & 0x3FFu);
    } else if (c >= 0xD800 && c < 0xE000) {
      c = 0xFFFD;
    }
    if (c < 0x80) {
      utf8[to++] = (char)c;
      continue;
    }
    if (c >= 0x10000) {
      utf8[to++] = (char)(0xF0 | c >> 18);
      utf8[to++] = (char)(0x80 | (c >> 12 & 0x3F));
    } else if (c >= 0x800) {
      utf8[to++] = (char)(0xE0 | c >> 12);
    }
    utf8[to++] = (char)(c < 0x800 ? 0xC0 | c >> 6 : 0x80 | (c >> 6 & 0x3F));
    utf8[to++] = (char)(0x80 | (c & 0x3F));
  }
  utf8[to] = '\0';
  return utf8;
}

/* The same of a text that the component gave away, which is freed. */
static inline char* vq_taken_(VqLibrary* vq, uint16_t* text) {
  char* utf8 = vq_utf8_(text, text == NULL ? 0 : vq->text_length(text));
  vq->free_text(text);
  return utf8;
}

/* A text for the component; null without memory. What is no UTF-8 is taken byte for byte. */
static inline uint16_t* vq_utf16_(VqLibrary* vq, const char* utf8) {
  const size_t bytes = strlen(utf8);
  uint16_t* text = bytes < UINT32_MAX / 2 ? vq->new_text(NULL, (uint32_t)bytes) : NULL;
  uint16_t* fitting;
  size_t from = 0, to = 0;
  while (text != NULL && from < bytes) {
    const unsigned char* at = (const unsigned char*)utf8 + from++;
    const int more = at[0] < 0xC2 ? 0 : at[0] < 0xE0 ? 1 : at[0] < 0xF0 ? 2 : at[0] < 0xF5 ? 3 : 0;
    uint32_t c = more == 0 ? at[0] : at[0] & (0x3Fu >> more);
    int k = 1;
    while (k <= more && (at[k] & 0xC0) == 0x80) c = c << 6 | (at[k++] & 0x3Fu);
    if (k <= more) {
      c = at[0];
    } else {
      from += (size_t)more;
    }
    if (c >= 0x10000) {
      text[to++] = (uint16_t)(0xD7C0 + (c >> 10));
      c = 0xDC00 + (c & 0x3FF);
    }
    text[to++] = (uint16_t)c;
  }
  if (text == NULL || to == bytes) return text;
  fitting = vq->new_text(text, (uint32_t)to);
  vq->free_text(text);
  return fitting;
}

/* A class or interface id, and the head of an array of one or two dimensions, the last one first.
 */
typedef struct VqId_ {
  uint32_t a;
  uint16_t b, c;
  uint8_t d[8];
} VqId_;

typedef struct VqBound_ {
  uint32_t count;
  int32_t lower;
} VqBound_;

typedef struct VqArray_ {
  uint16_t dimensions, features;
  uint32_t element_size, locks;
  void* data;
  VqBound_ bounds[2];
} VqArray_;

/* Function `index` of an interface. */
static inline void vq_slot_(void* pointer, int index, void* function) {
  void*** table = (void***)pointer;
  memcpy(function, &(*table)[index], sizeof(void*));
}

static inline void vq_release_pointer_(void* pointer) {
  uint32_t(VQ_CALL * release)(void*);
  vq_slot_(pointer, 2, &release);
  release(pointer);
}

static inline int vq_same_(const char* a, const char* b, size_t length) {
  size_t i;
  for (i = 0; i < length; ++i) {
    const char x = a[i], y = b[i];
    if (x == '\0' || ((x ^ y) & ~0x20) != 0 || (x != y && ((x | 0x20) < 'a' || (x | 0x20) > 'z'))) {
      return 0;
    }
  }
  return a[length] == '\0';
}

/* Field `index` of a line whose fields tabs separate. */
static inline const char* vq_field_(const char* line, int index, size_t* length) {
  while (index-- > 0) {
    line += strcspn(line, "\t\n");
    if (*line == '\t') ++line;
  }
  *length = strcspn(line, "\t\n");
  return line;
}

static inline const char* vq_next_line_(const char* line) {
  line += strcspn(line, "\n");
  return *line == '\n' ? line + 1 : line;
}

static inline void VQ_CALL vq_line_(const uint16_t* line, int32_t is_close_down, void* context) {
  VqLibrary* vq = (VqLibrary*)context;
  size_t length = 0;
  char* utf8;
  (void)is_close_down;
  while (line[length] != 0) ++length;
  utf8 = vq_utf8_(line, length);
  if (utf8 != NULL) vq->take_line(utf8, vq->context);
  free(utf8);
}

static inline int vq_find_(VqLibrary* vq, void* handle, const char* name, void* function) {
#ifdef _WIN32
  FARPROC found = GetProcAddress((HMODULE)handle, name);
#else
  void* found = dlsym(handle, name);
#endif
  memcpy(function, &found, sizeof found);
  return found != NULL || vq_fail_(vq, "the library is another one: it has no %s", name);
}

/* Opens a library, found as the system finds one where it has no folder. */
static inline void* vq_load_(const char* path) {
#ifdef _WIN32
  wchar_t wide[1024];
  if (MultiByteToWideChar(CP_UTF8, 0, path, -1, wide, 1024) == 0) return NULL;
  return (void*)LoadLibraryW(wide);
#else
  return dlopen(path, RTLD_NOW);
#endif
}

static inline void vq_close(VqLibrary* vq) {
  if (vq->handle == NULL) return;
  if (vq->take_line != NULL) vq->set_callback(NULL, NULL);
#ifdef _WIN32
  FreeLibrary((HMODULE)vq->handle);
#else
  dlclose(vq->handle);
#endif
  vq->handle = NULL;
  vq->take_line = NULL;
}

/* Opens the library: `path`, else what the environment's VQMATH63_LIBRARY names, else the one that
 * the system finds by its name. */
static inline int vq_open(VqLibrary* vq, const char* path) {
  void* automation;
  int found;
  memset(vq, 0, sizeof *vq);
  if (path == NULL) path = getenv("VQMATH63_LIBRARY");
#ifdef _WIN32
  if (path == NULL || *path == '\0') path = "vqmath63.dll";
  automation = vq_load_("oleaut32.dll");
#else
  if (path == NULL || *path == '\0') path = "libvqmath63.so.6";
#endif
  vq->handle = vq_load_(path);
#ifndef _WIN32
  automation = vq->handle;
#endif
  if (vq->handle == NULL || automation == NULL) {
#ifdef _WIN32
    return vq_fail_(vq, "%s cannot be opened", path);
#else
    const char* reason = dlerror();
    return vq_fail_(vq, "the library cannot be opened: %s", reason == NULL ? path : reason);
#endif
  }
  found = vq_find_(vq, vq->handle, "VqDescribe", &vq->describe) &&
          vq_find_(vq, vq->handle, "VqCallMany", &vq->call_many) &&
          vq_find_(vq, vq->handle, "VqSetMessageCallback", &vq->set_callback) &&
          vq_find_(vq, vq->handle, "VqLastMessage", &vq->last_message) &&
          vq_find_(vq, vq->handle, "DllGetClassObject", &vq->class_object) &&
          vq_find_(vq, automation, "SysAllocStringLen", &vq->new_text) &&
          vq_find_(vq, automation, "SysStringLen", &vq->text_length) &&
          vq_find_(vq, automation, "SysFreeString", &vq->free_text) &&
          vq_find_(vq, automation, "SafeArrayCreate", &vq->new_array) &&
          vq_find_(vq, automation, "SafeArrayDestroy", &vq->free_array) &&
          vq_find_(vq, automation, "GetErrorInfo", &vq->error_info);
  if (!found) vq_close(vq);
  return found;
}

/* Whether the library is open; the reason why it could not be opened stays in `error`. */
static inline int vq_is_open_(VqLibrary* vq) {
  if (vq->handle == NULL && vq->error[0] == '\0') vq_fail_(vq, "the library is closed%s", "");
  return vq->handle != NULL;
}

/* Has this thread's error lines handed to `take`; without one they go to the standard error stream,
 * or into the log. */
static inline int vq_on_line(VqLibrary* vq, VqTakeLine take, void* context) {
  if (!vq_is_open_(vq)) return 0;
  vq->take_line = take;
  vq->context = context;
  return vq->set_callback(take == NULL ? NULL : &vq_line_, vq) >= 0 ||
         vq_fail_(vq, "the error lines cannot be taken%s", "");
}

/* What the component tells of itself: its classes, a line each; with a class ("ztIntegrate") its
 * members; with a member ("ztAccumulate.Period") the words that it takes. Fields are separated by
 * tabs. For free(); null where there is no such name. */
static inline char* vq_describe(VqLibrary* vq, const char* name) {
  static const char kPrefix[] = "vq140Analyse.";
  uint16_t *wide = NULL, *text = NULL;
  char* lines = NULL;
  if (!vq_is_open_(vq)) return NULL;
  if (name != NULL && *name != '\0') {
    const size_t length = strlen(name);
    char* id = (char*)malloc(sizeof kPrefix + length);
    if (id != NULL) {
      memcpy(id, kPrefix, sizeof kPrefix - 1);
      memcpy(id + sizeof kPrefix - 1, name, length + 1);
      wide = vq_utf16_(vq, id);
      free(id);
    }
    if (wide == NULL) vq_fail_(vq, "out of memory for %s", name);
    if (wide == NULL) return NULL;
  }
  if (vq->describe(wide, &text) >= 0) {
    lines = vq_taken_(vq, text);
  } else {
    vq_fail_(vq, "the component has no %s", name);
  }
  vq->free_text(wide);
  return lines;
}

/* What a failed result code and this thread's error info say. */
static inline int vq_failed_(VqLibrary* vq, const char* name, int32_t code) {
  void* info = NULL;
  char* words = NULL;
  char number[40];
  if (vq->error_info(0, &info) == 0 && info != NULL) {
    int32_t(VQ_CALL * description)(void*, uint16_t**);
    uint16_t* text = NULL;
    vq_slot_(info, 5, &description);
    if (description(info, &text) >= 0) words = vq_taken_(vq, text);
    vq_release_pointer_(info);
  }
  snprintf(number, sizeof number, "result code %08lX", (unsigned long)(uint32_t)code);
  snprintf(vq->error, sizeof vq->error, "%s: %s", name,
           words != NULL && *words != '\0' ? words : number);
  free(words);
  return 0;
}

/* The last error line of this thread, once; for free(). */
static inline char* vq_last_line(VqLibrary* vq) {
  uint16_t* text = NULL;
  if (!vq_is_open_(vq)) return NULL;
  return vq->last_message(0, &text) >= 0 ? vq_taken_(vq, text) : NULL;
}

/* Frees a text or an array of the component's; of other values nothing. */
static inline void vq_free(VqLibrary* vq, VqValue* value) {
  if (value->owner != NULL && value->type == VQ_TEXT) {
    free(value->owner);
  } else if (value->owner != NULL) {
    vq->free_array(value->owner);
  }
  *value = vq_nothing();
}

#endif
