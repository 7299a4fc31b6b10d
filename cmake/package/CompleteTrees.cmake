# Run by CPack on the trees that are to become packages: adds what each Debian package carries about itself, and
# compresses manual pages.

# The history in the form of Debian's changelogs, from the releases of CHANGELOG.md ("## VERSION - DATE").
file(STRINGS "${CPACK_DATAACCESS_CHANGELOG}" releases REGEX "^## [0-9]")
if(NOT releases MATCHES "^## ${CPACK_PACKAGE_VERSION} - ")
    message(FATAL_ERROR "The newest release in ${CPACK_DATAACCESS_CHANGELOG} is not ${CPACK_PACKAGE_VERSION}.")
endif()
set(history "")
foreach(release IN LISTS releases)
    if(NOT release MATCHES "^## ([0-9.]+) - ([0-9-]+)$")
        message(FATAL_ERROR "Not \"## VERSION - DATE\": ${release}")
    endif()
    set(version ${CMAKE_MATCH_1})
    execute_process(COMMAND date --utc --rfc-email --date=${CMAKE_MATCH_2}
        OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    string(APPEND history
        "${CPACK_DEBIAN_PACKAGE_SOURCE} (${version}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n\n"
        "  * New release: see changelog.gz.\n\n"
        " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n\n")
endforeach()

foreach(entry IN LISTS CPACK_DATAACCESS_PACKAGES)
    string(REGEX MATCH "^(.+)=(.+)$" matched "${entry}")
    string(TOLOWER ${CMAKE_MATCH_1} group)
    set(doc "${CPACK_TEMPORARY_DIRECTORY}/${group}${CPACK_PACKAGING_INSTALL_PREFIX}/share/doc/${CMAKE_MATCH_2}")
    file(COPY "${CPACK_DATAACCESS_TEXTS}/copyright" DESTINATION "${doc}")
    file(WRITE "${doc}/changelog.Debian" "${history}")
    configure_file("${CPACK_DATAACCESS_CHANGELOG}" "${doc}/changelog" COPYONLY)
    file(GLOB texts "${doc}/changelog*" "${CPACK_TEMPORARY_DIRECTORY}/${group}/usr/share/man/man*/*")
    file(CHMOD "${doc}/copyright" ${texts} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    # Without name and time in them, the same content gives the same file.
    execute_process(COMMAND gzip --best --no-name --force ${texts} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
