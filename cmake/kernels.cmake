# The Linux provider's kernels (platform/linux/kernels). Each file named after an instruction set is compiled for it, on
# 64-bit x86 only; which of them run is chosen at run time.

file(GLOB kernel_sources CONFIGURE_DEPENDS platform/linux/kernels/*.cpp)
set(kernel_options_avx2 -mavx2)
set(kernel_options_avx512 -mavx512f -mavx512bw)
set(kernel_options_avx512vbmi ${kernel_options_avx512} -mavx512vbmi)
set(kernel_options_sha_ni -msha -msse4.1)

foreach(instruction_set avx2 avx512 avx512vbmi sha_ni)
  set(sources ${kernel_sources})
  list(FILTER sources INCLUDE REGEX "_${instruction_set}\\.cpp$")
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS "${kernel_options_${instruction_set}}")
    set(has_x86_kernels ON)
  else()
    list(REMOVE_ITEM kernel_sources ${sources})
  endif()
endforeach()

# Public, so that the tests know which kernels there are.
if(has_x86_kernels)
  target_compile_definitions(latchkey_platform PUBLIC LATCHKEY_X86_KERNELS)
endif()
target_sources(latchkey_platform PRIVATE ${kernel_sources})
