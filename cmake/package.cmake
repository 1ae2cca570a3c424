# Debian packages of the install components: cpack in the build folder makes liblatchkey1, liblatchkey-dev, latchkey and,
# where they are built, latchkey-doc, python3-latchkey, libsqlite3-mod-latchkey and postgresql-15-latchkey.
# dpkg-shlibdeps finds the Debian packages that they depend on.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME latchkey)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_CONTACT "Latchkey developers <developers@latchkey.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS obeys the umask of the caller.
file(WRITE ${PROJECT_BINARY_DIR}/package_folders.cmake [[
file(GLOB_RECURSE folders LIST_DIRECTORIES true ${CPACK_TEMPORARY_DIRECTORY}/*)
foreach(folder ${folders})
  if(IS_DIRECTORY ${folder})
    file(CHMOD ${folder} PERMISSIONS
      OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  endif()
endforeach()
]])
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_BINARY_DIR}/package_folders.cmake)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})  # of the library, for the extensions

# For another architecture dpkg-shlibdeps reads the files and the database that tools/cross_root made.
set(package_environment)
if(LATCHKEY_DEBIAN_ARCH)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${LATCHKEY_DEBIAN_ARCH})
  list(GET CMAKE_FIND_ROOT_PATH 0 root)
  foreach(folder usr/lib lib)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${root}/${folder}/${CMAKE_LIBRARY_ARCHITECTURE})
  endforeach()
  set(package_environment
"set(ENV{DEB_HOST_ARCH} ${LATCHKEY_DEBIAN_ARCH})
set(ENV{DPKG_ADMINDIR} ${root}/var/lib/dpkg)")
endif()

set(debian ${PROJECT_SOURCE_DIR}/packaging/debian)
set(library_package lib${CPACK_PACKAGE_NAME}${PROJECT_VERSION_MAJOR})

# declare_package COMPONENT NAME SECTION SUMMARY
macro(declare_package component name section summary)
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_COMPONENT_${upper}_DESCRIPTION
"Encryption and hashing as the Windows CryptoAPI does - ${summary}
Encrypts and decrypts under keys derived from passwords, hashes, and makes
random data and salts, with the same bytes and the same error numbers as the
Windows component of this name. The algorithms are old: use them to exchange
data with systems that already use them.")
  install(FILES ${debian}/copyright ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION share/doc/${name} COMPONENT ${component})
endmacro()

set(CPACK_COMPONENTS_ALL)
declare_package(library ${library_package} libs "library")
declare_package(development lib${CPACK_PACKAGE_NAME}-dev libdevel "development files")
if(LATCHKEY_BUILD_CLI)
  declare_package(command ${CPACK_PACKAGE_NAME} utils "command")
endif()
if(TARGET latchkey_site)
  declare_package(documents ${CPACK_PACKAGE_NAME}-doc doc "documents and samples")
  set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_ARCHITECTURE all)
  set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_SHLIBDEPS OFF)
endif()
if(LATCHKEY_BUILD_PYTHON)
  declare_package(python python3-${CPACK_PACKAGE_NAME} python "Python package")
endif()

if(TARGET latchkey_sqlite)
  declare_package(sqlite libsqlite3-mod-${CPACK_PACKAGE_NAME} database "SQLite extension")
  set(CPACK_DEBIAN_SQLITE_PACKAGE_DEPENDS "${library_package} (>= ${PROJECT_VERSION})")
  set(CPACK_DEBIAN_SQLITE_PACKAGE_ENHANCES sqlite3)
  set(CPACK_DEBIAN_SQLITE_PACKAGE_CONTROL_EXTRA ${debian}/triggers)
endif()
if(TARGET latchkey_postgresql)
  set(server_package postgresql-${LATCHKEY_POSTGRESQL_VERSION})
  declare_package(postgresql ${server_package}-${CPACK_PACKAGE_NAME} database "PostgreSQL extension")
  set(CPACK_DEBIAN_POSTGRESQL_PACKAGE_DEPENDS "${server_package}, ${library_package} (>= ${PROJECT_VERSION})")
endif()

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
# dpkg-shlibdeps does not find the library, which is in another package.
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "${library_package} (>= ${PROJECT_VERSION}), libc6 (>= 2.14), python3 (>= 3.11), python3-cffi-backend")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA ${debian}/python/postinst ${debian}/python/prerm)
# The dependencies of packages that use the library, and the trigger that renews the linker's cache.
file(WRITE ${PROJECT_BINARY_DIR}/shlibs "liblatchkey ${PROJECT_VERSION_MAJOR} ${library_package} (>= ${PROJECT_VERSION})\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/shlibs ${debian}/triggers)

# gzip -n omits the date, so that a package does not depend on the time.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${debian}/changelog)
execute_process(COMMAND gzip -9nc ${debian}/changelog OUTPUT_FILE ${PROJECT_BINARY_DIR}/changelog.gz
  COMMAND_ERROR_IS_FATAL ANY)

# cpack dates the packages' files by SOURCE_DATE_EPOCH, or by the newest entry of the changelog.
file(STRINGS ${debian}/changelog release REGEX "^ -- " LIMIT_COUNT 1)
string(REGEX REPLACE ".*>  " "" release "${release}")
execute_process(COMMAND date --date=${release} +%s OUTPUT_VARIABLE release OUTPUT_STRIP_TRAILING_WHITESPACE
  COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${PROJECT_BINARY_DIR}/release_date ${release}\n)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/package_settings.cmake CONTENT [[
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  set(ENV{SOURCE_DATE_EPOCH} @release@)
endif()
@package_environment@
]] @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_BINARY_DIR}/package_settings.cmake)

include(CPack)
