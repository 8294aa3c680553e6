// The program vqhost as a user meets it: runs the transcripts of tests/data/vqhost.
//
// A transcript writes files ("file NAME" and lines after "| ") and runs command lines ("$ "). What
// follows one is expected of it: its exit status ("= ", 0 when not said), texts that the output has
// one after the other ("> ") and the messages ("! "), with \n for a line's end. Without messages
// nothing is said; without texts a command that fails prints nothing.
#include "host/vqhost_program.hpp"

namespace vqmath63::host {
namespace {

struct Transcript {
  const char* name;
  int commands;
};

struct Command {
  std::string arguments;
  int status = 0;
  std::vector<std::string> out;
  std::vector<std::string> err;
};

class VqhostTranscript : public Vqhost, public testing::WithParamInterface<Transcript> {
 protected:
  void expect(const Command& command) const {
    const Outcome outcome = run(command.arguments);
    EXPECT_EQ(outcome.status, command.status) << outcome.err;
    expect_in_order(outcome.out, command.out, "the output");
    expect_in_order(outcome.err, command.err, "the error stream");
    if (command.err.empty()) {
      EXPECT_EQ(outcome.err, "");
    }
    if (command.out.empty() && command.status != 0) {
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

TEST_P(VqhostTranscript, Holds) {
  const std::string path = std::string(VQ_TEST_DATA "/vqhost/") + GetParam().name + ".txt";
  const auto lines = lines_of(contents(path));
  int commands = 0;
  for (std::size_t i = 0; i < lines.size();) {
    SCOPED_TRACE(path + ":" + std::to_string(i + 1) + ": " + lines[i]);
    const auto starts = [&](const char* mark) {
      return i < lines.size() && lines[i].starts_with(mark);
    };
    if (starts("# ")) {
      ++i;
    } else if (starts("file ")) {
      const std::string name = lines[i++].substr(5);
      std::string text;
      for (; starts("| "); ++i) text += lines[i].substr(2) + "\n";
      write(name, text);
    } else {
      ASSERT_TRUE(starts("$"));
      Command command;
      command.arguments = lines[i++].substr(1);
      for (; starts("= ") || starts("> ") || starts("! "); ++i) {
        const std::string text = lines[i].substr(2);
        if (starts("= ")) command.status = std::stoi(text);
        if (starts("> ")) command.out.push_back(unescaped(text));
        if (starts("! ")) command.err.push_back(unescaped(text));
      }
      expect(command);
      ++commands;
    }
  }
  EXPECT_EQ(commands, GetParam().commands);
}

constexpr Transcript kTranscripts[] = {
    {"calls_and_accumulation", 77},
    {"cells", 24},
    {"crossing", 17},
    {"derivative", 10},
    {"fit", 21},
    {"inside", 20},
    {"statistics", 25},
    {"table", 30},
    {"volume_factor", 29},
    {"volume_factor_tables", 16},
};

INSTANTIATE_TEST_SUITE_P(Vqhost, VqhostTranscript, testing::ValuesIn(kTranscripts),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace vqmath63::host
