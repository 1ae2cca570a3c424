// Circuits as the C++ text of provider/portable/kernels/des_sboxes_gates.h and _ternary.h.
#pragma once

#include <string>

#include "tools/des_sboxes/circuit.h"

namespace latchkey::sboxes {

// The two functions of one S-box. Throws std::runtime_error if the circuit does not compute it.
// Since no gate of two inputs inverts, its outputs may be complements of the box's; Complements
// says which.
[[nodiscard]] std::string FunctionText(unsigned box, const Circuit<2>& circuit);
[[nodiscard]] std::string FunctionText(unsigned box, const Circuit<3>& circuit);

}  // namespace latchkey::sboxes
