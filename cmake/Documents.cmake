# Installs documents with their links changed to what is there: a link to a file becomes one to where that is installed,
# a link to a document of another package names the package, and what is only in the sources is named.

# The documents below docs/, without .md, of each package.
set(documentPackages ombrel-format ombrel-lsp ombrel-explorer libca-formatting-dev)
set(documents_ombrel-format usage options messages scale security language debugging)
set(documents_ombrel-lsp editors lsp)
set(documents_ombrel-explorer explorer)
set(documents_libca-formatting-dev architecture host)

# What links lead to, and where that is from the folder of a package's documents.
set(linkedFiles ../packaging/github-workflow.yml ../packaging/github-workflow-shards.yml ../.pre-commit-hooks.yaml
    ombrel-format.schema.json ombrel-format.report.schema.json ../editors)
set(installedFiles examples/github-workflow.yml examples/github-workflow-shards.yml examples/.pre-commit-hooks.yaml
    ../../ombrel-format/ombrel-format.schema.json ../../ombrel-format/ombrel-format.report.schema.json
    ../../ombrel-format/editors)

# ombrel_change_links(PACKAGE TEXT RESULT): sets the variable RESULT to the text of a document of the package.
function(ombrel_change_links package text result)
    foreach(other IN LISTS documentPackages)
        if(NOT other STREQUAL package)
            list(JOIN documents_${other} "|" names)
            string(REGEX REPLACE "\\[(${names})\\.md\\]\\([^)]*\\)" "\\1.md (package ${other})" text "${text}")
            string(REGEX REPLACE "\\[([^]]*)\\]\\((${names})\\.md[^)]*\\)" "\\1 (\\2.md, package ${other})" text "${text}")
        endif()
    endforeach()
    foreach(file place IN ZIP_LISTS linkedFiles installedFiles)
        string(REPLACE "." "\\." pattern ${file})
        string(REGEX REPLACE "\\[[^]]*\\]\\(${pattern}\\)" "[${place}](${place})" text "${text}")
    endforeach()
    string(REGEX REPLACE "\\[([^]]*)\\]\\(\\.\\./[^.)][^)]*\\)" "\\1" text "${text}")
    set(${result} "${text}" PARENT_SCOPE)
endfunction()

# ombrel_install_documents(PACKAGE COMPONENT)
function(ombrel_install_documents package component)
    set(folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package})
    foreach(name IN LISTS documents_${package})
        file(READ docs/${name}.md text)
        ombrel_change_links(${package} "${text}" text)
        file(WRITE ${PROJECT_BINARY_DIR}/${folder}/${name}.md "${text}")
        install(FILES ${PROJECT_BINARY_DIR}/${folder}/${name}.md DESTINATION ${folder} COMPONENT ${component})
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS docs/${name}.md)
    endforeach()
endfunction()
