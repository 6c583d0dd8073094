# Install rules, the CMake packages ca_formatting and ombrel_host and the pkg-config file. Headers of the library
# go to <include>/ca, those of the host to <include>/ombrel, which is a folder to search: a user writes
# <ca/formatting/ca_format.h> and <ca/lexer/Token.h> as we do.
#
# The host is a package of its own, so that the library can be built against it as against any other host.
include(CMakePackageConfigHelpers)
include(cmake/Documents.cmake)

set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON) # packaging takes what has been built, and builds nothing

set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/ca_formatting)
set(pkgConfigDir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Installs a target and says which Debian package its files go to; the link without a version is for developers.
function(ombrel_install target component)
    install(TARGETS ${target} ${ARGN}
        RUNTIME COMPONENT ${component}
        LIBRARY COMPONENT ${component} NAMELINK_COMPONENT development)
endfunction()

ombrel_install(ca_formatting library EXPORT ca_formattingTargets)
install(DIRECTORY include/ca DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
set(hostPackage ${OMBREL_HOST})
if(TARGET ombrel_host)
    set(hostPackage ombrel_host)
    set(hostPackageDir ${CMAKE_INSTALL_LIBDIR}/cmake/ombrel_host)
    ombrel_install(ombrel_host library EXPORT ombrel_hostConfig)
    install(EXPORT ombrel_hostConfig NAMESPACE ombrel:: DESTINATION ${hostPackageDir} COMPONENT development)
    install(DIRECTORY host/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ombrel COMPONENT development)
    set(hostLibrary "-lombrel_host") # a host of another package is that package's to link
endif()

ombrel_install(ombrel-format tool)
ombrel_install(ombrel-dump devtools)
if(TARGET ombrel-explorer)
    ombrel_install(ombrel-explorer explorer)
    install(FILES packaging/ombrel-explorer.desktop DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/applications COMPONENT explorer)
    install(FILES devtools/explorer/page/src/icon.svg DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/scalable/apps
        RENAME ombrel-explorer.svg COMPONENT explorer)
    ombrel_install_documents(ombrel-explorer explorer)
    install(DIRECTORY docs/images DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/ombrel-explorer COMPONENT explorer)
endif()
ombrel_install(ombrel-lsp lsp)
install(TARGETS ca_formatting_devtools LIBRARY COMPONENT devtools)

# Documents for the users of each package, and what they copy or point their tools to.
set(docDir ${CMAKE_INSTALL_DATAROOTDIR}/doc)
set(dataDir ${CMAKE_INSTALL_DATAROOTDIR}/ombrel-format)
ombrel_install_documents(ombrel-format tool)
install(FILES packaging/github-workflow.yml packaging/github-workflow-shards.yml .pre-commit-hooks.yaml
    DESTINATION ${docDir}/ombrel-format/examples COMPONENT tool)
install(DIRECTORY examples/ DESTINATION ${docDir}/ombrel-format/examples COMPONENT tool
    FILES_MATCHING PATTERN "*.omb" PATTERN embed EXCLUDE)
install(FILES docs/ombrel-format.schema.json docs/ombrel-format.report.schema.json DESTINATION ${dataDir} COMPONENT tool)
ombrel_install_documents(ombrel-lsp lsp)
ombrel_install_documents(libca-formatting-dev development)
install(DIRECTORY examples/embed DESTINATION ${docDir}/libca-formatting-dev/examples COMPONENT development)
if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/editors)
    install(DIRECTORY editors DESTINATION ${dataDir} COMPONENT lsp PATTERN vscode EXCLUDE) # an extension is installed from its own archive
endif()

install(EXPORT ca_formattingTargets NAMESPACE ca_formatting:: DESTINATION ${packageDir} COMPONENT development)
configure_package_config_file(cmake/ca_formattingConfig.cmake.in ca_formattingConfig.cmake
    INSTALL_DESTINATION ${packageDir})
write_basic_package_version_file(ca_formattingConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ca_formattingConfig.cmake
    ${PROJECT_BINARY_DIR}/ca_formattingConfigVersion.cmake DESTINATION ${packageDir} COMPONENT development)

# The .pc file finds the prefix from its own place, so that an installed tree can be moved.
file(RELATIVE_PATH prefixFromPkgConfig ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(packaging/ca_formatting.pc.in ca_formatting.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ca_formatting.pc DESTINATION ${pkgConfigDir} COMPONENT development)
