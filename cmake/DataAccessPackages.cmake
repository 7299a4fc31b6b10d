# The Debian packages that CPack makes of the installed parts: the library, what building against it takes, the tool, and
# the reference, which is in its package if scripts/docs has made it. scripts/package calls it.

# Debian packages have a revision of their own behind the version of what they carry.
set(package_revision 1)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME dataaccess)
# Each package has a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_CONTACT "DataAccess maintainers <maintainers@dataaccess.invalid>" CACHE STRING
    "Who is to be written to about the packages")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/package/CompleteTrees.cmake")
set(CPACK_POST_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/package/RemoveScripts.cmake")
set(CPACK_DATAACCESS_TEXTS "${PROJECT_SOURCE_DIR}/cmake/package")
set(CPACK_DATAACCESS_CHANGELOG "${PROJECT_SOURCE_DIR}/CHANGELOG.md")

set(CPACK_DEBIAN_PACKAGE_RELEASE ${package_revision})
set(CPACK_DEBIAN_PACKAGE_SOURCE dataaccess)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/src" "${PROJECT_BINARY_DIR}/src/entities/qor"
    "${PROJECT_BINARY_DIR}/src/entities/cables" "${PROJECT_BINARY_DIR}/src/entities/pd"
    "${PROJECT_BINARY_DIR}/src/entities/lb")

set(same_version "(= ${PROJECT_VERSION}-${package_revision})")

# dataaccess_package(GROUP PACKAGE SECTION TITLE TEXT): the package of the installed parts of GROUP.
macro(dataaccess_package group package section title text)
    list(APPEND CPACK_DATAACCESS_PACKAGES ${group}=${package})
    set(CPACK_DEBIAN_${group}_PACKAGE_NAME ${package})
    set(CPACK_DEBIAN_${group}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${group}_DESCRIPTION "${title}\n${text}")
endmacro()

dataaccess_package(RUNTIME libdataaccess${PROJECT_VERSION_MAJOR} libs "data layer of a power-cable diagnostics suite"
    "Stores and loads cable networks, partial-discharge results and cable-book
measures, in SQLite 3 or PostgreSQL. This is the shared library, with the
entity libraries that belong to it.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/cmake/package/triggers")
# Qt loads its database drivers by name, so nothing else tells that they are needed.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS libqt5sql5-sqlite)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS libqt5sql5-psql)

dataaccess_package(DEVELOPMENT libdataaccess-dev libdevel "data layer of a power-cable diagnostics suite - development"
    "What it takes to build programs that store and load cable networks,
partial-discharge results and cable-book measures: headers, and the packages
that CMake's find_package and pkg-config find.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libdataaccess${PROJECT_VERSION_MAJOR} ${same_version}, qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS dataaccess-doc)

dataaccess_package(TOOLS dataaccess-tools database "look after databases of cable networks and measurements"
    "The command dataaccess looks into such databases, checks, repairs, backs up,
restores, migrates and copies them, writes and loads dumps, shows a network
as a page for a browser, and keeps the stored configurations.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libdataaccess${PROJECT_VERSION_MAJOR} ${same_version}")
# Backups of a server's databases are made by its own programs.
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "libqt5sql5-psql, postgresql-client")

dataaccess_package(DOCUMENTATION dataaccess-doc doc "data layer of a power-cable diagnostics suite - reference"
    "Guides and the reference of all classes, as pages for a browser, with
pictures of the classes and of the database schema.")
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)

install(DIRECTORY "${PROJECT_BINARY_DIR}/docs/html" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/dataaccess-doc"
    COMPONENT DataAccessDocumentation OPTIONAL)

include(CPack)
cpack_add_component(DataAccessRuntime GROUP runtime)
cpack_add_component(DataAccessHeaders GROUP development)
cpack_add_component(DataAccessDevelopment GROUP development)
cpack_add_component(DataAccessTools GROUP tools)
cpack_add_component(DataAccessDocumentation GROUP documentation)
