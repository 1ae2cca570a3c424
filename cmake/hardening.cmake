# Protection against memory errors by compiler and linker, for every program and library. tools/check_hardening checks
# it in the built files.

add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:-fstack-protector-strong>")

if(WIN32)
  # Address randomization, over the whole 64-bit address space, and data that cannot be executed.
  add_link_options(-Wl,--dynamicbase -Wl,--nxcompat)
  # The stack protector's own library, linked in.
  add_link_options(-fstack-protector-strong)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    add_link_options(-Wl,--high-entropy-va)
  endif()
else()
  # Checked forms of the C library's functions, which require optimization.
  add_compile_options("$<$<AND:$<COMPILE_LANGUAGE:C,CXX>,$<NOT:$<CONFIG:Debug>>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:-fstack-clash-protection>")
  # Every import is bound at the start and read-only afterwards. Binding at the first call would also save the vector
  # registers, which may hold parts of secrets, on the stack.
  add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
