// What the reference says a NaN does, asked of the component.
#include <cmath>
#include <limits>
#include <regex>
#include <set>
#include <sstream>

#include "component_host.hpp"
#include "interface_table.hpp"

namespace vqmath63::component::test {
namespace {

using namespace automation::test;
using Given = std::vector<std::vector<double>>;  // by argument, a number or the samples of an array

// What comes of a call: its results behind a blank each, or "error 6".
std::string outcome(IDispatch* object, const InterfaceMember& member, const Given& given) {
  std::vector<Sent> sent;
  sent.reserve(given.size());
  std::vector<VARIANT> variants, results;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const InterfaceArgument& argument = member.arguments[i];
    const bool samples = argument.type == "Single()";
    Value value = samples ? array(VT_R4, 1, given[i]) : automation::system::test::r8(given[i][0]);
    const VARTYPE type = argument.type == "Long" ? VT_I4 : VT_R4;
    if (!samples && argument.type != "Double") VariantChangeType(&value.v, &value.v, 0, type);
    sent.emplace_back(value, argument.by_ref ? kByRef : kByValue);
    variants.push_back(sent.back().variant);
  }
  const Lines lines;
  const Answer answer = call(object, {member.name.begin(), member.name.end()}, variants);
  EXPECT_EQ(answer.hr, S_OK) << member.name;
  if (!lines.text.empty()) {
    const std::size_t number = lines.text[0].find("(No.") + 4;
    return "error " + lines.text[0].substr(number, lines.text[0].find(')', number) - number);
  }
  for (const Sent& one : sent) {
    if (one.variant.vt == (VT_BYREF | VT_R8)) results.push_back(one.variable.v);
  }
  if (!member.result.empty()) results = {answer.result.v};
  std::string text;
  for (VARIANT& result : results) {
    VariantChangeType(&result, &result, 0, VT_R8);
    char digits[40];
    std::snprintf(digits, sizeof digits, " %g", result.dblVal);
    text += std::isnan(result.dblVal) ? " nan" : digits;
  }
  return text;
}

// Holds words such as "gives 1e308" or "counts as largest" for a NaN at `at` of argument `which`.
void hold(IDispatch* object, const InterfaceMember& member, Given given, std::size_t which,
          std::size_t at, const std::string& words) {
  const double first = given[which][0];
  double& place = given[which][at];
  std::string want = " nan";
  if (words.starts_with("error")) {
    want = words;
  } else if (words == "gives n1") {
    want = " 0.5";
  } else if (words == "gives 0" || words == "gives 1e308") {
    want = words == "gives 0" ? " 0" : " 1e+308";
  } else if (words == "both results are NaN") {
    want += want;
  } else if (words.starts_with("counts") && (at > 0 || !words.ends_with("element 1 only"))) {
    place = words.ends_with("largest") ? 1e30 : words.ends_with("element 1 only") ? first : 1;
    want = outcome(object, member, given);
  } else if (words.starts_with("counts") && member.result == "Long") {
    want = " 1";
  }
  place = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(outcome(object, member, given), want)
      << member.name << " with a NaN in " << member.arguments[which].name << ", which " << words;
}

// Of a sentence what holds by itself, under "", and for an argument, under its name ("as X gives
// NaN"). Exceptions behind "but" are not for the arguments that are sent here.
std::map<std::string, std::string> promises(const std::string& sentence) {
  static const std::regex kPart(
      "(?:as (\\w+) )?((?:gives (?:NaN|n1|0|1e308)|error \\d|flows to the result|both results are "
      "NaN|counts as (?:largest|element 1 only|[\\w ]*not negative)))(, but.*)?[,;.] ?");
  std::map<std::string, std::string> all;
  std::sregex_iterator part(sentence.begin(), sentence.end(), kPart,
                            std::regex_constants::match_continuous);
  for (; part != std::sregex_iterator(); ++part) all.emplace((*part)[1], (*part)[2]);
  return all;
}

TEST(ReferenceTest, a_nan_does_what_the_page_says) {
  std::map<std::string, std::string> sentences;
  for (const std::string of : {"ztMathLib", "ztStatistics"}) {
    std::ifstream page(VQ_DOCS "/reference/" + of + ".md");
    std::string names;  // of the members that the lines below are about
    for (std::string line; std::getline(page, line);) {
      if (line.starts_with("### ")) names = line.substr(4);
      const std::size_t nan = line.find("NaN: ");
      if (!line.starts_with("**Special values.**") || nan == line.npos) continue;
      std::istringstream each(names);
      for (std::string name; std::getline(each >> std::ws, name, ',');) {
        sentences[of + "." + name] = line.substr(nan + 5);
      }
    }
  }
  std::set<std::string> held;
  for (const InterfaceClass& of : interface_table()) {
    if (of.name != "ztMathLib" && of.name != "ztStatistics") continue;
    const std::u16string id = u"vq140Analyse." + std::u16string(of.name.begin(), of.name.end());
    const Instance<IDispatch> object(id.c_str(), IID_IDispatch);
    for (const InterfaceMember& member : of.members) {
      Given given;
      bool numbers = member.kind == "method";
      for (const InterfaceArgument& argument : member.arguments) {
        const bool real = argument.type == "Double" || argument.type == "Single";
        numbers &= real || argument.type == "Long" || argument.type == "Single()";
        if (argument.optional) continue;
        given.push_back({3.0, 1.0, 4.0, 1.5, 5.0});
        if (argument.type == "Long") given.back() = {2.0};
        if (real) given.back() = {given.size() == 1 ? 0.5 : 0.25};
      }
      const auto said = promises(sentences[of.name + "." + member.name]);
      for (std::size_t which = 0; numbers && which < given.size(); ++which) {
        const InterfaceArgument& argument = member.arguments[which];
        if (argument.type == "Long" || (member.result.empty() && argument.by_ref)) continue;
        const auto words = said.find(said.contains(argument.name) ? argument.name : "");
        if (words == said.end()) continue;
        held.insert(of.name + "." + member.name);
        for (std::size_t at = 0; at < given[which].size(); ++at) {
          hold(object.object, member, given, which, at, words->second);
        }
      }
    }
  }
  EXPECT_EQ(held.size(), 85U) << "members of which the page says plainly what a NaN does";
}

}  // namespace
}  // namespace vqmath63::component::test
