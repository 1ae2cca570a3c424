// The S-boxes of DES as circuits of three-input look-up tables. Made by tools/make_des_sboxes;
// tools/des_sboxes/ has the method, and the seeds of these circuits.
//
// Sbox and Complements are as in des_sboxes_gates.h.
#pragma once

#include <type_traits>

namespace latchkey::provider::des {

template <class Logic>
struct TernaryCircuits {
  using Word = typename Logic::Word;

  // In each position, bit 4a+2b+c of the table.
  template <int table>
  static Word Ternary(Word a, Word b, Word c) noexcept {
    return Logic::template Ternary<table>(a, b, c);
  }

  struct Output {
    Word &first, &second, &third, &fourth;
  };
  template <unsigned box>
  using Box = std::integral_constant<unsigned, box>;

  // S1: 24 gates.
  static constexpr unsigned Complements(Box<0>) { return 0b0000; }
  [[gnu::always_inline]] static void Sbox(Box<0>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = Ternary<0x67>(b, d, a);
    const Word t2 = Ternary<0x96>(d, b, a);
    const Word t3 = Ternary<0xE1>(c, t1, t2);
    const Word t4 = Ternary<0xCA>(t3, d, t1);
    const Word t5 = Ternary<0x2F>(d, t3, t1);
    const Word t6 = Ternary<0x69>(f, e, t5);
    const Word t7 = Ternary<0x69>(t6, t2, t1);
    const Word t8 = Ternary<0x3B>(e, f, t7);
    const Word t9 = Ternary<0x83>(t3, t1, t8);
    const Word t10 = Ternary<0x68>(e, t2, t3);
    const Word t11 = Ternary<0xE7>(f, t6, t3);
    const Word t12 = Ternary<0x48>(b, t11, t9);
    const Word t13 = Ternary<0x2B>(t2, t12, t9);
    const Word t14 = Ternary<0xE0>(e, t2, t12);
    const Word t15 = Ternary<0x0B>(t14, t5, t4);
    const Word t16 = Ternary<0x5C>(d, t15, t11);
    const Word t17 = Ternary<0x72>(t13, t7, t15);
    to.third ^= t17;
    const Word t18 = Ternary<0x58>(t7, t4, t16);
    to.first ^= t18;
    const Word t19 = Ternary<0x96>(b, t10, t17);
    const Word t20 = Ternary<0xBD>(t7, t12, t13);
    const Word t21 = Ternary<0xC6>(f, t19, t20);
    to.second ^= t21;
    const Word t22 = Ternary<0x34>(t18, t21, t13);
    const Word t23 = Ternary<0xA1>(t19, t6, t22);
    const Word t24 = Ternary<0x63>(t8, t10, t23);
    to.fourth ^= t24;
  }

  // S2: 23 gates.
  static constexpr unsigned Complements(Box<1>) { return 0b0000; }
  [[gnu::always_inline]] static void Sbox(Box<1>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = Ternary<0x69>(f, b, c);
    const Word t2 = Ternary<0xB7>(c, b, b);
    const Word t3 = Ternary<0x2D>(d, f, t2);
    const Word t4 = Ternary<0xC1>(e, b, d);
    const Word t5 = Ternary<0xE1>(c, e, t1);
    const Word t6 = Ternary<0x9F>(a, d, t5);
    const Word t7 = Ternary<0x69>(c, t3, t4);
    const Word t8 = Ternary<0xF4>(t3, t4, t6);
    const Word t9 = Ternary<0xD8>(e, t7, b);
    const Word t10 = Ternary<0x1E>(t1, t3, t9);
    const Word t11 = Ternary<0xDC>(t9, f, t7);
    const Word t12 = Ternary<0xC7>(t11, t5, c);
    const Word t13 = Ternary<0x87>(t7, a, t12);
    to.first ^= t13;
    const Word t14 = Ternary<0x3E>(t8, t10, c);
    const Word t15 = Ternary<0xB1>(t13, c, f);
    const Word t16 = Ternary<0x87>(a, f, t14);
    const Word t17 = Ternary<0x96>(t16, t8, t9);
    to.second ^= t17;
    const Word t18 = Ternary<0xD8>(t17, t9, e);
    const Word t19 = Ternary<0xD2>(t16, b, t5);
    const Word t20 = Ternary<0x96>(t14, b, t18);
    const Word t21 = Ternary<0xCA>(t19, t15, t5);
    const Word t22 = Ternary<0x35>(a, t10, t20);
    to.third ^= t22;
    const Word t23 = Ternary<0x9A>(d, t4, t21);
    to.fourth ^= t23;
  }

  // S3: 25 gates.
  static constexpr unsigned Complements(Box<2>) { return 0b0000; }
  [[gnu::always_inline]] static void Sbox(Box<2>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = Ternary<0x69>(f, c, b);
    const Word t2 = Ternary<0x18>(e, a, t1);
    const Word t3 = Ternary<0x1C>(d, b, t2);
    const Word t4 = Ternary<0x59>(a, f, t3);
    const Word t5 = Ternary<0x69>(f, e, t3);
    const Word t6 = Ternary<0x69>(t5, c, d);
    const Word t7 = Ternary<0xF2>(d, t2, t4);
    const Word t8 = Ternary<0x69>(a, t6, t7);
    const Word t9 = Ternary<0xC2>(t6, t4, t8);
    const Word t10 = Ternary<0x9A>(t8, t2, t4);
    const Word t11 = Ternary<0x97>(t10, t7, e);
    const Word t12 = Ternary<0x1F>(t1, t11, e);
    const Word t13 = Ternary<0x6B>(t5, t4, t12);
    const Word t14 = Ternary<0x8E>(d, t5, t2);
    const Word t15 = Ternary<0x6A>(t10, t11, t4);
    const Word t16 = Ternary<0x5C>(d, t13, t15);
    to.fourth ^= t16;
    const Word t17 = Ternary<0xD6>(t2, t11, t13);
    const Word t18 = Ternary<0x89>(f, t14, t14);
    const Word t19 = Ternary<0xA3>(t18, t9, t17);
    to.second ^= t19;
    const Word t20 = Ternary<0x8F>(c, t8, t17);
    const Word t21 = Ternary<0xC7>(t20, t9, t4);
    const Word t22 = Ternary<0xC5>(b, t8, t21);
    to.first ^= t22;
    const Word t23 = Ternary<0x62>(t20, t15, t21);
    const Word t24 = Ternary<0x59>(a, c, t23);
    const Word t25 = Ternary<0xC5>(b, t10, t24);
    to.third ^= t25;
  }

  // S4: 17 gates.
  static constexpr unsigned Complements(Box<3>) { return 0b0000; }
  [[gnu::always_inline]] static void Sbox(Box<3>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = Ternary<0x5C>(d, b, b);
    const Word t2 = Ternary<0xC7>(a, c, e);
    const Word t3 = Ternary<0x1C>(e, c, d);
    const Word t4 = Ternary<0xD3>(t2, d, t3);
    const Word t5 = Ternary<0x18>(e, t4, c);
    const Word t6 = Ternary<0x5A>(a, t1, t4);
    const Word t7 = Ternary<0x9A>(t1, t5, t4);
    const Word t8 = Ternary<0xC1>(t1, t6, t3);
    const Word t9 = Ternary<0x5A>(e, b, t8);
    const Word t10 = Ternary<0x8D>(t6, t3, t1);
    const Word t11 = Ternary<0x9A>(f, t9, a);
    const Word t12 = Ternary<0x69>(b, t11, t10);
    to.third ^= t12;
    const Word t13 = Ternary<0x96>(f, t9, t12);
    to.fourth ^= t13;
    const Word t14 = Ternary<0x1E>(t13, t1, t2);
    const Word t15 = Ternary<0x9C>(f, t11, t7);
    const Word t16 = Ternary<0x96>(t14, t3, t15);
    to.first ^= t16;
    const Word t17 = Ternary<0x96>(f, t16, t7);
    to.second ^= t17;
  }

  // S5: 25 gates.
  static constexpr unsigned Complements(Box<4>) { return 0b0000; }
  [[gnu::always_inline]] static void Sbox(Box<4>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = Ternary<0x1E>(e, f, c);
    const Word t2 = Ternary<0x97>(c, f, a);
    const Word t3 = Ternary<0x42>(e, f, t2);
    const Word t4 = Ternary<0xD3>(d, t2, t2);
    const Word t5 = Ternary<0x6D>(a, d, t3);
    const Word t6 = Ternary<0x1E>(t1, t4, t3);
    const Word t7 = Ternary<0x96>(t2, t6, t5);
    const Word t8 = Ternary<0xE2>(t3, t7, t6);
    const Word t9 = Ternary<0x2C>(c, t1, t7);
    const Word t10 = Ternary<0x40>(t5, t4, t9);
    const Word t11 = Ternary<0x65>(d, a, t8);
    const Word t12 = Ternary<0xE9>(b, t7, e);
    const Word t13 = Ternary<0x8E>(a, t2, t10);
    const Word t14 = Ternary<0x36>(b, t11, t10);
    to.first ^= t14;
    const Word t15 = Ternary<0x87>(t12, t11, t7);
    const Word t16 = Ternary<0xB1>(t6, c, t15);
    const Word t17 = Ternary<0x63>(t14, t15, f);
    const Word t18 = Ternary<0xD8>(t17, t12, t16);
    const Word t19 = Ternary<0x6C>(b, t7, t4);
    to.second ^= t19;
    const Word t20 = Ternary<0x2E>(t17, t13, t18);
    to.fourth ^= t20;
    const Word t21 = Ternary<0x9F>(t8, t20, t18);
    const Word t22 = Ternary<0x41>(b, t13, t20);
    const Word t23 = Ternary<0xB6>(t19, t14, t22);
    const Word t24 = Ternary<0x56>(e, t20, t23);
    const Word t25 = Ternary<0x93>(b, t24, t21);
    to.third ^= t25;
  }

  // S6: 24 gates.
  static constexpr unsigned Complements(Box<5>) { return 0b0000; }
  [[gnu::always_inline]] static void Sbox(Box<5>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = Ternary<0x74>(e, a, f);
    const Word t2 = Ternary<0xC2>(d, e, c);
    const Word t3 = Ternary<0x6D>(b, a, t1);
    const Word t4 = Ternary<0xED>(e, c, t3);
    const Word t5 = Ternary<0x96>(b, t1, t4);
    const Word t6 = Ternary<0x78>(f, t5, t3);
    const Word t7 = Ternary<0xBA>(a, t5, t6);
    const Word t8 = Ternary<0x8B>(t7, a, t3);
    const Word t9 = Ternary<0xB3>(e, t7, t3);
    const Word t10 = Ternary<0x96>(c, a, t9);
    const Word t11 = Ternary<0xB4>(t2, c, t8);
    const Word t12 = Ternary<0x70>(d, t6, t2);
    const Word t13 = Ternary<0xA5>(t10, c, t12);
    to.third ^= t13;
    const Word t14 = Ternary<0xE3>(t11, t3, t6);
    const Word t15 = Ternary<0x79>(t10, d, a);
    const Word t16 = Ternary<0x6C>(d, t5, t14);
    to.fourth ^= t16;
    const Word t17 = Ternary<0x4C>(t8, t16, t1);
    const Word t18 = Ternary<0x9E>(t13, b, t5);
    const Word t19 = Ternary<0x16>(t15, t11, t17);
    const Word t20 = Ternary<0xE2>(t18, t3, t10);
    const Word t21 = Ternary<0x1D>(t19, e, t20);
    to.second ^= t21;
    const Word t22 = Ternary<0x4E>(t10, t11, t19);
    const Word t23 = Ternary<0xA6>(t18, t13, t22);
    const Word t24 = Ternary<0xA3>(f, t14, t23);
    to.first ^= t24;
  }

  // S7: 26 gates.
  static constexpr unsigned Complements(Box<6>) { return 0b0000; }
  [[gnu::always_inline]] static void Sbox(Box<6>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = Ternary<0x69>(a, f, c);
    const Word t2 = Ternary<0x71>(c, e, t1);
    const Word t3 = Ternary<0x96>(e, b, t1);
    const Word t4 = Ternary<0x8B>(t3, f, b);
    const Word t5 = Ternary<0x34>(b, t1, t2);
    const Word t6 = Ternary<0x18>(a, t2, c);
    const Word t7 = Ternary<0x7C>(t5, t6, t2);
    const Word t8 = Ternary<0x90>(t4, t1, t6);
    const Word t9 = Ternary<0xCD>(d, t2, t8);
    const Word t10 = Ternary<0x61>(d, t1, t8);
    const Word t11 = Ternary<0x1C>(e, t10, t8);
    const Word t12 = Ternary<0x4A>(a, t11, t5);
    const Word t13 = Ternary<0x2A>(t10, t12, t3);
    const Word t14 = Ternary<0x47>(t4, a, t5);
    const Word t15 = Ternary<0xC5>(b, t13, t6);
    const Word t16 = Ternary<0xAD>(t6, t13, t14);
    const Word t17 = Ternary<0x5D>(a, t1, t16);
    const Word t18 = Ternary<0xA3>(d, t14, t15);
    to.third ^= t18;
    const Word t19 = Ternary<0xCA>(d, t7, t17);
    const Word t20 = Ternary<0xD2>(t18, a, t10);
    const Word t21 = Ternary<0x47>(t20, t4, t7);
    const Word t22 = Ternary<0xA6>(t21, t10, t13);
    to.second ^= t22;
    const Word t23 = Ternary<0x7C>(t20, t14, t22);
    const Word t24 = Ternary<0x5B>(t13, t19, t9);
    const Word t25 = Ternary<0xCA>(c, t11, t24);
    to.fourth ^= t25;
    const Word t26 = Ternary<0xD2>(t19, e, t23);
    to.first ^= t26;
  }

  // S8: 23 gates.
  static constexpr unsigned Complements(Box<7>) { return 0b0000; }
  [[gnu::always_inline]] static void Sbox(Box<7>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = Ternary<0x29>(a, e, c);
    const Word t2 = Ternary<0x6D>(d, a, e);
    const Word t3 = Ternary<0x3A>(c, t2, t2);
    const Word t4 = Ternary<0x39>(d, t1, t2);
    const Word t5 = Ternary<0xCD>(e, d, t4);
    const Word t6 = Ternary<0x49>(t5, b, c);
    const Word t7 = Ternary<0xD2>(b, e, t3);
    const Word t8 = Ternary<0x64>(t7, t2, t6);
    const Word t9 = Ternary<0x52>(e, t8, t4);
    const Word t10 = Ternary<0x43>(t1, t9, t3);
    const Word t11 = Ternary<0xC5>(b, t4, t10);
    const Word t12 = Ternary<0xA9>(d, t9, t10);
    const Word t13 = Ternary<0x36>(b, t3, t12);
    const Word t14 = Ternary<0x3A>(f, t8, t13);
    to.fourth ^= t14;
    const Word t15 = Ternary<0x5C>(f, t11, t13);
    to.first ^= t15;
    const Word t16 = Ternary<0xAD>(t13, t3, t11);
    const Word t17 = Ternary<0xF7>(d, b, t16);
    const Word t18 = Ternary<0xA7>(f, a, t17);
    const Word t19 = Ternary<0x3A>(t18, t3, t16);
    const Word t20 = Ternary<0x96>(t7, t1, t19);
    to.third ^= t20;
    const Word t21 = Ternary<0x9B>(t7, t9, t20);
    const Word t22 = Ternary<0x2B>(t1, t16, t21);
    const Word t23 = Ternary<0x69>(f, t8, t22);
    to.second ^= t23;
  }
};

}  // namespace latchkey::provider::des
