#include "tools/des_sboxes/circuit.h"

#include "provider/portable/kernels/des_tables.h"

namespace latchkey::sboxes {

Truth InputTruth(int input) {
  Truth truth = 0;
  for (unsigned n = 0; n < 64; ++n) truth |= Truth{n >> (kInputs - 1 - input) & 1} << n;
  return truth;
}

Targets TargetsOf(unsigned box) {
  Targets targets{};
  for (unsigned n = 0; n < 64; ++n) {
    const unsigned value = provider::des::SboxOutput(box, n);
    for (int i = 0; i < kOutputs; ++i) targets[i] |= Truth{value >> (kOutputs - 1 - i) & 1} << n;
  }
  return targets;
}

}  // namespace latchkey::sboxes
