// The S-boxes of DES as circuits of and, or, exclusive or and and-not. Made by
// tools/make_des_sboxes; tools/des_sboxes/ has the method, and the seeds of these circuits.
//
// Sbox adds, by exclusive or, the four output bits of the box to those of `to`, first to last. The
// inputs a to f are its six input bits. Complements has a bit for each output, the highest one for
// the first: if it is set, the circuit computes the complement of the output.
#pragma once

#include <type_traits>

namespace latchkey::provider::des {

template <class Word>
struct GateCircuits {
  struct Output {
    Word &first, &second, &third, &fourth;
  };
  template <unsigned box>
  using Box = std::integral_constant<unsigned, box>;

  // S1: 51 gates.
  static constexpr unsigned Complements(Box<0>) { return 0b1110; }
  [[gnu::always_inline]] static void Sbox(Box<0>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = f & a;
    const Word t2 = f ^ t1;
    const Word t3 = e ^ t2;
    const Word t4 = a ^ t3;
    const Word t5 = t1 ^ t3;
    const Word t6 = f | c;
    const Word t7 = t5 & t6;
    const Word t8 = t6 | a;
    const Word t9 = a ^ t6;
    const Word t10 = t4 | t7;
    const Word t11 = d ^ t10;
    const Word t12 = t11 | t10;
    const Word t13 = c ^ t12;
    const Word t14 = t13 | a;
    const Word t15 = t14 ^ t11;
    const Word t16 = t13 ^ t9;
    const Word t17 = t2 ^ t15;
    const Word t18 = t7 ^ t16;
    const Word t19 = t3 & t16;
    const Word t20 = d & t17;
    const Word t21 = t4 & ~t9;
    const Word t22 = t20 ^ t4;
    const Word t23 = t18 & ~t20;
    const Word t24 = t23 ^ t8;
    const Word t25 = t1 & t24;
    const Word t26 = t22 & ~t1;
    const Word t27 = t22 | t24;
    const Word t28 = t26 | t19;
    const Word t29 = f & t26;
    const Word t30 = t27 & ~b;
    const Word t31 = b & t18;
    const Word t32 = t15 ^ t30;
    const Word t33 = t32 ^ t25;
    to.third ^= t33;
    const Word t34 = t33 & ~t21;
    const Word t35 = t20 ^ t34;
    const Word t36 = t35 ^ t31;
    const Word t37 = t32 & t24;
    const Word t38 = t4 & ~t32;
    const Word t39 = t35 | t38;
    const Word t40 = t12 & ~t36;
    const Word t41 = t29 ^ t40;
    const Word t42 = b | t41;
    const Word t43 = t18 ^ t42;
    to.fourth ^= t43;
    const Word t44 = t42 ^ c;
    const Word t45 = t44 ^ t39;
    const Word t46 = t45 & t37;
    const Word t47 = t45 & ~t5;
    const Word t48 = t36 ^ t47;
    to.second ^= t48;
    const Word t49 = b & ~t46;
    const Word t50 = t49 ^ t28;
    const Word t51 = c ^ t50;
    to.first ^= t51;
  }

  // S2: 44 gates.
  static constexpr unsigned Complements(Box<1>) { return 0b1111; }
  [[gnu::always_inline]] static void Sbox(Box<1>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = f & ~c;
    const Word t2 = d ^ e;
    const Word t3 = d & ~t2;
    const Word t4 = t1 & ~t3;
    const Word t5 = a ^ t4;
    const Word t6 = t1 ^ t5;
    const Word t7 = t5 ^ t2;
    const Word t8 = e ^ b;
    const Word t9 = t8 ^ a;
    const Word t10 = t6 & ~f;
    const Word t11 = t9 | t10;
    const Word t12 = t11 & ~d;
    const Word t13 = b ^ t11;
    const Word t14 = c & t6;
    const Word t15 = t7 ^ t14;
    const Word t16 = t13 & t5;
    const Word t17 = t6 & ~t16;
    const Word t18 = t17 ^ t15;
    const Word t19 = f & ~t17;
    const Word t20 = e & t18;
    const Word t21 = t19 ^ t15;
    const Word t22 = t15 & ~t8;
    const Word t23 = t21 ^ t20;
    const Word t24 = t12 ^ t22;
    const Word t25 = f | t24;
    const Word t26 = t19 & ~t24;
    const Word t27 = t23 & t19;
    const Word t28 = c ^ t25;
    const Word t29 = t28 & b;
    const Word t30 = t7 ^ t29;
    to.second ^= t30;
    const Word t31 = c ^ t30;
    const Word t32 = t31 | t6;
    const Word t33 = t31 & ~t27;
    const Word t34 = t8 & ~t33;
    const Word t35 = t12 ^ t32;
    const Word t36 = t35 & ~b;
    const Word t37 = c ^ t34;
    const Word t38 = t21 ^ t36;
    to.first ^= t38;
    const Word t39 = t23 ^ t37;
    to.fourth ^= t39;
    const Word t40 = t30 | t39;
    const Word t41 = t13 ^ t40;
    const Word t42 = t27 | t41;
    const Word t43 = t42 & ~t26;
    const Word t44 = t38 ^ t43;
    to.third ^= t44;
  }

  // S3: 49 gates.
  static constexpr unsigned Complements(Box<2>) { return 0b1010; }
  [[gnu::always_inline]] static void Sbox(Box<2>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = a ^ c;
    const Word t2 = e ^ t1;
    const Word t3 = t2 ^ d;
    const Word t4 = f ^ d;
    const Word t5 = c ^ t4;
    const Word t6 = e & ~t3;
    const Word t7 = t4 ^ t6;
    const Word t8 = e & ~t4;
    const Word t9 = d & ~t7;
    const Word t10 = a | t8;
    const Word t11 = f & ~a;
    const Word t12 = t11 & ~c;
    const Word t13 = t9 ^ t12;
    const Word t14 = b & ~t13;
    const Word t15 = t7 & ~t10;
    const Word t16 = f & ~t15;
    const Word t17 = t2 | t16;
    const Word t18 = t8 ^ t17;
    const Word t19 = t15 | t18;
    const Word t20 = t19 ^ t5;
    const Word t21 = t2 | t20;
    const Word t22 = f ^ t19;
    const Word t23 = t9 | t22;
    const Word t24 = t10 ^ t23;
    const Word t25 = c & ~b;
    const Word t26 = c & t21;
    const Word t27 = t25 ^ t3;
    const Word t28 = e ^ t26;
    const Word t29 = t24 ^ c;
    const Word t30 = t3 & t29;
    const Word t31 = b & ~t24;
    const Word t32 = t28 ^ t31;
    const Word t33 = t19 ^ t32;
    to.third ^= t33;
    const Word t34 = t33 & ~t1;
    const Word t35 = t21 ^ t34;
    const Word t36 = t35 & ~t30;
    const Word t37 = t36 ^ t14;
    to.second ^= t37;
    const Word t38 = t25 & ~t37;
    const Word t39 = t1 | t38;
    const Word t40 = t23 & ~t37;
    const Word t41 = t40 ^ t39;
    const Word t42 = t17 & ~t41;
    const Word t43 = t23 ^ t42;
    const Word t44 = a & t43;
    const Word t45 = b | t41;
    const Word t46 = t7 ^ t44;
    const Word t47 = t45 & ~t16;
    const Word t48 = b ^ t46;
    to.fourth ^= t48;
    const Word t49 = t47 ^ t27;
    to.first ^= t49;
  }

  // S4: 27 gates.
  static constexpr unsigned Complements(Box<3>) { return 0b0111; }
  [[gnu::always_inline]] static void Sbox(Box<3>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = a ^ c;
    const Word t2 = c ^ e;
    const Word t3 = d ^ b;
    const Word t4 = t3 ^ e;
    const Word t5 = t1 | t2;
    const Word t6 = t5 & ~b;
    const Word t7 = t1 | t4;
    const Word t8 = t6 ^ t7;
    const Word t9 = t4 ^ t6;
    const Word t10 = t9 & ~t2;
    const Word t11 = t2 & t8;
    const Word t12 = t1 ^ t11;
    const Word t13 = f ^ t4;
    const Word t14 = t3 ^ t10;
    const Word t15 = t13 ^ t14;
    const Word t16 = t12 & ~t13;
    const Word t17 = t8 ^ t16;
    const Word t18 = t15 | f;
    const Word t19 = t3 & ~t17;
    const Word t20 = d ^ t19;
    const Word t21 = t20 ^ t18;
    const Word t22 = t12 & ~t3;
    const Word t23 = t15 ^ t22;
    const Word t24 = t12 ^ t21;
    to.third ^= t24;
    const Word t25 = t23 ^ t21;
    to.fourth ^= t25;
    const Word t26 = t17 ^ t24;
    to.first ^= t26;
    const Word t27 = t26 ^ t23;
    to.second ^= t27;
  }

  // S5: 48 gates.
  static constexpr unsigned Complements(Box<4>) { return 0b0010; }
  [[gnu::always_inline]] static void Sbox(Box<4>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = e ^ d;
    const Word t2 = a | c;
    const Word t3 = f & t2;
    const Word t4 = t1 & ~t3;
    const Word t5 = a ^ t3;
    const Word t6 = t5 | a;
    const Word t7 = b & ~c;
    const Word t8 = f & ~d;
    const Word t9 = t5 ^ d;
    const Word t10 = c ^ t8;
    const Word t11 = t10 ^ d;
    const Word t12 = b & ~t11;
    const Word t13 = t10 ^ t6;
    const Word t14 = t9 & t6;
    const Word t15 = t14 | t7;
    const Word t16 = a & ~t13;
    const Word t17 = t9 ^ t16;
    const Word t18 = f | t16;
    const Word t19 = t13 | t15;
    const Word t20 = t18 & ~t19;
    const Word t21 = b | t20;
    const Word t22 = t17 ^ t21;
    const Word t23 = e & ~t17;
    const Word t24 = t4 | t23;
    const Word t25 = t18 & ~t22;
    const Word t26 = b & ~t12;
    const Word t27 = e ^ b;
    const Word t28 = t2 ^ t12;
    const Word t29 = t15 ^ t28;
    const Word t30 = t29 | t14;
    const Word t31 = t30 ^ t25;
    const Word t32 = t24 ^ t31;
    to.second ^= t32;
    const Word t33 = t30 & t5;
    const Word t34 = t16 | t32;
    const Word t35 = t28 & ~t33;
    const Word t36 = t34 ^ t33;
    const Word t37 = t35 ^ t20;
    const Word t38 = t34 & ~t37;
    const Word t39 = t36 & ~t35;
    const Word t40 = e & ~t39;
    const Word t41 = t29 ^ t40;
    to.fourth ^= t41;
    const Word t42 = e | t38;
    const Word t43 = a | t42;
    const Word t44 = t22 ^ t42;
    to.first ^= t44;
    const Word t45 = t43 ^ t2;
    const Word t46 = t45 | t27;
    const Word t47 = t46 & ~t26;
    const Word t48 = t13 ^ t47;
    to.third ^= t48;
  }

  // S6: 49 gates.
  static constexpr unsigned Complements(Box<5>) { return 0b1100; }
  [[gnu::always_inline]] static void Sbox(Box<5>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = c | a;
    const Word t2 = t1 & ~c;
    const Word t3 = t1 & ~b;
    const Word t4 = t1 & ~e;
    const Word t5 = d ^ a;
    const Word t6 = t5 ^ f;
    const Word t7 = c ^ t5;
    const Word t8 = t4 ^ t7;
    const Word t9 = b & ~t4;
    const Word t10 = e & t5;
    const Word t11 = a | t10;
    const Word t12 = e | t8;
    const Word t13 = t11 & ~t6;
    const Word t14 = t11 ^ t9;
    const Word t15 = a & ~t12;
    const Word t16 = f & ~t15;
    const Word t17 = a ^ t14;
    const Word t18 = t2 & ~t17;
    const Word t19 = b & ~t17;
    const Word t20 = c & ~t19;
    const Word t21 = t20 & ~t16;
    const Word t22 = t5 & ~t21;
    const Word t23 = b | t21;
    const Word t24 = t3 ^ t22;
    const Word t25 = e | t24;
    const Word t26 = t25 ^ t9;
    const Word t27 = t25 & ~t20;
    const Word t28 = t16 & ~t27;
    const Word t29 = f ^ t2;
    const Word t30 = t29 ^ t26;
    const Word t31 = t29 & ~t8;
    const Word t32 = t23 ^ t31;
    const Word t33 = t8 ^ t2;
    const Word t34 = t30 & ~c;
    const Word t35 = t33 ^ t28;
    const Word t36 = t34 ^ t35;
    to.first ^= t36;
    const Word t37 = t14 | t36;
    const Word t38 = t33 ^ t19;
    const Word t39 = e & t37;
    const Word t40 = t39 ^ t32;
    const Word t41 = f & ~t39;
    const Word t42 = t41 | t18;
    const Word t43 = t42 ^ t38;
    to.third ^= t43;
    const Word t44 = t22 & ~t40;
    const Word t45 = d & t40;
    const Word t46 = t30 ^ t45;
    to.second ^= t46;
    const Word t47 = t44 | t13;
    const Word t48 = t3 ^ t47;
    const Word t49 = t12 ^ t48;
    to.fourth ^= t49;
  }

  // S7: 51 gates.
  static constexpr unsigned Complements(Box<6>) { return 0b0100; }
  [[gnu::always_inline]] static void Sbox(Box<6>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = c ^ f;
    const Word t2 = b & ~c;
    const Word t3 = t2 | t1;
    const Word t4 = d ^ t1;
    const Word t5 = t2 ^ t4;
    const Word t6 = d & ~t2;
    const Word t7 = a ^ t5;
    const Word t8 = c & t6;
    const Word t9 = b & t5;
    const Word t10 = c ^ t9;
    const Word t11 = t7 & t10;
    const Word t12 = d & ~t10;
    const Word t13 = e | t12;
    const Word t14 = t10 ^ t11;
    const Word t15 = t11 & d;
    const Word t16 = a & ~t5;
    const Word t17 = a | t14;
    const Word t18 = e & ~t15;
    const Word t19 = t16 ^ t18;
    const Word t20 = t5 ^ t13;
    const Word t21 = t17 & t9;
    const Word t22 = t17 | t3;
    const Word t23 = t1 & ~t21;
    const Word t24 = b | t4;
    const Word t25 = t24 & ~f;
    const Word t26 = t11 ^ t25;
    const Word t27 = t25 ^ t21;
    const Word t28 = t27 ^ t22;
    const Word t29 = e | t28;
    const Word t30 = t24 ^ t23;
    const Word t31 = t6 & t26;
    const Word t32 = t31 ^ t29;
    const Word t33 = t19 & t23;
    const Word t34 = t30 ^ t19;
    to.second ^= t34;
    const Word t35 = t17 ^ t32;
    const Word t36 = t32 ^ t33;
    const Word t37 = t36 & ~e;
    const Word t38 = b ^ t35;
    const Word t39 = t38 ^ t4;
    to.third ^= t39;
    const Word t40 = t34 ^ t39;
    const Word t41 = t40 ^ t26;
    const Word t42 = f & ~t41;
    const Word t43 = t40 | t42;
    const Word t44 = t42 & ~t34;
    const Word t45 = b & ~t44;
    const Word t46 = t45 | t8;
    const Word t47 = a & ~t44;
    const Word t48 = t20 ^ t47;
    to.fourth ^= t48;
    const Word t49 = t38 ^ t46;
    const Word t50 = t37 ^ t49;
    const Word t51 = t50 ^ t43;
    to.first ^= t51;
  }

  // S8: 53 gates.
  static constexpr unsigned Complements(Box<7>) { return 0b1101; }
  [[gnu::always_inline]] static void Sbox(Box<7>, Word a, Word b, Word c, Word d, Word e, Word f,
                                          Output to) noexcept {
    const Word t1 = e & ~c;
    const Word t2 = e ^ a;
    const Word t3 = d & ~e;
    const Word t4 = t1 | t3;
    const Word t5 = t2 & ~d;
    const Word t6 = a | t4;
    const Word t7 = a & ~t5;
    const Word t8 = t1 & t7;
    const Word t9 = b & ~t8;
    const Word t10 = d ^ t9;
    const Word t11 = t7 & ~t10;
    const Word t12 = c ^ t10;
    const Word t13 = t2 & ~t9;
    const Word t14 = t12 ^ t6;
    const Word t15 = t2 ^ t14;
    const Word t16 = b & t15;
    const Word t17 = t16 ^ t12;
    const Word t18 = t16 & ~t4;
    const Word t19 = t7 | t18;
    const Word t20 = f & t19;
    const Word t21 = t20 | t5;
    const Word t22 = t12 & ~t21;
    const Word t23 = t1 | t22;
    const Word t24 = t14 ^ t20;
    const Word t25 = f & t21;
    const Word t26 = f | t11;
    const Word t27 = t25 | t11;
    const Word t28 = c & t27;
    const Word t29 = t25 | t14;
    const Word t30 = t23 & ~b;
    const Word t31 = t15 ^ t30;
    const Word t32 = t15 & t29;
    const Word t33 = t26 ^ t31;
    to.second ^= t33;
    const Word t34 = t33 & ~t14;
    const Word t35 = t34 & t23;
    const Word t36 = f | t34;
    const Word t37 = t7 ^ t36;
    const Word t38 = t33 | t36;
    const Word t39 = b | t36;
    const Word t40 = t17 ^ t38;
    const Word t41 = t4 ^ t39;
    const Word t42 = t24 & ~t35;
    to.third ^= t42;
    const Word t43 = t24 ^ t37;
    const Word t44 = t41 ^ t32;
    const Word t45 = a & ~t40;
    const Word t46 = t44 ^ t45;
    to.first ^= t46;
    const Word t47 = f ^ t45;
    const Word t48 = t47 & ~t13;
    const Word t49 = t48 & ~t43;
    const Word t50 = t49 ^ t44;
    const Word t51 = t34 ^ t50;
    const Word t52 = t51 ^ t28;
    const Word t53 = t9 ^ t52;
    to.fourth ^= t53;
  }
};

}  // namespace latchkey::provider::des
