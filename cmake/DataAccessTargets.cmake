# The settings that every target of the project shares, and the one way to declare a library of it.

include(GenerateExportHeader)

# The names of the entity libraries are too short for the folder where every library of a system lies.
set(DATAACCESS_ENTITY_LIBDIR "${CMAKE_INSTALL_LIBDIR}/dataaccess")

add_library(dataaccess_build_settings INTERFACE)
target_compile_definitions(dataaccess_build_settings INTERFACE
    QT_NO_KEYWORDS
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_DEPRECATED_WARNINGS
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00
    QT_MESSAGELOGCONTEXT)
target_compile_options(dataaccess_build_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wunused -Wformat=2
    # Qt's logging macros are called without the argument that C++17 asks of a variadic macro. The statements of large
    # tables are compared with their columns by the compiler, which takes more steps than Clang allows unasked.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments -fconstexpr-steps=50000000>
    $<$<BOOL:${DATAACCESS_WARNINGS_AS_ERRORS}>:-Werror>)
if(DATAACCESS_SANITIZE)
    target_compile_options(dataaccess_build_settings INTERFACE
        -fsanitize=${DATAACCESS_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(dataaccess_build_settings INTERFACE -fsanitize=${DATAACCESS_SANITIZE})
endif()

# dataaccess_add_library(NAME PREFIX FOLDER): a shared library NAME whose export macro is PREFIX_EXPORT, declared by the
# generated header FOLDER/NAMEExport.h (include paths start at src/).
function(dataaccess_add_library name prefix folder)
    add_library(${name} SHARED)
    add_library(DataAccess::${name} ALIAS ${name})
    set(header "${PROJECT_BINARY_DIR}/generated/${folder}/${name}Export.h")
    generate_export_header(${name} BASE_NAME ${prefix} EXPORT_FILE_NAME "${header}")
    target_include_directories(${name} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>
        $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/generated>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/DataAccess>)
    target_compile_features(${name} PUBLIC cxx_std_17)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:dataaccess_build_settings>)
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        # Found wherever the prefix is moved to: the entity libraries lie side by side, below all others.
        INSTALL_RPATH "$ORIGIN")
endfunction()
