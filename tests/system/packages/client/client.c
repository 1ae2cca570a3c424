/* The same in C. */
#include <latchkey.h>
#include <string.h>

int main(void) {
  char text[5];
  size_t length = sizeof text;
  const int status = latchkey_hex_encode((const uint8_t*)"JK", 2, text, &length, NULL);
  return status == LATCHKEY_OK && strcmp(text, "4A4B") == 0 ? 0 : 1;
}
