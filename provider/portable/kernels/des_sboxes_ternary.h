// The S-boxes of DES as circuits of three-input look-up tables.
// Made by tools/make_des_sboxes, which describes the method; every circuit was checked against the
// table of FIPS 46-3. The inputs a to f are the box's six input bits, first to last; the output has
// its four output bits.
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
    Word first, second, third, fourth;
  };
  template <unsigned box>
  using Box = std::integral_constant<unsigned, box>;

  // S1: 32 gates.
  static Output Sbox(Box<0>, Word a, Word b, Word c, Word d, Word e, Word f) noexcept {
    const Word t1 = Ternary<0x52>(c, d, f);
    const Word t2 = Ternary<0xE5>(c, d, f);
    const Word t3 = Ternary<0xCA>(e, t1, t2);
    const Word t4 = Ternary<0x94>(d, e, f);
    const Word t5 = Ternary<0x2D>(t4, t1, t3);
    const Word t6 = Ternary<0xCA>(a, t5, t3);
    const Word t7 = Ternary<0x74>(a, c, d);
    const Word t8 = Ternary<0xE3>(t7, t3, t4);
    const Word t9 = Ternary<0xCA>(b, t8, t6);
    const Word t10 = Ternary<0x97>(a, t2, t4);
    const Word t11 = Ternary<0x14>(a, e, t10);
    const Word t12 = Ternary<0x29>(t11, t5, t7);
    const Word t13 = Ternary<0xCA>(c, t10, t12);
    const Word t14 = Ternary<0x7A>(f, t2, t8);
    const Word t15 = Ternary<0x69>(t14, t10, t12);
    const Word t16 = Ternary<0x6C>(a, d, t10);
    const Word t17 = Ternary<0xCA>(e, t15, t16);
    const Word t18 = Ternary<0xCA>(b, t13, t17);
    const Word t19 = Ternary<0xB5>(t3, t4, t17);
    const Word t20 = Ternary<0x94>(f, t10, t17);
    const Word t21 = Ternary<0xCA>(b, t19, t20);
    const Word t22 = Ternary<0x47>(f, t10, t16);
    const Word t23 = Ternary<0x43>(t2, t21, t22);
    const Word t24 = Ternary<0xCA>(b, t23, t22);
    const Word t25 = Ternary<0xCA>(c, t24, t21);
    const Word t26 = Ternary<0x96>(t8, t13, t25);
    const Word t27 = Ternary<0x2D>(c, t4, t26);
    const Word t28 = Ternary<0xCA>(b, t26, t27);
    const Word t29 = Ternary<0xA4>(t7, t10, t27);
    const Word t30 = Ternary<0xD1>(t8, t12, t16);
    const Word t31 = Ternary<0xCA>(b, t29, t30);
    const Word t32 = Ternary<0xCA>(e, t31, t28);
    return {t9, t32, t25, t18};
  }

  // S2: 30 gates.
  static Output Sbox(Box<1>, Word a, Word b, Word c, Word d, Word e, Word f) noexcept {
    const Word t1 = Ternary<0x69>(a, d, e);
    const Word t2 = Ternary<0x2A>(d, e, f);
    const Word t3 = Ternary<0x96>(t2, b, t1);
    const Word t4 = Ternary<0xCA>(c, t1, t3);
    const Word t5 = Ternary<0x16>(a, e, t4);
    const Word t6 = Ternary<0x6A>(t5, b, t3);
    const Word t7 = Ternary<0xCA>(f, t4, t6);
    const Word t8 = Ternary<0x98>(a, c, f);
    const Word t9 = Ternary<0x7C>(t8, e, t4);
    const Word t10 = Ternary<0x60>(e, f, t7);
    const Word t11 = Ternary<0x29>(t10, c, t6);
    const Word t12 = Ternary<0xCA>(b, t9, t11);
    const Word t13 = Ternary<0xCA>(c, t6, t8);
    const Word t14 = Ternary<0x95>(t13, e, t12);
    const Word t15 = Ternary<0xCA>(d, t12, t14);
    const Word t16 = Ternary<0xA8>(c, t2, t10);
    const Word t17 = Ternary<0x07>(t16, t4, t11);
    const Word t18 = Ternary<0x69>(t6, t8, t15);
    const Word t19 = Ternary<0xCA>(e, t17, t18);
    const Word t20 = Ternary<0xC9>(a, c, f);
    const Word t21 = Ternary<0x1D>(t7, t15, t20);
    const Word t22 = Ternary<0xCA>(e, t20, t21);
    const Word t23 = Ternary<0xCA>(b, t22, t19);
    const Word t24 = Ternary<0x16>(t1, t14, t22);
    const Word t25 = Ternary<0x96>(t5, t15, t17);
    const Word t26 = Ternary<0xCA>(b, t24, t25);
    const Word t27 = Ternary<0xC9>(e, t8, t18);
    const Word t28 = Ternary<0x59>(c, d, t27);
    const Word t29 = Ternary<0xCA>(b, t28, t27);
    const Word t30 = Ternary<0xCA>(a, t29, t26);
    return {t15, t7, t30, t23};
  }

  // S3: 30 gates.
  static Output Sbox(Box<2>, Word a, Word b, Word c, Word d, Word e, Word f) noexcept {
    const Word t1 = Ternary<0x6A>(b, c, e);
    const Word t2 = Ternary<0x97>(b, c, e);
    const Word t3 = Ternary<0xCA>(f, t1, t2);
    const Word t4 = Ternary<0x78>(c, e, t3);
    const Word t5 = Ternary<0xC6>(t4, b, t2);
    const Word t6 = Ternary<0xCA>(d, t3, t5);
    const Word t7 = Ternary<0xC8>(b, t1, t3);
    const Word t8 = Ternary<0x69>(t7, d, f);
    const Word t9 = Ternary<0xCA>(a, t8, t6);
    const Word t10 = Ternary<0x96>(e, t4, t8);
    const Word t11 = Ternary<0x78>(t10, b, f);
    const Word t12 = Ternary<0xDA>(f, t5, t11);
    const Word t13 = Ternary<0xCA>(d, t11, t12);
    const Word t14 = Ternary<0xE4>(c, d, e);
    const Word t15 = Ternary<0x96>(t14, b, f);
    const Word t16 = Ternary<0xCA>(a, t13, t15);
    const Word t17 = Ternary<0x96>(a, c, t15);
    const Word t18 = Ternary<0x28>(t3, t15, t17);
    const Word t19 = Ternary<0xCA>(f, t17, t18);
    const Word t20 = Ternary<0xD6>(a, t9, t19);
    const Word t21 = Ternary<0x16>(t7, t15, t17);
    const Word t22 = Ternary<0xCA>(b, t20, t21);
    const Word t23 = Ternary<0xCA>(d, t22, t19);
    const Word t24 = Ternary<0x63>(a, t2, t4);
    const Word t25 = Ternary<0xC1>(a, t8, t23);
    const Word t26 = Ternary<0xCA>(d, t24, t25);
    const Word t27 = Ternary<0xD2>(t10, t14, t18);
    const Word t28 = Ternary<0x16>(t9, t17, t25);
    const Word t29 = Ternary<0xCA>(e, t27, t28);
    const Word t30 = Ternary<0xCA>(b, t26, t29);
    return {t9, t23, t30, t16};
  }

  // S4: 28 gates.
  static Output Sbox(Box<3>, Word a, Word b, Word c, Word d, Word e, Word f) noexcept {
    const Word t1 = Ternary<0xE1>(b, d, e);
    const Word t2 = Ternary<0xC6>(d, e, t1);
    const Word t3 = Ternary<0xCA>(c, t1, t2);
    const Word t4 = Ternary<0x14>(d, e, t2);
    const Word t5 = Ternary<0xD2>(t4, b, c);
    const Word t6 = Ternary<0xCA>(a, t3, t5);
    const Word t7 = Ternary<0xE8>(b, e, t5);
    const Word t8 = Ternary<0x69>(t7, c, d);
    const Word t9 = Ternary<0x79>(e, t3, t8);
    const Word t10 = Ternary<0xCA>(a, t8, t9);
    const Word t11 = Ternary<0xCA>(f, t6, t10);
    const Word t12 = Ternary<0x2C>(c, f, t5);
    const Word t13 = Ternary<0xBC>(t12, t2, t9);
    const Word t14 = Ternary<0x6D>(t1, t6, t13);
    const Word t15 = Ternary<0xCA>(a, t14, t13);
    const Word t16 = Ternary<0x8E>(f, t3, t11);
    const Word t17 = Ternary<0x6A>(t16, t7, t12);
    const Word t18 = Ternary<0x86>(t8, t14, t15);
    const Word t19 = Ternary<0xCA>(e, t17, t18);
    const Word t20 = Ternary<0xCA>(d, t19, t15);
    const Word t21 = Ternary<0x69>(f, t2, t20);
    const Word t22 = Ternary<0x64>(t5, t10, t21);
    const Word t23 = Ternary<0xCA>(c, t21, t22);
    const Word t24 = Ternary<0x19>(t5, t10, t21);
    const Word t25 = Ternary<0x69>(t9, t10, t23);
    const Word t26 = Ternary<0xCA>(b, t24, t25);
    const Word t27 = Ternary<0xCA>(e, t26, t23);
    const Word t28 = Ternary<0xA3>(f, t6, t10);
    return {t27, t20, t11, t28};
  }

  // S5: 33 gates.
  static Output Sbox(Box<4>, Word a, Word b, Word c, Word d, Word e, Word f) noexcept {
    const Word t1 = Ternary<0xB6>(a, c, e);
    const Word t2 = Ternary<0x69>(t1, b, f);
    const Word t3 = Ternary<0x72>(a, c, t2);
    const Word t4 = Ternary<0xC3>(t3, b, e);
    const Word t5 = Ternary<0x9C>(c, e, t2);
    const Word t6 = Ternary<0x6A>(t5, a, t1);
    const Word t7 = Ternary<0xCA>(f, t4, t6);
    const Word t8 = Ternary<0xCA>(d, t2, t7);
    const Word t9 = Ternary<0x9E>(d, e, t2);
    const Word t10 = Ternary<0x65>(t9, t6, t8);
    const Word t11 = Ternary<0x3A>(f, t6, t9);
    const Word t12 = Ternary<0xCA>(b, t11, t10);
    const Word t13 = Ternary<0xC5>(t1, t4, t5);
    const Word t14 = Ternary<0x62>(t4, t5, t13);
    const Word t15 = Ternary<0x87>(t14, t8, t10);
    const Word t16 = Ternary<0xCA>(d, t13, t15);
    const Word t17 = Ternary<0xCA>(c, t16, t12);
    const Word t18 = Ternary<0x48>(t2, t5, t10);
    const Word t19 = Ternary<0x96>(d, t11, t12);
    const Word t20 = Ternary<0xCA>(a, t18, t19);
    const Word t21 = Ternary<0x19>(t12, t14, t20);
    const Word t22 = Ternary<0xCA>(c, t21, t20);
    const Word t23 = Ternary<0x2E>(a, d, t11);
    const Word t24 = Ternary<0x94>(f, t14, t22);
    const Word t25 = Ternary<0xCA>(c, t23, t24);
    const Word t26 = Ternary<0xCA>(e, t22, t25);
    const Word t27 = Ternary<0x69>(c, t5, t6);
    const Word t28 = Ternary<0x94>(a, t16, t27);
    const Word t29 = Ternary<0xCA>(d, t27, t28);
    const Word t30 = Ternary<0x94>(t4, t9, t25);
    const Word t31 = Ternary<0x93>(t2, t6, t16);
    const Word t32 = Ternary<0xCA>(c, t30, t31);
    const Word t33 = Ternary<0xCA>(b, t29, t32);
    return {t26, t8, t33, t17};
  }

  // S6: 29 gates.
  static Output Sbox(Box<5>, Word a, Word b, Word c, Word d, Word e, Word f) noexcept {
    const Word t1 = Ternary<0xF9>(a, b, e);
    const Word t2 = Ternary<0x1A>(a, b, e);
    const Word t3 = Ternary<0xCA>(d, t1, t2);
    const Word t4 = Ternary<0x69>(a, d, e);
    const Word t5 = Ternary<0xCA>(f, t3, t4);
    const Word t6 = Ternary<0x96>(b, f, t4);
    const Word t7 = Ternary<0x19>(f, t5, t6);
    const Word t8 = Ternary<0xCA>(e, t6, t7);
    const Word t9 = Ternary<0xCA>(c, t5, t8);
    const Word t10 = Ternary<0x36>(t2, t5, t7);
    const Word t11 = Ternary<0x4A>(t10, f, t6);
    const Word t12 = Ternary<0x4C>(f, t3, t11);
    const Word t13 = Ternary<0xCA>(c, t12, t11);
    const Word t14 = Ternary<0x5C>(a, b, f);
    const Word t15 = Ternary<0x65>(t14, c, t6);
    const Word t16 = Ternary<0xCA>(e, t13, t15);
    const Word t17 = Ternary<0x1A>(a, e, t13);
    const Word t18 = Ternary<0x63>(t17, t6, t14);
    const Word t19 = Ternary<0x56>(a, d, t8);
    const Word t20 = Ternary<0xB1>(t2, t5, t9);
    const Word t21 = Ternary<0xCA>(c, t19, t20);
    const Word t22 = Ternary<0xCA>(f, t18, t21);
    const Word t23 = Ternary<0x65>(t1, t4, t10);
    const Word t24 = Ternary<0x6A>(b, d, t6);
    const Word t25 = Ternary<0xCA>(e, t23, t24);
    const Word t26 = Ternary<0x87>(t6, t12, t14);
    const Word t27 = Ternary<0x58>(t4, t20, t23);
    const Word t28 = Ternary<0xCA>(a, t26, t27);
    const Word t29 = Ternary<0xCA>(c, t28, t25);
    return {t9, t29, t16, t22};
  }

  // S7: 32 gates.
  static Output Sbox(Box<6>, Word a, Word b, Word c, Word d, Word e, Word f) noexcept {
    const Word t1 = Ternary<0x4B>(c, d, e);
    const Word t2 = Ternary<0x1C>(d, e, t1);
    const Word t3 = Ternary<0xCA>(a, t1, t2);
    const Word t4 = Ternary<0x52>(a, d, t2);
    const Word t5 = Ternary<0x4B>(t4, c, t1);
    const Word t6 = Ternary<0xCA>(b, t3, t5);
    const Word t7 = Ternary<0x9C>(a, b, t3);
    const Word t8 = Ternary<0x65>(t7, c, t5);
    const Word t9 = Ternary<0xCA>(f, t6, t8);
    const Word t10 = Ternary<0xA6>(b, t2, t5);
    const Word t11 = Ternary<0xC7>(t4, t7, t10);
    const Word t12 = Ternary<0xCA>(f, t11, t10);
    const Word t13 = Ternary<0x91>(b, t7, t12);
    const Word t14 = Ternary<0x5C>(a, d, f);
    const Word t15 = Ternary<0xA4>(t14, t1, t11);
    const Word t16 = Ternary<0xCA>(c, t13, t15);
    const Word t17 = Ternary<0xCA>(e, t12, t16);
    const Word t18 = Ternary<0x46>(t4, t7, t16);
    const Word t19 = Ternary<0x15>(c, t4, t14);
    const Word t20 = Ternary<0xCA>(e, t18, t19);
    const Word t21 = Ternary<0xDA>(d, e, t11);
    const Word t22 = Ternary<0xCA>(f, t20, t21);
    const Word t23 = Ternary<0x25>(t1, t15, t22);
    const Word t24 = Ternary<0x4A>(f, t5, t18);
    const Word t25 = Ternary<0xCA>(d, t23, t24);
    const Word t26 = Ternary<0xCA>(b, t25, t22);
    const Word t27 = Ternary<0x53>(c, t2, t8);
    const Word t28 = Ternary<0xCA>(f, t27, t3);
    const Word t29 = Ternary<0x3A>(d, t10, t25);
    const Word t30 = Ternary<0x65>(a, c, t23);
    const Word t31 = Ternary<0xCA>(f, t29, t30);
    const Word t32 = Ternary<0xCA>(b, t28, t31);
    return {t32, t26, t17, t9};
  }

  // S8: 33 gates.
  static Output Sbox(Box<7>, Word a, Word b, Word c, Word d, Word e, Word f) noexcept {
    const Word t1 = Ternary<0x9E>(b, d, e);
    const Word t2 = Ternary<0x12>(t1, a, c);
    const Word t3 = Ternary<0x62>(b, c, e);
    const Word t4 = Ternary<0x1E>(t3, d, t1);
    const Word t5 = Ternary<0xCA>(a, t4, t2);
    const Word t6 = Ternary<0x3A>(e, t2, t3);
    const Word t7 = Ternary<0x96>(t6, a, t1);
    const Word t8 = Ternary<0x9E>(a, c, t4);
    const Word t9 = Ternary<0x61>(t8, d, e);
    const Word t10 = Ternary<0xCA>(b, t7, t9);
    const Word t11 = Ternary<0xCA>(f, t5, t10);
    const Word t12 = Ternary<0xF6>(b, c, t9);
    const Word t13 = Ternary<0x95>(t12, f, t5);
    const Word t14 = Ternary<0x60>(t1, t10, t12);
    const Word t15 = Ternary<0xA6>(t14, f, t13);
    const Word t16 = Ternary<0xCA>(d, t13, t15);
    const Word t17 = Ternary<0x91>(c, t6, t10);
    const Word t18 = Ternary<0x93>(t1, t9, t15);
    const Word t19 = Ternary<0xCA>(f, t17, t18);
    const Word t20 = Ternary<0x85>(e, t4, t13);
    const Word t21 = Ternary<0x3C>(f, t14, t18);
    const Word t22 = Ternary<0xCA>(b, t20, t21);
    const Word t23 = Ternary<0x71>(b, t2, t6);
    const Word t24 = Ternary<0xCA>(a, t22, t23);
    const Word t25 = Ternary<0xCA>(d, t24, t19);
    const Word t26 = Ternary<0x56>(b, t1, t10);
    const Word t27 = Ternary<0x24>(t10, t19, t24);
    const Word t28 = Ternary<0xCA>(b, t3, t27);
    const Word t29 = Ternary<0xCA>(f, t26, t28);
    const Word t30 = Ternary<0x86>(b, t12, t21);
    const Word t31 = Ternary<0x5A>(t7, t29, t30);
    const Word t32 = Ternary<0xCA>(d, t31, t30);
    const Word t33 = Ternary<0xCA>(a, t29, t32);
    return {t11, t33, t25, t16};
  }
};

}  // namespace latchkey::provider::des
