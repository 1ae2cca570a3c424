#include "tests/support/fake_probe.h"

#include <algorithm>
#include <utility>

namespace latchkey::test {
namespace {

constexpr const char* kDriveC = "C:\\";

int CopyName(const std::string& name, std::span<char> buffer) {
  const std::size_t length = std::min(name.size(), buffer.size() - 1);
  std::copy_n(name.begin(), length, buffer.begin());
  buffer[length] = '\0';
  return static_cast<int>(length);
}

template <class Answers>
auto AnswerFor(const Answers& answers, const char* rootPath) {
  const auto found = answers.find(rootPath);
  return found == answers.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace

FakeProbe::FakeProbe()
    : volume{{"DATA", 0x1234, "NTFS"}},
      space{{kDriveC, {300, 1000, 400}}},
      clusters{{kDriveC, {8, 512, 100, 250}}},
      windows{{0x10}} {}

void FakeProbe::HoldStill() {
  volume = {"", 0, ""};
  space = {{kDriveC, {0, 0, 0}}};
  clusters.clear();
  windows.clear();
  SetTicks({9});
  still_ = true;
}

void FakeProbe::SetTicks(std::vector<std::uint32_t> readings) {
  ticks_ = std::move(readings);
  nextTick_ = 0;
}

void FakeProbe::ForgetCalls() {
  calls = {};
  calls.shrink_to_fit();
  warnings = {};
  warnings.shrink_to_fit();
}

std::size_t FakeProbe::CountCalls(const std::string& call) const {
  return static_cast<std::size_t>(std::count_if(
      calls.begin(), calls.end(), [&](const std::string& made) { return made.starts_with(call); }));
}

template <class... Argument>
void FakeProbe::Enter(const char* member, const Argument&... argument) {
  if (!still_) {
    std::string& call = calls.emplace_back(member);
    ((call += ' ', call += argument), ...);
  }
  const auto fault = faults.find(member);
  if (fault != faults.end()) throw Fault(fault->second);
}

std::uint32_t FakeProbe::GetTickCount() {
  Enter("GetTickCount");
  const std::size_t reading = std::min(nextTick_, ticks_.size() - 1);
  ++nextTick_;
  return ticks_[reading];
}

double FakeProbe::Now() {
  Enter("Now");
  return now;
}

std::optional<platform::VolumeInformation> FakeProbe::GetVolumeInformationA(const char* rootPath) {
  Enter("GetVolumeInformationA", rootPath);
  return volume;
}

std::optional<platform::DiskSpace> FakeProbe::GetDiskFreeSpaceExA(const char* rootPath) {
  Enter("GetDiskFreeSpaceExA", rootPath);
  return AnswerFor(space, rootPath);
}

std::optional<platform::DiskClusters> FakeProbe::GetDiskFreeSpaceA(const char* rootPath) {
  Enter("GetDiskFreeSpaceA", rootPath);
  return AnswerFor(clusters, rootPath);
}

void FakeProbe::EnumWindows(const WindowVisitor& visit) {
  Enter("EnumWindows");
  for (const FakeWindow& window : windows) visit(window.handle);
}

void FakeProbe::EnumChildWindows(WindowHandle parent, const WindowVisitor& visit) {
  Enter("EnumChildWindows", std::to_string(parent));
  if (const FakeWindow* window = Find(parent)) {
    for (const FakeWindow& child : window->children) visit(child.handle);
  }
}

int FakeProbe::GetWindowTextA(WindowHandle window, std::span<char> buffer) {
  Enter("GetWindowTextA", std::to_string(window));
  smallestBuffer = std::min(smallestBuffer, buffer.size());
  return CopyName("Title", buffer);
}

int FakeProbe::GetClassNameA(WindowHandle window, std::span<char> buffer) {
  Enter("GetClassNameA", std::to_string(window));
  smallestBuffer = std::min(smallestBuffer, buffer.size());
  const FakeWindow* found = Find(window);
  return found ? CopyName(found->className, buffer) : 0;
}

bool FakeProbe::CloseHandle(WindowHandle window) {
  Enter("CloseHandle", std::to_string(window));
  return false;
}

void FakeProbe::ShowWarning(TextView message) {
  Enter("ShowWarning");
  warnings.emplace_back(message);
}

const FakeWindow* FakeProbe::Find(WindowHandle handle) const {
  for (const FakeWindow& window : windows) {
    if (window.handle == handle) return &window;
    for (const FakeWindow& child : window.children) {
      if (child.handle == handle) return &child;
    }
  }
  return nullptr;
}

}  // namespace latchkey::test
