/* Checks of a test in C. Each prints what differs and goes on; the test ends with CHECK_RESULT. */
#ifndef LATCHKEY_TESTS_C_CHECK_H
#define LATCHKEY_TESTS_C_CHECK_H

#include <stdio.h>
#include <string.h>

static int check_count = 0;
static int check_failures = 0;

#define CHECK(condition)                                               \
  do {                                                                 \
    ++check_count;                                                     \
    if (!(condition)) {                                                \
      ++check_failures;                                                \
      printf("%s:%d: not true: %s\n", __FILE__, __LINE__, #condition); \
    }                                                                  \
  } while (0)

#define CHECK_NUMBER(actual, expected)                                                   \
  do {                                                                                   \
    const long long check_actual = (long long)(actual);                                  \
    const long long check_expected = (long long)(expected);                              \
    ++check_count;                                                                       \
    if (check_actual != check_expected) {                                                \
      ++check_failures;                                                                  \
      printf("%s:%d: %s is %lld, not %lld\n", __FILE__, __LINE__, #actual, check_actual, \
             check_expected);                                                            \
    }                                                                                    \
  } while (0)

#define CHECK_BYTES(actual, expected, length) CHECK(memcmp((actual), (expected), (length)) == 0)

static int check_result(void) {
  printf("%d checks, %d failed\n", check_count, check_failures);
  return check_count > 0 && check_failures == 0 ? 0 : 1;
}

#endif
