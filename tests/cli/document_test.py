"""The manual page, and the completion of bash, zsh and fish; for Linux only."""
import os
import pathlib
import re
import subprocess

from command import PROGRAM, PROJECT, CommandTest

BUILD = pathlib.Path(PROGRAM[0]).parent
SOURCES = PROJECT / "cli" / "manual"


class ManualTest(CommandTest):
    def shown(self):
        process = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", str(BUILD / "man" / "man1" / "latchkey.1")],
                                 capture_output=True, check=True, env={**os.environ, "MANWIDTH": "100", "LC_ALL": "C.UTF-8"})
        self.assertEqual(process.stderr, b"")
        return process.stdout.decode()

    def commands(self, *group):
        """Every command that the help lists, with those of groups, as lists of words."""
        listed = self.run_well(*group, "--help").text.partition("Subcommands:\n")[2]
        if not listed:
            return [list(group)]
        names = re.findall(r"^  ([a-z]+) ", listed, re.M)
        self.assertTrue(names)
        return [words for name in names for words in self.commands(*group, name)]

    def test_it_formats_and_has_every_command_and_option(self):
        page = re.sub(r"\s+", " ", self.shown())
        for command in self.commands():
            self.assertIn(f" {' '.join(command).upper()} ", page)
            text = self.run_well(*command, "--help").text
            for option in re.findall(r"--[a-z][a-z0-9-]+", text):
                self.assertIn(option, page)
            self.assertIn(text.rstrip().splitlines()[-1].strip().split(" -o ")[0], page)

    def test_it_has_every_variable_that_the_sources_read(self):
        """Those of the command and the library by name, in sections that explain them."""
        reads = re.compile(r'getenv\("([A-Z_]+)"\)')
        folders = ("base", "platform", "provider", "diagnostics", "crypto", "com", "c", "cli")
        files = [file for folder in folders for file in (PROJECT / folder).rglob("*.cpp") if "windows" not in file.parts]
        names = {name for file in files for name in reads.findall(file.read_text())}
        self.assertIn("LATCHKEY_CPU", names)
        environment = self.shown().partition("\nENVIRONMENT\n")[2].partition("\nEXIT STATUS\n")[0]
        self.assertLessEqual(names, set(re.findall(r"[A-Z_]+", environment)))


class CompletionCases:
    """What every shell completes. complete(LINE) gives the words and files for the end of a line, sorted."""
    PATHS = {**os.environ, "PATH": f"{BUILD}:{os.environ['PATH']}"}
    OTHER_PROGRAM = """#!/bin/sh
case $* in
--help) printf 'Subcommands:\\n  keys  Keys\\n  records  Not a group\\n' ;;
'keys --help') printf 'Subcommands:\\n  list  Lists\\n' ;;
'keys list --help') printf 'Subcommands:\\n  all  All\\n  own  Own\\n' ;;
*) printf 'Options:\\n  -o,--old  Old\\n' ;;
esac
"""

    def test_commands(self):
        self.assertEqual(self.complete("en"), ["encrypt"])
        self.assertLessEqual({"encrypt", "records", "hash", "--version"}, set(self.complete("")))

    def test_commands_of_a_group(self):
        self.assertLessEqual({"decrypt", "encrypt", "hash"}, set(self.complete("records ")))
        self.assertEqual(self.complete("records e"), ["encrypt"])
        self.assertEqual(self.complete("records encrypt --form"), ["--format"])
        self.assertEqual(self.complete("records encrypt --format "), ["csv", "jsonl", "lines"])

    def test_groups_are_those_that_the_help_lists(self):
        (self.folder / "programs").mkdir()
        program = self.folder / "programs/latchkey"
        program.write_text(self.OTHER_PROGRAM)
        program.chmod(0o755)
        self.PATHS = {**os.environ, "PATH": f"{program.parent}:{os.environ['PATH']}"}
        self.assertEqual(self.complete("k"), ["keys"])
        self.assertEqual(self.complete("keys "), ["list"])
        self.assertEqual(self.complete("keys list "), ["all", "own"])
        self.assertEqual(self.complete("keys list all --o"), ["--old"])
        self.write("report.pdf", b"")
        self.assertEqual(self.complete("records rep"), ["report.pdf"])

    def test_options(self):
        self.assertEqual(self.complete("decrypt --rc2"), ["--rc2-effective-bits"])
        self.assertEqual(self.complete("encrypt --hash md5 --ciph"), ["--cipher"])

    def test_values(self):
        self.assertEqual(self.complete("encrypt --hash s"), ["sha1"])
        self.assertEqual(self.complete("encrypt --cipher 3"), ["3des", "3des-112"])
        self.assertEqual(self.complete("decrypt --provider "), ["base", "enhanced"])
        self.assertEqual(self.complete("hash -a s"), ["sha1"])

    def test_files(self):
        self.write("report.pdf", b"")
        self.write("two *words", b"")
        for line in ("encrypt --hash md5 rep", "records encrypt rep", "encrypt --output rep"):
            self.assertEqual(self.complete(line), ["report.pdf"], line)
        self.assertEqual(self.complete("encrypt two"), ["two *words"])


class BashTest(CompletionCases, CommandTest):
    SCRIPT = 'source "$1"; shift; COMP_WORDS=(latchkey "$@"); COMP_CWORD=$#; _latchkey; printf "%s\\n" "${COMPREPLY[@]}"'

    def complete(self, line):
        process = subprocess.run(["bash", "-c", self.SCRIPT, "bash", SOURCES / "latchkey.bash", *line.split(" ")],
                                 capture_output=True, check=True, cwd=self.folder, env=self.PATHS)
        self.assertEqual(process.stderr, b"")
        return sorted(process.stdout.decode().splitlines())


class ZshTest(CompletionCases, CommandTest):
    """zsh completes only on a terminal, so the tab key is pressed there. It then writes the matches to a file."""
    RC = """
fpath=({sources} $fpath)
autoload -Uz compinit && compinit -u -D
compadd() {{
  local -a zsh_test_matches
  if (( ! ${{argv[(I)-[OAD]]}} )); then  # no call that only filters words
    builtin compadd -O zsh_test_matches "$@"
    (( ! $#zsh_test_matches )) || print -rl -- ${{(Q)zsh_test_matches}} >>{matches}
  fi
  builtin compadd "$@"
}}
complete_and_exit() {{ zle complete-word; exit 0 }}
zle -N complete_and_exit
bindkey '^I' complete_and_exit
"""

    def complete(self, line):
        matches = self.folder / ".matches"
        (self.folder / ".zshrc").write_text(self.RC.format(sources=SOURCES, matches=matches))
        matches.write_text("")
        subprocess.run(["script", "--quiet", "--return", "--command", "zsh --no-global-rcs --interactive", "/dev/null"],
                       input=f"latchkey {line}\t".encode(), stdout=subprocess.DEVNULL, check=True, timeout=300,
                       cwd=self.folder, env={**self.PATHS, "ZDOTDIR": str(self.folder), "TERM": "dumb"})
        return sorted(matches.read_text().split("\n")[:-1])


class FishTest(CompletionCases, CommandTest):
    def complete(self, line):
        process = subprocess.run(["fish", "--no-config", "-c", "source $argv[1]; complete --do-complete $argv[2]",
                                  SOURCES / "latchkey.fish", f"latchkey {line}"], capture_output=True, check=True,
                                 cwd=self.folder, env={**self.PATHS, "HOME": str(self.folder)})
        self.assertEqual(process.stderr, b"")
        return sorted(text.partition("\t")[0] for text in process.stdout.decode().splitlines())
