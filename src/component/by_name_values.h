/* Part of by_name.h: values on their way to the component and back. */
#ifndef VQMATH63_BY_NAME_VALUES_H
#define VQMATH63_BY_NAME_VALUES_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

/* What a value is. A Boolean is a number, 0 or 1; so is a date, days since 1899-12-30. */
typedef enum VqType {
  VQ_NOTHING, /* an argument left out, or a variable for a result */
  VQ_NUMBER,
  VQ_TEXT,
  VQ_SINGLES, /* elements float */
  VQ_DOUBLES, /* double */
  VQ_LONGS,   /* int32_t */
  VQ_FLAGS    /* int16_t, 0 or -1 */
} VqType;

/* A value on its way. Those made by the functions below lend what they point to; what comes back as
 * a text or an array is the component's, and vq_free frees it. */
typedef struct VqValue {
  VqType type;
  double number;
  const char* text; /* UTF-8 */
  void* data;       /* the first element; those of a table stand column after column */
  size_t rows, columns;
  size_t stride; /* elements from one column to the next */
  void* owner;   /* what vq_free frees */
} VqValue;

static inline VqValue vq_nothing(void) {
  VqValue value;
  memset(&value, 0, sizeof value);
  return value;
}

static inline VqValue vq_number(double number) {
  VqValue value = vq_nothing();
  value.type = VQ_NUMBER;
  value.number = number;
  return value;
}

static inline VqValue vq_text(const char* utf8) {
  VqValue value = vq_nothing();
  value.type = VQ_TEXT;
  value.text = utf8;
  return value;
}

/* Midnight of a day of the Gregorian calendar, in days since 1899-12-30. */
static inline VqValue vq_date(int year, int month, int day) {
  /* Years from March on, so that a leap day is the last one. */
  const int64_t y = month > 2 ? year : (int64_t)year - 1, m = (month + 9) % 12;
  const int64_t era = (y >= 0 ? y : y - 399) / 400, of_era = y - era * 400;
  const int64_t days =
      era * 146097 + of_era * 365 + of_era / 4 - of_era / 100 + (153 * m + 2) / 5 + day - 1;
  return vq_number((double)(days - 693899));
}

/* Elements that lie column after column; a list is one column. */
static inline VqValue vq_elements(VqType type, const void* data, size_t rows, size_t columns) {
  VqValue value = vq_nothing();
  value.type = type;
  memcpy(&value.data, &data, sizeof data); /* a const goes: lent elements are only read */
  value.rows = value.stride = rows;
  value.columns = columns;
  return value;
}

static inline VqValue vq_singles(const float* data, size_t count) {
  return vq_elements(VQ_SINGLES, data, count, 1);
}
static inline VqValue vq_doubles(const double* data, size_t count) {
  return vq_elements(VQ_DOUBLES, data, count, 1);
}
static inline VqValue vq_longs(const int32_t* data, size_t count) {
  return vq_elements(VQ_LONGS, data, count, 1);
}
/* A table, column after column. */
static inline VqValue vq_table(const float* data, size_t rows, size_t columns) {
  return vq_elements(VQ_SINGLES, data, rows, columns);
}

/* An element of an array, rows and columns from 0. The caller keeps to rows and columns. */
static inline double vq_at(const VqValue* value, size_t row, size_t column) {
  const size_t at = row + column * value->stride;
  switch (value->type) {
    case VQ_SINGLES:
      return (double)((const float*)value->data)[at];
    case VQ_DOUBLES:
      return ((const double*)value->data)[at];
    case VQ_LONGS:
      return (double)((const int32_t*)value->data)[at];
    case VQ_FLAGS:
      return ((const int16_t*)value->data)[at] != 0 ? 1.0 : 0.0;
    default:
      return value->number;
  }
}

#endif
