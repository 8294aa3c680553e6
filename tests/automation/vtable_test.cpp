// The vtable path: the same results bit for bit as by name, identity, failures, the host's state.
#include <fenv.h>
#if !defined(__aarch64__)
#include <xmmintrin.h>
#endif

#include <bit>
#include <cmath>
#include <thread>

#include "automation/call_scope.hpp"
#include "frame/companions.hpp"
#include "frame/error_handler.hpp"
#include "script_fakes.hpp"

namespace vqmath63::automation::test {
namespace {

using namespace system::test;

class VtableTest : public BoundaryTest {};

template <class T>
T poisoned() {
  T value;
  std::memset(&value, 0xCC, sizeof value);
  return value;
}

TEST_F(VtableTest, both_roads_give_the_same_bits) {
  const double nan = std::bit_cast<double>(0x7FF8000000ABCDEFULL);
  for (const double x : {0.0, -0.0, 1.0 / 3, 1e308, 5e-324, 0x1.000001p0, HUGE_VAL, nan}) {
    double d = poisoned<double>();
    EXPECT_EQ(object->EchoDouble(x, &d), S_OK);
    EXPECT_EQ(shown(r8(d).v), shown(r8(x).v));
    EXPECT_EQ(shown(call(object, u"EchoDouble", {r8(x).v}).result.v), shown(r8(x).v));
    const auto y = static_cast<float>(x);
    float f = poisoned<float>();
    EXPECT_EQ(object->EchoSingle(y, &f), S_OK);
    EXPECT_EQ(shown(r4(f).v), shown(r4(y).v));
    EXPECT_EQ(shown(call(object, u"EchoSingle", {r4(y).v}).result.v), shown(r4(y).v));
  }
  for (const VARIANT_BOOL b : {VARIANT_BOOL{0}, VARIANT_BOOL{1}, VARIANT_TRUE}) {
    VARIANT_BOOL out = poisoned<VARIANT_BOOL>();
    EXPECT_EQ(object->EchoBoolean(b, &out), S_OK);
    EXPECT_EQ(out, b == 0 ? VARIANT_FALSE : VARIANT_TRUE);
    VARIANT_BOOL changed = b;
    EXPECT_EQ(object->ChangeBoolean(&changed), S_OK);
    EXPECT_EQ(changed, b == 0 ? VARIANT_TRUE : VARIANT_FALSE);
  }
  each_row("automation.tsv", "texts", 7, [&](const TableRow& row) {
    const Value sent = value_of(row["from"]);
    Value out = bare(VT_BSTR);
    EXPECT_EQ(object->EchoText(sent.v.bstrVal, &out.v.bstrVal), S_OK);
    EXPECT_EQ(characters(out.v.bstrVal), characters(value_of(row["back"]).v.bstrVal));
    EXPECT_EQ(shown(out.v), shown(call(object, u"EchoText", {sent.v}).result.v));
  });
}

TEST_F(VtableTest, arrays_are_looked_at_before_they_are_borrowed) {
  const struct {
    HRESULT (VQ_API ISample::*member)(SAFEARRAY**, LONG, BSTR*);
    VARTYPE element;
    ULONG columns;
  } rows[] = {{&ISample::Singles, VT_R4, 0},
              {&ISample::Doubles, VT_R8, 0},
              {&ISample::Longs, VT_I4, 0},
              {&ISample::Booleans, VT_BOOL, 0},
              {&ISample::Table, VT_R4, 2}};
  for (const auto& row : rows) {
    BSTR out = poisoned<BSTR>();
    EXPECT_EQ((object->*row.member)(nullptr, kRead, &out), E_POINTER);
    EXPECT_TRUE(error_words().starts_with(u"Invalid pointer: argument 'x")) << row.element;
    EXPECT_EQ(out, nullptr);
    for (const VARTYPE other : {VT_DISPATCH, VT_BSTR, VT_CY, VT_UI4, VT_I2, VT_VARIANT}) {
      Value host = array(other, 0, {}, row.columns);
      EXPECT_EQ((object->*row.member)(&host.v.parray, kRead, &out), error_code(13)) << other;
      EXPECT_EQ(host.v.parray->cLocks, 0U);
    }
    // Hand-made arrays name no type: the size decides, unless the elements own something.
    Value anonymous = array(row.element, 1, {1, 1, 1, 1}, row.columns);
    for (const USHORT features : {USHORT{0}, FADF_BSTR, FADF_UNKNOWN, FADF_DISPATCH}) {
      anonymous.v.parray->fFeatures = features;
      EXPECT_EQ((object->*row.member)(&anonymous.v.parray, kRead, &out),
                features == 0 ? S_OK : error_code(13));
      SysFreeString(out);
    }
    anonymous.v.parray->fFeatures = FADF_HAVEVARTYPE;
  }
}

TEST_F(VtableTest, null_pointers_are_refused_and_stand_for_missing_optional_arguments) {
  Value out = bare(VT_BSTR);
  EXPECT_EQ(object->EchoDouble(1, nullptr), E_POINTER);
  EXPECT_EQ(error_words(), u"Invalid pointer: no place for the result of EchoDouble");
  EXPECT_EQ(object->ChangeDouble(nullptr), E_POINTER);
  EXPECT_EQ(error_words(), u"Invalid pointer: argument 'x' of ChangeDouble is a null reference");
  BSTR* const to = &out.v.bstrVal;
  EXPECT_EQ(object->JoinRef(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, to), S_OK);
  EXPECT_EQ(ascii(characters(*to)), "1.5 2.5 7 1 36526 psi");
  SysFreeString(*to);
  EXPECT_EQ(object->Join(0, 0, 0, 0, 0, nullptr, to), S_OK);
  EXPECT_EQ(ascii(characters(*to)), "0 0 0 0 0 ");
}

TEST_F(VtableTest, what_is_only_read_is_neither_copied_nor_written_back) {
  Value out = bare(VT_BSTR);
  BSTR* const to = &out.v.bstrVal;
  EXPECT_EQ(object->JoinRead(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, to), S_OK);
  EXPECT_EQ(ascii(characters(*to)), "1.5 2.5 7 1 36526 psi");
  SysFreeString(*to);
  const Value words = text(u"bar");
  double d = 1;
  VARIANT_BOOL own_true = 1;  // a host's own form of True: written back it would be the usual one
  BSTR s = words.v.bstrVal;
  EXPECT_EQ(object->JoinRead(&d, nullptr, nullptr, &own_true, nullptr, &s, to), S_OK);
  EXPECT_EQ(ascii(characters(*to)), "1 2.5 7 1 36526 bar");
  EXPECT_EQ(own_true, 1);
  EXPECT_EQ(s, words.v.bstrVal);

  Value xs = array(VT_R4, 0, {3, 5}), table = array(VT_R4, 0, {1, 2, 3, 4}, 2);
  xs.v.parray->fFeatures |= FADF_FIXEDSIZE;
  SAFEARRAY* none = nullptr;
  float sum = 0;
  EXPECT_EQ(object->ReadSingles(&xs.v.parray, &table.v.parray, &sum), S_OK);
  EXPECT_EQ(sum, 7.0F);
  EXPECT_EQ(Sample::seen, xs.v.parray->pvData);
  EXPECT_EQ(xs.v.parray->cLocks, 0U);
  EXPECT_EQ(object->ReadSingles(&none, &none, &sum), S_OK);
  EXPECT_EQ(sum, -2.0F);
  EXPECT_EQ(object->ReadSingles(&xs.v.parray, nullptr, &sum), E_POINTER);
  EXPECT_EQ(object->ReadSingles(&xs.v.parray, &xs.v.parray, &sum), error_code(13));

  const ClassInfo& info = class_info<kSample>();
  for (const MemberInfo& member : info.members) {
    const std::string_view name = member.name;
    const bool reads = name == "JoinRead" || name == "ReadSingles";
    for (const ArgumentInfo& argument : member.arguments) {
      EXPECT_EQ(argument.type.read_only, reads) << name << " " << argument.name;
    }
  }
}

TEST_F(VtableTest, failures_carry_the_same_words_on_both_roads_and_leave_nothing_stale) {
  each_row("automation.tsv", "failures", 6, [&](const TableRow& row) {
    const LONG number = row["number"];
    const HRESULT hr = code_of(row["error"]);
    const std::string words = row["words"];
    Value where = text(u"host");
    float out = poisoned<float>();
    const auto fail = [&] { return object->Fail(number, &where.v.bstrVal, &out); };
    EXPECT_EQ(fail(), hr);
    EXPECT_EQ(out, 0.0F);
    EXPECT_EQ(characters(where.v.bstrVal), u"reached");  // written before the failure
    EXPECT_EQ(ascii(error_words()), words);

    const Sent by_name(text(u"host"), kByRef);
    const Answer answer = call(object, u"Fail", {i4(number).v, by_name.variant});
    EXPECT_EQ(answer.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(answer.scode, hr);
    EXPECT_EQ(ascii(answer.words), words);
    EXPECT_EQ(answer.source, u"vq140Analyse.ztSample");
    EXPECT_EQ(shown(by_name.variable.v), shown(where.v));
    EXPECT_EQ(error_words(), u"");  // it has gone into the exception record

    fail();
    EXPECT_EQ(object->EchoSingle(1, &out), S_OK);
    EXPECT_EQ(error_words(), u"") << "after a good call";
    fail();
    EXPECT_EQ(invoke_id(object, 4, {r4(1).v}, DISPATCH_METHOD).hr, S_OK);
    EXPECT_EQ(error_words(), u"") << "after a good call by name";
  });
  // What the host itself has told its thread stays, also while another thread has our failure.
  float out = 0;
  Value where = text(u"host");
  EXPECT_EQ(object->Fail(9, &where.v.bstrVal, &out), error_code(9));
  std::thread([&] {
    ICreateErrorInfo* writer = nullptr;
    void* own = nullptr;
    ASSERT_EQ(CreateErrorInfo(&writer), S_OK);
    std::u16string words = u"the host's own";
    writer->SetDescription(words.data());
    ASSERT_EQ(writer->QueryInterface(IID_IErrorInfo, &own), S_OK);
    writer->Release();
    SetErrorInfo(0, static_cast<IErrorInfo*>(own));
    static_cast<IErrorInfo*>(own)->Release();
    EXPECT_EQ(object->EchoSingle(1, &out), S_OK);
    EXPECT_EQ(error_words(), words);
  }).join();
  EXPECT_EQ(error_words(), u"Subscript out of range");
  // Without an exception record the words stay with the thread.
  VARIANT sent[] = {empty().v, i4(9).v};
  DISPPARAMS params{sent, nullptr, 2, 0};
  EXPECT_EQ(object->Invoke(23, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr),
            DISP_E_EXCEPTION);
  EXPECT_EQ(error_words(), u"Subscript out of range");
  // The last reference to another object goes away first, as a host's smart pointers do.
  void* other = nullptr;
  ASSERT_EQ(class_info<kSample>().create(IID_IDispatch, &other), S_OK);
  EXPECT_EQ(object->Fail(9, &sent[0].bstrVal, &out), error_code(9));
  SysFreeString(sent[0].bstrVal);
  static_cast<IDispatch*>(other)->Release();
  IErrorInfo* info = nullptr;
  ASSERT_EQ(GetErrorInfo(0, &info), S_OK);
  Value source = bare(VT_BSTR);
  GUID guid{};
  EXPECT_EQ(info->GetSource(&source.v.bstrVal), S_OK);
  EXPECT_EQ(info->GetGUID(&guid), S_OK);
  info->Release();
  EXPECT_EQ(characters(source.v.bstrVal), u"vq140Analyse.ztSample");
  EXPECT_EQ(guid, kSample.iid);
}

TEST_F(VtableTest, one_object_answers_for_all_its_interfaces) {
  const std::pair<IID, bool> rows[] = {{IID_IUnknown, true},
                                       {IID_IDispatch, true},
                                       {kSample.iid, true},
                                       {IID_ISupportErrorInfo, false},
                                       {IID_IProvideClassInfo, false}};
  for (const auto& [iid, itself] : rows) {
    void* found = poisoned<void*>();
    ASSERT_EQ(object->QueryInterface(iid, &found), S_OK) << iid.Data1;
    EXPECT_EQ(found == object, itself) << iid.Data1;
    void* back = nullptr;
    EXPECT_EQ(static_cast<IUnknown*>(found)->QueryInterface(IID_IUnknown, &back), S_OK);
    EXPECT_EQ(back, object) << iid.Data1;
    static_cast<IUnknown*>(back)->Release();
    static_cast<IUnknown*>(found)->Release();
  }
  void* found = poisoned<void*>();
  EXPECT_EQ(object->QueryInterface(kSample.clsid, &found), E_NOINTERFACE);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
  EXPECT_EQ(class_info<kSample>().create(IID_IClassFactory, &found), E_NOINTERFACE);
  EXPECT_EQ(found, nullptr);
  ASSERT_EQ(object->QueryInterface(IID_ISupportErrorInfo, &found), S_OK);
  auto* support = static_cast<ISupportErrorInfo*>(found);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(kSample.iid), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IDispatch), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IClassFactory), S_FALSE);
  support->Release();
  // There are no type libraries here.
  UINT count = 7;
  auto* info = poisoned<ITypeInfo*>();
  EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 0U);
  EXPECT_TRUE(FAILED(object->GetTypeInfo(0, 0, &info)));
  EXPECT_EQ(object->GetTypeInfo(0, 0, nullptr), E_POINTER);
  EXPECT_EQ(info, nullptr);
}

// The state that a host may have set, without the flags that arithmetic leaves.
std::uint32_t control() {
#if defined(__aarch64__)
  std::uint64_t state = 0;
  __asm__ volatile("mrs %0, fpcr" : "=r"(state));
  return static_cast<std::uint32_t>(state);
#else
  std::uint16_t x87 = 0;
  __asm__ volatile("fnstcw %0" : "=m"(x87));
  return (_mm_getcsr() & 0xFFC0U) << 16 | x87;
#endif
}

// Denormal numbers count as zero, and come out as zero.
void lose_tiny_numbers() {
#if defined(__aarch64__)
  __asm__ volatile("msr fpcr, %0" : : "r"(std::uint64_t{control()} | 1U << 24));
#else
  _mm_setcsr(_mm_getcsr() | 0x8040U);
#endif
}

TEST_F(VtableTest, the_hosts_floating_point_state_is_neither_met_nor_changed) {
  fenv_t usual;
  ASSERT_EQ(fegetenv(&usual), 0);
  for (const int rounding : {FE_TONEAREST, FE_UPWARD, FE_TOWARDZERO}) {
    feclearexcept(FE_ALL_EXCEPT);
    feenableexcept(FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW | FE_UNDERFLOW | FE_INEXACT);
    fesetround(rounding);
    lose_tiny_numbers();
    const std::uint32_t before = control();
    double third = 0, infinite = 0, undefined = 0, tiny = 0;
    std::vector<std::uint32_t> after;
    const auto note = [&](const auto&) { after.push_back(control()); };
    note(object->Quotient(1, 3, &third));
    note(object->Quotient(1, 0, &infinite));
    note(object->Quotient(0, 0, &undefined));
    note(object->Quotient(0x1p-1060, 4, &tiny));
    // Conversions by name are arithmetic too.
    const Answer answer = call(object, u"EchoSingle", {r8(0.1).v});
    note(answer);
    const Answer words = call(object, u"EchoSingle", {text(u"0.1").v});
    note(words);
    const Answer overflow = call(object, u"EchoSingle", {r8(1e39).v});
    note(overflow);
    const Sent list(array(VT_VARIANT, 1, {2, 1}), kByRef);
    note(call(object, u"Singles", {list.variant, i4(kChange).v}));
    void* other = nullptr;
    note(class_info<kSample>().create(IID_IDispatch, &other));
    note(static_cast<IUnknown*>(other)->Release());
    fesetenv(&usual);
    EXPECT_EQ(after, std::vector<std::uint32_t>(after.size(), before)) << rounding;
    EXPECT_EQ(third, 1.0 / 3);
    EXPECT_EQ(infinite, INFINITY);
    EXPECT_TRUE(std::isnan(undefined));
    EXPECT_EQ(tiny, 0x1p-1062);
    EXPECT_EQ(shown(answer.result.v), shown(r4(0.1F).v));
    EXPECT_EQ(shown(words.result.v), shown(r4(0.1F).v));
    EXPECT_EQ(overflow.scode, error_code(6));
  }
}

// Within a call, by way of each door through which code of the host's own runs: the state is the
// host's there, the library's behind it, and what the host's code leaves is the host's from then
// on.
TEST_F(VtableTest, code_of_the_host_has_the_hosts_floating_point_state) {
  struct Sort final : ztSortTools {
    std::function<void()> work;
    void SortAscending(Array1<float>&, bool&) override { work(); }
  };
  fenv_t usual;
  ASSERT_EQ(fegetenv(&usual), 0);
  const std::uint32_t library = control();
  for (const int rounding : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD}) {
    for (const int left : {FE_TONEAREST, FE_UPWARD, FE_TOWARDZERO}) {
      std::vector<std::uint32_t> inside, within, after;
      const auto host = [&] {
        inside.push_back(control());
        double third = 0;
        object->Quotient(1, 3, &third);  // a call within a call
        within.push_back(control());
        EXPECT_EQ(third, 1.0 / 3);
        fesetround(left);
      };
      fesetround(left);
      const std::uint32_t host_left = control();
      fesetround(rounding);
      const std::uint32_t host_before = control();
      const auto run = [&](const auto& call) {
        fesetround(rounding);
        call();
        after.push_back(control());
        fesetenv(&usual);
      };
      set_message_callback([&](const std::string&, bool) { host(); });
      Sample::meanwhile = [&] {
        bool flag = true;
        std::string line = "line";
        const FloatingPointScope library_again;  // as if the sink were reached from a routine
        error_handler()->ReportError(line, flag);
        EXPECT_EQ(control() >> 16, library >> 16);  // 64-bit code has no use for the x87 unit
      };
      const Value list = script_array({r8(1)}), box = script_box(r8(1));
      object_of(list).work = object_of(box).work = host;
      const Sent b(boolean(false), kByRef), s(text(u"a"), kByRef), x(array(VT_R4, 1, {1}), kByRef);
      const Sent f(r4(1), kByRef);
      run([&] { call(object, u"Meanwhile", {b.variant, s.variant, x.variant, f.variant}); });
      run([&] { call(object, u"Singles", {list.v, i4(kChange).v}); });
      run([&] { call(object, u"ChangeDouble", {box.v}); });
      companion_makers().SortTools = [&] {
        host();
        const auto made = std::make_shared<Sort>();
        made->work = host;
        return made;
      };
      Sample::meanwhile = nullptr;
      run([&] {
        const FloatingPointScope scope;
        bool ok = false;
        Array1<float> none;
        create_sort_tools()->SortAscending(none, ok);
        EXPECT_EQ(control() >> 16, library >> 16);  // 64-bit code has no use for the x87 unit
      });
      companion_makers() = built_in_makers();
      set_message_callback({});
      common_globals() = {};
      ASSERT_EQ(inside.size(), 7U);
      EXPECT_EQ(after, std::vector<std::uint32_t>(after.size(), host_left));
      EXPECT_EQ(within, inside);
      for (const std::uint32_t state : inside) {
        EXPECT_TRUE(state == host_before || state == host_left) << rounding << left;
      }
      EXPECT_EQ(inside.front(), host_before);
    }
  }
}

}  // namespace
}  // namespace vqmath63::automation::test
