#include "tools/des_sboxes/text.h"

#include <cstdio>
#include <stdexcept>

#include "tools/des_sboxes/order.h"

namespace latchkey::sboxes {
namespace {

constexpr const char* kOutputNames[kOutputs] = {"first", "second", "third", "fourth"};

std::string NameOf(int signal) {
  constexpr const char* kInputNames[kInputs] = {"a", "b", "c", "d", "e", "f"};
  if (signal < kInputs) return kInputNames[signal];
  std::string name = "t";
  return name += std::to_string(signal - kInputs + 1);
}

// The table of the same gate when some of its inputs are complements: those whose bit is set in
// `complements`, the first input being the highest bit.
template <int arity>
unsigned WithComplements(unsigned table, unsigned complements) {
  unsigned result = 0;
  for (unsigned row = 0; row < 1U << arity; ++row) {
    result |= (table >> (row ^ complements) & 1) << row;
  }
  return result;
}

// Complements each gate for which choose(signal, truth) returns true.
template <int arity, class Choose>
Circuit<arity> WithPolarity(const Circuit<arity>& circuit, Choose&& choose) {
  Circuit<arity> result;
  std::array<bool, Circuit<arity>::kCapacity> isComplement{};
  for (int i = kInputs; i < circuit.SignalCount(); ++i) {
    Gate<arity> gate = circuit.GateOf(i);
    unsigned complements = 0;
    for (const int input : gate.inputs)
      complements = complements * 2 + (isComplement[input] ? 1 : 0);
    gate.table = WithComplements<arity>(gate.table, complements);
    isComplement[i] = choose(i, circuit.Truths()[i]);
    if (isComplement[i]) gate.table ^= (1U << (1U << arity)) - 1;
    result.Add(gate);
  }
  result.outputs = circuit.outputs;
  return result;
}

// Makes every signal zero when all inputs are zero. The gates of two inputs with this property are
// and, or, exclusive or and and-not.
Circuit<2> Prepared(const Circuit<2>& circuit, const Targets& /*targets*/) {
  return WithPolarity(circuit, [](int, Truth truth) { return (truth & 1) != 0; });
}

// Makes every output the box's own, never its complement.
Circuit<3> Prepared(const Circuit<3>& circuit, const Targets& targets) {
  return WithPolarity(circuit, [&](int signal, Truth truth) {
    for (int i = 0; i < kOutputs; ++i) {
      if (circuit.outputs[i] == signal) return truth != targets[i];
    }
    return false;
  });
}

std::string Expression(const Gate<2>& gate) {
  const std::string a = NameOf(gate.inputs[0]);
  const std::string b = NameOf(gate.inputs[1]);
  switch (gate.table) {
    case 0b1000:
      return a + " & " + b;
    case 0b1110:
      return a + " | " + b;
    case 0b0110:
      return a + " ^ " + b;
    case 0b0100:
      return a + " & ~" + b;
    case 0b0010:
      return b + " & ~" + a;
    default:
      throw std::runtime_error("a gate does not depend on both of its inputs");
  }
}

std::string Expression(const Gate<3>& gate) {
  std::array<char, 8> table{};
  std::snprintf(table.data(), table.size(), "0x%02X", gate.table);
  return std::string("Ternary<") + table.data() + ">(" + NameOf(gate.inputs[0]) + ", " +
         NameOf(gate.inputs[1]) + ", " + NameOf(gate.inputs[2]) + ")";
}

// Each output is added as soon as it is known.
template <int arity>
std::string Body(const Circuit<arity>& circuit) {
  std::string text;
  for (int i = kInputs; i < circuit.SignalCount(); ++i) {
    text += "    const Word " + NameOf(i) + " = " + Expression(circuit.GateOf(i)) + ";\n";
    for (int k = 0; k < kOutputs; ++k) {
      if (circuit.outputs[k] != i) continue;
      text += std::string("    to.") + kOutputNames[k] + " ^= " + NameOf(i) + ";\n";
    }
  }
  return text;
}

template <int arity>
std::string Complements(const Circuit<arity>& circuit, const Targets& targets) {
  std::string bits;
  for (int i = 0; i < kOutputs; ++i) {
    bits += circuit.Truths()[circuit.outputs[i]] == targets[i] ? '0' : '1';
  }
  return bits;
}

template <int arity>
std::string Function(unsigned box, const Circuit<arity>& found) {
  const Targets targets = TargetsOf(box);
  if (!found.Computes(targets)) throw std::runtime_error("the circuit does not compute the box");
  const Circuit<arity> circuit = Ordered(Prepared(found, targets));
  const std::string number = "Box<" + std::to_string(box) + ">";
  return "  // S" + std::to_string(box + 1) + ": " + std::to_string(circuit.GateCount()) +
         " gates.\n  static constexpr unsigned Complements(" + number + ") { return 0b" +
         Complements(circuit, targets) + "; }\n  [[gnu::always_inline]] static void Sbox(" +
         number + ", Word a, Word b, Word c, Word d, Word e, Word f,\n" + std::string(42, ' ') +
         "Output to) noexcept {\n" + Body(circuit) + "  }\n";
}

}  // namespace

std::string FunctionText(unsigned box, const Circuit<2>& circuit) { return Function(box, circuit); }
std::string FunctionText(unsigned box, const Circuit<3>& circuit) { return Function(box, circuit); }

}  // namespace latchkey::sboxes
