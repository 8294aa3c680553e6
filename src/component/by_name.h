/* The component from C, by name and with plain values: nothing to link, no interface to declare.
 *
 *   VqLibrary vq;
 *   VqObject curve;
 *   float time[] = {0, 1, 2}, rate[] = {0, 1, 4};
 *   VqValue sent[] = {vq_singles(time, 3), vq_singles(rate, 3)}, area;
 *   if (vq_open(&vq, NULL) && vq_create(&vq, "ztIntegrate", &curve) &&
 *       vq_call(&curve, "Integral", sent, 2, &area)) {
 *     printf("%g\n", area.number);
 *   } else {
 *     puts(vq.error);
 *   }
 *
 * For C99 and C++11, Linux and Windows. Functions return 1, or 0 with the reason in `error` of the
 * library. An object belongs to the thread that made it, and a VqLibrary to one thread: each opens
 * its own. What a member tells of a failure in its work, and goes on after, are error lines: see
 * vq_on_line. Names are taken in any letter case; element 0 of an array is sample 1. */
#ifndef VQMATH63_BY_NAME_H
#define VQMATH63_BY_NAME_H

#include <float.h>

#include "component/by_name_library.h"

/* An object of a class. */
typedef struct VqObject {
  VqLibrary* library;
  void* pointer;
  char* members; /* a line each, as the component describes them */
} VqObject;

/* An argument or a result as the component has it. */
typedef struct VqPlace_ {
  VqType type; /* declared: of its elements where it is an array */
  int rank;
  int written; /* by the member */
  union {
    float single;
    double real;
    int32_t whole;
    int16_t flag;
    uint16_t* text;
    VqArray_* array;
  } at;
  VqArray_ lent; /* over memory of the caller */
} VqPlace_;

/* An object of a class ("ztIntegrate"). */
static inline int vq_create(VqLibrary* vq, const char* class_name, VqObject* object) {
  static const VqId_ kFactory = {1, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  static const VqId_ kDispatch = {0x20400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
  int32_t(VQ_CALL * create)(void*, void*, const void*, void**);
  int32_t code;
  VqId_ id;
  unsigned part[11];
  int i, parts = 0;
  void* factory = NULL;
  char* classes = vq_describe(vq, NULL);
  const char* line;
  memset(object, 0, sizeof *object);
  object->library = vq;
  if (classes == NULL) return 0;
  for (line = classes; *line != '\0' && parts == 0; line = vq_next_line_(line)) {
    size_t length;
    const char* known = vq_field_(line, 1, &length);
    if (!vq_same_(class_name, known, length)) continue;
    known = vq_field_(line, 3, &length);
    parts = sscanf(known, "%8x-%4x-%4x-%2x%2x-%2x%2x%2x%2x%2x%2x", &part[0], &part[1], &part[2],
                   &part[3], &part[4], &part[5], &part[6], &part[7], &part[8], &part[9], &part[10]);
  }
  free(classes);
  if (parts != 11) return vq_fail_(vq, "there is no class %s", class_name);
  id.a = part[0];
  id.b = (uint16_t)part[1];
  id.c = (uint16_t)part[2];
  for (i = 0; i < 8; ++i) id.d[i] = (uint8_t)part[3 + i];
  object->members = vq_describe(vq, class_name);
  if (object->members == NULL) return 0;
  code = vq->class_object(&id, &kFactory, &factory);
  if (code >= 0) {
    vq_slot_(factory, 3, &create);
    code = create(factory, NULL, &kDispatch, &object->pointer);
    vq_release_pointer_(factory);
  }
  if (code >= 0) return 1;
  free(object->members);
  object->members = NULL;
  return vq_failed_(vq, class_name, code);
}

static inline void vq_release(VqObject* object) {
  if (object->pointer != NULL) vq_release_pointer_(object->pointer);
  free(object->members);
  object->pointer = NULL;
  object->members = NULL;
}

/* The line of a property that can be set, else of a method or a property that can be read; null
 * when there is none. */
static inline const char* vq_member_(const VqObject* object, int let, const char* name) {
  const char* line = object->members;
  size_t length;
  while (line != NULL && *line != '\0') {
    const char* known = vq_field_(line, 1, &length);
    if (vq_same_(name, known, length) && (strncmp(line, "let", 3) == 0) == let) return line;
    line = vq_next_line_(line);
  }
  vq_fail_(object->library, let ? "there is no property %s to set" : "there is no member %s", name);
  return NULL;
}

static inline int32_t vq_id_of_(const char* line) {
  size_t length;
  return (int32_t)strtol(vq_field_(line, 2, &length), NULL, 10);
}

/* What the component declares: "Single", "Double(,)", ... and a direction. */
static inline void vq_declared_(VqPlace_* place, const char* type, const char* direction) {
  const size_t length = strcspn(type, "(\t\n");
  memset(place, 0, sizeof *place);
  place->type = length == 0                         ? VQ_NOTHING
                : vq_same_("Single", type, length)  ? VQ_SINGLES
                : vq_same_("Long", type, length)    ? VQ_LONGS
                : vq_same_("Boolean", type, length) ? VQ_FLAGS
                : vq_same_("String", type, length)  ? VQ_TEXT
                                                    : VQ_DOUBLES;
  place->rank = type[length] != '(' ? 0 : type[length + 1] == ',' ? 2 : 1;
  place->written = strncmp(direction, "out", 3) == 0 || strncmp(direction, "in,out", 6) == 0;
}

static inline uint32_t vq_size_(VqType type) {
  return type == VQ_DOUBLES ? 8u : type == VQ_FLAGS ? 2u : 4u;
}

/* A number as an element of a type has it; 0 where it does not fit. */
static inline int vq_store_(VqType type, void* place, double number) {
  const double size = number < 0 ? -number : number;
  if (type == VQ_SINGLES) {
    const float single = size > FLT_MAX && size <= DBL_MAX ? 0.0f : (float)number;
    memcpy(place, &single, sizeof single);
    return !(size > FLT_MAX && size <= DBL_MAX);
  }
  if (type == VQ_LONGS) {
    const int fits = number >= -2147483648.0 && number <= 2147483647.0;
    const int32_t whole = fits ? (int32_t)number : 0;
    memcpy(place, &whole, sizeof whole);
    return fits && (double)whole == number;
  }
  if (type == VQ_FLAGS) {
    const int16_t flag = (int16_t)(number != 0.0 ? -1 : 0);
    memcpy(place, &flag, sizeof flag);
    return 1;
  }
  memcpy(place, &number, sizeof number);
  return 1;
}

/* Lays a safe array over the caller's elements; of another type, or where the member writes, over
 * a copy. */
static inline int vq_lend_array_(VqLibrary* vq, VqPlace_* place, const char* name,
                                 const VqValue* value) {
  const size_t rows = value->rows, columns = place->rank == 2 ? value->columns : 1;
  const VqBound_ bounds[2] = {{(uint32_t)rows, 1}, {(uint32_t)columns, 1}}; /* first one first */
  static const uint16_t kVariantTypes[] = {0, 0, 0, 4, 5, 3, 11};
  VqArray_* array = &place->lent;
  const size_t size = vq_size_(place->type);
  size_t row, column;
  if (value->type < VQ_SINGLES) return vq_fail_(vq, "%s has to be an array", name);
  if (value->data == NULL && rows > 0) return vq_fail_(vq, "%s is an array without memory", name);
  if (place->rank == 1 && value->columns > 1) return vq_fail_(vq, "%s has to be a list", name);
  if (rows > INT32_MAX - 1 || columns > INT32_MAX - 1) return vq_fail_(vq, "%s is too long", name);
  array->dimensions = (uint16_t)place->rank;
  array->features = 0x13; /* the memory is the caller's, and its size is fixed */
  array->element_size = (uint32_t)size;
  array->data = value->data;
  array->bounds[0] = bounds[place->rank - 1];
  array->bounds[1] = bounds[0];
  place->at.array = array;
  if (value->type == place->type && value->stride == rows && !place->written) return 1;
  place->at.array = array =
      (VqArray_*)vq->new_array(kVariantTypes[place->type], (uint32_t)place->rank, bounds);
  if (array == NULL) return vq_fail_(vq, "%s: out of memory", name);
  for (column = 0; column < columns; ++column) {
    for (row = 0; row < rows; ++row) {
      char* to = (char*)array->data + (column * rows + row) * size;
      if (vq_store_(place->type, to, vq_at(value, row, column))) continue;
      return vq_fail_(vq, "%s has an element that does not fit", name);
    }
  }
  return 1;
}

/* Makes the place of an argument; what it owns then is freed by vq_clear_. */
static inline int vq_lend_(VqLibrary* vq, VqPlace_* place, const char* name, const VqValue* value) {
  if (value->type == VQ_NOTHING) return 1;
  if (place->rank > 0) return vq_lend_array_(vq, place, name, value);
  if (place->type == VQ_TEXT) {
    if (value->type != VQ_TEXT || value->text == NULL) {
      return vq_fail_(vq, "%s has to be a text", name);
    }
    place->at.text = vq_utf16_(vq, value->text);
    return place->at.text != NULL || vq_fail_(vq, "%s: out of memory", name);
  }
  if (value->type != VQ_NUMBER) return vq_fail_(vq, "%s has to be a number", name);
  return vq_store_(place->type, &place->at, value->number) ||
         vq_fail_(vq, "%s does not fit its type", name);
}

static inline void vq_clear_(VqLibrary* vq, VqPlace_* place) {
  if (place->type == VQ_TEXT && place->rank == 0) vq->free_text(place->at.text);
  if (place->rank > 0 && place->at.array != NULL && place->at.array != &place->lent) {
    vq->free_array(place->at.array);
  }
  place->type = VQ_NOTHING;
  place->rank = 0;
}

/* Moves what the component wrote into a value of the caller. */
static inline void vq_take_(VqLibrary* vq, VqPlace_* place, VqValue* value) {
  vq_free(vq, value);
  if (place->rank > 0) {
    const VqArray_* array = place->at.array;
    const VqBound_ one = {1, 1};
    const VqBound_ rows = array == NULL ? one : array->bounds[place->rank - 1];
    const VqBound_ columns = array == NULL || place->rank == 1 ? one : array->bounds[0];
    /* What stands below index 1 the component disregards. */
    const size_t skipped_rows = rows.lower < 1 ? (size_t)(1 - (int64_t)rows.lower) : 0;
    const size_t skipped_columns = columns.lower < 1 ? (size_t)(1 - (int64_t)columns.lower) : 0;
    if (array == NULL || array->data == NULL) return;
    value->type = place->type;
    value->stride = rows.count;
    value->rows = rows.count > skipped_rows ? rows.count - skipped_rows : 0;
    value->columns = columns.count > skipped_columns ? columns.count - skipped_columns : 0;
    value->data =
        (char*)array->data + (skipped_rows + skipped_columns * rows.count) * vq_size_(place->type);
    value->owner = place->at.array;
    place->at.array = NULL;
  } else if (place->type == VQ_TEXT) {
    value->owner = vq_taken_(vq, place->at.text);
    value->text = value->owner == NULL ? "" : (const char*)value->owner;
    value->type = VQ_TEXT;
    place->at.text = NULL;
  } else if (place->type != VQ_NOTHING) {
    *value = vq_number(place->type == VQ_SINGLES ? (double)place->at.single
                       : place->type == VQ_LONGS ? (double)place->at.whole
                       : place->type == VQ_FLAGS ? (place->at.flag != 0 ? 1.0 : 0.0)
                                                 : place->at.real);
  }
}

enum { VQ_MOST_ARGUMENTS_ = 32 };

/* The places of a member's arguments and where they lie, `made` in number, to be cleared. */
static inline int vq_prepare_(VqLibrary* vq, const char* line, const VqValue* arguments,
                              unsigned count, VqPlace_* places, VqStride* columns, unsigned* made) {
  for (*made = 0;;) {
    const unsigned k = *made;
    const int field = 5 + 4 * (int)k;
    size_t length, ignored;
    const char* known = vq_field_(line, field, &length);
    const int optional = *vq_field_(line, field + 3, &ignored) == 'o';
    const int given = k < count && arguments[k].type != VQ_NOTHING;
    char name[64];
    if (length == 0) return k >= count || vq_fail_(vq, "there are too many arguments%s", "");
    if (k == VQ_MOST_ARGUMENTS_) return vq_fail_(vq, "there are too many arguments%s", "");
    snprintf(name, sizeof name, "%.*s", (int)length, known);
    vq_declared_(&places[k], vq_field_(line, field + 1, &ignored),
                 vq_field_(line, field + 2, &ignored));
    columns[k].first = given || !optional ? (void*)&places[k].at : NULL;
    columns[k].step = 0;
    *made = k + 1;
    if (given && !vq_lend_(vq, &places[k], name, &arguments[k])) return 0;
    if (!given && !optional && !places[k].written && places[k].rank == 0) {
      return vq_fail_(vq, "%s is missing", name);
    }
  }
}

static inline int vq_invoke_(VqObject* object, uint16_t flags, const char* name, VqValue* arguments,
                             unsigned count, VqValue* result) {
  VqLibrary* vq = object->library;
  const char* line = vq_member_(object, flags == 4, name);
  VqPlace_ places[VQ_MOST_ARGUMENTS_], answer;
  VqStride columns[VQ_MOST_ARGUMENTS_], to = {NULL, 0};
  unsigned made, k;
  size_t length;
  int done;
  if (line == NULL) return 0;
  vq_declared_(&answer, vq_field_(line, 3, &length), "out");
  to.first = &answer.at;
  done = vq_prepare_(vq, line, arguments, count, places, columns, &made);
  if (done) {
    const int32_t code = vq->call_many(object->pointer, vq_id_of_(line), flags, 1, columns, made,
                                       answer.type == VQ_NOTHING ? NULL : &to, NULL);
    if (code < 0) done = vq_failed_(vq, name, code);
  }
  for (k = 0; done && k < made && k < count; ++k) {
    if (places[k].written && columns[k].first != NULL) vq_take_(vq, &places[k], &arguments[k]);
  }
  if (done && result != NULL) {
    *result = vq_nothing();
    vq_take_(vq, &answer, result);
  }
  for (k = 0; k < made; ++k) vq_clear_(vq, &places[k]);
  vq_clear_(vq, &answer);
  return done;
}

/* Calls a method, or reads a property that takes arguments. Arguments that it writes come back in
 * `arguments`, those that stand beyond `count` are left out; `result` (null: not wanted) is written
 * without a look at what it held. An array that is written comes back as a new one, to be freed
 * with vq_free; passed to another call that writes it, it is freed there. */
static inline int vq_call(VqObject* object, const char* method, VqValue* arguments, unsigned count,
                          VqValue* result) {
  return vq_invoke_(object, 1, method, arguments, count, result);
}

static inline int vq_get(VqObject* object, const char* property, VqValue* result) {
  return vq_invoke_(object, 2, property, NULL, 0, result);
}

static inline int vq_set(VqObject* object, const char* property, VqValue value) {
  return vq_invoke_(object, 4, property, &value, 1, NULL);
}

static inline unsigned vq_count_(const char* line) {
  unsigned count = 0;
  size_t length;
  while (vq_field_(line, 5 + 4 * (int)count, &length), length != 0) ++count;
  return count;
}

/* Makes `calls` calls of a method at the cost of a native loop; `result.first` is null where there
 * is no result. An element that fails gets the member's zero; `failed` (null: not wanted) tells how
 * many did, and which was the first, from 0, else -1. */
static inline int vq_call_many(VqObject* object, const char* method, int64_t calls,
                               const VqStride* arguments, unsigned count, VqStride result,
                               int64_t failed[2]) {
  const char* line = vq_member_(object, 0, method);
  int32_t code;
  if (line == NULL) return 0;
  if (count != vq_count_(line)) {
    snprintf(object->library->error, sizeof object->library->error,
             "%s has %u arguments, and so many columns; there are %u", method, vq_count_(line),
             count);
    return 0;
  }
  code = object->library->call_many(object->pointer, vq_id_of_(line), 1, calls, arguments, count,
                                    result.first == NULL ? NULL : &result, failed);
  return code >= 0 || vq_failed_(object->library, method, code);
}

#endif
