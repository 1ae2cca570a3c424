# Installs the library for its clients: cmake --install, in the components library, development, command, documents,
# sqlite and postgresql.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Latchkey)
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS latchkey EXPORT LatchkeyTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

# find_package(Latchkey), target Latchkey::latchkey
install(EXPORT LatchkeyTargets NAMESPACE Latchkey:: DESTINATION ${cmake_folder} COMPONENT development)
file(WRITE ${PROJECT_BINARY_DIR}/LatchkeyConfig.cmake "include(\${CMAKE_CURRENT_LIST_DIR}/LatchkeyTargets.cmake)\n")
write_basic_package_version_file(${PROJECT_BINARY_DIR}/LatchkeyConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/LatchkeyConfig.cmake ${PROJECT_BINARY_DIR}/LatchkeyConfigVersion.cmake
  DESTINATION ${cmake_folder} COMPONENT development)

# pkg-config latchkey. It derives the prefix from its own path, so that a tree may be moved.
file(RELATIVE_PATH pkgconfig_prefix /${pkgconfig_folder} /)
string(REGEX REPLACE "/$" "" pkgconfig_prefix "${pkgconfig_prefix}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/latchkey.pc.in ${PROJECT_BINARY_DIR}/latchkey.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/latchkey.pc DESTINATION ${pkgconfig_folder} COMPONENT development)

# Its manual page and completion are installed by the rules that make them.
if(LATCHKEY_BUILD_CLI)
  install(TARGETS latchkey_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT command)
endif()

# The documents as a site, which contains the samples. Left out where mkdocs is missing.
find_program(LATCHKEY_MKDOCS mkdocs)
if(PROJECT_IS_TOP_LEVEL AND LATCHKEY_MKDOCS)
  set(site ${PROJECT_BINARY_DIR}/site)
  file(GLOB_RECURSE site_sources CONFIGURE_DEPENDS docs/* examples/* include/*)
  list(APPEND site_sources README.md CHANGELOG.md CONTRIBUTING.md LICENSE tools/make_site packaging/debian/changelog)
  add_custom_command(OUTPUT ${site}.stamp
    COMMAND ${PROJECT_SOURCE_DIR}/tools/make_site ${site}
    COMMAND ${CMAKE_COMMAND} -E touch ${site}.stamp
    DEPENDS ${site_sources}
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    VERBATIM)
  add_custom_target(latchkey_site ALL DEPENDS ${site}.stamp)
  set(documents share/doc/${PROJECT_NAME}-doc)
  install(DIRECTORY ${site}/ DESTINATION ${documents}/html COMPONENT documents)
  foreach(folder docs examples)
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/links)
    file(CREATE_LINK html/${folder} ${PROJECT_BINARY_DIR}/links/${folder} SYMBOLIC)
    install(FILES ${PROJECT_BINARY_DIR}/links/${folder} DESTINATION ${documents} COMPONENT documents)
  endforeach()
endif()

if(TARGET latchkey_sqlite)
  install(TARGETS latchkey_sqlite LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT sqlite)
endif()

# With the prefix /usr in the server's own folders.
if(TARGET latchkey_postgresql)
  file(RELATIVE_PATH modules /usr ${LATCHKEY_POSTGRESQL_MODULES})
  file(RELATIVE_PATH shared /usr ${LATCHKEY_POSTGRESQL_SHARED})
  install(TARGETS latchkey_postgresql LIBRARY DESTINATION ${modules} COMPONENT postgresql)
  install(FILES bindings/postgresql/latchkey.control bindings/postgresql/latchkey--1.0.sql
    DESTINATION ${shared}/extension COMPONENT postgresql)
endif()
