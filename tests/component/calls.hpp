// Makes the worked calls of tests/data/calls.tsv for a host and compares what comes back.
#pragma once

#include <fstream>
#include <map>
#include <stdexcept>

#include "call_values.hpp"

namespace vqmath63::calls {

/// A member as tests/data/interface.tsv has it.
struct Member {
  UINT slot = 0;
  Type result;
  std::vector<Type> arguments;
  std::vector<std::string>
      fallbacks;  ///< of the arguments that may be left out, as the table has them
};

/// What a host adds to the table. Arguments that are left out are missing at the end of `sent`.
class Host {
 public:
  virtual ~Host() = default;
  /// A new object in place of the one before. Unless `to_log`, error lines are put into `lines`.
  virtual void create(const std::string& class_name, bool to_log) = 0;
  /// `kind` is "call", "get" or "let".
  virtual HRESULT call(const std::string& kind, const std::string& name, const Member& member,
                       std::vector<Variable>& sent, VARIANT& result) = 0;
  /// The type of the variable that the host sends for an argument.
  virtual Type sent_as(const Type& argument) const { return argument; }
  virtual void failed(int line, const std::string& what) = 0;

  std::vector<std::string> lines;
};

/// By class, kind and name, of tests/data/interface.tsv.
class Interfaces {
 public:
  explicit Interfaces(const std::string& path) {
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
      const auto fields = parts(line, '\t');  // class, slot, kind, name, id, result, arguments
      if (fields.size() != 7 || fields[0] == "class") continue;
      Member member;
      member.slot = static_cast<UINT>(std::stoul(fields[1]));
      member.result = type_of(fields[5]);
      for (const std::string& argument : parts(fields[6] == "-" ? "" : fields[6], ';')) {
        const auto words = parts(argument.substr(0, argument.find('=')), ' ');
        member.arguments.push_back(type_of(words.back()));
        member.arguments.back().by_ref = words[0] == "ref";
        const std::size_t equals = argument.find('=');
        member.fallbacks.push_back(equals == argument.npos ? "" : argument.substr(equals + 1));
      }
      const std::string kind = fields[2] == "method" ? "call" : fields[2];
      members_[fields[0] + ' ' + kind + ' ' + fields[3]] = member;
    }
  }
  /// Members by class, kind and name, such as "ztIntegrate call Integral".
  std::map<std::string, Member>& members() { return members_; }
  const Member& of(const std::string& key) const {
    const auto found = members_.find(key);
    if (found == members_.end()) throw std::invalid_argument("no row in interface.tsv for " + key);
    return found->second;
  }

 private:
  static Type type_of(const std::string& word) {
    static const std::map<std::string, VARTYPE> kTypes = {
        {"Single", VT_R4}, {"Double", VT_R8},   {"Long", VT_I4}, {"Boolean", VT_BOOL},
        {"Date", VT_DATE}, {"String", VT_BSTR}, {"-", VT_EMPTY}};
    const std::size_t open = word.find('(');
    Type type;
    type.vt = kTypes.at(word.substr(0, open));
    if (open != std::string::npos) type.rank = word[open + 1] == ',' ? 2 : 1;
    return type;
  }

  std::map<std::string, Member> members_;
};

/// Reads the table line by line.
class Run {
 public:
  /// Makes the calls of all classes, or of one only.
  Run(const Interfaces& interfaces, Host& host, std::string only_class = "")
      : interfaces_(interfaces), host_(host), only_class_(std::move(only_class)) {}

  /// The number of calls made.
  int all(const std::string& path) {
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
      ++line_;
      if (line.ends_with('\r')) line.pop_back();
      if (line.empty() || line[0] == '#') continue;
      try {
        row(parts(line, '\t'));
      } catch (const std::exception& failure) {
        host_.failed(line_, failure.what());
      }
    }
    end_of_lines();
    return calls_;
  }

 private:
  void row(const std::vector<std::string>& fields) {
    const std::string& kind = fields.at(0);
    if (kind != "line") end_of_lines();
    if (kind == "new") class_ = fields.at(1);
    if (kind == "within") {
      within_ = number_of(fields.at(1));
    } else if (!only_class_.empty() && class_ != only_class_) {
      return;
    } else if (kind == "line") {
      wanted_lines_.push_back("Error:" + fields.at(1) + "] ");
    } else if (kind == "new") {
      host_.create(class_, fields.size() > 2);
    } else if (kind == "log") {
      log(fields);
    } else {
      call(fields);
    }
  }

  void end_of_lines() {
    if (host_.lines != wanted_lines_) {
      std::string all = "lines:";
      for (const std::string& line : host_.lines) all += "\n  " + line;
      host_.failed(line_, all);
    }
    host_.lines.clear();
    wanted_lines_.clear();
  }

  void call(const std::vector<std::string>& fields) {
    const Member& member = interfaces_.of(class_ + ' ' + fields.at(0) + ' ' + fields.at(1));
    std::vector<Variable> sent(fields.size() - 3);
    std::vector<std::string> after, types;
    for (std::size_t i = 0; i < sent.size(); ++i) {
      const std::string& cell = fields[i + 3];
      const std::size_t change = cell.find('>');
      set(sent[i], cell.substr(0, change), host_.sent_as(member.arguments.at(i)));
      after.push_back(change == cell.npos ? shown(sent[i].v) : cell.substr(change + 1));
      types.push_back(change == cell.npos ? types_of(sent[i].v) : "");
    }
    Variable result;
    const HRESULT code = host_.call(fields[0], fields[1], member, sent, result.v);
    ++calls_;
    if (code != S_OK) host_.failed(line_, fields[1] + ": result code " + std::to_string(code));
    if (fields[2] != "-" && result.v.vt != member.result.vt) {
      host_.failed(line_, fields[1] + ": result of type " + std::to_string(result.v.vt));
    }
    compare(fields[1], result.v, fields[2] == "-" ? "" : fields[2]);
    for (std::size_t i = 0; i < sent.size(); ++i) {
      compare(fields[1] + ", argument " + std::to_string(i + 1), sent[i].v, after[i]);
      // What the member does not change keeps the type that the host gave it, too.
      if (!types[i].empty() && types_of(sent[i].v) != types[i]) {
        host_.failed(line_, fields[1] + ", argument " + std::to_string(i + 1) + " is of types " +
                                types_of(sent[i].v) + ", was of " + types[i]);
      }
    }
  }

  void compare(const std::string& what, const VARIANT& value, const std::string& want) {
    const std::string got = shown(value);
    const bool nothing = want == "[]" && got.empty();
    if (!nothing && !same(got, want, within_)) {
      host_.failed(line_, what + ": " + got + ", wanted " + want);
    }
  }

  void log(const std::vector<std::string>& fields) {
    std::ifstream in(fields.at(1));
    std::string last;
    int count = 0;
    for (std::string line; std::getline(in, line); ++count) {
      last = line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
    }
    if (count != std::stoi(fields.at(2)) || !last.ends_with(fields.at(3))) {
      host_.failed(line_, fields[1] + ": " + std::to_string(count) + " lines, the last: " + last);
    }
  }

  const Interfaces& interfaces_;
  Host& host_;
  std::string only_class_;
  std::string class_;
  double within_ = 0;
  int line_ = 0;
  int calls_ = 0;
  std::vector<std::string> wanted_lines_;
};

}  // namespace vqmath63::calls
