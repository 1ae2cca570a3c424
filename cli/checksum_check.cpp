#include "cli/checksum_check.h"

#include <nlohmann/json.hpp>
#include <optional>

#include "cli/platform/input_file.h"

namespace latchkey::cli {
namespace {

// The whole list, since lists are short.
std::string ReadList(const std::string& name) {
  InputFile input(name);
  std::string text;
  std::vector<std::uint8_t> piece(1 << 16);
  for (std::size_t count = piece.size(); count == piece.size();) {
    count = input.Read(piece);
    text.append(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
  }
  return text;
}

std::string ShownName(const std::string& listName) {
  return listName == "-" ? "standard input" : listName;
}

Failure AboutList(const char* text, const std::string& listName) {
  return {.text = text, .file = ShownName(listName)};
}

bool IsMissing(const FileError& error) {
  return error.code() == std::errc::no_such_file_or_directory;
}

}  // namespace

void ChecksumCheck::Check(const std::string& listName) {
  std::vector<std::string> lines;
  try {
    lines = ChecksumLines(ReadList(listName));
  } catch (const FileError& error) {
    return run_.Fail(listName, FailureOf(error));
  }
  CheckLines(lines, listName);
}

void ChecksumCheck::CheckLines(const std::vector<std::string>& lines, const std::string& listName) {
  std::size_t proper = 0;
  std::size_t verified = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].empty() || lines[i].starts_with('#')) continue;
    const auto expected = ReadChecksumLine(lines[i], form_);
    if (expected) {
      ++proper;
      if (CheckFile(*expected)) ++verified;
    } else {
      NoteImproper(listName, i + 1);
    }
  }
  RequireSome(proper, verified, listName);
}

void ChecksumCheck::NoteImproper(const std::string& listName, std::size_t lineNumber) {
  ++improper_;
  if (options_.strict) run_.Fail();
  if (!options_.warn || options_.status || report_.IsJson()) return;
  Report::Note("latchkey: " + ShownName(listName) + ": " + std::to_string(lineNumber) +
               ": improperly formatted " + form_.tag + " checksum line");
}

void ChecksumCheck::RequireSome(std::size_t proper, std::size_t verified,
                                const std::string& listName) {
  if (proper == 0) {
    Failure failure = AboutList("no properly formatted checksum line", listName);
    failure.hint = "use -a to name the list's algorithm";
    run_.Fail(listName, failure);
  } else if (options_.ignoreMissing && verified == 0) {
    run_.Fail(listName, AboutList("no file was verified", listName));
  }
}

bool ChecksumCheck::CheckFile(const Checksum& expected) {
  try {
    const bool isSame = run_.DigestOf(expected.name) == expected.digest;
    run_.Add({{"file", expected.name}, {"ok", isSame}});
    if (!isSame) {
      ++mismatches_;
      run_.Fail();
    }
    if (!isSame || !report_.IsQuiet()) PrintOutcome(expected.name, isSame ? "OK" : "FAILED");
    return true;
  } catch (const FileError& error) {
    if (options_.ignoreMissing && IsMissing(error)) return false;
    ++unread_;
    run_.Fail(expected.name, FailureOf(error));
    PrintOutcome(expected.name, "FAILED open or read");
    return true;
  }
}

void ChecksumCheck::PrintOutcome(const std::string& file, const char* outcome) const {
  if (!options_.status) report_.Text(OutcomeLine(file, outcome) + "\n");
}

void ChecksumCheck::Finish(Json& result) const {
  result["mismatches"] = mismatches_;
  result["unread"] = unread_;
  result["improper_lines"] = improper_;
  if (options_.status || report_.IsJson()) return;
  const auto print = [](std::size_t count, const char* one, const char* many) {
    if (count == 0) return;
    Report::Note("latchkey: WARNING: " + std::to_string(count) + " " + (count == 1 ? one : many));
  };
  print(improper_, "line is improperly formatted", "lines are improperly formatted");
  print(unread_, "listed file could not be read", "listed files could not be read");
  print(mismatches_, "computed checksum did NOT match", "computed checksums did NOT match");
}

}  // namespace latchkey::cli
