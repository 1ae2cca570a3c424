# Warnings for the project's own code, all of them errors. Linked by every target but third-party ones.

add_library(latchkey_warnings INTERFACE)
target_compile_options(latchkey_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Werror)
