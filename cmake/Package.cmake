# Debian packages, a package for each component: `cpack --config build/release/CPackConfig.cmake`, or `./dev package`.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ca-formatting)
set(CPACK_PACKAGE_VENDOR "The ca::formatting developers")
set(CPACK_PACKAGE_CONTACT "The ca::formatting developers <ca-formatting@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development tool devtools)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

# ombrel_package(COMPONENT NAME SECTION SUMMARY [FIELD VALUE]...)
macro(ombrel_package component name section summary)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}")
    set(fields ${ARGN})
    while(fields)
        list(POP_FRONT fields field value)
        set(CPACK_DEBIAN_${upper}_PACKAGE_${field} "${value}")
    endwhile()
endmacro()

set(exactly "(= ${PROJECT_VERSION})")
ombrel_package(library libca-formatting0 libs "source-code formatter for Ombrel (libraries)"
    GENERATE_SHLIBS ON)
ombrel_package(development libca-formatting-dev libdevel "source-code formatter for Ombrel (headers)"
    DEPENDS "libca-formatting0 ${exactly}")
ombrel_package(tool ombrel-format devel "source-code formatter for Ombrel (command line)"
    DEPENDS "libca-formatting0 ${exactly}" SUGGESTS "ombrel-devtools, git")
ombrel_package(devtools ombrel-devtools devel "source-code formatter for Ombrel (tree engine, ombrel-dump)"
    DEPENDS "libca-formatting0 ${exactly}" ENHANCES "ombrel-format")
include(CPack)
