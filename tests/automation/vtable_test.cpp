// The vtable path: the same results bit for bit as by name, identity, failures, the host's state.
#include <fenv.h>
#if !defined(__aarch64__)
#include <xmmintrin.h>
#endif

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

TEST_F(VtableTest, booleans_and_texts_are_the_same_on_both_roads) {
  for (const VARIANT_BOOL b : {VARIANT_BOOL{0}, VARIANT_BOOL{1}, VARIANT_TRUE}) {
    VARIANT_BOOL out = 7, changed = b;
    EXPECT_EQ(object->EchoBoolean(b, &out), S_OK);
    EXPECT_EQ(object->ChangeBoolean(&changed), S_OK);
    EXPECT_EQ(out, b == 0 ? VARIANT_FALSE : VARIANT_TRUE);
    EXPECT_EQ(changed, b == 0 ? VARIANT_TRUE : VARIANT_FALSE);
  }
  each_row("automation.tsv", "texts", 7, [&](const TableRow& row) {
    const Value sent = value_of(row["from"]), back = value_of(row["back"]);
    Value out = bare(VT_BSTR);
    EXPECT_EQ(object->EchoText(sent.v.bstrVal, &out.v.bstrVal), S_OK);
    EXPECT_EQ(characters(out.v.bstrVal), characters(back.v.bstrVal));
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
    Value out = bare(VT_BSTR);
    const auto read = [&](SAFEARRAY** array) {
      VariantClear(&out.v);
      out.v.vt = VT_BSTR;
      return (object->*row.member)(array, kRead, &out.v.bstrVal);
    };
    EXPECT_EQ(read(nullptr), E_POINTER);
    EXPECT_TRUE(error_words().starts_with(u"Invalid pointer: argument 'x")) << row.element;
    for (const VARTYPE other : {VT_DISPATCH, VT_BSTR, VT_CY, VT_UI4, VT_I2, VT_VARIANT}) {
      Value host = array(other, 0, {}, row.columns);
      EXPECT_EQ(read(&host.v.parray), error_code(13)) << other;
      EXPECT_EQ(host.v.parray->cLocks, 0U);
    }
    // Hand-made arrays name no type: the size decides, unless the elements own something.
    Value anonymous = array(row.element, 1, {1, 1, 1, 1}, row.columns);
    for (const USHORT features : {USHORT{0}, FADF_BSTR, FADF_UNKNOWN, FADF_DISPATCH}) {
      anonymous.v.parray->fFeatures = features;
      EXPECT_EQ(read(&anonymous.v.parray), features == 0 ? S_OK : error_code(13));
    }
    anonymous.v.parray->fFeatures = FADF_HAVEVARTYPE;
  }
}

TEST_F(VtableTest, what_the_host_puts_in_place_meanwhile_stays) {
  Value x = array(VT_R4, 1, {1, 2, 3}), fresh = array(VT_R4, 1, {9}), other = text(u"other");
  VARIANT_BOOL b = 0;
  float f = 1;
  Value s = text(u"a");
  const auto& members = class_info<kSample>().members;
  const auto member = std::find_if(members.begin(), members.end(), [](const auto& m) {
    return m.name == std::string_view("Meanwhile");
  });
  const auto slot = static_cast<std::size_t>(7 + (member - members.begin()));
  void* places[] = {&b, &s.v.bstrVal, &x.v.parray, &f};
  Sample::meanwhile = [&] {
    std::swap(x.v, fresh.v);
    std::swap(s.v, other.v);
    b = 1;
    f = 5;
  };
  EXPECT_EQ(
      member->late_call(object, (*reinterpret_cast<void (***)()>(object))[slot], places, nullptr),
      S_OK);
  Sample::meanwhile = nullptr;
  EXPECT_EQ(listed(x.v), "1..1: 9");
  EXPECT_EQ(listed(fresh.v), "1..3: 1 2 3");
  EXPECT_EQ(fresh.v.parray->cLocks, 0U);
  EXPECT_EQ(characters(s.v.bstrVal), u"other");
  EXPECT_EQ(b, 1);
  EXPECT_EQ(f, 5);
}

TEST_F(VtableTest, what_is_only_read_is_neither_copied_nor_written_back) {
  Value out = bare(VT_BSTR), words = text(u"bar");
  BSTR* const to = &out.v.bstrVal;
  EXPECT_EQ(object->JoinRead(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, to), S_OK);
  EXPECT_EQ(characters(*to), u"1.5 2.5 7 1 36526 psi");
  SysFreeString(*to);
  double d = 1;
  VARIANT_BOOL own_true = 1;  // a host's own form of True: written back it would be the usual one
  BSTR s = words.v.bstrVal;
  EXPECT_EQ(object->JoinRead(&d, nullptr, nullptr, &own_true, nullptr, &s, to), S_OK);
  EXPECT_EQ(characters(*to), u"1 2.5 7 1 36526 bar");
  EXPECT_TRUE(own_true == 1 && s == words.v.bstrVal);

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
  EXPECT_EQ(object->ReadSingles(&none, &none, nullptr), E_POINTER);
  EXPECT_EQ(object->ReadSingles(&xs.v.parray, &xs.v.parray, &sum), error_code(13));
}

TEST_F(VtableTest, failures_carry_the_same_words_on_both_roads_and_leave_nothing_stale) {
  Value where = text(u"host");
  float out = 7;
  const auto fail = [&](LONG number) { return object->Fail(number, &where.v.bstrVal, &out); };
  each_row("automation.tsv", "failures", 6, [&](const TableRow& row) {
    const HRESULT hr = code_of(row["error"]);
    const std::string words = row["words"];
    EXPECT_EQ(fail(row["number"]), hr);
    EXPECT_EQ(out, 0.0F);
    EXPECT_EQ(characters(where.v.bstrVal), u"reached");  // written before the failure
    EXPECT_EQ(ascii(error_words()), words);

    const Sent by_name(text(u"host"), kByRef);
    const Answer answer = call(object, u"Fail", {i4(row["number"]).v, by_name.variant});
    EXPECT_EQ(answer.hr, DISP_E_EXCEPTION);
    EXPECT_EQ(answer.scode, hr);
    EXPECT_EQ(ascii(answer.words), words);
    EXPECT_EQ(answer.source, u"vq140Analyse.ztSample");
    EXPECT_EQ(shown(by_name.variable.v), shown(where.v));
    EXPECT_EQ(error_words(), u"");  // it has gone into the exception record

    for (const bool late : {false, true}) {
      fail(row["number"]);
      EXPECT_EQ(late ? call(object, u"EchoSingle", {r4(1).v}).hr : object->EchoSingle(1, &out),
                S_OK);
      EXPECT_EQ(error_words(), u"") << "after a good call " << late;
    }
  });
  // What the host itself has told its thread stays, also while another thread has our failure.
  EXPECT_EQ(fail(9), error_code(9));
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
    float one = 0;
    EXPECT_EQ(object->EchoSingle(1, &one), S_OK);
    EXPECT_EQ(error_words(), words);
  }).join();
  EXPECT_EQ(error_words(), u"Subscript out of range");
  // Without an exception record the words stay with the thread, and while other objects go away,
  // as a host's smart pointers do first.
  VARIANT sent[] = {empty().v, i4(9).v};
  DISPPARAMS params{sent, nullptr, 2, 0};
  void* other = nullptr;
  ASSERT_EQ(class_info<kSample>().create(IID_IDispatch, &other), S_OK);
  EXPECT_EQ(object->Invoke(23, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr),
            DISP_E_EXCEPTION);
  static_cast<IDispatch*>(other)->Release();
  IErrorInfo* info = nullptr;
  ASSERT_EQ(GetErrorInfo(0, &info), S_OK);
  Value source = bare(VT_BSTR), words = bare(VT_BSTR);
  GUID guid{};
  EXPECT_EQ(info->GetDescription(&words.v.bstrVal), S_OK);
  EXPECT_EQ(info->GetSource(&source.v.bstrVal), S_OK);
  EXPECT_EQ(info->GetGUID(&guid), S_OK);
  info->Release();
  EXPECT_EQ(characters(words.v.bstrVal), u"Subscript out of range");
  EXPECT_EQ(characters(source.v.bstrVal), u"vq140Analyse.ztSample");
  EXPECT_EQ(guid, kSample.iid);
}

TEST_F(VtableTest, one_object_answers_for_all_its_interfaces) {
  for (const IID& iid :
       {IID_IUnknown, IID_IDispatch, kSample.iid, IID_ISupportErrorInfo, IID_IProvideClassInfo}) {
    void *found = nullptr, *back = nullptr;
    ASSERT_EQ(object->QueryInterface(iid, &found), S_OK) << iid.Data1;
    EXPECT_EQ(static_cast<IUnknown*>(found)->QueryInterface(IID_IUnknown, &back), S_OK);
    EXPECT_EQ(back, object) << iid.Data1;
    static_cast<IUnknown*>(back)->Release();
    if (iid == IID_ISupportErrorInfo) {
      auto* support = static_cast<ISupportErrorInfo*>(found);
      EXPECT_EQ(support->InterfaceSupportsErrorInfo(kSample.iid), S_OK);
      EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IDispatch), S_OK);
      EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IClassFactory), S_FALSE);
    }
    static_cast<IUnknown*>(found)->Release();
  }
  void* found = &found;
  EXPECT_EQ(object->QueryInterface(kSample.clsid, &found), E_NOINTERFACE);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
  // There are no type libraries here.
  UINT count = 7;
  auto* info = reinterpret_cast<ITypeInfo*>(&count);
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
    std::vector<std::uint32_t> after;
    const auto note = [&](const auto& x) {
      after.push_back(control());
      return x;
    };
    double quotients[4] = {};
    note(object->Quotient(1, 3, &quotients[0]));
    note(object->Quotient(1, 0, &quotients[1]));
    note(object->Quotient(0x1p-1060, 4, &quotients[2]));
    note(object->Quotient(0, 0, &quotients[3]));
    // Conversions by name are arithmetic too.
    const Answer answer = note(call(object, u"EchoSingle", {r8(0.1).v}));
    const Answer words = note(call(object, u"EchoSingle", {text(u"0.1").v}));
    const Answer overflow = note(call(object, u"EchoSingle", {r8(1e39).v}));
    const Sent list(array(VT_VARIANT, 1, {2, 1}), kByRef);
    note(call(object, u"Singles", {list.variant, i4(kChange).v}));
    void* other = nullptr;
    note(class_info<kSample>().create(IID_IDispatch, &other));
    note(static_cast<IUnknown*>(other)->Release());
    fesetenv(&usual);
    EXPECT_EQ(after, std::vector<std::uint32_t>(after.size(), before)) << rounding;
    const double want[] = {1.0 / 3, INFINITY, 0x1p-1062};
    EXPECT_TRUE(std::equal(want, want + 3, quotients) && std::isnan(quotients[3]));
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
      std::vector<std::uint32_t> inside, after;
      const auto host = [&] {
        inside.push_back(control());
        double third = 0;
        object->Quotient(1, 3, &third);  // a call within a call
        EXPECT_TRUE(third == 1.0 / 3 && control() == inside.back());
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
      for (const std::uint32_t state : inside) {
        EXPECT_TRUE(state == host_before || state == host_left) << rounding << left;
      }
      EXPECT_EQ(inside.front(), host_before);
    }
  }
}

}  // namespace
}  // namespace vqmath63::automation::test
