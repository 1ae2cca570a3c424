/* Preloaded into the command: the allocation whose number is in LATCHKEY_FAIL_ALLOCATION fails,
 * from 1; with a plus after it, so do all later ones. At the end the number of allocations is
 * written to the file that LATCHKEY_COUNT_FILE names, if any. */
#include <errno.h>
#include <fcntl.h>
#include <stdatomic.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* memory, size_t size);
extern void* __libc_memalign(size_t alignment, size_t size);
extern char** environ;

static atomic_long allocations;
static long failing = -1; /* not known yet */
static int for_ever;

/* getenv needs no memory, but neither is the environment's order known to be set up before the
 * first allocation. */
static void read_plan(void) {
  failing = 0;
  for (char** each = environ; each != NULL && *each != NULL; ++each) {
    static const char kName[] = "LATCHKEY_FAIL_ALLOCATION=";
    if (strncmp(*each, kName, sizeof kName - 1) != 0) continue;
    const char* digit = *each + sizeof kName - 1;
    for (; *digit >= '0' && *digit <= '9'; ++digit) failing = failing * 10 + (*digit - '0');
    for_ever = *digit == '+';
  }
}

static int fails(void) {
  if (failing < 0) read_plan();
  const long number = atomic_fetch_add(&allocations, 1) + 1;
  if (failing == 0 || (number != failing && !(for_ever && number > failing))) return 0;
  errno = ENOMEM;
  return 1;
}

void* malloc(size_t size) { return fails() ? NULL : __libc_malloc(size); }
void* calloc(size_t count, size_t size) { return fails() ? NULL : __libc_calloc(count, size); }
void* realloc(void* memory, size_t size) { return fails() ? NULL : __libc_realloc(memory, size); }
void* memalign(size_t alignment, size_t size) {
  return fails() ? NULL : __libc_memalign(alignment, size);
}
void* aligned_alloc(size_t alignment, size_t size) { return memalign(alignment, size); }
int posix_memalign(void** memory, size_t alignment, size_t size) {
  void* const made = memalign(alignment, size);
  if (made == NULL) return ENOMEM;
  *memory = made;
  return 0;
}

__attribute__((destructor)) static void write_count(void) {
  const char* const name = getenv("LATCHKEY_COUNT_FILE");
  if (name == NULL) return;
  char text[64];
  const int length = snprintf(text, sizeof text, "%ld\n", (long)allocations);
  const int file = open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (file < 0 || write(file, text, (size_t)length) != length) abort();
  close(file);
}
