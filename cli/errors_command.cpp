// latchkey errors.
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "base/faults.h"
#include "cli/command_line.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/json.h"

namespace latchkey::cli {
namespace {

// One line of the table.
struct Entry {
  int location = 0;  // 0 for a run-time fault at any location
  int number = 0;    // 0 for the trap of an operation, which records any fault
  std::string operation;
  std::string text;
};

std::vector<Entry> AllEntries() {
  std::vector<Entry> entries;
  entries.reserve(kTrapSites.size() + kCheckSites.size() + kFaultNumbers.size());
  for (const TrapSite& site : kTrapSites) {
    entries.push_back({site.location, 0, Utf8(site.operation), "run-time fault"});
  }
  for (const CheckSite& site : kCheckSites) {
    entries.push_back({site.location, site.number, Utf8(site.operation), Utf8(site.text)});
  }
  for (const FaultNumber number : kFaultNumbers) {
    entries.push_back({0, static_cast<int>(number), "", Utf8(DescriptionOf(number))});
  }
  return entries;
}

// Right-aligned; blank for 0.
std::string Column(int number) {
  const std::string digits = number != 0 ? std::to_string(number) : std::string();
  return std::string(8 - std::min<std::size_t>(8, digits.size()), ' ') + digits;
}

std::string Line(const Entry& entry) {
  return Column(entry.location) + "  " + Column(entry.number) + "  " +
         (entry.operation.empty() ? "any operation" : entry.operation) + ": " + entry.text + "\n";
}

Json ObjectOf(const Entry& entry) {
  Json object;
  if (entry.location != 0) object["location"] = entry.location;
  if (entry.number != 0) object["number"] = entry.number;
  if (!entry.operation.empty()) object["operation"] = entry.operation;
  object["text"] = entry.text;
  object["type"] = entry.location == 0 || entry.number == 0 ? kRunTimeFailure : kApplicationFailure;
  if (const auto hint = HintFor(entry.location); !hint.empty()) object["hint"] = hint;
  return object;
}

CommandError Unknown(int wanted) {
  return CommandError(
      Failure{.text = "not a location or error number of the component: " + std::to_string(wanted),
              .hint = "run 'latchkey errors' for the list"});
}

ExitStatus RunErrors(const std::optional<int>& wanted, const Report& report) {
  std::vector<Entry> entries = AllEntries();
  if (wanted) {
    std::erase_if(entries, [&](const Entry& entry) {
      return *wanted <= 0 || (entry.location != *wanted && entry.number != *wanted);
    });
    if (entries.empty()) throw Unknown(*wanted);
  }
  Json list = Json::array();
  std::string text = "LOCATION    NUMBER  MEANING\n";
  for (const Entry& entry : entries) {
    list.push_back(ObjectOf(entry));
    text += Line(entry);
  }
  if (entries.size() == 1 && !report.IsQuiet()) {
    const auto hint = HintFor(entries.front().location);
    if (!hint.empty()) text += "hint: " + std::string(hint) + "\n";
  }
  report.Text(text);
  report.Result(Json{{"errors", list}});
  return ExitStatus::Done;
}

}  // namespace

void AddErrorsCommand(CommandLine& commandLine) {
  const auto wanted = std::make_shared<std::optional<int>>();
  CLI::App& command = commandLine.Add(
      "errors", "Explain a location or error number of the component", "latchkey errors 717",
      [wanted](Report& report) { return RunErrors(*wanted, report); });
  command.add_option("LOCATION", *wanted, "Explain this location or error number (default: all)")
      ->type_name("");
}

}  // namespace latchkey::cli
