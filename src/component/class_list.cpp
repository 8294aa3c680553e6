#include "component/class_list.hpp"

#include "accumulate/accumulate_members.hpp"
#include "automation/object.hpp"
#include "calculus/differentiate_members.hpp"
#include "calculus/integrate_members.hpp"
#include "frame/text_case.hpp"
#include "info/analyse_info_members.hpp"
#include "mathlib/math_lib_members.hpp"
#include "petroleum/petroleum_members.hpp"
#include "regression/regression_members.hpp"
#include "statistics/sample_members.hpp"
#include "statistics/statistics_members.hpp"

namespace vqmath63::component {
namespace {

using automation::Boundary;
using automation::ClassInfo;

// What the versioned form of a programmatic id ends with. The interfaces only ever grow, so that
// there is one version.
constexpr std::string_view kIdVersion = ".1";

constexpr const ClassInfo* kClasses[] = {
    &Boundary<members::kMathLib>::kInfo,       &Boundary<members::kStatistics>::kInfo,
    &Boundary<members::kSample>::kInfo,        &Boundary<members::kRegression>::kInfo,
    &Boundary<members::kDifferentiate>::kInfo, &Boundary<members::kIntegrate>::kInfo,
    &Boundary<members::kAccumulate>::kInfo,    &Boundary<members::kPetroleum>::kInfo,
    &Boundary<members::kAnalyseInfo>::kInfo,
};

}  // namespace

std::span<const ClassInfo* const> classes() noexcept {
  return kClasses;
}

const ClassInfo* find_class(REFCLSID clsid) noexcept {
  for (const ClassInfo* info : kClasses) {
    if (IsEqualGUID(info->clsid, clsid)) return info;
  }
  return nullptr;
}

const ClassInfo* find_class(std::string_view programmatic_id) noexcept {
  constexpr std::string_view kLibrary = automation::kLibraryName;
  if (programmatic_id.size() <= kLibrary.size() || programmatic_id[kLibrary.size()] != '.' ||
      !same_letters(programmatic_id.substr(0, kLibrary.size()), kLibrary)) {
    return nullptr;
  }
  std::string_view name = programmatic_id.substr(kLibrary.size() + 1);
  if (name.ends_with(kIdVersion)) name.remove_suffix(kIdVersion.size());
  for (const ClassInfo* info : kClasses) {
    if (same_letters(info->name, name)) return info;
  }
  return nullptr;
}

const ClassInfo* class_of(const void* object) noexcept {
  const void* const vtable = *static_cast<const void* const*>(object);
  for (const ClassInfo* info : kClasses) {
    if (info->vtable == vtable) return info;
  }
  return nullptr;
}

std::string programmatic_id(const ClassInfo& info) {
  return std::string(automation::kLibraryName) + "." + info.name;
}

std::string versioned_programmatic_id(const ClassInfo& info) {
  return programmatic_id(info).append(kIdVersion);
}

}  // namespace vqmath63::component
