# Kernels: loops for one kind of CPU. Each file named after an instruction set is compiled for it, on Linux only and for
# 64-bit x86 or ARM64; the program chooses among them at run time.

set(kernel_options_avx2 -mavx2)
set(kernel_options_avx512 -mavx512f -mavx512bw)
set(kernel_options_sha_ni -msha -msse4.1)
set(kernel_options_neon "")  # part of the architecture
if(NOT WIN32 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(has_x86_kernels ON)
  set(kernel_sets avx2 avx512 sha_ni)
elseif(NOT WIN32 AND CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
  set(has_arm_kernels ON)
  set(kernel_sets neon)
endif()

# Removes from a list of sources the kernels that this build cannot use, and sets the options of the others.
function(choose_kernels list)
  foreach(instruction_set avx2 avx512 sha_ni neon)
    set(chosen ${${list}})
    list(FILTER chosen INCLUDE REGEX "_${instruction_set}\\.cpp$")
    if(instruction_set IN_LIST kernel_sets)
      set_source_files_properties(${chosen} PROPERTIES COMPILE_OPTIONS "${kernel_options_${instruction_set}}")
    elseif(chosen)
      list(REMOVE_ITEM ${list} ${chosen})
    endif()
  endforeach()
  set(${list} ${${list}} PARENT_SCOPE)
endfunction()
