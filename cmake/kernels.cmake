# Kernels: loops for one kind of CPU. Each file named after an instruction set is compiled for it, on 64-bit x86 and Linux
# only; the program chooses among them at run time.

set(kernel_options_avx2 -mavx2)
set(kernel_options_avx512 -mavx512f -mavx512bw)
set(kernel_options_sha_ni -msha -msse4.1)
if(NOT WIN32 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(has_x86_kernels ON)
endif()

# Removes from a list of sources the kernels that this build cannot use, and sets the options of the others.
function(choose_kernels list)
  foreach(instruction_set avx2 avx512 sha_ni)
    set(chosen ${${list}})
    list(FILTER chosen INCLUDE REGEX "_${instruction_set}\\.cpp$")
    if(has_x86_kernels)
      set_source_files_properties(${chosen} PROPERTIES COMPILE_OPTIONS "${kernel_options_${instruction_set}}")
    elseif(chosen)
      list(REMOVE_ITEM ${list} ${chosen})
    endif()
  endforeach()
  set(${list} ${${list}} PARENT_SCOPE)
endfunction()
