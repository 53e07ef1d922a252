# SPDX-License-Identifier: Apache-2.0
# The Debian packages that cpack makes of the components of install.cmake: library, development
# files, tool.
set(theDocuments "${CMAKE_INSTALL_DATADIR}/doc")

# omtreader_package(COMPONENT PACKAGE SECTION SUMMARY TEXT [WHAT IT DEPENDS ON...])
function(omtreader_package component name section summary text)
  string(TOUPPER ${component} key)
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${key}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
  set(CPACK_COMPONENT_${key}_DEPENDS ${ARGN} PARENT_SCOPE)
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
  # Where Debian looks for them; an installation without packages has them in one folder.
  install(FILES LICENSE RENAME copyright DESTINATION "${theDocuments}/${name}"
    COMPONENT ${component} EXCLUDE_FROM_ALL)
  install(FILES CHANGELOG.md RENAME changelog DESTINATION "${theDocuments}/${name}"
    COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()

set(about "omtReader reads HLA object models in the XML formats of IEEE 1516-2010 and
IEEE 1516-2000 and in the data interchange format of HLA 1.3, and the values
that they describe.")
set(CPACK_COMPONENTS_ALL)
omtreader_package(library libomtreader${PROJECT_VERSION_MAJOR} libs
  "reader of HLA object models - shared library"
  "${about}\n.\nThis package has the shared library and the standard datatype mapping.")
omtreader_package(development libomtreader-dev libdevel
  "reader of HLA object models - development files"
  "${about}\n.\nThis package has headers, files for CMake and pkg-config, and examples."
  library)
omtreader_package(engine libomt${OMT_SOVERSION} libs
  "HLA object models of every edition - shared library"
  "libomt reads and merges HLA object models of IEEE 1516-2025, 1516-2010 and
1516-2000 and of HLA 1.3, and loses nothing of what they say.")
omtreader_package(engineDevelopment libomt-dev libdevel
  "HLA object models of every edition - development files"
  "libomt reads and merges HLA object models of IEEE 1516-2025, 1516-2010 and
1516-2000 and of HLA 1.3, and loses nothing of what they say.
.
This package has headers and files for CMake and pkg-config."
  engine)
install(DIRECTORY examples DESTINATION "${theDocuments}/libomtreader-dev"
  COMPONENT development EXCLUDE_FROM_ALL PATTERN CMakeLists.txt EXCLUDE)
install(DIRECTORY docs DESTINATION "${theDocuments}/libomtreader-dev"
  COMPONENT development EXCLUDE_FROM_ALL FILES_MATCHING PATTERN "*.md" PATTERN "*.svg"
  PATTERN site EXCLUDE)
install(FILES README.md DESTINATION "${theDocuments}/libomtreader-dev"
  COMPONENT development EXCLUDE_FROM_ALL)
if(TARGET omt)
  omtreader_package(tool omt utils
    "show, check, compare, convert HLA object models, decode and encode values"
    "omt reads HLA object models of IEEE 1516-2025, 1516-2010 and 1516-2000 and of
HLA 1.3. It checks, compares, converts and formats them, and turns octets that
came off a network, single ones or whole recordings, into values and back."
    engine)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME omtreader)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGE_CONTACT "omtReader developers <omtreader@example.org>")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# Debian wants folders of 0755, whatever the umask is.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
    GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/stagePackages.cmake")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The tool needs a library that no installed package has yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
include(CPack)
