#include "cli/automatic_key.h"

#include <array>
#include <utility>

#include "cli/failure.h"
#include "cli/identification.h"

namespace latchkey::cli {
namespace {

CommandError NotCertain(const Candidates& candidates, const std::string& file) {
  return CommandError(Failure{
      .text = candidates.fitting.empty() ? "no settings fit under this password"
                                         : "the settings are not certain",
      .file = file,
      .hint = candidates.fitting.empty()
                  ? "wrong password, or data that was not encrypted"
                  : "'latchkey identify' lists the guesses, also for several files at once; "
                    "choose one with --hash and --cipher"});
}

}  // namespace

AutomaticKey FindKey(const SampleBytes& sample, const PasswordOptions& options) {
  const Identification identification(options);
  const Candidates candidates = identification.Search().Find(std::array{sample.Sample()});
  if (!candidates.IsCertain()) throw NotCertain(candidates, sample.file);
  const Candidate& best = candidates.fitting.front();
  return {best.settings.front(), identification.FormOf(best).bytes, best.evidence.restored > 0,
          identification.OptionsFor(best)};
}

}  // namespace latchkey::cli
