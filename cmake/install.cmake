# SPDX-License-Identifier: Apache-2.0
# What `cmake --install` puts where, and how other builds find it: find_package and pkg-config. The
# components are the Debian packages of packages.cmake, and "documents", which those have in folders
# of their own.
include(CMakePackageConfigHelpers)

# An include root of its own, as the folder of the support headers has the common name "util".
set(OMTREADER_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/omtReader-${PROJECT_VERSION_MAJOR}")
set(package "${CMAKE_INSTALL_LIBDIR}/cmake/omtReader")

install(TARGETS omtReader EXPORT omtReaderTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    COMPONENT library NAMELINK_COMPONENT development
  INCLUDES DESTINATION "${OMTREADER_INCLUDEDIR}"
  FILE_SET HEADERS DESTINATION "${OMTREADER_INCLUDEDIR}" COMPONENT development)
install(EXPORT omtReaderTargets NAMESPACE omtReader:: DESTINATION "${package}"
  COMPONENT development)

# libomt: its own include root and its own package, which that of omtReader finds as well.
set(OMT_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/omt-0")
set(omtPackage "${CMAKE_INSTALL_LIBDIR}/cmake/omt")
install(TARGETS libomt EXPORT omtTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    COMPONENT engine NAMELINK_COMPONENT engineDevelopment
  INCLUDES DESTINATION "${OMT_INCLUDEDIR}"
  FILE_SET HEADERS DESTINATION "${OMT_INCLUDEDIR}" COMPONENT engineDevelopment)
install(EXPORT omtTargets NAMESPACE omtReader:: DESTINATION "${omtPackage}"
  COMPONENT engineDevelopment)
configure_package_config_file(cmake/omtConfig.cmake.in omtConfig.cmake
  INSTALL_DESTINATION "${omtPackage}")
write_basic_package_version_file(omtConfigVersion.cmake
  VERSION ${OMT_VERSION} COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/omtConfig.cmake" "${PROJECT_BINARY_DIR}/omtConfigVersion.cmake"
  DESTINATION "${omtPackage}" COMPONENT engineDevelopment)

configure_package_config_file(cmake/omtReaderConfig.cmake.in omtReaderConfig.cmake
  INSTALL_DESTINATION "${package}")
write_basic_package_version_file(omtReaderConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/omtReaderConfig.cmake"
  "${PROJECT_BINARY_DIR}/omtReaderConfigVersion.cmake"
  DESTINATION "${package}" COMPONENT development)

file(RELATIVE_PATH OMTREADER_PC_TO_PREFIX
  "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file(cmake/omtReader.pc.in omtReader.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/omtReader.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
configure_file(cmake/omt.pc.in omt.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/omt.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT engineDevelopment)

if(TARGET omt)
  file(RELATIVE_PATH toLibrary
    "/prefix/${CMAKE_INSTALL_BINDIR}" "/prefix/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(omt PROPERTIES INSTALL_RPATH "$ORIGIN/${toLibrary}")
  install(TARGETS omt RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tool)
  install(FILES docs/omt.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tool)
  install(FILES tools/omt/completion.bash RENAME omt COMPONENT tool
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
endif()
install(FILES data/standard.map COMPONENT library
  DESTINATION "${CMAKE_INSTALL_DATADIR}/omtReader-${PROJECT_VERSION_MAJOR}")
install(FILES LICENSE README.md ARCHITECTURE.md CHANGELOG.md CONTRIBUTING.md SECURITY.md
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documents)
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documents
  FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN site EXCLUDE)
# Those of the build mean nothing elsewhere.
install(DIRECTORY examples DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documents
  PATTERN CMakeLists.txt EXCLUDE)
