"""Makes the man page and the bash completion of vqhost from what the program says of itself.

usage: host_pages.py man|bash VQHOST VERSION OUTPUT
"""

import re
import subprocess
import sys

HEADING = re.compile(r"(Positionals|Options|Subcommands):$")
# An entry: two blanks, its name, then its help after more blanks, or on the next line.
ENTRY = re.compile(r"  (\S.*?)(?: {2,}(.*))?$")


def said(program, *words):
    result = subprocess.run([program, *words], stdout=subprocess.PIPE, text=True, check=True)
    return result.stdout


class Help:
    """The text of --help in parts: what it does, usage, entries below headings, notes."""

    def __init__(self, text):
        self.summary, self.usage, self.notes = [], "", []
        self.entries = {"Positionals": [], "Options": [], "Subcommands": []}
        section = None
        for line in text.splitlines():
            heading = None if self.notes else HEADING.match(line)
            if heading:
                section = heading.group(1)
            elif line.startswith("Usage: ") and not self.usage:
                self.usage = line[len("Usage: "):]
            elif not self.usage:
                self.summary.append(line)
            elif not line:
                section = None
                if self.notes:
                    self.notes.append(line)
            elif section is None:
                self.notes.append(line)
            elif line.startswith("   "):
                name, help_text = self.entries[section][-1]
                self.entries[section][-1] = (name, (help_text + " " + line.strip()).strip())
            else:
                name, help_text = ENTRY.match(line).groups()
                if section == "Positionals":  # of ours each is required that says so
                    name = name.replace("REQUIRED", "").strip()
                    help_text = re.sub(r"^REQUIRED\s+", "", help_text or "")
                self.entries[section].append((name, help_text or ""))
        if not self.entries["Options"] or not self.summary:
            raise SystemExit("host_pages: the help has another form than this script reads:\n" + text)


def command_names(top):
    names = [name for name, _ in top.entries["Subcommands"]]
    if not names:
        raise SystemExit("host_pages: the help lists no commands")
    return names


def escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text.startswith((".", "'")) else text


def filled(lines):
    """Running text; what stands indented or in columns keeps its lines."""
    return [".nf", *map(escaped, lines), ".fi"]


def entries(rows):
    out = []
    for name, help_text in rows:
        out += [".TP", ".B " + escaped(name), escaped(help_text)]
    return out


def man(program, version):
    top = Help(said(program, "--help"))
    commands = command_names(top)
    out = [
        '.TH VQHOST 1 "" "vqmath63 %s" "User Commands"' % version,
        ".SH NAME",
        "vqhost \\- " + escaped("uses the classes of the component vqmath63 by name"),
        ".SH SYNOPSIS",
        ".B vqhost", "COMMAND [OPTIONS] [ARGUMENTS]", ".br",
        ".B vqhost", "\\-\\-help | \\-\\-version",
        ".SH DESCRIPTION",
        *[escaped(line) for line in top.summary],
        ".SH OPTIONS",
        *entries(top.entries["Options"]),
        ".SH COMMANDS",
    ]
    for command in commands:
        text = Help(said(program, command, "--help"))
        out += [".SS " + escaped(text.usage), *[escaped(line) for line in text.summary]]
        out += entries(text.entries["Positionals"])
        out += entries(text.entries["Options"])
        if text.notes:
            out += [".PP", *filled(text.notes)]
    out += [".SH NOTES", *filled(top.notes)]
    out += [".SH CLASSES", *filled(said(program, "classes").splitlines())]
    return "\n".join(out) + "\n"


def option_words(rows):
    """All spellings of options, and of those the ones that take a value."""
    every, valued = [], []
    for name, _ in rows:
        names, _, value = name.partition(" ")
        every += names.split(",")
        if value:
            valued += names.split(",")
    return every, valued


BASH = """# Completion of vqhost in bash.
_vqhost() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
  local command=${COMP_WORDS[1]} words= i place=0
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    COMPREPLY=($(compgen -W "@TOP@" -- "$word"))
    return
  fi
  local options= valued=
  case $command in
@COMMANDS@
    *) return ;;
  esac
  case " $valued " in
    *" $before "*) compopt -o default; return ;;
  esac
  case $word in
    -*) COMPREPLY=($(compgen -W "$options" -- "$word")); return ;;
  esac
  # Which of the arguments without a dash this one is.
  for ((i = 2; i < COMP_CWORD; ++i)); do
    case " $valued " in *" ${COMP_WORDS[i]} "*) ((++i)); continue ;; esac
    case ${COMP_WORDS[i]} in
      =) ((++i)) ;;  # bash parts NAME=VALUE in three
      -?*) ;;
      *) ((++place)) ;;
    esac
  done
  case $command.$place in
    members.0 | call.0 | table.0) words="@CLASSES@" ;;
    call.1 | table.1)
      case ${COMP_WORDS[COMP_CWORD-1]} in
@MEMBERS@
      esac ;;
  esac
  if [ -n "$words" ]; then
    COMPREPLY=($(compgen -W "$words" -- "$word"))
  else
    compopt -o default
  fi
}
complete -F _vqhost vqhost
"""


def bash(program, _version):
    top = Help(said(program, "--help"))
    commands = command_names(top)
    cases = []
    for command in commands:
        every, valued = option_words(Help(said(program, command, "--help")).entries["Options"])
        cases.append('    %s) options="%s" valued="%s" ;;' % (command, " ".join(every),
                                                              " ".join(valued)))
    classes = [line.split()[0] for line in said(program, "classes").splitlines()]
    members = []
    for name in classes:
        declarations = [line for line in said(program, "members", name).splitlines()
                        if line and not line.startswith(" ")]
        found = [re.match(r"(?:Sub|Function|Property (?:Get|Let)) (\w+)", line)
                 for line in declarations]
        if not all(found):
            raise SystemExit("host_pages: a declaration of another form among\n"
                             + "\n".join(declarations))
        names = dict.fromkeys(match.group(1) for match in found)
        members.append('        %s) words="%s" ;;' % (name, " ".join(names)))
    top_words = commands + option_words(top.entries["Options"])[0]
    return (BASH.replace("@TOP@", " ".join(top_words)).replace("@COMMANDS@", "\n".join(cases))
            .replace("@CLASSES@", " ".join(classes)).replace("@MEMBERS@", "\n".join(members)))


def main():
    if len(sys.argv) != 5 or sys.argv[1] not in ("man", "bash"):
        raise SystemExit(__doc__)
    form, program, version, output = sys.argv[1:]
    text = {"man": man, "bash": bash}[form](program, version)
    with open(output, "w", encoding="utf-8", newline="\n") as file:
        file.write(text)


if __name__ == "__main__":
    main()
