// A failing error sink surfaces as an automation error, by name and by the vtable alike.
#include <functional>
#include <memory>

#include "boundary_fixture.hpp"
#include "component/class_list.hpp"
#include "frame/companions.hpp"

namespace vqmath63::automation::test {

// The dual interfaces. Not in an unnamed namespace, where the compiler would take them for classes
// that nobody implements.
struct IIntegrate : IDispatch {
  virtual HRESULT VQ_API get_IntegerationRule(LONG*) = 0;
  virtual HRESULT VQ_API put_IntegrationRule(LONG*) = 0;
  virtual HRESULT VQ_API Integral(SAFEARRAY**, SAFEARRAY**, float*) = 0;
};
struct IAnalyseInfo : IDispatch {
  virtual HRESULT VQ_API get_DLLVersion(BSTR*, BSTR*, VARIANT_BOOL*, BSTR*) = 0;
  virtual HRESULT VQ_API CloseDown() = 0;
};

namespace {

struct FailingSink final : ztErrorHandler {
  explicit FailingSink(std::function<void()> work) : fail(std::move(work)) {}
  void ReportError(std::string&, bool&) override { fail(); }
  void SetLogToFile(bool&) override { fail(); }
  void SetLogFile(std::string&) override {}
  void SetVersionText(std::string&) override {}
  std::function<void()> fail;
};

IDispatch* create(const char* id) {
  const ClassInfo* info = component::find_class(std::string_view(id));
  void* made = nullptr;
  EXPECT_EQ(info->create(info->iid, &made), S_OK);
  return static_cast<IDispatch*>(made);
}

TEST(CompanionFailureTest, a_failing_sink_is_the_callers_to_see) {
  const struct {
    HRESULT hr;
    std::u16string words;
    std::function<void()> fail;  // none: the sink cannot be created
  } rows[] = {
      {error_code(429), u"Component can't create object", nullptr},
      {error_code(5), u"Invalid procedure call or argument", [] { throw Fault(5); }},
      {error_code(11), u"Division by zero", [] { raise_companion_failure(error_code(11)); }},
      {E_ACCESSDENIED, u"Access is denied", [] { raise_companion_failure(E_ACCESSDENIED); }},
      {E_FAIL, u"Unspecified error", [] { throw std::runtime_error("private words"); }},
  };
  auto* integrate = static_cast<IIntegrate*>(create("vq140Analyse.ztIntegrate"));
  auto* info = static_cast<IAnalyseInfo*>(create("vq140Analyse.ztAnalyseInfo"));
  for (const auto& row : rows) {
    common_globals() = {};
    companion_makers().ErrorHandler = [&]() -> std::shared_ptr<ztErrorHandler> {
      return row.fail ? std::make_shared<FailingSink>(row.fail) : nullptr;
    };
    SAFEARRAY* none = nullptr;  // an unallocated array is error 9, which the sink then receives
    float area = 1.0F;
    EXPECT_EQ(integrate->Integral(&none, &none, &area), row.hr);
    EXPECT_EQ(error_words(), row.words);
    EXPECT_EQ(area, 0.0F);
    EXPECT_EQ(info->CloseDown(), row.hr);
    EXPECT_EQ(error_words(), row.words);
    BSTR version = nullptr;
    EXPECT_EQ(info->get_DLLVersion(nullptr, nullptr, nullptr, &version), row.hr);
    EXPECT_EQ(error_words(), row.words);
    EXPECT_EQ(version, nullptr);
    VARIANT unset{};
    const Answer answers[] = {call(integrate, u"Integral", {unset, unset}),
                              call(info, u"CloseDown", {}), call(info, u"DLLVersion", {})};
    for (const Answer& answer : answers) {
      EXPECT_EQ(answer.scode, row.hr);
      EXPECT_EQ(answer.words, row.words);
    }
    EXPECT_EQ(answers[0].source, u"vq140Analyse.ztIntegrate");
    EXPECT_EQ(answers[1].source, u"vq140Analyse.ztAnalyseInfo");
  }
  common_globals() = {};
  companion_makers() = built_in_makers();
  EXPECT_EQ(integrate->Release(), 0U);
  EXPECT_EQ(info->Release(), 0U);
}

}  // namespace
}  // namespace vqmath63::automation::test
