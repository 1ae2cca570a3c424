# The oldest Windows that the products run on: Windows 7, which is 6.1. The loader of an older one refuses them with a
# message of its own. tests/com/check_imports compares the version with what the products import.

if(WIN32)
  foreach(kind os subsystem)
    add_link_options(-Wl,--major-${kind}-version=6 -Wl,--minor-${kind}-version=1)
  endforeach()
endif()
