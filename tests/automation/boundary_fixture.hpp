// A small class with every kind of parameter, and a host that calls it by name and by its vtable.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "automation/object.hpp"
#include "automation_host.hpp"
#include "frame/fault.hpp"
#include "frame/host_code.hpp"

namespace vqmath63::automation::test {

/// What a member does with the array it is given.
enum Act : std::int32_t { kRead, kChange, kResize, kErase };

struct Sample {
  static inline int alive = 0;
  static inline const void* seen = nullptr;  ///< where the last array's elements lay
  double scale = 1.0;
  std::int32_t items[3] = {};

  Sample() { ++alive; }
  ~Sample() { --alive; }

  double get_Scale() const { return scale; }
  void put_Scale(double value) { scale = value; }
  std::int32_t get_Item(std::int32_t index) { return items[index]; }
  void put_Item(std::int32_t index, std::int32_t value) { items[index] = value; }

  double EchoDouble(double x) { return x; }
  float EchoSingle(float x) { return x; }
  std::int32_t EchoLong(std::int32_t x) { return x; }
  bool EchoBoolean(bool x) { return x; }
  Date EchoDate(Date x) { return x; }
  std::string EchoText(std::string x) { return x; }
  void ChangeDouble(double& x) { x += 1; }
  void ChangeSingle(float& x) { x += 1; }
  void ChangeLong(std::int32_t& x) { x += 1; }
  void ChangeBoolean(bool& x) { x = !x; }
  void ChangeDate(Date& x) { x.value += 1; }
  void ChangeText(std::string& x) { x += "!"; }
  std::string Join(double d, float f, std::int32_t n, bool b, Date t, std::string s) {
    return JoinRef(d, f, n, b, t, s);
  }
  std::string JoinRef(double& d, float& f, std::int32_t& n, bool& b, Date& t, std::string& s) {
    char text[200];
    std::snprintf(text, sizeof text, "%g %g %d %d %g ", d, static_cast<double>(f), n, b, t.value);
    return text + s;
  }

  template <class T>
  std::string Work(Array1<T>& xA, std::int32_t act) {
    seen = xA.data();
    std::string text = "none";
    if (xA.allocated()) {
      text = std::to_string(xA.lower()) + ".." + std::to_string(xA.upper()) + ":";
      for (const T& x : xA.elements()) append(text, x);
    }
    if (act == kChange) {
      if constexpr (std::is_same_v<T, Boolean>) {
        xA(1) = !xA(1);
      } else {
        xA(1) = -xA(1);
      }
    }
    if (act == kResize) {
      xA.redim(1, 3);
      for (int i = 1; i <= 3; ++i) xA(i) = static_cast<T>(1000 * i);
    }
    if (act == kErase) xA.erase();
    return text;
  }
  std::string Singles(Array1<float>& xA, std::int32_t act) { return Work(xA, act); }
  std::string Doubles(Array1<double>& xA, std::int32_t act) { return Work(xA, act); }
  std::string Longs(Array1<std::int32_t>& xA, std::int32_t act) { return Work(xA, act); }
  std::string Booleans(Array1<Boolean>& xA, std::int32_t act) { return Work(xA, act); }
  std::string Table(Array2<float>& xT, std::int32_t act) {
    seen = xT.data();
    std::string text = "none";
    if (xT.allocated()) {
      const Bounds r = xT.rows();
      const Bounds c = xT.columns();
      text = std::to_string(r.lower) + ".." + std::to_string(r.upper) + "," +
             std::to_string(c.lower) + ".." + std::to_string(c.upper) + ":";
      for (const float x : xT.elements()) append(text, x);
    }
    if (act == kChange) xT(1, 0) = -xT(1, 0);
    if (act == kResize) {
      xT.redim({1, 2}, {1, 2});
      for (int i = 0; i < 4; ++i) xT(1 + i % 2, 1 + i / 2) = static_cast<float>(10 * (1 + i));
    }
    if (act == kErase) xT.erase();
    return text;
  }
  /// Resizes the arrays whose bits stand in `which`; True when both lie at the same place.
  bool Both(Array1<float>& xA, Array1<float>& xB, std::int32_t which) {
    const bool same = xA.data() == xB.data();
    if (which & 1) xA.redim(1, 1);
    if (which & 2) xB.redim(1, 2);
    return same;
  }

  /// Writes its argument, then fails with the error `number`, or with other exceptions below 0.
  float Fail(std::int32_t number, std::string& sWhere) {
    sWhere = "reached";
    if (number == -1) throw std::bad_alloc();
    if (number == -2) throw std::logic_error("private words");
    throw Fault(number);
  }
  double Quotient(double x, double y) { return x / y; }

  // The same with arguments that are only read.
  std::string JoinRead(const double& d, const float& f, const std::int32_t& n, const bool& b,
                       const Date& t, const std::string& s) {
    return Join(d, f, n, b, t, s);
  }
  float ReadSingles(const Array1<const float>& xA, const Array2<const float>& xT) {
    seen = xA.data();
    return (xA.allocated() ? xA(xA.upper()) : -1.0F) + (xT.allocated() ? xT(1, 0) : -1.0F);
  }

  static inline std::function<void()> meanwhile;  ///< code of the host that runs during a call
  /// Runs the host's code, then gives every argument a new value.
  void Meanwhile(bool& b, std::string& s, Array1<float>& xA, float& f) {
    {
      const HostCode code;
      if (meanwhile) meanwhile();
    }
    b = !b;
    s += "!";
    xA.redim(1, 2);
    f += 1;
  }
  /// Writes what it never reads.
  void Answer(std::int32_t& n, bool& b, std::string& s, Array1<float>& xA) {
    n = 4;
    b = true;
    s = "done";
    xA.redim(1, 2);
  }
  void Negate(double& x) { x = -x; }
  void Turn(Array1<float>& xA, Array1<float>& xB) {
    for (std::int32_t i = 1; i <= 3; ++i) {
      xA(i) = -xA(i);
      xB(i) = -xB(i);
    }
  }
  void Keep(std::int32_t&, bool&, Array1<std::int32_t>&) {}

 private:
  template <class T>
  static void append(std::string& text, T x) {
    char digits[40];
    std::snprintf(digits, sizeof digits, " %g", static_cast<double>(x));
    text += digits;
  }
};

inline constexpr auto kSample = table<Sample>(
    "ztSample", "All kinds of members.",
    {0x5B0F7C11, 0x2C0C, 0x4A63, {0x8D, 0x11, 0x0E, 0x4D, 0x59, 0x10, 0x6A, 0x01}},
    {0x5B0F7C12, 0x2C0C, 0x4A63, {0x8D, 0x11, 0x0E, 0x4D, 0x59, 0x10, 0x6A, 0x02}},
    // clang-format off
    method<&Sample::EchoDouble>   ( 3, "EchoDouble",    {arg("x")}, ""),
    method<&Sample::EchoSingle>   ( 4, "EchoSingle",    {arg("x")}, ""),
    method<&Sample::EchoBoolean>  ( 6, "EchoBoolean",   {arg("x")}, ""),
    method<&Sample::EchoText>     ( 8, "EchoText",      {arg("x")}, ""),
    method<&Sample::ChangeDouble> ( 9, "ChangeDouble",  {arg("x")}, ""),
    method<&Sample::ChangeBoolean>(12, "ChangeBoolean", {arg("x")}, ""),
    method<&Sample::Join>         (15, "Join",          {arg("d"), optional_arg("f", 2.5), optional_arg("n", 7.0), optional_arg("b", true), optional_arg("t", 36526.0), optional_arg("s", "psi")}, ""),
    method<&Sample::JoinRef>      (16, "JoinRef",       {optional_arg("d", 1.5), optional_arg("f", 2.5), optional_arg("n", 7.0), optional_arg("b", true), optional_arg("t", 36526.0), optional_arg("s", "psi")}, ""),
    method<&Sample::JoinRead>     (25, "JoinRead",      {optional_arg("d", 1.5), optional_arg("f", 2.5), optional_arg("n", 7.0), optional_arg("b", true), optional_arg("t", 36526.0), optional_arg("s", "psi")}, ""),
    method<&Sample::Singles>      (17, "Singles",       {arg("xA"), arg("act")}, ""),
    method<&Sample::Doubles>      (18, "Doubles",       {arg("xA"), arg("act")}, ""),
    method<&Sample::Longs>        (19, "Longs",         {arg("xA"), arg("act")}, ""),
    method<&Sample::Booleans>     (20, "Booleans",      {arg("xA"), arg("act")}, ""),
    method<&Sample::Table>        (21, "Table",         {arg("xT"), arg("act")}, ""),
    method<&Sample::ReadSingles>  (26, "ReadSingles",   {arg("xA"), arg("xT")}, ""),
    method<&Sample::Fail>         (23, "Fail",          {arg("number"), arg("sWhere")}, ""),
    method<&Sample::Quotient>     (24, "Quotient",      {arg("x"), arg("y")}, ""),
    get<&Sample::get_Scale>       ( 1, "Scale",         {}, ""),
    let<&Sample::put_Scale>       ( 1, "Scale",         {arg("value")}, ""),
    get<&Sample::get_Item>        ( 2, "Item",          {arg("index")}, ""),
    let<&Sample::put_Item>        ( 2, "Item",          {arg("index"), arg("value")}, ""),
    method<&Sample::EchoLong>     ( 5, "EchoLong",      {arg("x")}, ""),
    method<&Sample::EchoDate>     ( 7, "EchoDate",      {arg("x")}, ""),
    method<&Sample::ChangeSingle> (10, "ChangeSingle",  {arg("x")}, ""),
    method<&Sample::ChangeLong>   (11, "ChangeLong",    {arg("x")}, ""),
    method<&Sample::ChangeDate>   (13, "ChangeDate",    {arg("x")}, ""),
    method<&Sample::ChangeText>   (14, "ChangeText",    {arg("x")}, ""),
    method<&Sample::Both>         (22, "Both",          {arg("xA"), arg("xB"), arg("which")}, ""),
    method<&Sample::Meanwhile>    (27, "Meanwhile",     {arg("b"), arg("s"), arg("xA"), arg("f")}, ""),
    method<&Sample::Answer>       (28, "Answer",        {out("n"), out("b"), out("s"), out("xA")}, ""),
    method<&Sample::Negate>       (29, "Negate",        {arg("x")}, ""),
    method<&Sample::Keep>         (30, "Keep",          {arg("n"), arg("b"), arg("xA")}, ""),
    method<&Sample::Turn>         (31, "Turn",          {arg("xA"), arg("xB")}, "")
    // clang-format on
);

/// The dual interface as a host declares it, up to the last member it calls that way.
struct ISample : IDispatch {
  virtual HRESULT VQ_API EchoDouble(double, double*) = 0;
  virtual HRESULT VQ_API EchoSingle(float, float*) = 0;
  virtual HRESULT VQ_API EchoBoolean(VARIANT_BOOL, VARIANT_BOOL*) = 0;
  virtual HRESULT VQ_API EchoText(BSTR, BSTR*) = 0;
  virtual HRESULT VQ_API ChangeDouble(double*) = 0;
  virtual HRESULT VQ_API ChangeBoolean(VARIANT_BOOL*) = 0;
  virtual HRESULT VQ_API Join(double, float, LONG, VARIANT_BOOL, DATE, BSTR, BSTR*) = 0;
  virtual HRESULT VQ_API JoinRef(double*, float*, LONG*, VARIANT_BOOL*, DATE*, BSTR*, BSTR*) = 0;
  virtual HRESULT VQ_API JoinRead(double*, float*, LONG*, VARIANT_BOOL*, DATE*, BSTR*, BSTR*) = 0;
  virtual HRESULT VQ_API Singles(SAFEARRAY**, LONG, BSTR*) = 0;
  virtual HRESULT VQ_API Doubles(SAFEARRAY**, LONG, BSTR*) = 0;
  virtual HRESULT VQ_API Longs(SAFEARRAY**, LONG, BSTR*) = 0;
  virtual HRESULT VQ_API Booleans(SAFEARRAY**, LONG, BSTR*) = 0;
  virtual HRESULT VQ_API Table(SAFEARRAY**, LONG, BSTR*) = 0;
  virtual HRESULT VQ_API ReadSingles(SAFEARRAY**, SAFEARRAY**, float*) = 0;
  virtual HRESULT VQ_API Fail(LONG, BSTR*, float*) = 0;
  virtual HRESULT VQ_API Quotient(double, double, double*) = 0;
};

class BoundaryTest : public ::testing::Test {
 protected:
  BoundaryTest() : before_(live_count()) {
    void* made = nullptr;
    EXPECT_EQ(class_info<kSample>().create(kSample.iid, &made), S_OK);
    object = static_cast<ISample*>(made);
  }
  ~BoundaryTest() override {
    EXPECT_EQ(object->Release(), 0U);
    EXPECT_EQ(live_count(), before_);
    EXPECT_EQ(Sample::alive, 0);
  }
  ISample* object = nullptr;

 private:
  int before_;
};

}  // namespace vqmath63::automation::test
