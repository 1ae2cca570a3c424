# The headers for clients of the library: <latchkey.h> in C, <latchkey/com/cls_main.h> and so on in C++.
# They are the project's own. Only where they include each other, latchkey/ is put in front, so that a client's include
# path needs no folder with names like crypto and platform. Clients in this tree use the same copies.

set(public_cpp_headers
  base/export.h
  base/fault.h
  base/secure_memory.h
  base/text.h
  base/unique_handle.h
  base/variant.h
  base/wiped_buffer.h
  com/cls_main.h
  crypto/byte_array.h
  crypto/cls_crypto_api.h
  crypto/password_cipher.h
  crypto/provider_handles.h
  diagnostics/cls_timer.h
  platform/set_code_page.h
  platform/stack_wipe.h
  platform/variant_text.h
  provider/crypto_provider.h)

set(public_headers_folder ${PROJECT_BINARY_DIR}/include)

function(publish_header source target)
  file(READ ${PROJECT_SOURCE_DIR}/${source} text)
  string(REGEX REPLACE "#include \"([a-z_/]+[.]h)\"" "#include \"latchkey/\\1\"" text "${text}")
  file(CONFIGURE OUTPUT ${public_headers_folder}/${target} CONTENT "${text}" @ONLY)
  set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${source})
endfunction()

publish_header(include/latchkey.h latchkey.h)
foreach(header IN LISTS public_cpp_headers)
  publish_header(${header} latchkey/${header})
endforeach()
