#include "cli/manual/manual_page.h"

#include <algorithm>

namespace latchkey::cli {
namespace {

constexpr const char* kDescription = R"(.SH DESCRIPTION
.B latchkey
encrypts, decrypts and hashes files with the bytes that the Windows CryptoAPI gives for the same
password, hash, cipher and provider: the key is derived from a hash of the password with
CryptDeriveKey, without salt, and block ciphers run in CBC mode from an initialisation vector of
zeros with PKCS #5 padding.
Nothing is added to the data and no byte is lost.
.PP
The algorithms are old and a password without salt is easily guessed.
Use them to exchange data with systems that already do, not for new designs.
.PP
Files may be larger than memory.
An output file appears whole or not at all, and a decrypted file is readable by its owner only.
A file that
.B \-\-force
replaces leaves its mode, access list, group and, where the system allows, owner to the new one.
A link stays, and what it leads to is replaced; one that leads nowhere is refused.
A device or a pipe is written to as it is, with
.B \-\-force
only; /dev/null and what the command finds open, such as /dev/stdout, need no
.BR \-\-force .
Data that goes to standard output is written while it is made: when decryption fails at the end,
what was written before is not to be trusted.
)";

constexpr const char* kRest = R"(.SH PASSWORDS
A password is never given on the command line, which every process of the machine can read.
Without a password option it is asked for on the terminal, twice when encrypting.
.PP
A password is a sequence of bytes and is used as it comes. On Windows, what is typed or stands in
the environment becomes bytes through the system's code page, as in the component; on Linux it is
what the terminal sends, in most places UTF-8. For a password beyond ASCII that is to be the same on
both,
.B \-\-password\-file
is the way.
.SH IDENTIFYING SETTINGS
.B latchkey identify
decrypts under every provider, hash and cipher, RC2 also with the 40 effective bits of Windows 2000
and before. A block cipher's settings fit when the padding is well-formed, RC4's when what comes out
looks more like text or other structured data than like chance.
.PP
The probability is Bayes' rule: at the start one half for "none of them" and the other half in equal
shares for the keys tried; then each key is weighed by how much more probable its outcome is under
the right key than under a wrong one, which makes random bytes.
.SH EXIT STATUS
.TP
.B 0
done;
.B online:
connected
.TP
.B 1
the operation failed;
.B hash \-\-check:
a file does not match;
.B online:
not connected
.TP
.B 2
wrong usage
.SH DIAGNOSTICS
A failure is one line on standard error, with the location and number of the component's error
record where it is a failure of the component:
.PP
.RS 2
.nf
latchkey: Error decrypting data (location 717, number 120): FILE
.fi
.RE
.PP
A second line may say what to try.
.B latchkey errors
explains the numbers.
With
.B \-\-json
results and failures are one JSON object on standard output, or on standard error where the data
goes to standard output.
It is ASCII: other characters and control characters are escaped.
Without it
.B hash
prints file names as
.BR md5sum (1)
does, control characters included.
.SH SEE ALSO
.BR md5sum (1),
.BR openssl\-enc (1ssl),
.BR parallel (1),
.BR xargs (1)
)";

// Text that roff shows as it is.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char character : text) {
    if (character == '\\') {
      escaped += "\\e";
    } else if (character == '-') {
      escaped += "\\-";
    } else {
      escaped += character;
    }
  }
  // A line that starts so would be a request.
  return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string UpperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  });
  return text;
}

std::string Head(const CLI::Option& option) {
  if (option.get_positional()) return ".I " + Escaped(option.get_name());
  std::string head = ".B \"" + Escaped(option.get_name(false, true)) + "\"";
  std::replace(head.begin(), head.end(), ',', ' ');
  if (!option.get_type_name().empty() && option.get_expected_max() > 0) {
    head = ".BI \"" + head.substr(4, head.size() - 5) + " \" " + Escaped(option.get_type_name());
  }
  return head;
}

std::string Options(const CLI::App& command) {
  std::string text;
  for (const CLI::Option* const option : command.get_options()) {
    text += ".TP\n" + Head(*option) + "\n" + Escaped(option->get_description()) + "\n";
  }
  return text;
}

std::string Usage(const CLI::App& command) {
  std::string usage = ".B latchkey " + Escaped(command.get_name()) + "\n[options]";
  for (const CLI::Option* const option : command.get_options()) {
    if (!option->get_positional()) continue;
    const std::string name = option->get_name() + (option->get_expected_max() > 1 ? "..." : "");
    usage += " " + (option->get_required() ? name : "[" + name + "]");
  }
  return usage + "\n";
}

std::string Section(const CLI::App& command) {
  std::string example = command.get_footer();
  example = example.substr(example.find('\n') + 1);
  example.erase(0, example.find_first_not_of(' '));
  return ".SS " + UpperCase(command.get_name()) + "\n" + Escaped(command.get_description()) +
         ".\n.PP\n" + Usage(command) + Options(command) + ".PP\nExample:\n.PP\n.RS 2\n.nf\n" +
         Escaped(example) + "\n.fi\n.RE\n";
}

}  // namespace

std::string ManualPage(const CLI::App& parser, const std::string& version) {
  std::string page =
      ".\\\" Made from the commands' own help.\n.TH LATCHKEY 1 \"\" \"Latchkey " + version +
      "\" \"User Commands\"\n.SH NAME\n" +
      "latchkey \\- encrypt, decrypt and hash files as the Windows CryptoAPI does\n" +
      ".SH SYNOPSIS\n.B latchkey\n.I command\n[options]\n" + kDescription + ".SH COMMANDS\n";
  for (const CLI::App* const command : parser.get_subcommands(nullptr)) page += Section(*command);
  return page + kRest;
}

}  // namespace latchkey::cli
