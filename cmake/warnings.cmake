# Warnings for the project's own code. Linked by every target but third-party ones. The presets make them errors; with
# another compiler or level of optimization, as a packager has, there may be unknown warnings.
option(LATCHKEY_WARNINGS_AS_ERRORS "Treat warnings as errors" OFF)

add_library(latchkey_warnings INTERFACE)
target_compile_options(latchkey_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion $<$<BOOL:${LATCHKEY_WARNINGS_AS_ERRORS}>:-Werror>)
