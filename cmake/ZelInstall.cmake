# Installation and the Debian package. Included by the top-level CMakeLists.txt before the
# plugins and the collector, which install themselves.
include(CMakePackageConfigHelpers)

# Directories made by an installation are 0755 and its data files 0644, whatever the umask
# of the one who installs: the collector runs the installed plugins as root and refuses any
# that others could change. CMake gives files explicit modes but creates directories through
# the umask, so the installation notes which of its directories are missing before it starts
# and sets the modes of those it made, and of its own trees, once everything is in place.
set(ZEL_DIR_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(ZEL_DATA_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${ZEL_DIR_PERMISSIONS})
set(ZEL_SHARED_INSTALL_DIRS . ${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_LIBDIR}
    ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_LIBDIR}/cmake ${CMAKE_INSTALL_INCLUDEDIR}
    ${CMAKE_INSTALL_DATADIR} ${CMAKE_INSTALL_MANDIR} ${CMAKE_INSTALL_MANDIR}/man1)
set(ZEL_OWN_INSTALL_DIRS ${CMAKE_INSTALL_LIBDIR}/zelcore ${CMAKE_INSTALL_LIBDIR}/cmake/zelcore
    ${CMAKE_INSTALL_INCLUDEDIR}/zelcore ${CMAKE_INSTALL_DATADIR}/zelcore)
install(CODE "
  set(zel_made_dirs)
  foreach(dir ${ZEL_SHARED_INSTALL_DIRS})
    if(NOT IS_DIRECTORY \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/\${dir})
      list(APPEND zel_made_dirs \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/\${dir})
    endif()
  endforeach()")
function(zel_install_directory_modes)
  install(CODE "
    foreach(dir ${ZEL_OWN_INSTALL_DIRS})
      if(IS_DIRECTORY \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/\${dir})
        file(CHMOD_RECURSE \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/\${dir}
             DIRECTORY_PERMISSIONS ${ZEL_DIR_PERMISSIONS})
      endif()
    endforeach()
    foreach(dir \${zel_made_dirs})
      if(IS_DIRECTORY \${dir})
        file(CHMOD \${dir} PERMISSIONS ${ZEL_DIR_PERMISSIONS})
      endif()
    endforeach()")
endfunction()
# After every install rule of the project, the subdirectories' included.
cmake_language(DEFER DIRECTORY ${PROJECT_SOURCE_DIR} CALL zel_install_directory_modes)

set(ZEL_CMAKE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zelcore)

install(TARGETS zelcore EXPORT zelcoreTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
# The upload opens "libcurl.so", which Debian ships only with libcurl's development package.
# An installed library finds libcurl's run-time library through a private link of that name,
# in a directory that its run path names.
find_library(ZEL_CURL_RUNTIME NAMES libcurl.so.4)
if(ZEL_CURL_RUNTIME)
  set(ZEL_CURL_LINK_DIR ${CMAKE_INSTALL_LIBDIR}/zelcore/curl)
  set_target_properties(zelcore PROPERTIES INSTALL_RPATH "$ORIGIN/zelcore/curl")
  install(CODE "file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${ZEL_CURL_LINK_DIR}\")
file(CREATE_LINK \"${ZEL_CURL_RUNTIME}\"
     \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${ZEL_CURL_LINK_DIR}/libcurl.so\" SYMBOLIC)")
else()
  message(STATUS "libcurl.so.4 not found: an installed zelcore uploads only where libcurl's "
                 "development package is installed")
endif()
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zelcore
        FILE_PERMISSIONS ${ZEL_DATA_PERMISSIONS})
install(DIRECTORY schema/ DESTINATION ${ZEL_SCHEMA_INSTALL_DIR}
        FILE_PERMISSIONS ${ZEL_DATA_PERMISSIONS} FILES_MATCHING PATTERN "*.xml")

# find_package(zelcore CONFIG) gives the imported target zelcore::zelcore. Its public headers
# include Boost's, so the package finds Boost for its users.
install(EXPORT zelcoreTargets NAMESPACE zelcore:: DESTINATION ${ZEL_CMAKE_INSTALL_DIR})
add_library(zelcore::zelcore ALIAS zelcore)
configure_package_config_file(cmake/zelcoreConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/zelcoreConfig.cmake INSTALL_DESTINATION ${ZEL_CMAKE_INSTALL_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/zelcoreConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zelcoreConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/zelcoreConfigVersion.cmake
        DESTINATION ${ZEL_CMAKE_INSTALL_DIR})

# pkg-config: the file finds the prefix from its own place, so the installed tree may move
# (a staging directory, a package's root).
file(RELATIVE_PATH ZEL_PC_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" ZEL_PC_TO_PREFIX "${ZEL_PC_TO_PREFIX}")
configure_file(cmake/zelcore.pc.in ${CMAKE_CURRENT_BINARY_DIR}/zelcore.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zelcore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Manual pages: docs/<name>.1 (zelcollect.1 once written) into man1.
file(GLOB ZEL_MAN_PAGES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.1)
if(ZEL_MAN_PAGES)
  install(FILES ${ZEL_MAN_PAGES} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()

# cpack -G DEB (or cpack with no generator): one package with the library, its headers and
# CMake and pkg-config files, the bundled plugins, the schema and zelcollect, under /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zelcore)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "zelcore developers <zelcore@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "system-inventory collector for x86-64 Linux, with its core library and plugins")
set(CPACK_PACKAGE_DESCRIPTION "zelcollect describes this machine in DMTF CIM terms and \
writes the result as CIM-XML. libzelcore.so.1 holds the CIM object model, the CIM-XML \
reader and writer, the plugin manager and the C interface its collector plugins use.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/ZelDebStaging.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE amd64)
# The library's and the plugins' own needs, as dpkg-shlibdeps reads them from the binaries.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Uploads open libcurl at run time through the private link to its run-time library; C++
# programs built against the headers need Boost's.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libcurl4")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libboost-dev (>= 1.74), pkg-config")
include(CPack)
