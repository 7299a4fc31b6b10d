# Run by CPack on the packages it has made: takes out the scripts that it gives to a package with a library. They do what
# the package's trigger asks for already, once for all packages that are installed together.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    if(package MATCHES "/lib[^/]*[0-9]_[^/]*\\.deb$")
        set(tree "${package}.tree")
        execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${tree}" COMMAND_ERROR_IS_FATAL ANY)
        file(REMOVE "${tree}/DEBIAN/postinst" "${tree}/DEBIAN/postrm")
        execute_process(COMMAND dpkg-deb --root-owner-group --build "${tree}" "${package}"
            OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
        file(REMOVE_RECURSE "${tree}")
    endif()
endforeach()
