# The oldest Windows that the products run on: Windows 7, which is 6.1. Older loaders refuse them with a message.
# tests/com/check_imports compares the version with the products' imports.

if(WIN32)
  foreach(kind os subsystem)
    add_link_options(-Wl,--major-${kind}-version=6 -Wl,--minor-${kind}-version=1)
  endforeach()
endif()
