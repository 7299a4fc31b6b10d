# Installs the libraries, their headers and the package that find_package(DataAccess) finds.

include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/DataAccess")

# A program links the entity libraries too, and its own run path has to lead to them.
set_target_properties(DataAccess PROPERTIES INSTALL_RPATH "$ORIGIN/dataaccess")
target_link_options(DataAccess INTERFACE
    $<INSTALL_INTERFACE:LINKER:-rpath,$<INSTALL_PREFIX>/${DATAACCESS_ENTITY_LIBDIR}>)
install(TARGETS DataAccess EXPORT DataAccessTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT DataAccessRuntime NAMELINK_COMPONENT DataAccessDevelopment)
install(TARGETS QorEntity Cables PD LB EXPORT DataAccessTargets
    LIBRARY DESTINATION ${DATAACCESS_ENTITY_LIBDIR}
    COMPONENT DataAccessRuntime NAMELINK_COMPONENT DataAccessDevelopment)

install(DIRECTORY "${PROJECT_SOURCE_DIR}/src/" "${PROJECT_BINARY_DIR}/generated/"
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/DataAccess COMPONENT DataAccessHeaders
    FILES_MATCHING PATTERN "*.h"
    PATTERN "backends" EXCLUDE
    PATTERN "private" EXCLUDE)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME DataAccessDevelopment)
install(EXPORT DataAccessTargets NAMESPACE DataAccess:: DESTINATION ${package_dir})

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/DataAccessConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/DataAccessConfig.cmake" INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/DataAccessConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/DataAccessConfig.cmake" "${PROJECT_BINARY_DIR}/DataAccessConfigVersion.cmake"
    DESTINATION ${package_dir})

# From the folder of the .pc file up to the prefix, so that the prefix can be moved.
set(pc_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
string(REGEX REPLACE "[^/]+" ".." DATAACCESS_PREFIX_FROM_PC "${pc_dir}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/DataAccess.pc.in" "${PROJECT_BINARY_DIR}/DataAccess.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/DataAccess.pc" DESTINATION ${pc_dir})
