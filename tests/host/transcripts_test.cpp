// The program vqhost as a user meets it: runs every transcript of tests/data/vqhost.
//
// A transcript writes files ("file NAME" and lines after "| ") and runs command lines: "$ " and the
// words after vqhost, with the exit status in front of the blank where it is not 0, "$2 fit". What
// follows one is expected of it: texts that the output has one after the other ("> ") and the
// messages ("! "). In files and texts \n is a line's end. Without messages nothing is said; without
// texts a command that fails prints nothing.
#include "host/vqhost_program.hpp"

namespace vqmath63::host {
namespace {

class Transcript : public Vqhost, public testing::WithParamInterface<std::string> {
 protected:
  void expect(const std::string& line, const std::vector<std::string>& out,
              const std::vector<std::string>& err) const {
    const auto words = line.find(' ');
    const Outcome outcome = run(line.substr(words));
    EXPECT_EQ(outcome.status, words == 1 ? 0 : std::stoi(line.substr(1))) << outcome.err;
    expect_in_order(outcome.out, out, "the output");
    expect_in_order(outcome.err, err, "the error stream");
    if (err.empty()) {
      EXPECT_EQ(outcome.err, "");
    }
    if (out.empty() && words > 1) {
      EXPECT_EQ(outcome.out, "");
    }
  }
};

std::string unescaped(std::string text) {
  for (std::size_t at = 0; (at = text.find("\\n", at)) != std::string::npos; ++at) {
    text.replace(at, 2, "\n");
  }
  return text;
}

std::vector<std::string> transcripts() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(VQ_TEST_DATA "/vqhost")) {
    names.push_back(entry.path().stem());
  }
  std::sort(names.begin(), names.end());
  return names;
}

TEST_P(Transcript, Holds) {
  const std::string path = std::string(VQ_TEST_DATA "/vqhost/") + GetParam() + ".txt";
  const auto lines = lines_of(contents(path));
  std::size_t i = 0;
  const auto starts = [&](const char* mark) {
    return i < lines.size() && lines[i].starts_with(mark);
  };
  int commands = 0;
  while (i < lines.size()) {
    SCOPED_TRACE(path + ":" + std::to_string(i + 1) + ": " + lines[i]);
    if (starts("# ")) {
      ++i;
    } else if (starts("file ")) {
      const std::string name = lines[i++].substr(5);
      std::string text;
      for (; starts("| "); ++i) text += unescaped(lines[i].substr(2)) + "\n";
      write(name, text);
    } else {
      ASSERT_TRUE(starts("$ ") || starts("$1 ") || starts("$2 "));
      const std::string& line = lines[i++];
      std::vector<std::string> out;
      std::vector<std::string> err;
      for (; starts("> ") || starts("! "); ++i) {
        (starts("> ") ? out : err).push_back(unescaped(lines[i].substr(2)));
      }
      expect(line, out, err);
      ++commands;
    }
  }
  EXPECT_GT(commands, 0);
}

INSTANTIATE_TEST_SUITE_P(Vqhost, Transcript, testing::ValuesIn(transcripts()),
                         [](const auto& each) { return each.param; });

// Each command is in some transcript, and its help ends with an example.
TEST_F(Vqhost, EveryCommandHasATranscriptAndAnExample) {
  std::string all;
  for (const std::string& name : transcripts()) {
    all += contents(std::string(VQ_TEST_DATA "/vqhost/") + name + ".txt");
  }
  const auto help = lines_of(run("--help").out);
  auto line = std::find(help.begin(), help.end(), "Subcommands:");
  int commands = 0;
  while (line != help.end() && (++line)->starts_with("  ")) {
    const std::string name = line->substr(2, line->find(' ', 2) - 2);
    EXPECT_TRUE(all.find("\n$ " + name + " ") != all.npos ||
                all.find("\n$ " + name + "\n") != all.npos)
        << "a transcript tests/data/vqhost/*.txt wants a line: $ " << name << " ...";
    const std::string text = run(name + " --help").out;
    EXPECT_NE(text.find("vqhost " + name, text.find("xample")), text.npos)
        << "the notes of the command " << name << " want an example of it";
    ++commands;
  }
  EXPECT_GE(commands, 11);
}

}  // namespace
}  // namespace vqmath63::host
