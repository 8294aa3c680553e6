// Calls every member with seeded random arguments, among them many that fail, through the vtable,
// by name with typed and with untyped variables, and many at once: all must bring back the same.
//
// usage: hostile_calls [ROUNDS [SURROUNDINGS]]
//                      a line a member: calls, error lines, a hash of what came back; in
//                      surroundings as surroundings.hpp knows them
//        hostile_calls CLASS MEMBER   each call of a member, to find a difference
//
// What is printed depends on no compiler, no optimisation, no quick way, no system, processor, time
// zone and surroundings: builds are compared.
#include <algorithm>
#include <cfloat>
#include <iostream>
#include <optional>
#include <random>

#ifdef _WIN32
#include "windows/system_hosts.hpp"
#else
#include "native_hosts.hpp"
#endif
#include "surroundings.hpp"

namespace vqmath63::component::test {
namespace {

using namespace calls;

class Chance {
 public:
  explicit Chance(std::uint64_t seed) : bits_(seed) {}
  std::size_t below(std::size_t n) { return static_cast<std::size_t>(bits_() % n); }
  bool one_in(std::size_t n) { return below(n) == 0; }
  double real() { return static_cast<double>(bits_() >> 11) * 0x1p-53; }  // from 0 to below 1
  template <class T, std::size_t n>
  T of(const T (&values)[n]) {
    return values[below(n)];
  }

 private:
  std::mt19937_64 bits_;
};

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kSingles[] = {0,       -0.0,     1e-45,    -1e-39,    1e-20, 1e-7,   0.5,
                               1,       -1,       3e9F,     1e12,      1e19,  -1e30F, 1.8e38F,
                               FLT_MAX, -FLT_MAX, HUGE_VAL, -HUGE_VAL, kNaN};
constexpr double kDoubles[] = {5e-324, -1e-310, 1e-300,  1e-8,   0.1,     0.999999999,
                               2,      17.5,    709.7,   -745.1, 1e15,    4e9,
                               1e38,   1e100,   1.4e154, 1e308,  DBL_MAX, -DBL_MAX};
constexpr double kLongs[] = {-2147483648.0, -1, 0, 1, 2, 3, 4, 5, 7, 12, 70000};
constexpr double kDates[] = {-657434, -1.75, 0, 44927.5, 2958465, 2958466, 1e10, kNaN, HUGE_VAL};

double hostile(VARTYPE vt, Chance& chance) {
  if (vt == VT_BOOL) return chance.one_in(2) ? -1 : 0;
  if (vt == VT_I4) return chance.of(kLongs);
  if (vt == VT_DATE) return chance.of(kDates);
  return vt == VT_R8 && chance.one_in(2) ? chance.of(kDoubles) : chance.of(kSingles);
}

double number_in(VARTYPE vt, const void* at) {
  VARIANT v{};
  std::memcpy(&v.llVal, at, vt == VT_R8 || vt == VT_DATE ? 8 : vt == VT_BOOL ? 2 : 4);
  return vt == VT_R4     ? static_cast<double>(v.fltVal)
         : vt == VT_I4   ? v.lVal
         : vt == VT_BOOL ? v.boolVal
                         : v.dblVal;
}

// A number of the type, as near as it has one.
VARIANT value_of(VARTYPE vt, double number) {
  VARIANT v{};
  v.vt = vt;
  if (vt == VT_R4) {
    constexpr double kMost = FLT_MAX;
    v.fltVal = static_cast<float>(std::isinf(number) ? number : std::clamp(number, -kMost, kMost));
  } else if (vt == VT_I4) {
    v.lVal =
        static_cast<LONG>(std::isnan(number) ? 0.0 : std::clamp(number, -2147483648.0, 70000.0));
  } else if (vt == VT_BOOL) {
    v.boolVal = number != 0 ? VARIANT_TRUE : VARIANT_FALSE;
  } else {
    v.dblVal = number;
  }
  return v;
}

// An array before it is made: its first dimension's elements side by side.
struct Plan {
  VARTYPE vt = VT_R4;
  std::vector<SAFEARRAYBOUND> bounds;  // rows, columns; none for an array variable without an array
  std::vector<double> numbers;

  static Plan of(const VARIANT& v, UINT rank) {
    Plan plan{static_cast<VARTYPE>(v.vt & VT_TYPEMASK), {}, {}};
    plan.bounds.assign(rank, {0, 1});
    if (v.parray == nullptr) return plan;
    for (UINT d = 0; d < rank; ++d) plan.bounds[d] = v.parray->rgsabound[rank - 1 - d];
    const auto* at = static_cast<const char*>(v.parray->pvData);
    for (std::size_t i = 0; i < plan.count(); ++i, at += v.parray->cbElements) {
      plan.numbers.push_back(number_in(plan.vt, at));
    }
    return plan;
  }
  std::size_t count() const {
    std::size_t n = 1;
    for (const SAFEARRAYBOUND& b : bounds) n *= b.cElements;
    return n;
  }

  /// The array of this plan, of elements of its type or of variants that hold them.
  void make(Variable& to, bool of_variants) const {
    VariantClear(&to.v);
    if (bounds.empty() && of_variants) return;
    to.v.vt = static_cast<VARTYPE>(VT_ARRAY | (of_variants ? VARTYPE{VT_VARIANT} : vt));
    to.v.parray = nullptr;
    if (bounds.empty()) return;
    std::vector<SAFEARRAYBOUND> made = bounds;
    to.v.parray = SafeArrayCreate(of_variants ? VARTYPE{VT_VARIANT} : vt,
                                  static_cast<UINT>(made.size()), made.data());
    auto* at = static_cast<char*>(to.v.parray->pvData);
    for (const double number : numbers) {
      const VARIANT v = value_of(vt, number);
      std::memcpy(at, of_variants ? static_cast<const void*>(&v) : &v.llVal,
                  to.v.parray->cbElements);
      at += to.v.parray->cbElements;
    }
  }
};

// An argument: an array, or a scalar.
struct Argument {
  std::optional<Plan> array;
  Variable scalar;

  Variable sent(bool untyped) const {
    Variable made;
    if (array) array->make(made, untyped);
    if (!array) VariantCopy(&made.v, const_cast<VARIANT*>(&scalar.v));
    return made;
  }
};

// What the arrays of one call have in common.
struct Theme {
  bool fresh;  // other samples than the row of the table has
  std::size_t n;
  double scale;

  explicit Theme(Chance& chance) {
    constexpr std::size_t kSizes[] = {1, 2, 3, 4, 5, 8, 16, 17, 33, 64, 130, 300, 700};
    constexpr double kScales[] = {1e-44, 1e-30, 1e-3, 1e6, 1e19, 2e19, 1e30, 1e38, 1e150, 1e300};
    fresh = chance.one_in(2);
    n = chance.of(kSizes);
    scale = chance.one_in(3) ? chance.of(kScales) : 1.0;
  }
};

void refill(Plan& plan, const Theme& theme, Chance& chance) {
  std::size_t n = theme.n;
  if (chance.one_in(8)) n += chance.below(3);
  for (SAFEARRAYBOUND& b : plan.bounds) {
    b = {static_cast<ULONG>(plan.bounds.size() == 1 ? n : 1 + chance.below(6)), 1};
  }
  plan.numbers.assign(plan.count(), 0.0);
  const std::size_t kind = chance.below(5);
  const double sign = chance.one_in(4) ? -1 : 1;
  double level = chance.real();
  for (double& x : plan.numbers) {
    level += kind == 1 ? chance.real() : 0;
    const double shapes[] = {2 * chance.real() - 1, level, std::floor(5 * chance.real()), level,
                             chance.real()};
    x = sign * shapes[kind];
    if (plan.vt == VT_I4) x = static_cast<double>(chance.below(theme.n + 2));
    if (plan.vt == VT_BOOL) x = chance.one_in(3) ? 0 : -1;
  }
  if (chance.one_in(3)) std::sort(plan.numbers.begin(), plan.numbers.end());
}

void spoil(Plan& plan, const Theme& theme, Chance& chance) {
  if (chance.one_in(40)) {
    plan = {plan.vt, {}, {}};
    return;
  }
  if (theme.fresh && (plan.bounds.size() == 1 || chance.one_in(4))) refill(plan, theme, chance);
  if (plan.vt == VT_R4 || plan.vt == VT_R8) {
    for (double& x : plan.numbers) x *= theme.scale;
  }
  if (!plan.numbers.empty() && chance.one_in(2)) {
    for (std::size_t k = chance.below(3); k > 0; --k)
      plan.numbers[chance.below(plan.numbers.size())] = hostile(plan.vt, chance);
  }
  if (chance.one_in(8)) {  // of the last dimension, which may go away whole
    SAFEARRAYBOUND& last = plan.bounds.back();
    last.cElements = static_cast<ULONG>(std::max<std::int64_t>(
        0, std::int64_t{last.cElements} + static_cast<std::int64_t>(chance.below(5)) - 3));
    plan.numbers.resize(plan.count(), 1.0);
  }
  constexpr LONG kLower[] = {0, 2, -3};
  if (chance.one_in(6)) {  // and the upper bound with it, or not
    SAFEARRAYBOUND& some = plan.bounds[chance.below(plan.bounds.size())];
    some.lLbound = chance.of(kLower);
    if (chance.one_in(2) && some.cElements > 0) {
      some.cElements = static_cast<ULONG>(std::int64_t{some.cElements} + 1 - some.lLbound);
      plan.numbers.resize(plan.count(), 1.0);
    }
  }
}

void spoil(Argument& argument, const Type& type, const Theme& theme, Chance& chance) {
  VARIANT& v = argument.scalar.v;
  if (argument.array) {
    spoil(*argument.array, theme, chance);
  } else if (type.vt == VT_BSTR) {
    const OLECHAR* const words[] = {VQ_OLESTR(""),     VQ_OLESTR("DAY"), VQ_OLESTR("weeks"),
                                    VQ_OLESTR("year"), VQ_OLESTR("+"),   VQ_OLESTR("- ")};
    if (!chance.one_in(4)) return;
    SysFreeString(v.bstrVal);
    v.bstrVal = SysAllocString(chance.of(words));
  } else if (chance.one_in(3)) {
    v = value_of(type.vt, hostile(type.vt, chance));
  } else if (type.vt == VT_R4 || type.vt == VT_R8) {
    const double was = number_in(type.vt, &v.llVal);
    // Of all its digits, from 2^-7 to 2^7, where most ways of working lie.
    const int exponent = static_cast<int>(chance.below(14)) - 7;
    const double ordinary = std::ldexp(1.0 + chance.real(), exponent);
    const double choices[] = {was * theme.scale, was * chance.real(), ordinary, -ordinary};
    v = value_of(type.vt, chance.of(choices));
  }
}

// Without what follows the component's version: the date of its file.
std::string undated(std::string text) {
  const std::size_t date = text.find("v6.3.2436 ");
  if (date == text.npos || text.ends_with("Close Down")) return text;
  return text.replace(date + 9, text.find('"', date) - date - 9, "");
}

// As the table writes it, save the sign of a NaN, which compilers are free to choose.
std::string text_of(const VARIANT& v) {
  std::string text = v.vt == VT_EMPTY ? "[]" : shown(v);
  for (std::size_t at = 0; (at = text.find("-nan", at)) != text.npos;) text.erase(at, 1);
  return undated(text);
}

#ifdef _WIN32
std::string words_of(const VtableHost& host) {
  return host.told;
}
#else
std::string words_of(const NativeHost& host) {
  return automation::test::ascii(host.told);
}
#endif

// A host in surroundings of its own.
template <class Base>
class Within : public Base {
 public:
  template <class... Words>
  explicit Within(const Surroundings& around, Words... words) : Base(words...), around_(around) {}

 private:
  void about_to_enter() override { around_.enter(); }
  void has_left() override { around_.leave(); }

  const Surroundings& around_;
};

struct Row {
  std::string class_name, kind, name;
  std::vector<std::string> cells;
};

std::vector<Row> read_rows() {
  std::vector<Row> rows;
  std::ifstream in(VQ_TEST_DATA "/calls.tsv");
  std::string class_name;
  for (std::string line; std::getline(in, line);) {
    const auto fields = parts(line, '\t');
    if (fields.size() < 2) continue;
    if (fields[0] == "new") class_name = fields[1];
    const bool call = fields[0] == "call" || fields[0] == "get" || fields[0] == "let";
    if (call)
      rows.push_back({class_name, fields[0], fields[1], {fields.begin() + 3, fields.end()}});
  }
  return rows;
}

// A row with its arguments, as they stand in the table or spoiled.
struct Call {
  const Row* row;
  const Member* member;
  std::vector<Argument> arguments;

  Call(const Row& of, const Interfaces& interfaces)
      : row(&of), member(&interfaces.of(of.class_name + ' ' + of.kind + ' ' + of.name)) {
    for (std::size_t i = 0; i < of.cells.size(); ++i) {
      const Type& type = member->arguments.at(i);
      Argument& made = arguments.emplace_back();
      set(made.scalar, of.cells[i].substr(0, of.cells[i].find('>')), type);
      if (type.rank > 0) made.array = Plan::of(made.scalar.v, type.rank);
    }
  }
  void spoil(Chance& chance) {
    const Theme theme(chance);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      test::spoil(arguments[i], member->arguments[i], theme, chance);
    }
  }
};

// What the last of the calls brings back.
template <class AnyHost>
std::string outcome(AnyHost& host, bool untyped, const std::vector<Call>& calls) {
  host.create(calls.front().row->class_name, false);
  std::string text;
  for (const Call& call : calls) {
    std::vector<Variable> sent;
    for (const Argument& argument : call.arguments) sent.push_back(argument.sent(untyped));
    Variable result;
    host.lines.clear();
    const HRESULT code = host.call(call.row->kind, call.row->name, *call.member, sent, result.v);
    text = call.row->name + ' ' + std::to_string(code);
    text += ' ' + (code == S_OK ? text_of(result.v) : words_of(host));
    for (const Variable& v : sent) text += ' ' + text_of(v.v);
    for (const std::string& line : host.lines) text += "\n  " + undated(line);
  }
  return text;
}

// Each line once, as of many calls.
std::string distinct(const std::string& text) {
  std::string kept;
  for (const std::string& line : parts(text, '\n')) {
    if (kept.find(line + '\n') == kept.npos) kept += line + '\n';
  }
  return kept;
}

struct Seen {
  int calls = 0, lines = 0;
  std::uint64_t hash = 0xCBF29CE484222325;  // by FNV-1a

  void add(const std::string& text) {
    ++calls;
    lines += static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  }
};

// So many calls from each row of the table, of all members or of one.
int run(std::size_t rounds, const std::string& only, const Surroundings& around) {
  const Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  const std::vector<Row> rows = read_rows();
  std::map<std::string, Seen> seen;
  Within<VtableHost> vtable(around);
  Within<NameHost> typed(around, false);
#ifndef _WIN32
  Within<NameHost> any(around, true);
  Within<ManyHost> many(around);
#endif
  int differences = 0;
  const auto make = [&](std::size_t k, std::size_t round) {
    const std::string member = rows[k].class_name + ' ' + rows[k].name;
    if (!only.empty() && only != member) return;
    Chance chance(1'000'000 * k + round);
    std::vector<Call> calls;
    for (std::size_t i = 0; i < k; ++i) {  // what the table sets before, now and then spoiled
      if (rows[i].class_name != rows[k].class_name || rows[i].kind != "let") continue;
      calls.emplace_back(rows[i], interfaces);
      if (chance.one_in(12)) calls.back().spoil(chance);
    }
    calls.emplace_back(rows[k], interfaces);
    calls.back().spoil(chance);
    const std::string text = outcome(vtable, false, calls);
    const auto compare = [&](const char* how, const std::string& other) {
      if (other == text || distinct(other) == distinct(text) || ++differences > 10) return;
      std::cerr << "through the vtable: " << text << "\n" << how << ": " << other << "\n";
    };
    compare("by name", outcome(typed, false, calls));
#ifndef _WIN32
    // A result erased in a failing call leaves what an untyped variable held.
    if (!rows[k].name.starts_with("RemoveNulls")) {
      compare("by name, untyped", outcome(any, true, calls));
    }
    const auto is_array = [](const Argument& a) { return a.array.has_value(); };
    if (std::none_of(calls.back().arguments.begin(), calls.back().arguments.end(), is_array)) {
      compare("many at once", outcome(many, false, calls));
    }
#endif
    seen[member].add(text);
    if (!only.empty()) std::cout << text << "\n";
  };
  for (std::size_t k = 0; k < rows.size(); ++k) {
    // What has no array costs little and has many ways of working.
    const bool scalar = std::none_of(rows[k].cells.begin(), rows[k].cells.end(),
                                     [](const std::string& cell) { return cell[0] == '['; });
    for (std::size_t round = 0; round < rounds * (scalar ? 4 : 1); ++round) make(k, round);
  }
  for (const auto& [member, what] : seen) {
    std::cout << member << ' ' << what.calls << ' ' << what.lines << ' ' << std::hex << what.hash
              << std::dec << "\n";
  }
  return differences == 0 ? 0 : 1;
}

}  // namespace
}  // namespace vqmath63::component::test

int main(int count, char** words) {
  using namespace vqmath63::component::test;
  const std::vector<std::string> said(words + 1, words + count);
  const bool rounds = said.empty() || std::isdigit(static_cast<unsigned char>(said[0][0])) != 0;
#ifdef _WIN32
  CoInitialize(nullptr);
#endif
  return run(said.empty() || !rounds ? 60 : std::stoul(said[0]),
             rounds ? "" : said.at(0) + ' ' + said.at(1),
             Surroundings(rounds && said.size() > 1 ? said[1] : ""));
}
