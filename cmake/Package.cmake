# Debian packages, a package for each component: `cpack --config build/release/CPackConfig.cmake`, or `./dev package`.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ca-formatting)
set(CPACK_PACKAGE_VENDOR "The ca::formatting developers")
set(CPACK_PACKAGE_CONTACT ${OMBREL_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development tool devtools lsp)
if(TARGET ombrel-explorer)
    list(APPEND CPACK_COMPONENTS_ALL explorer)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

# Libraries in a folder of the dynamic linker: it has to look for them again.
set(triggers ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${triggers})
set(CPACK_DEBIAN_DEVTOOLS_PACKAGE_CONTROL_EXTRA ${triggers})

# ombrel_package(COMPONENT NAME SECTION SUMMARY DESCRIPTION [FIELD VALUE]...)
macro(ombrel_package component name section summary description)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${description}")
    if(OMBREL_DOCUMENTS)
        install(FILES ${PROJECT_BINARY_DIR}/share/changelog.gz DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${name}
            COMPONENT ${component})
    endif()
    set(fields ${ARGN})
    while(fields)
        list(POP_FRONT fields field value)
        set(CPACK_DEBIAN_${upper}_PACKAGE_${field} "${value}")
    endwhile()
endmacro()

set(exactly "(= ${PROJECT_VERSION})")
ombrel_package(library libca-formatting0 libs
    "source-code formatter for Ombrel (libraries)"
    "The formatter of Ombrel source that tools load, and the host library with the
tokenizer, the parser and the configuration that it needs.")
ombrel_package(development libca-formatting-dev libdevel
    "source-code formatter for Ombrel (development files)"
    "Headers, a CMake package and a pkg-config file for programs that format Ombrel
source with the library, or that are a host of it."
    DEPENDS "libca-formatting0 ${exactly}")
ombrel_package(tool ombrel-format devel
    "source-code formatter for Ombrel (command line)"
    "Formats files, trees, and what has changed in a git repository, and checks them
in continuous integration. Has a line engine for any text and a tree engine for
text that parses."
    DEPENDS "libca-formatting0 ${exactly}, ombrel-devtools ${exactly}" SUGGESTS git)
ombrel_package(devtools ombrel-devtools devel
    "source-code formatter for Ombrel (tree engine, ombrel-dump)"
    "The companion library, through which ombrel-format reaches the tree engine, and
ombrel-dump, which prints what the formatters make of a text at one stage."
    DEPENDS "libca-formatting0 ${exactly}")
if(TARGET ombrel-explorer)
    ombrel_package(explorer ombrel-explorer devel
        "source-code formatter for Ombrel (explorer)"
        "A local page to try the options of ombrel-format and see every stage of it."
        DEPENDS "libca-formatting0 ${exactly}, ombrel-devtools ${exactly}" SUGGESTS xdg-utils)
endif()
ombrel_package(lsp ombrel-lsp devel
    "source-code formatter for Ombrel (language server)"
    "Formats documents in editors while they are written, as ombrel-format does, and
marks errors of syntax and of options files."
    DEPENDS "libca-formatting0 ${exactly}, ombrel-devtools ${exactly}")
include(CPack)
